// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <set>
#include <vector>

namespace brevant {

/// One entry of a run and where its minified text goes.
struct PlannedEntry {
    QString source;
    std::optional<QString> output;
};

/// Which entries of a run may be worked on at the same time. An entry waits for every earlier one that writes
/// what it reads or writes, or reads what it writes; all others are free. Files are told apart by what the
/// disk says when this is made, so that links and other spellings of a name do not matter.
class RunOrder final {
public:
    explicit RunOrder(const std::vector<PlannedEntry> &entries);

    /// Takes the first entry that may start now; nothing if there is none, or none yet.
    [[nodiscard]] std::optional<int> takeNext();

    /// That entry has been worked on; those that waited for it may start.
    void finished(int entry);

    /// Whether every entry has been taken.
    [[nodiscard]] bool isAllTaken() const { return m_taken == m_waitsFor.size(); }

private:
    void addWait(int entry, int earlier);

    std::vector<std::vector<int>> m_followers; ///< of each entry
    std::vector<int> m_waitsFor;               ///< how many earlier ones each entry still waits for
    std::set<int> m_free;
    std::size_t m_taken = 0;
};

} // namespace brevant
