// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "tests/Files.h"

using namespace brevant;
using namespace Qt::StringLiterals;

AppFixture::AppFixture(const QDBusConnection &bus)
    : Application(folder.filePath(u"settings.json"_s), bus, [this](const QUrl &url) {
          opened.append(url);
          return true;
      })
{
    qputenv("BREVANT_STUB_LOG", folder.filePath(u"stub.log"_s).toUtf8());
    QDir(folder.path()).mkdir(u"lib"_s);
    tools = Tools::inResources(folder.path());
    tools.java = QStringLiteral(STUB_JAVA);
    homePage = u"https://brevant.example/"_s;
    supportMail = u"support@brevant.example"_s;
    auto recording = std::make_unique<RecordingSound>();
    sound = recording.get();
    doneSound = std::move(recording);
    setUp();
    table = window.ui().filesTable;
}

AppFixture::~AppFixture()
{
    // What a test that fails has made a compressor wait for.
    QFile::remove(folder.filePath(u"gate"_s));
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
    controller.tableViewValidateDrop(data);
    return controller.tableViewAcceptDrop(data);
}

void AppFixture::fill(int count, const QByteArray &text)
{
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths.append(file(u"f%1.css"_s.arg(i), text));
    drop(paths);
}

QString AppFixture::state() const
{
    const Ui::MainWindow &ui = window.ui();
    const auto pair = [](bool first, bool second) {
        return first && second ? u"on"_s : first || second ? u"MIXED"_s : u"off"_s;
    };
    return u"buttons %1, menu %2, table %3, \"%4\", badge \"%5\""_s.arg(
        pair(!ui.minifyButton->isHidden(), !ui.clearButton->isHidden()),
        pair(ui.minifyMenu->isEnabled(), ui.clearMenu->isEnabled()),
        table->backgroundColor() ? table->backgroundColor()->name() : u"clear"_s, status(),
        dockTile.badgeLabel());
}

QStringList AppFixture::javaCalls() const
{
    const QString log = folder.filePath(u"stub.log"_s);
    return QFile::exists(log) ? QString::fromUtf8(test::readFile(log)).split(u'\n', Qt::SkipEmptyParts)
                              : QStringList();
}
