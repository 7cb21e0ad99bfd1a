// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"

#include <algorithm>

namespace brevant {

int FileQueue::count() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_entries.size());
}

std::optional<QString> FileQueue::entryAt(int index) const
{
    const std::lock_guard lock(m_mutex);
    if (index < 0 || static_cast<std::size_t>(index) >= m_entries.size())
        return std::nullopt;
    return m_entries[static_cast<std::size_t>(index)];
}

int FileQueue::indexOf(const QString &path) const
{
    const std::lock_guard lock(m_mutex);
    if (!m_known.contains(path))
        return -1;
    return static_cast<int>(std::ranges::find(m_entries, path) - m_entries.begin());
}

std::vector<QString> FileQueue::entries() const
{
    const std::lock_guard lock(m_mutex);
    return m_entries;
}

bool FileQueue::append(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    const qsizetype before = m_known.size();
    m_known.insert(path);
    if (m_known.size() == before)
        return false;
    m_entries.push_back(path);
    return true;
}

void FileQueue::removeAt(const std::vector<int> &indexes)
{
    const std::lock_guard lock(m_mutex);
    std::vector<bool> removed(m_entries.size(), false);
    for (const int index : indexes) {
        if (index >= 0 && static_cast<std::size_t>(index) < removed.size())
            removed[static_cast<std::size_t>(index)] = true;
    }
    std::vector<QString> kept;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (removed[i])
            m_known.remove(m_entries[i]);
        else
            kept.push_back(std::move(m_entries[i]));
    }
    m_entries = std::move(kept);
}

void FileQueue::clear()
{
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_known.clear();
}

} // namespace brevant
