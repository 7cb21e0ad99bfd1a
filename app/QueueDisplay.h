// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"

#include <QString>

namespace brevant {

class DockTile;
class FileQueue;
class SettingsStore;

/// The text of the status line for a queue of `count` entries: "1 item", "3 items".
[[nodiscard]] QString itemCountText(int count);

/// Minify and Clear, buttons and menu items alike: to be had, or not.
void setControlsAvailable(const Outlets &outlets, bool available);

/// The same for the beginning and the end of a run, which have an order of their own: menu items first.
void setControlsLocked(const Outlets &outlets, bool locked);

/// Keeps what the window and the dock icon show of the queue in step with it.
class QueueDisplay final {
public:
    QueueDisplay(const Outlets &outlets, const FileQueue &queue, const SettingsStore &settings,
                 DockTile &dockTile)
        : m_outlets(outlets), m_queue(queue), m_settings(settings), m_dockTile(dockTile)
    {
    }

    /// After files were added, however: does nothing while the queue is empty.
    void refreshAfterAdding();

    /// After rows were removed: the list is up to date already.
    void refreshAfterRemoving();

    /// After the queue was emptied by Clear.
    void refreshAfterClearing();

    /// After a combine: the list is up to date already.
    void refreshAfterCombining();

    /// After a change of the settings.
    void updateBadge();

private:
    void showCount();
    void showBadgeIfOn();

    const Outlets m_outlets;
    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    DockTile &m_dockTile;
};

} // namespace brevant
