// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"

#include "app/planned/PlannedWindow.h"
#include "engine/originals/PutBack.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

#include <fontconfig/fontconfig.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

// Slow work waits for the first painting, but that does not come while the window is minimised.
constexpr std::chrono::milliseconds longestWait(500);

// When the bus starts the program, the call it does so for follows at once.
constexpr std::chrono::seconds serviceWait(5);

// How long the program stays after a run, for the sound.
constexpr std::chrono::milliseconds soundLength(1000);

// How long it stays besides for a click on the notification, which leads to results that end with it.
// Desktops show one for 4 to 10 seconds.
constexpr std::chrono::seconds clickWait(10);

// The signal handler writes to one end, and the main loop reads from the other.
std::array<int, 2> signalPipe{-1, -1};

/// Writes the signal's number if it asks for a stop at once, else 0.
void tellMainLoop(Stop stop, int number)
{
    const auto byte = static_cast<char>(stop == Stop::AtOnce ? number : 0);
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], &byte, 1);
}

void loadApplicationIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(u":/icons/hicolor/%1x%1/apps/org.brevant.Brevant.png"_s.arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
}

} // namespace

Application::Application(const QString &settingsFile, const QDBusConnection &bus,
                         const Workspace::UrlOpener &opener)
    : settings(settingsFile), tools(Tools::inResources(findResourceFolder())),
      homePage(QStringLiteral(BREVANT_HOME_PAGE)), supportMail(QStringLiteral(BREVANT_SUPPORT_MAIL)),
      dockTile(bus), workspace(bus, opener), desktopReport(window, dockTile, bus)
{
}

Application::~Application()
{
    jobs.stopAndWait(); // while the controllers they use still exist
    keptOriginals.dropOld();
}

void Application::setUp()
{
    AppController::initialize(settings);
    window.setUp();
    controller.init();
    controller.awakeFromNib();
    delegate.awakeFromNib();
    connectResults();
    connect(window.ui().plannedMenu, &QAction::triggered, this, &Application::showPlannedOutputs);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(window.ui().quitMenu, &QAction::triggered, this, &Application::quit);
    connect(&window, &MainWindow::closed, this, &Application::windowClosed);
    connect(&jobs, &JobRunner::allEnded, this, &Application::runsEnded);
    connect(&jobs, &JobRunner::notStarted, this, [this](const QString &reason) {
        QWidget *const active = QApplication::activeWindow();
        showWarningSheet(active ? active : &window, tr("The system has no room for another task"),
                         tr("Nothing was begun: %1. End other programs, and try again.").arg(reason),
                         tr("OK"));
    });
    connect(&desktopReport, &DesktopReport::clicked, this, [this](const QString &token) {
        bringToFront({{u"activation-token"_s, token}});
        results.showBeside();
    });
}

void Application::connectResults()
{
    const Ui::MainWindow &ui = window.ui();
    results.setMarkPlace(*ui.progressTextField, *ui.bottomLayout);
    connect(ui.resultsMenu, &QAction::triggered, &results, &Results::show);
    connect(&window, &MainWindow::closed, &results, &Results::close);
    connect(&results, &Results::openRequested, this,
            [this](const QString &path) { static_cast<void>(workspace.openUrl(fileUrl(path))); });
    connect(&results, &Results::revealRequested, this,
            [this](const QString &path) { workspace.selectFile(path); });
    connect(&results, &Results::restoreRequested, this, &Application::restoreSources);
    connect(&results, &Results::retryRequested, this, [this](const QStringList &sources) {
        jobs.detachNewThread(
            [this, sources](const std::atomic<Stop> &stop) { runAgain(*this, settings, sources, stop); });
    });
    connect(&results, &Results::modernRequested, this, [this](const QStringList &sources, bool isForAlways) {
        if (isForAlways)
            settings.setObject(u"modern"_s, compressorsKeyString);
        jobs.detachNewThread([this, sources](const std::atomic<Stop> &stop) {
            const auto modern = settings.variant(u"modern"_s, compressorsKeyString);
            runAgain(*this, *modern, sources, stop);
        });
    });
}

/// On a thread of its own, as the disk may be slow.
void Application::restoreSources(const std::vector<RestoreWish> &wishes, bool isBeside)
{
    QStringList originals;
    for (const RestoreWish &wish : wishes)
        originals.append(wish.original);
    const auto use = std::make_shared<KeptOriginals::Use>(keptOriginals, originals);
    const bool isBegun = jobs.detachNewThread([this, use, wishes, isBeside](const std::atomic<Stop> &stop) {
        std::vector<RestoredSource> done;
        for (auto wish = wishes.begin(); wish != wishes.end() && stop != Stop::AtOnce; ++wish)
            done.push_back((isBeside ? restoreBeside : restoreSource)(wish->source, wish->original));
        const auto end = [this, wishes, done] {
            results.endRestoring(wishes, done);
            controller.refreshPreview();
        };
        QMetaObject::invokeMethod(&results, end, Qt::QueuedConnection);
    });
    if (!isBegun)
        results.endRestoring(wishes, {});
}

