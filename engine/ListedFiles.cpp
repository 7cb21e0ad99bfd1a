// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ListedFiles.h"

#include "files/FileMarks.h"
#include "queue/FileQueue.h"

#include <algorithm>

namespace brevant {

bool ListedFiles::contains(const QString &path)
{
    if (!FileMarks::ofFile(path))
        return false;
    if (const quint64 revision = m_queue.revision(); revision != m_revision) {
        m_revision = revision;
        m_marks.clear();
        for (const QString &entry : m_queue.entries()) {
            for (const QString &mark : FileMarks::all(entry))
                m_marks.insert(mark);
        }
    }
    // Its name in its folder counts too, as gzip puts another file under it.
    return std::ranges::any_of(FileMarks::all(path),
                               [this](const QString &mark) { return m_marks.contains(mark); });
}

} // namespace brevant
