// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

#include <vector>

namespace brevant {

struct PreviewContent;

/// The beginning of a source as it is shown, and where in it a place of the source is.
struct ShownSource {
    QString text;                ///< its lines end in line feeds; long ones are folded
    std::vector<qint64> numbers; ///< of its lines in the source; 0 for the rest of a folded one
    qsizetype place = -1;        ///< in the text; -1 if it is not shown

    /// Line and column, in characters, count from 1; column 0 is the beginning of the line.
    ShownSource(const PreviewContent &content, qint64 line, qint64 column);
};

/// A source to read, with the numbers of its lines beside it.
class SourceView final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit SourceView(QWidget *parent);

    /// Shows it, with the place marked, its line too, and the keyboard's cursor on it.
    void setSource(const ShownSource &source);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    friend class LineNumbers;
    [[nodiscard]] int numbersWidth() const;
    void paintNumbers(const QRect &dirty);
    void placeNumbers();
    void updateLooks();

    QWidget *m_margin;
    std::vector<qint64> m_numbers;
    int m_markedLine = -1; ///< of those shown
    qsizetype m_place = -1;
};

} // namespace brevant
