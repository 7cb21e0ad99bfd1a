// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DesktopReport.h"
#include "app/MainWindow.h"
#include "app/WindowRun.h"
#include "app/platform/DockTile.h"
#include "app/platform/DoneSound.h"
#include "app/platform/Notification.h"
#include "app/platform/Workspace.h"
#include "engine/Tools.h"
#include "queue/FileQueue.h"
#include "settings/SettingsStore.h"

#include <memory>

namespace brevant {

/// What the controllers and the runs work on; it outlives them.
struct AppContext {
    /// Reads its settings from `settingsFile`. Without a connection the session bus is used, without an
    /// opener addresses are opened by the desktop's own programs.
    explicit AppContext(const QString &settingsFile, const std::optional<QDBusConnection> &bus = {},
                        const Workspace::UrlOpener &opener = {})
        : settings(settingsFile), dockTile(bus), workspace(bus, opener), notification(bus),
          notificationOfSources(bus)
    {
    }

    SettingsStore settings;
    FileQueue queue;
    Tools tools;
    QString homePage;    ///< its address; empty if the build names none
    QString supportMail; ///< likewise
    DockTile dockTile;
    std::unique_ptr<DoneSound> doneSound = std::make_unique<DoneSound>();
    Workspace workspace;
    Notification notification; ///< of runs that have ended
    Notification notificationOfSources;
    MainWindow window{queue, settings, dockTile};
    DesktopReport desktopReport{window, dockTile, notification, notificationOfSources};
    JobRunner jobs;
};

} // namespace brevant
