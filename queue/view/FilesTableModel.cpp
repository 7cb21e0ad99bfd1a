// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/FilesTableModel.h"

#include "files/PathString.h"
#include "queue/FileQueue.h"

#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace brevant {

namespace {

QString accessibleText(const QString &path)
{
    return PathString::lastComponent(path).toString() + QLatin1StringView(", ") +
           PathString::folder(path).toString();
}

QString toolTip(const QString &path)
{
    if (!Qt::mightBeRichText(path))
        return path;
    return QStringLiteral("<span style=\"white-space: pre\">%1</span>").arg(path.toHtmlEscaped());
}

bool isPrefix(const std::vector<QString> &before, const std::vector<QString> &now)
{
    return before.size() <= now.size() && std::equal(before.begin(), before.end(), now.begin());
}

/// The queue only ever removes entries and appends others, so what is left of it keeps its order.
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

FilesTableModel::FilesTableModel(const FileQueue &queue, QObject *parent)
    : QAbstractTableModel(parent), m_queue(queue), m_entries(queue.entries())
{
}

std::vector<int> FilesTableModel::reload()
{
    std::vector<QString> entries = m_queue.entries();
    if (isPrefix(m_entries, entries)) {
        if (entries.size() > m_entries.size()) {
            const int first = static_cast<int>(m_entries.size());
            beginInsertRows({}, first, static_cast<int>(entries.size()) - 1);
            m_entries = std::move(entries);
            endInsertRows();
        }
        return {};
    }
    std::vector<int> rows = newRows(m_entries, entries);
    beginResetModel();
    m_entries = std::move(entries);
    endResetModel();
    return rows;
}

int FilesTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int FilesTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant FilesTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole && role != Qt::ToolTipRole)
        return {};
    const std::optional<QString> path = m_queue.entryAt(index.row());
    if (!path)
        return {};
    if (role == Qt::AccessibleTextRole)
        return accessibleText(*path);
    return role == Qt::ToolTipRole ? toolTip(*path) : *path;
}

} // namespace brevant
