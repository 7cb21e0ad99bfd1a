// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Does one thing with the desktop and ends, in the order in which the program does it: main() returns after
// the objects in it have gone.
#include "app/platform/DockTile.h"
#include "app/platform/DoneSound.h"
#include "app/platform/Workspace.h"

#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

/// badge: sets and removes the badge.
void badge()
{
    DockTile tile(QDBusConnection::sessionBus());
    tile.setBadgeLabel(u"3"_s);
    tile.setProgress(0.5);
    tile.setBadgeLabel(QString());
    say(qPrintable(u"label \"%1\""_s.arg(tile.badgeLabel())));
}

/// mail: opens the feedback mail in whatever the desktop has for it.
void mail()
{
    const Workspace workspace(QDBusConnection::sessionBus());
    const bool opened =
        workspace.openUrl(feedbackMailUrl(u"support@brevant.example"_s, u"1.0"_s, u"Größe (a, b) #1 50%"_s));
    say(opened ? "opened" : "not opened");
}

/// sound TIMES MILLISECONDS: plays that often at once, and leaves after that time with the status 7.
int sound(const QCoreApplication &application)
{
    const QStringList arguments = QCoreApplication::arguments();
    {
        DoneSound done;
        if (!done.load())
            say("not loaded");
        for (int times = arguments.at(2).toInt(); times > 0; --times)
            done.play();
        QTimer::singleShot(arguments.at(3).toInt(), &application, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    qWarning("other warnings are heard");
    say("leaving");
    return 7;
}

} // namespace

int main(int count, char **values)
{
    const QGuiApplication application(count, values);
    const QString task = QCoreApplication::arguments().value(1);
    if (task == "sound"_L1)
        return sound(application);
    if (task == "badge"_L1)
        badge();
    else if (task == "mail"_L1)
        mail();
    return 0;
}
