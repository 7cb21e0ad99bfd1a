// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppController.h"
#include "app/ApplicationService.h"
#include "app/BrevantAppDelegate.h"
#include "app/DesktopReport.h"
#include "app/MainWindow.h"
#include "app/WindowRun.h"
#include "app/platform/DockTile.h"
#include "app/platform/DoneSound.h"
#include "app/platform/Workspace.h"
#include "app/results/Results.h"
#include "engine/Tools.h"
#include "engine/originals/KeptOriginals.h"
#include "queue/FileQueue.h"
#include "settings/SettingsStore.h"

#include <future>
#include <memory>

namespace brevant {

class PlannedWindow;

/// The objects that live as long as the process, and when it ends. A QApplication must be there.
///
/// Closing the window ends the program, but not before the run under way and, for some seconds, while a
/// notification tells of that; quitting ends it after the file being worked on. The window opened again
/// meanwhile takes a close back.
class Application : public QObject {
    Q_OBJECT

public:
    /// Reads its settings from `settingsFile`, and tells the desktop of itself on `bus`. Without an opener
    /// addresses are opened by the desktop's own programs.
    Application(const QString &settingsFile, const QDBusConnection &bus,
                const Workspace::UrlOpener &opener = {});

    /// Waits for the files being worked on.
    ~Application() override;

    /// Loads the layout and connects everything, in its order. To be called once, before what follows.
    void setUp();

    /// Carries out what the session bus asks for from now on. The service must outlive this object.
    void serve(ApplicationService &service);

    /// Shows the window and does what the launch asks for. A launch as service shows none before it is asked
    /// to; if nobody asks soon, the program ends.
    ///
    /// From now on SIGINT and SIGTERM quit as the menu item does; a second one ends the compressors too, and
    /// a third one the program as it stands.
    void start(const Launch &launch);

    /// Ends the program as soon as no file is being worked on.
    void quit();

    SettingsStore settings;
    FileQueue queue;
    Tools tools;
    KeptOriginals keptOriginals{tools};
    QString homePage;    ///< its address; empty if the build names none
    QString supportMail; ///< likewise
    DockTile dockTile;
    std::unique_ptr<DoneSound> doneSound = std::make_unique<DoneSound>();
    Workspace workspace;
    MainWindow window{queue, settings, dockTile};
    DesktopReport desktopReport;
    Results results{window, settings, tools};
    JobRunner jobs;
    AppController controller{*this};
    BrevantAppDelegate delegate{*this};

Q_SIGNALS:
    /// The program is going to end, for whatever reason, and nothing takes that back.
    void ending();

private:
    void bringToFront(const QVariantMap &platformData);
    void act(const QString &name, const QStringList &paths, const QVariantMap &platformData);
    void connectResults();
    void showPlannedOutputs();
    void restoreSources(const std::vector<RestoreWish> &wishes, bool isBeside);
    void putBackOriginals();
    void finishStart();
    void catchSignals();
    void quitIfUnseen();
    void quitUnlessNotified();
    void windowClosed();
    void runsEnded();

    std::unique_ptr<PlannedWindow> m_planned; ///< from the first request on
    Launch m_launch;
    bool m_started = false;
    bool m_quitting = false;
    int m_exitStatus = 0;
};

/// Reads the system's font configuration on a thread of its own, while connecting to the display mostly
/// waits; without that the first painting comes 16 % later. Wait for it before any text is measured, or Qt
/// reads the configuration a second time.
[[nodiscard]] std::future<void> loadFonts();

/// What the program tells Qt of itself. To be called once there is a QApplication.
void setUpApplication();

} // namespace brevant
