// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "app/ApplicationService.h"
#include "app/MenuActions.h"
#include "app/ServiceRequests.h"
#include "engine/originals/PutBack.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr std::chrono::milliseconds longestWait(500);

// The bus has the call ready that it starts the program for.
constexpr std::chrono::seconds serviceWait(5);

// The defaults must be registered before there is anybody who asks for a value.
SettingsStore &initialized(SettingsStore &settings)
{
    AppController::initialize(settings);
    return settings;
}

void loadApplicationIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(u":/icons/hicolor/%1x%1/apps/org.brevant.Brevant.png"_s.arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

// The layout must be loaded before anybody asks for the controls.
Outlets loaded(MainWindow &window)
{
    window.setUp();
    return window.outlets();
}

} // namespace

Application::Application(const QString &settingsFile)
    : m_settings(settingsFile), m_services{initialized(m_settings),
                                           m_queue,
                                           m_jobs,
                                           m_dockTile,
                                           m_doneSound,
                                           m_workspace,
                                           m_runNews,
                                           Tools::inResources(findResourceFolder()),
                                           {QStringLiteral(BREVANT_HOME_PAGE),
                                            QStringLiteral(BREVANT_SUPPORT_MAIL)}},
      m_controller(m_services, loaded(m_window)), m_delegate(m_services, m_window.outlets(), m_controller),
      m_lifetime(m_window, m_jobs)
{
    m_controller.init();
    m_controller.awakeFromNib();
    m_lifetime.catchSignals();
    connectActions(m_window, m_controller, m_delegate, m_lifetime);
    connectNotifications(m_notification, m_notificationOfSources, m_window, m_delegate, m_lifetime);
}

Application::~Application()
{
    m_jobs.stopAndWait(); // while what they work on is still there
}

void Application::serve(ApplicationService &service)
{
    connectRequests(service, m_window, m_controller, m_delegate);
    QObject::connect(&m_lifetime, &Lifetime::ending, &service, &ApplicationService::release);
}

void Application::start(const Launch &launch)
{
    m_launch = launch;
    if (launch.asService) {
        putBackOriginals(); // files may come at once, and no window waits
        QTimer::singleShot(serviceWait, &m_lifetime, &Lifetime::quitIfUnseen);
    } else {
        m_window.show();
    }
    m_delegate.applicationDidFinishLaunching();
    // What takes a while is left until the window has been painted, or is not going to be, being minimised.
    QObject::connect(&m_window, &MainWindow::painted, &m_delegate, [this] { finishStart(); });
    QTimer::singleShot(longestWait, &m_delegate, [this] { finishStart(); });
}

void Application::putBackOriginals()
{
    m_runNews.tell(putBackAfterInterruption(m_services.tools.originals));
}

void Application::finishStart()
{
    if (std::exchange(m_started, true))
        return;
    putBackOriginals();
    loadApplicationIcon();
    m_settings.watchFile();
    if (m_launch.minify)
        m_delegate.minifyFiles(m_launch.paths);
    else if (!m_launch.paths.isEmpty())
        m_delegate.applicationOpenFiles(m_launch.paths);
}

} // namespace brevant
