// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "queue/EntryIndex.h"

#include <QString>

#include <mutex>
#include <optional>
#include <vector>

namespace brevant {

/// The ordered list of the files to minify; row N of the window's list is entry N.
///
/// An entry is a path exactly as it was delivered. No two entries are equal texts. Each operation is safe
/// from any thread by itself; what is true between two of them, only the caller can know.
class FileQueue final {
public:
    [[nodiscard]] int count() const;
    [[nodiscard]] bool isEmpty() const { return count() == 0; }

    /// The entry at `index`, or nothing if there is none (any more).
    [[nodiscard]] std::optional<QString> entryAt(int index) const;

    /// The index of the entry equal to `path`, or -1. Constant time.
    [[nodiscard]] int indexOf(const QString &path) const;

    /// All entries as they stand.
    [[nodiscard]] std::vector<QString> entries() const;

    /// Another number after every change.
    [[nodiscard]] quint64 revision() const;

    /// Appends `path` at the end unless an equal entry is there; tells whether it did. Constant time.
    bool append(const QString &path);

    /// Removes the entries at `indexes`, in any order, in one operation; indexes out of range are passed
    /// over.
    void removeAt(const std::vector<int> &indexes);

    void clear();

private:
    mutable std::mutex m_mutex;
    std::vector<QString> m_entries;
    EntryIndex m_index;
    quint64 m_revision = 1;
};

} // namespace brevant
