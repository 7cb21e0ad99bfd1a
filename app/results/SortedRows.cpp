// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/SortedRows.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace brevant {

void SortedRows::sort(int column, Qt::SortOrder order)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const std::vector<int> before = m_shown;
    m_column = column;
    m_order = order;
    std::ranges::sort(m_shown);
    sortRecords(m_shown);
    std::vector<int> rows(static_cast<std::size_t>(recordCount())); // by record
    for (std::size_t row = 0; row < m_shown.size(); ++row)
        rows[static_cast<std::size_t>(m_shown[row])] = static_cast<int>(row);
    const QModelIndexList old = persistentIndexList();
    QModelIndexList now;
    for (const QModelIndex &index : old) {
        const int record = before[static_cast<std::size_t>(index.row())];
        now.append(createIndex(rows[static_cast<std::size_t>(record)], index.column()));
    }
    changePersistentIndexList(old, now);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

int SortedRows::rowOf(int record) const
{
    const auto found = std::ranges::find(m_shown, record);
    return found == m_shown.end() ? -1 : static_cast<int>(found - m_shown.begin());
}

int SortedRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

void SortedRows::findShown()
{
    m_shown.clear();
    for (int record = 0; record < recordCount(); ++record) {
        if (isAccepted(record))
            m_shown.push_back(record);
    }
    sortRecords(m_shown);
}

/// Records that are in their own order.
void SortedRows::sortRecords(std::vector<int> &records) const
{
    if (m_column < 0)
        return;
    std::vector<std::pair<Key, int>> keys; // made once for each row, not for each comparison
    keys.reserve(records.size());
    for (const int record : records)
        keys.emplace_back(keyOf(record, m_column), record);
    if (m_order == Qt::AscendingOrder)
        std::ranges::stable_sort(keys, std::less(), &std::pair<Key, int>::first);
    else
        std::ranges::stable_sort(keys, std::greater(), &std::pair<Key, int>::first);
    std::ranges::transform(keys, records.begin(), &std::pair<Key, int>::second);
}

/// The row that a record, not shown yet, is to have.
int SortedRows::placeOf(int record) const
{
    const auto comesAfter = [this](const std::pair<Key, int> &one, int other) {
        const auto order = one.first <=> keyOf(other, m_column);
        return std::is_eq(order) ? one.second < other : std::is_lt(order) == (m_order == Qt::AscendingOrder);
    };
    const auto place = std::upper_bound(m_shown.begin(), m_shown.end(),
                                        std::pair(keyOf(record, m_column), record), comesAfter);
    return static_cast<int>(place - m_shown.begin());
}

void SortedRows::addRecord(int record)
{
    if (!isAccepted(record))
        return;
    const int row = placeOf(record);
    beginInsertRows({}, row, row);
    m_shown.insert(m_shown.begin() + row, record);
    endInsertRows();
}

/// A record that has changed may belong elsewhere, or not be shown any more. Its row stays selected if it
/// was.
void SortedRows::changeRecord(int record)
{
    const int row = rowOf(record);
    if (row < 0) {
        addRecord(record);
    } else if (isAccepted(record)) {
        moveRow(row);
    } else {
        beginRemoveRows({}, row, row);
        m_shown.erase(m_shown.begin() + row);
        endRemoveRows();
    }
}

/// Moves a row whose record has changed to where that belongs.
void SortedRows::moveRow(int row)
{
    const int record = recordAt(row);
    m_shown.erase(m_shown.begin() + row);
    const int place = placeOf(record);
    m_shown.insert(m_shown.begin() + row, record);
    if (place != row) {
        beginMoveRows({}, row, row, {}, place > row ? place + 1 : place);
        m_shown.erase(m_shown.begin() + row);
        m_shown.insert(m_shown.begin() + place, record);
        endMoveRows();
    }
    Q_EMIT dataChanged(index(place, 0), index(place, columnCount() - 1));
}

} // namespace brevant
