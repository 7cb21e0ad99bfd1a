// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/EntryIndex.h"

#include <QHashFunctions>

#include <utility>

namespace brevant {

namespace {

constexpr std::size_t smallestTable = 64;

/// Puts an entry that is not there yet into the first free slot of its own.
template <typename Slots, typename Slot>
void place(Slots &table, const Slot &entry)
{
    const std::size_t mask = table.size() - 1;
    std::size_t slot = entry.hash & mask;
    while (table[slot].row >= 0)
        slot = (slot + 1) & mask;
    table[slot] = entry;
}

} // namespace

std::uint32_t EntryIndex::hashOf(const QString &path)
{
    const std::size_t hash = qHash(path);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
}

/// Where the entry equal to `path` is, or the free slot where it belongs.
std::size_t EntryIndex::slotOf(const QString &path, std::uint32_t hash,
                               const std::vector<QString> &entries) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    while (m_slots[slot].row >= 0 &&
           (m_slots[slot].hash != hash || entries[static_cast<std::size_t>(m_slots[slot].row)] != path))
        slot = (slot + 1) & mask;
    return slot;
}

int EntryIndex::find(const QString &path, const std::vector<QString> &entries) const
{
    return m_slots.empty() ? -1 : m_slots[slotOf(path, hashOf(path), entries)].row;
}

bool EntryIndex::insertLast(const std::vector<QString> &entries)
{
    if (2 * (m_taken + 1) > m_slots.size())
        grow();
    const QString &path = entries.back();
    const std::uint32_t hash = hashOf(path);
    Slot &slot = m_slots[slotOf(path, hash, entries)];
    if (slot.row >= 0)
        return false;
    slot = {hash, static_cast<std::int32_t>(entries.size() - 1)};
    ++m_taken;
    return true;
}

void EntryIndex::rebuild(const std::vector<QString> &entries)
{
    m_slots.clear();
    m_taken = 0;
    while (2 * entries.size() > m_slots.size())
        grow();
    for (std::size_t row = 0; row < entries.size(); ++row)
        place(m_slots, Slot{hashOf(entries[row]), static_cast<std::int32_t>(row)});
    m_taken = entries.size();
}

void EntryIndex::grow()
{
    const std::vector<Slot> old =
        std::exchange(m_slots, std::vector<Slot>(m_slots.empty() ? smallestTable : 2 * m_slots.size()));
    for (const Slot &entry : old) {
        if (entry.row >= 0)
            place(m_slots, entry);
    }
}

} // namespace brevant
