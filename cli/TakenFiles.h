// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Folders.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <utility>
#include <vector>

namespace brevant {

/// Knows the files that have been taken, in whatever spelling and through whatever links of their folders.
///
/// Most searches come to no folder twice, and so to no file. Only when one does are files told apart one by
/// one.
class TakenFiles final {
public:
    /// Another search begins. Within one, no path is to come twice.
    void beginSearch();

    /// False if the file has been taken before.
    [[nodiscard]] bool take(const QString &file);

private:
    void tellFilesApart();

    int m_search = 0;
    QString m_folder;                                  ///< that of the file asked for last
    QHash<QString, std::pair<int, QString>> m_folders; ///< by marks, the search and path that came to them
    bool m_areToldApart = false;
    std::vector<QString> m_files; ///< until then
    QSet<QString> m_marks;        ///< from then on
    FileMarks::Reader m_reader;
};

} // namespace brevant
