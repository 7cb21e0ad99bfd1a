// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TakenFiles.h"

#include "files/Folders.h"
#include "files/PathString.h"

#include <QStringBuilder>

namespace brevant {

void TakenFiles::beginSearch()
{
    ++m_search;
    m_folder.clear();
}

bool TakenFiles::take(const QString &file)
{
    if (turnTo(file) && !m_areToldApart) {
        const std::pair way(m_search, m_folder);
        if (m_folders.value(m_folderMark, way) != way)
            tellFilesApart();
        m_folders.insert(m_folderMark, way);
    }
    if (!m_areToldApart) {
        m_files.push_back(file);
        return true;
    }
    const qsizetype before = m_marks.size();
    m_marks.insert(markOf(file));
    return m_marks.size() > before;
}

/// Asks the disk for the mark of a folder, unless the file before was in it.
bool TakenFiles::turnTo(const QString &file)
{
    const QStringView folder = PathString::folder(file);
    if (m_folder == folder && !m_folder.isEmpty())
        return false;
    m_folder = folder.toString();
    m_folderMark = FileMarks::ofPlace(file).chopped(PathString::lastComponent(file).size());
    return true;
}

QString TakenFiles::markOf(const QString &file)
{
    static_cast<void>(turnTo(file));
    return m_folderMark % PathString::lastComponent(file);
}

void TakenFiles::tellFilesApart()
{
    m_areToldApart = true;
    m_marks.reserve(static_cast<qsizetype>(m_files.size()));
    for (const QString &file : std::exchange(m_files, {}))
        m_marks.insert(markOf(file));
}

} // namespace brevant
