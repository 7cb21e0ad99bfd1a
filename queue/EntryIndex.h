// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace brevant {

/// Finds an entry of a list by its text in constant time.
///
/// An open-addressing hash table with linear probing that holds row numbers, not texts: half the memory of a
/// set of strings, and growing computes no hash anew.
class EntryIndex final {
public:
    /// The row of the entry equal to `path` in `entries`, or -1. `entries` are those that were inserted.
    [[nodiscard]] int find(const QString &path, const std::vector<QString> &entries) const;

    /// Takes in the last one of `entries` unless one before it is equal to it; tells whether it did.
    [[nodiscard]] bool insertLast(const std::vector<QString> &entries);

    /// Starts anew with all of `entries`, which are known to differ.
    void rebuild(const std::vector<QString> &entries);

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::int32_t row = -1; ///< -1: free
    };

    [[nodiscard]] static std::uint32_t hashOf(const QString &path);
    [[nodiscard]] std::size_t slotOf(const QString &path, std::uint32_t hash,
                                     const std::vector<QString> &entries) const;
    void grow();

    std::vector<Slot> m_slots; ///< a power of two in number, at most half of them taken
    std::size_t m_taken = 0;
};

} // namespace brevant
