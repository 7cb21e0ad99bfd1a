// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppController.h"
#include "app/BrevantAppDelegate.h"
#include "app/JobRunner.h"
#include "app/Lifetime.h"
#include "app/MainWindow.h"
#include "app/RunNews.h"
#include "app/Services.h"
#include "app/platform/DockTile.h"
#include "app/platform/DoneSound.h"
#include "app/platform/Notification.h"
#include "app/platform/Workspace.h"
#include "queue/FileQueue.h"
#include "settings/SettingsStore.h"

#include <QStringList>

namespace brevant {

/// The objects that live as long as the process, made and connected in their order.
class Application final {
public:
    /// Reads its settings from `settingsFile`. A QApplication must be there.
    explicit Application(const QString &settingsFile);

    /// Waits for the files being worked on.
    ~Application();

    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// Shows the window and adds the paths.
    void start(const QStringList &paths);

    [[nodiscard]] MainWindow &window() { return m_window; }
    [[nodiscard]] AppController &controller() { return m_controller; }
    [[nodiscard]] JobRunner &jobs() { return m_jobs; }

private:
    void finishStart();

    QStringList m_paths; ///< to be added at the start
    bool m_started = false;
    SettingsStore m_settings;
    FileQueue m_queue;
    DockTile m_dockTile;
    DoneSound m_doneSound;
    Workspace m_workspace;
    Notification m_notification;
    MainWindow m_window;
    RunNews m_runNews{m_window, m_dockTile, m_notification};
    JobRunner m_jobs;
    const Services m_services;
    AppController m_controller;
    BrevantAppDelegate m_delegate;
    Lifetime m_lifetime;
};

} // namespace brevant
