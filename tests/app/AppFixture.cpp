// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/ServiceRequests.h"

using namespace brevant;

namespace {

Tools stubTools(const QString &folder)
{
    QDir(folder).mkdir(QStringLiteral("lib"));
    Tools tools = Tools::inResources(folder);
    tools.java = QStringLiteral(STUB_JAVA);
    return tools;
}

} // namespace

AppFixture::AppFixture(const QDBusConnection &bus)
    : settings(folder.filePath(QStringLiteral("settings.json"))), dockTile(bus),
      workspace(QDBusConnection(QStringLiteral("no bus")),
                [this](const QUrl &url) {
                    opened.append(url);
                    return true;
                }),
      notification(bus), notificationOfSources(bus), services{settings,
                                                              queue,
                                                              jobs,
                                                              dockTile,
                                                              doneSound,
                                                              workspace,
                                                              runNews,
                                                              stubTools(folder.path()),
                                                              {QStringLiteral("https://brevant.example/"),
                                                               QStringLiteral("support@brevant.example")}}
{
    qputenv("BREVANT_STUB_LOG", folder.filePath(QStringLiteral("stub.log")).toUtf8());
    AppController::initialize(settings);
    window.setUp();
    controller = std::make_unique<AppController>(services, window.outlets());
    controller->init();
    controller->awakeFromNib();
    delegate = std::make_unique<BrevantAppDelegate>(services, window.outlets(), *controller);
    lifetime = std::make_unique<Lifetime>(window, jobs);
    connectActions(window, *controller, *delegate, *lifetime);
    connectNotifications(notification, notificationOfSources, window, *delegate, *lifetime);
    table = window.ui().filesTable;
}

AppFixture::~AppFixture()
{
    // What a test that fails has made a compressor wait for.
    QFile::remove(folder.filePath(QStringLiteral("gate")));
    jobs.stopAndWait();
}

QString AppFixture::file(const QString &name, const QByteArray &text) const
{
    const QString path = folder.filePath(name);
    QDir(folder.path()).mkpath(QFileInfo(path).path());
    QFile made(path);
    if (made.open(QIODevice::WriteOnly))
        made.write(text);
    return path;
}

bool AppFixture::drop(const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    data.setUrls(urls);
    controller->tableViewValidateDrop(data);
    return controller->tableViewAcceptDrop(data);
}

QString AppFixture::state() const
{
    const Ui::MainWindow &ui = window.ui();
    const auto pair = [](bool first, bool second) {
        return first && second   ? QStringLiteral("on")
               : first || second ? QStringLiteral("MIXED")
                                 : QStringLiteral("off");
    };
    return QStringLiteral("buttons %1, menu %2, table %3, \"%4\", badge \"%5\"")
        .arg(pair(!ui.minifyButton->isHidden(), !ui.clearButton->isHidden()),
             pair(ui.minifyMenu->isEnabled(), ui.clearMenu->isEnabled()),
             table->backgroundColor() ? table->backgroundColor()->name() : QStringLiteral("clear"), status(),
             dockTile.badgeLabel());
}

QStringList AppFixture::javaCalls() const
{
    QFile log(folder.filePath(QStringLiteral("stub.log")));
    return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                         : QStringList();
}
