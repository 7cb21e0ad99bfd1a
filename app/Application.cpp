// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "app/MenuActions.h"
#include "settings/SettingsKeys.h"

#include <QTimer>

namespace brevant {

namespace {

// The layout must be loaded before anybody asks for the controls.
Outlets loaded(MainWindow &window)
{
    window.setUp();
    return window.outlets();
}

} // namespace

Application::Application(const QString &settingsFile)
    : m_settings(settingsFile), m_services{m_settings,
                                           m_queue,
                                           m_jobs,
                                           m_dockTile,
                                           m_doneSound,
                                           m_workspace,
                                           Tools::inResources(findResourceFolder())},
      m_controller(m_services, loaded(m_window)), m_delegate(m_services, m_window.outlets(), m_controller),
      m_lifetime(m_window, m_jobs)
{
    m_settings.registerDefaults(registeredDefaults());
    m_settings.watchFile();
    m_controller.init();
    m_controller.awakeFromNib();
    m_lifetime.catchSignals();
    connectActions(m_window, m_controller, m_delegate, m_lifetime);
}

Application::~Application()
{
    m_jobs.stopAndWait(); // while what they work on is still there
}

void Application::start(const QStringList &paths)
{
    m_window.show();
    m_delegate.applicationDidFinishLaunching();
    if (paths.isEmpty())
        return;
    // Once the window has been painted: walking a large folder takes a while.
    QTimer::singleShot(0, &m_delegate, [this, paths] { m_delegate.applicationOpenFiles(paths); });
}

} // namespace brevant
