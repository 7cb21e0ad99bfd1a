// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace brevant::test {

/// What a reader sees on a terminal: characters of single and double width, carriage return, line feed,
/// cursor up and erasing to the end of the line (ECMA-48), and lines that are too long going on in the next
/// row.
class Screen final {
public:
    explicit Screen(int columns) : m_columns(columns) {}

    void write(const QByteArray &output);

    /// The rows from the first to the last that is not empty.
    [[nodiscard]] QStringList rows() const;

    /// Whether a line was longer than the terminal is wide.
    [[nodiscard]] bool hasWrapped() const { return m_wrapped; }

    /// Control characters and sequences that came and are none of the above.
    [[nodiscard]] const QStringList &unknown() const { return m_unknown; }

private:
    qsizetype control(const QString &text, qsizetype position);
    void put(char32_t character);
    [[nodiscard]] QStringList &row();

    const int m_columns;
    QList<QStringList> m_rows; ///< one text a column; empty where the character before it is a double one
    QStringList m_unknown;
    qsizetype m_row = 0;
    qsizetype m_column = 0;
    bool m_wrapped = false;
};

} // namespace brevant::test
