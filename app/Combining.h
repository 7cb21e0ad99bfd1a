// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"
#include "engine/CombineFiles.h"

#include <QObject>
#include <QString>

#include <vector>

namespace brevant {

class FileQueue;
class JobRunner;
class SettingsStore;

/// Joins the selected files into one, which takes their place in the list. Once the user has confirmed, all
/// of it happens at once: nothing else in the window may come between the reading and the new list.
class Combining final : public QObject {
    Q_OBJECT

public:
    Combining(const Outlets &outlets, FileQueue &queue, const SettingsStore &settings, JobRunner &jobs,
              QObject *parent = nullptr);

    /// Keeps Combine from being chosen while a job runs.
    void watchJobs();

    /// Asks where the combined file is to go, or says why there will be none.
    void combine();

    /// Selects the combined file's row, and only that, and scrolls to it.
    void showResult();

Q_SIGNALS:
    /// The queue holds the combined file instead of its sources, and the list shows that.
    void didCombine();

private:
    void runSavePanel(const QString &kind, TextEncoding encoding);
    void write(const QString &target, TextEncoding encoding);
    [[nodiscard]] std::vector<QString> selectedEntries() const;

    const Outlets m_outlets;
    FileQueue &m_queue;
    const SettingsStore &m_settings;
    JobRunner &m_jobs;
    QString m_target; ///< of the last combine
};

} // namespace brevant
