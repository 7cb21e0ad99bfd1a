// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"

#include <utility>

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
    return m_index.find(path, m_entries);
}

std::vector<QString> FileQueue::entries() const
{
    const std::lock_guard lock(m_mutex);
    return m_entries;
}

quint64 FileQueue::revision() const
{
    const std::lock_guard lock(m_mutex);
    return m_revision;
}

bool FileQueue::append(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    m_entries.push_back(path);
    ++m_revision;
    if (m_index.insertLast(m_entries))
        return true;
    m_entries.pop_back();
    return false;
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
        if (!removed[i])
            kept.push_back(std::move(m_entries[i]));
    }
    m_entries = std::move(kept);
    m_index.rebuild(m_entries);
    ++m_revision;
}

void FileQueue::clear()
{
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_index.rebuild(m_entries);
    ++m_revision;
}

} // namespace brevant
