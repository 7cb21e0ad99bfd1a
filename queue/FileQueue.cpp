// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "queue/FolderWalk.h"

#include <algorithm>
#include <utility>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// Entries are only ever removed, and others appended, so that what is left keeps its order.
std::vector<int> newRows(const std::vector<QString> &before, const std::vector<QString> &now)
{
    std::vector<int> rows(before.size(), -1);
    std::size_t next = 0;
    for (std::size_t i = 0; i < before.size() && next < now.size(); ++i) {
        if (before[i] == now[next])
            rows[i] = static_cast<int>(next++);
    }
    return rows;
}

} // namespace

int FileQueue::count() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_entries.size());
}

std::optional<QString> FileQueue::entryAt(int index) const
{
    const std::lock_guard lock(m_mutex);
    const auto at = static_cast<std::size_t>(index); // out of range if negative
    return at < m_entries.size() ? std::optional(m_entries[at]) : std::nullopt;
}

int FileQueue::indexOf(const QString &path) const
{
    const std::lock_guard lock(m_mutex);
    return m_indexes.value(keyOf(path), -1);
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
    const qsizetype before = m_indexes.size();
    int &index = m_indexes[keyOf(path)];
    if (m_indexes.size() == before)
        return false;
    index = static_cast<int>(m_entries.size());
    m_entries.push_back(path);
    ++m_revision;
    return true;
}

void FileQueue::removeAt(const std::vector<int> &indexes)
{
    const std::lock_guard lock(m_mutex);
    std::vector<bool> removed(m_entries.size(), false);
    for (const int index : indexes) {
        if (const auto at = static_cast<std::size_t>(index); at < removed.size())
            removed[at] = true;
    }
    const std::vector<QString> before = std::exchange(m_entries, {});
    m_indexes.clear();
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (removed[i])
            continue;
        m_indexes.insert(keyOf(before[i]), static_cast<int>(m_entries.size()));
        m_entries.push_back(before[i]);
    }
    ++m_revision;
}

/// The key of the entry equal to `path`, or the free one that it would have.
quint32 FileQueue::keyOf(const QString &path) const
{
    auto key = static_cast<quint32>(qHash(path));
    for (auto found = m_indexes.find(key);
         found != m_indexes.end() && m_entries[static_cast<std::size_t>(*found)] != path;)
        found = m_indexes.find(++key);
    return key;
}

void FileQueue::clear()
{
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_indexes.clear();
    ++m_revision;
}

std::vector<int> FileQueue::reload()
{
    std::vector<QString> now = entries();
    std::vector<int> moved = newRows(m_rows, now);
    if (moved.empty() || moved.back() == static_cast<int>(moved.size()) - 1) {
        if (now.size() > m_rows.size()) {
            beginInsertRows({}, static_cast<int>(m_rows.size()), static_cast<int>(now.size()) - 1);
            m_rows = std::move(now);
            endInsertRows();
        }
        return {};
    }
    beginResetModel();
    m_rows = std::move(now);
    endResetModel();
    return moved;
}

int FileQueue::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant FileQueue::data(const QModelIndex &index, int role) const
{
    const std::optional<QString> path = index.isValid() ? entryAt(index.row()) : std::nullopt;
    if (!path)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return *path;
    case Qt::AccessibleTextRole:
        return PathString::lastComponent(*path).toString() + u", "_s + PathString::folder(*path).toString();
    case Qt::ToolTipRole:
        return toolTipOf(*path);
    default:
        return {};
    }
}

QString toolTipOf(const QString &text)
{
    if (!text.contains(u'<') && !text.contains(u"&lt;")) // what Qt takes for markup
        return text;
    return u"<span style=\"white-space: pre\">%1</span>"_s.arg(text.toHtmlEscaped());
}

void addTopLevelPath(const QString &path, FileQueue &queue, const SettingsStore &settings)
{
    walkFolder(path, [&](const QString &relativePath) {
        if (isAccepted(relativePath, settings))
            queue.append(PathString::join(path, relativePath));
    });
    if (isAccepted(path, settings))
        queue.append(path);
}

} // namespace brevant
