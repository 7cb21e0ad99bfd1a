// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"

#include <QHash>
#include <QString>

#include <set>

namespace brevant {

struct CommandLine;

/// The tree below --out-dir: where each file that the paths of a command line lead to has its place in it.
///
/// What lies below a path has its place below the tree's folder, and a file that is a path itself lies in
/// that. The paths of a list that lie below the working folder count from there: it makes no difference
/// whether the list or the working folder is named. Of several paths the first one counts.
///
/// Places are a matter of the paths alone, never of the disk: each of several machines comes to the same.
class OutTree final {
public:
    explicit OutTree(const CommandLine &line);

    [[nodiscard]] bool isWanted() const { return !m_top.isEmpty(); }

    /// --out-dir
    [[nodiscard]] const QString &top() const { return m_top; }

    /// The folder in the tree of what becomes of a file; empty where no tree is wanted.
    [[nodiscard]] QString folderOf(const QString &file) const;

    /// The place of a file under its own name.
    [[nodiscard]] QString pathOf(const QString &file) const;

    /// Whether files in that folder have their places in that folder itself.
    [[nodiscard]] bool isBeside(const QString &folder) const;

    /// Opens the folder in the tree that a path lies in, which is made if it is missing, with those above it.
    /// Closed, with the reason in words, where nothing is to be written to that path: no symbolic link in the
    /// tree is followed.
    [[nodiscard]] Descriptor openFolderOf(const QString &path, QString &error) const;

private:
    struct Root {
        qsizetype rank = 0;
        bool isListed = false; ///< and below the working folder
    };

    [[nodiscard]] QString placeOf(const QString &file) const;

    const QString m_top;
    const QString m_workingFolder; ///< with "/" at its end
    QHash<QString, Root> m_roots;  ///< by the paths of the command line, absolute
    std::set<qsizetype> m_lengths; ///< of those paths
};

} // namespace brevant
