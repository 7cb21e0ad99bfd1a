// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ServiceRequests.h"

#include "app/AppController.h"
#include "app/ApplicationService.h"
#include "app/BrevantAppDelegate.h"
#include "app/Lifetime.h"
#include "app/MainWindow.h"
#include "app/platform/Activation.h"
#include "app/platform/Notification.h"

#include <QApplication>

#include <algorithm>
#include <array>

namespace brevant {

namespace {

struct Action {
    QLatin1StringView name;
    void (*carryOut)(AppController &controller, BrevantAppDelegate &delegate, const QStringList &paths);
};

// A panel or a sheet that is open has the user's attention already, as it has for the menu.
bool isBlocked()
{
    return QApplication::activeModalWidget() != nullptr;
}

constexpr std::array<Action, 3> actions{{
    {QLatin1StringView("add-files"),
     [](AppController &controller, BrevantAppDelegate &, const QStringList &) {
         if (!isBlocked())
             controller.addFile();
     }},
    {QLatin1StringView("minify"), [](AppController &, BrevantAppDelegate &delegate,
                                     const QStringList &paths) { delegate.minifyFiles(paths); }},
    {QLatin1StringView("preferences"),
     [](AppController &controller, BrevantAppDelegate &, const QStringList &) {
         if (!isBlocked())
             controller.showPreferencePanel();
     }},
}};

void bringToFront(MainWindow &window, BrevantAppDelegate &delegate, const QVariantMap &platformData)
{
    delegate.applicationShouldHandleReopen(window.isVisible());
    activate(*window.windowHandle(), platformData);
}

} // namespace

void connectRequests(ApplicationService &service, MainWindow &window, AppController &controller,
                     BrevantAppDelegate &delegate)
{
    const auto comeToFront = [&window, &delegate](const QVariantMap &platformData) {
        bringToFront(window, delegate, platformData);
    };
    QObject::connect(&service, &ApplicationService::activateRequested, &delegate, comeToFront);
    QObject::connect(&service, &ApplicationService::openRequested, &delegate,
                     [&delegate, comeToFront](const QStringList &paths, const QVariantMap &platformData) {
                         comeToFront(platformData);
                         if (!paths.isEmpty())
                             delegate.applicationOpenFiles(paths);
                     });
    QObject::connect(&service, &ApplicationService::actionRequested, &delegate,
                     [&controller, &delegate, comeToFront](const QString &name, const QStringList &paths,
                                                           const QVariantMap &platformData) {
                         const auto *const action =
                             std::find_if(actions.begin(), actions.end(),
                                          [&name](const Action &known) { return known.name == name; });
                         if (action == actions.end())
                             return;
                         comeToFront(platformData);
                         action->carryOut(controller, delegate, paths);
                     });
}

void connectNotifications(Notification &ofRuns, Notification &ofSources, MainWindow &window,
                          BrevantAppDelegate &delegate, Lifetime &lifetime)
{
    for (Notification *const notification : {&ofRuns, &ofSources}) {
        QObject::connect(notification, &Notification::clicked, &delegate,
                         [&window, &delegate](const QString &token) {
                             bringToFront(window, delegate, {{QStringLiteral("activation-token"), token}});
                         });
    }
    QObject::connect(&lifetime, &Lifetime::quitting, &ofRuns, &Notification::withdraw);
}

} // namespace brevant
