// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TakenFiles.h"

#include "files/PathString.h"

#include <QDir>

namespace brevant {

void TakenFiles::beginSearch()
{
    ++m_search;
    m_folder.clear();
}

bool TakenFiles::take(const QString &file)
{
    if (const QStringView folder = PathString::folder(file); !m_areToldApart && folder != m_folder) {
        m_folder = folder.toString();
        const QString mark = FileMarks::ofFile(m_folder).value_or(QDir::cleanPath(m_folder));
        const std::pair way(m_search, m_folder);
        if (m_folders.value(mark, way) != way)
            tellFilesApart();
        m_folders.insert(mark, way);
    }
    if (!m_areToldApart) {
        m_files.push_back(file);
        return true;
    }
    const qsizetype before = m_marks.size();
    m_marks.insert(m_reader.ofPlace(file));
    return m_marks.size() > before;
}

void TakenFiles::tellFilesApart()
{
    m_areToldApart = true;
    m_marks.reserve(static_cast<qsizetype>(m_files.size()));
    for (const QString &file : std::exchange(m_files, {}))
        m_marks.insert(m_reader.ofPlace(file));
}

} // namespace brevant