void Application::showPlannedOutputs()
{
    const Ui::MainWindow &ui = window.ui();
    if (!m_planned) {
        m_planned = std::make_unique<PlannedWindow>(queue, settings, tools, *ui.minifyMenu,
                                                    *ui.preferencesMenu, &window);
        connect(m_planned.get(), &PlannedWindow::openRequested, this,
                [this](const QString &path) { static_cast<void>(workspace.openUrl(fileUrl(path))); });
        connect(m_planned.get(), &PlannedWindow::revealRequested, this,
                [this](const QString &path) { workspace.selectFile(path); });
        connect(&jobs, &JobRunner::allEnded, m_planned.get(), &PlannedWindow::refresh);
        connect(&window, &MainWindow::closed, m_planned.get(), &QWidget::close);
        connect(this, &Application::ending, m_planned.get(), &QWidget::close);
    }
    m_planned->setWindowState(m_planned->windowState() & ~Qt::WindowMinimized);
    m_planned->show();
    m_planned->raise();
    m_planned->activateWindow();
}

void Application::serve(ApplicationService &service)
{
    using Service = ApplicationService;
    connect(this, &Application::ending, &service, &Service::release);
    connect(&service, &Service::activateRequested, this, &Application::bringToFront);
    connect(&service, &Service::openRequested, this,
            [this](const QStringList &paths, const QVariantMap &platformData) {
                bringToFront(platformData);
                if (!paths.isEmpty())
                    delegate.applicationOpenFiles(paths);
            });
    connect(&service, &Service::actionRequested, this, &Application::act);
}

void Application::bringToFront(const QVariantMap &platformData)
{
    delegate.applicationShouldHandleReopen(window.isVisible());
    activate(*window.windowHandle(), platformData);
}

/// The actions are those of the desktop entry; any other is ignored.
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
    catchSignals();
    if (launch.asService) {
        putBackOriginals(); // files may arrive at once, and there is no window to paint
        QTimer::singleShot(serviceWait, this, &Application::quitIfUnseen);
    } else {
        window.show();
    }
    delegate.applicationDidFinishLaunching();
    connect(&window, &MainWindow::painted, this, &Application::finishStart);
    QTimer::singleShot(longestWait, this, &Application::finishStart);
}

void Application::putBackOriginals()
{
    const std::vector<StartNews> news = putBackAtStart(tools.originals);
    QStringList sentences;
    for (const StartNews &one : news)
        sentences.append(one.sentence);
    desktopReport.tell(sentences);
    keptOriginals.dropOld();
    if (news.empty())
        return;
    results.runs.addStart(news);
    if (window.isVisible())
        results.showBeside();
    else // a service has no window before it is asked for one
        connect(&window, &MainWindow::painted, &results, &Results::showBeside);
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

void Application::catchSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe.data()) != 0)
        return;
    auto *const notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this); // a child of this
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char number = 0;
        if (::read(signalPipe[1], &number, 1) != 1)
            return;
        if (number == 0) {
            quit();
        } else {
            m_exitStatus = statusOfSignal(number);
            jobs.requestStop(Stop::AtOnce);
        }
    });
    for (const int number : {SIGINT, SIGTERM})
        catchStopSignal(number, tellMainLoop);
}

void Application::quit()
{
    m_quitting = true;
    Q_EMIT ending();
    jobs.requestStop(Stop::AfterFile);
    window.hide();
    results.close();
    desktopReport.withdraw();
    if (!jobs.isRunning())
        QCoreApplication::exit(0);
}

/// Ends the program if its window is hidden and no run is under way.
void Application::quitIfUnseen()
{
    if (!window.isHidden() || jobs.isRunning())
        return;
    m_quitting = true;
    Q_EMIT ending();
    QCoreApplication::exit(0);
}

void Application::windowClosed()
{
    if (!jobs.isRunning())
        quit();
}

void Application::runsEnded()
{
    if (m_quitting)
        QCoreApplication::exit(m_exitStatus);
    else if (window.isHidden())
        QTimer::singleShot(soundLength, this, &Application::quitUnlessNotified);
}

/// Like quitIfUnseen(), but leaves the user time for a click on what the desktop shows.
void Application::quitUnlessNotified()
{
    if (!desktopReport.isShown())
        return quitIfUnseen();
    connect(&desktopReport, &DesktopReport::dismissed, this, &Application::quitIfUnseen,
            Qt::UniqueConnection);
    QTimer::singleShot(clickWait, this, &Application::quitIfUnseen);
}

std::future<void> loadFonts()
{
    try {
        return std::async(std::launch::async, [] {
            // Must not slow the display server. On Linux each thread has its own nice value: sched(7).
            ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
            FcInit();
        });
    } catch (const std::system_error &) { // no thread to be had; Qt does it later
        return std::async(std::launch::deferred, [] {});
    }
}

void setUpApplication()
{
    // No display name: Qt would append it to the titles of windows.
    QGuiApplication::setDesktopFileName(u"org.brevant.Brevant"_s);
    QIcon::setFallbackThemeName(u"breeze"_s);
    // Keeps Qt's file panels from storing the folders shown in a file shared by all Qt programs.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/dev/null"_s);
}

} // namespace brevant
