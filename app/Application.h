// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppContext.h"
#include "app/AppController.h"
#include "app/BrevantAppDelegate.h"
#include "app/Lifetime.h"
#include "app/StartUp.h"

namespace brevant {

class ApplicationService;

/// The objects that live as long as the process. A QApplication must be there.
class Application : public AppContext {
public:
    explicit Application(const QString &settingsFile, const std::optional<QDBusConnection> &bus = {},
                         const Workspace::UrlOpener &opener = {});

    /// Waits for the files being worked on.
    ~Application();

    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// Loads the layout and connects everything, in its order. To be called once, before what follows.
    void setUp();

    /// Does from now on what the session bus asks for. The service must outlive this object.
    void serve(ApplicationService &service);

    /// Shows the window and does what the launch asks for. A launch as service shows none before it is asked
    /// to; if nobody asks soon, the program ends.
    void start(const Launch &launch);

    AppController controller{*this};
    BrevantAppDelegate delegate{*this, controller};
    Lifetime lifetime{window, jobs};

private:
    void bringToFront(const QVariantMap &platformData);
    void act(const QString &name, const QStringList &paths, const QVariantMap &platformData);
    void putBackOriginals();
    void finishStart();

    Launch m_launch;
    bool m_started = false;
};

} // namespace brevant
