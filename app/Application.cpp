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

// The bus has the call ready that it starts the program for.
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
    jobs.stopAndWait(); // while what they work on is still there
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
    // What became of sources is said nowhere else, so that notification stays.
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
        return; // a panel or a sheet that is open has the user's attention already, as it has for the menu
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
        putBackOriginals(); // files may come at once, and no window waits
        QTimer::singleShot(serviceWait, &lifetime, &Lifetime::quitIfUnseen);
    } else {
        window.show();
    }
    delegate.applicationDidFinishLaunching();
    // What takes a while is left until the window has been painted, or is not going to be, being minimised.
    QObject::connect(&window, &MainWindow::painted, &delegate, [this] { finishStart(); });
    QTimer::singleShot(longestWait, &delegate, [this] { finishStart(); });
}

void Application::putBackOriginals()
{
    runNews.tell(putBackAfterInterruption(tools.originals));
}

void Application::finishStart()
{
    if (std::exchange(m_started, true))
        return;
    putBackOriginals();
    loadApplicationIcon(); // reading the pictures before would make the first painting an eighth later
    settings.watchFile();
    if (m_launch.minify)
        delegate.minifyFiles(m_launch.paths);
    else if (!m_launch.paths.isEmpty())
        delegate.applicationOpenFiles(m_launch.paths);
}

} // namespace brevant
