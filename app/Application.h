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
#include "app/StartUp.h"
#include "app/platform/DockTile.h"
#include "app/platform/DoneSound.h"
#include "app/platform/Notification.h"
#include "app/platform/Workspace.h"
#include "queue/FileQueue.h"
#include "settings/SettingsStore.h"

namespace brevant {

class ApplicationService;

/// The objects that live as long as the process, made and connected in their order.
class Application final {
public:
    /// Reads its settings from `settingsFile`. A QApplication must be there.
    explicit Application(const QString &settingsFile);

    /// Waits for the files being worked on.
    ~Application();

    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// Does from now on what the session bus asks for. The service must outlive this object.
    void serve(ApplicationService &service);

    /// Shows the window and does what the launch asks for. A launch as service shows none before it is asked
    /// to; if nobody asks soon, the program ends.
    void start(const Launch &launch);

    [[nodiscard]] MainWindow &window() { return m_window; }
    [[nodiscard]] AppController &controller() { return m_controller; }
    [[nodiscard]] JobRunner &jobs() { return m_jobs; }

private:
    void putBackOriginals();
    void finishStart();

    Launch m_launch;
    bool m_started = false;
    SettingsStore m_settings;
    FileQueue m_queue;
    DockTile m_dockTile;
    DoneSound m_doneSound;
    Workspace m_workspace;
    Notification m_notification;
    Notification m_notificationOfSources;
    MainWindow m_window;
    RunNews m_runNews{m_window, m_dockTile, m_notification, m_notificationOfSources};
    JobRunner m_jobs;
    const Services m_services;
    AppController m_controller;
    BrevantAppDelegate m_delegate;
    Lifetime m_lifetime;
};

} // namespace brevant
