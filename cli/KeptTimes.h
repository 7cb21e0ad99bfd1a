// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QHash>

#include <ctime>

namespace brevant {

class EntrySettings;

/// Gives the outputs of a run, and their copies and source maps, the modification times of their sources,
/// before another observer is told of each.
class KeptTimes final : public RunObserver {
public:
    KeptTimes(RunObserver &next, const EntrySettings &settings) : m_next(next), m_settings(settings) {}

    /// To be called before work on an entry begins, as its output may replace it.
    void entryTaken(const QString &entry);

    void runStarted() override { m_next.runStarted(); }
    void entryStarted(const EntryStart &start) override { m_next.entryStarted(start); }
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override { m_next.runEnded(end, status); }

private:
    RunObserver &m_next;
    const EntrySettings &m_settings;
    QHash<QString, timespec> m_times; ///< of the entries in work
};

} // namespace brevant
