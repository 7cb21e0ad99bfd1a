// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"
#include "engine/CombineFiles.h"

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <vector>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Joins the selected files into one, which takes their place in the list. The text is joined off the main
/// thread; what the window shows changes all at once when that is done.
class Combining final : public QObject {
    Q_OBJECT

public:
    Combining(const Outlets &outlets, FileQueue &queue, const SettingsStore &settings,
              QObject *parent = nullptr);

    /// Asks where the combined file is to go, or says why there will be none.
    void combine();

    /// Selects the combined file's row, and only that, and scrolls to it.
    void showResult();

Q_SIGNALS:
    /// The queue holds the combined file instead of its sources, and the list shows that. `wasEmptied`: it
    /// had been emptied meanwhile.
    void didCombine(bool wasEmptied);

private:
    void runSavePanel(const QString &kind, TextEncoding encoding);
    void write(const QString &target, TextEncoding encoding);
    void finish(const std::vector<QString> &sources, const QString &target, const CombineResult &result);
    [[nodiscard]] std::vector<QString> selectedEntries() const;

    const Outlets m_outlets;
    FileQueue &m_queue;
    const SettingsStore &m_settings;
    QString m_target; ///< of the last combine
    int m_running = 0;
    QThreadPool m_pool; ///< the last member: destroyed first, it waits for what uses the others
};

} // namespace brevant
