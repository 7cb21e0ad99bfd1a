// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace brevant {

/// Files by their FileMarks, so that each is found again under whatever name, with the row that it has in a
/// list.
class MarkedFiles final {
public:
    MarkedFiles() = default;

    /// With room for the marks of so many files.
    explicit MarkedFiles(std::size_t count) { m_files.reserve(2 * static_cast<qsizetype>(count)); }

    void add(const QString &path, const QStringList &marks, int row);

    /// The same for a file that findInAnyCase() is to find.
    void addInAnyCase(const QString &path, const QStringList &marks, int row);

    /// The row of the file, added last, that one of the marks leads to; -1 if there is none. A file that has
    /// lost that mark meanwhile, because another was put into its place, is passed over. So are the marks in
    /// `own`.
    [[nodiscard]] int find(const QStringList &marks, const QStringList &own = {}) const;

    /// The same for a path and its marks, also where the file system takes two spellings for one file that
    /// does not exist yet.
    [[nodiscard]] int findInAnyCase(const QString &path, const QStringList &marks) const;

private:
    struct File {
        QString path;
        int row;
    };
    QHash<QString, File> m_files;        ///< by mark
    QHash<QString, int> m_rowsInAnyCase; ///< by folder and name, case-folded
};

/// Keeps the entries of a run independent: none may be written over the source or output of another. Asked
/// for each entry, in the order of the queue.
class OutputClaims final {
public:
    explicit OutputClaims(const std::vector<QString> &sources);

    /// Why that entry must not be run; empty if it may, and its output is taken from then on.
    [[nodiscard]] QString claim(const QString &source, const std::optional<QString> &output);

private:
    MarkedFiles m_sources;
    MarkedFiles m_outputs;
};

} // namespace brevant
