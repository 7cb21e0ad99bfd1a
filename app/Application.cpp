// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "app/ApplicationService.h"
#include "app/platform/Activation.h"
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

// When the bus starts the program, the call it does so for follows at once.
constexpr std::chrono::seconds serviceWait(5);

void loadApplicationIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(u":/icons/hicolor/%1x%1/apps/org.brevant.Brevant.png"_s.arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

} // namespace

Application::Application(const QString &settingsFile, const std::optional<QDBusConnection> &bus,
                         const Workspace::UrlOpener &opener)
    : AppContext(settingsFile, bus, opener)
{
    tools = Tools::inResources(findResourceFolder());
    homePage = QStringLiteral(BREVANT_HOME_PAGE);
    supportMail = QStringLiteral(BREVANT_SUPPORT_MAIL);
}

Application::~Application()
{
    jobs.stopAndWait(); // while the controllers they use still exist
}

void Application::setUp()
{
    AppController::initialize(settings);
    window.setUp();
    controller.init();
    controller.awakeFromNib();
    delegate.awakeFromNib();
    lifetime.awakeFromNib();
    for (Notification *const shown : {&notification, &notificationOfSources}) {
        QObject::connect(shown, &Notification::clicked, &delegate, [this](const QString &token) {
            bringToFront({{u"activation-token"_s, token}});
        });
    }
    // The other notification stays: what became of sources is said nowhere else.
    QObject::connect(&lifetime, &Lifetime::quitting, &notification, &Notification::withdraw);
}

void Application::serve(ApplicationService &service)
{
    using Service = ApplicationService;
    QObject::connect(&lifetime, &Lifetime::ending, &service, &Service::release);
    QObject::connect(&service, &Service::activateRequested, &delegate,
                     [this](const QVariantMap &platformData) { bringToFront(platformData); });
    QObject::connect(&service, &Service::openRequested, &delegate,
                     [this](const QStringList &paths, const QVariantMap &platformData) {
                         bringToFront(platformData);
                         if (!paths.isEmpty())
                             delegate.applicationOpenFiles(paths);
                     });
    QObject::connect(&service, &Service::actionRequested, &delegate,
                     [this](const QString &name, const QStringList &paths, const QVariantMap &platformData) {
                         act(name, paths, platformData);
                     });
}

void Application::bringToFront(const QVariantMap &platformData)
{
    delegate.applicationShouldHandleReopen(window.isVisible());
    activate(*window.windowHandle(), platformData);
}

/// The actions are those of the desktop entry; any other is passed over.
void Application::act(const QString &name, const QStringList &paths, const QVariantMap &platformData)
{
    if (name != u"add-files" && name != u"minify" && name != u"preferences")
        return;
    bringToFront(platformData);
    if (name == u"minify")
        delegate.minifyFiles(paths);
    else if (QApplication::activeModalWidget() != nullptr)
        return; // an open panel or sheet blocks these actions as it blocks the menu
    else if (name == u"add-files")
        controller.addFile();
    else
        controller.showPreferencePanel();
}

void Application::start(const Launch &launch)
{
    m_launch = launch;
    lifetime.catchSignals();
    if (launch.asService) {
        putBackOriginals(); // files may arrive at once, and there is no window to paint
        QTimer::singleShot(serviceWait, &lifetime, &Lifetime::quitIfUnseen);
    } else {
        window.show();
    }
    delegate.applicationDidFinishLaunching();
    // Slow work waits for the first painting, which does not come while the window is minimised.
    QObject::connect(&window, &MainWindow::painted, &delegate, [this] { finishStart(); });
    QTimer::singleShot(longestWait, &delegate, [this] { finishStart(); });
}

void Application::putBackOriginals()
{
    desktopReport.tell(putBackAfterInterruption(tools.originals));
}

void Application::finishStart()
{
    if (std::exchange(m_started, true))
        return;
    putBackOriginals();
    loadApplicationIcon(); // loaded earlier, it would delay the first painting by an eighth
    settings.watchFile();
    if (m_launch.minify)
        delegate.minifyFiles(m_launch.paths);
    else if (!m_launch.paths.isEmpty())
        delegate.applicationOpenFiles(m_launch.paths);
}

} // namespace brevant
