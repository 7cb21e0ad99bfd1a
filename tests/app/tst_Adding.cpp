// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

const QString emptyState = u"buttons off, menu off, table clear, \"\", badge \"\""_s;

QString filledState(const char *label, const char *badge)
{
    return u"buttons on, menu on, table #ffffff, \"%1\", badge \"%2\""_s.arg(QString::fromUtf8(label),
                                                                             QString::fromUtf8(badge));
}

/// How often an object got an event of one type.
class Seen final : public QObject {
public:
    Seen(QObject *watched, QEvent::Type type) : m_type(type) { watched->installEventFilter(this); }
    int times = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        times += event->type() == m_type ? 1 : 0;
        return false;
    }

private:
    const QEvent::Type m_type;
};

} // namespace

/// The three ways in which files reach the list.
class tst_Adding final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginsEmpty()
    {
        AppFixture app;
        app.window.show();
        QCOMPARE(app.state(), emptyState);
        QVERIFY(!app.window.ui().spinner->isVisible());
        QCOMPARE(app.window.ui().DropView->imageName(), u"dropN"_s);
    }

    void aDragLightsThePictureAndADropPutsItOut()
    {
        AppFixture app;
        QMimeData data;
        QCOMPARE(app.controller.tableViewValidateDrop(data), Qt::CopyAction);
        QCOMPARE(app.window.ui().DropView->imageName(), u"dropP"_s);
        QVERIFY(app.controller.tableViewAcceptDrop(data)); // no file names at all
        QCOMPARE(app.window.ui().DropView->imageName(), u"dropN"_s);
        QCOMPARE(app.state(), emptyState);
    }

    void unsupportedFilesOnAnEmptyListChangeNothing()
    {
        AppFixture app;
        app.settings.setOverride(true, autoMinifyCheckerKeyString);
        app.window.setStatusText(u"as it was"_s);
        QVERIFY(app.drop({app.file(u"notes.txt"_s)}));
        QVERIFY(!app.jobs.isRunning());
        QCOMPARE(app.status(), u"as it was"_s);
        QVERIFY(app.window.ui().minifyButton->isHidden());
        QVERIFY(!app.table->backgroundColor());
    }

    void addressesOfOtherMachinesAreNoFiles_data()
    {
        QTest::addColumn<QByteArray>("address");
        QTest::addColumn<QString>("path"); // empty if it is none
        QTest::newRow("plain") << QByteArray("file:///a/b.css") << "/a/b.css";
        QTest::newRow("localhost") << QByteArray("file://localhost/a/b.css") << "/a/b.css";
        QTest::newRow("this machine") << "file://" + QSysInfo::machineHostName().toUtf8() + "/a/b.css"
                                      << "/a/b.css";
        QTest::newRow("another machine") << QByteArray("file://server.example/a/b.css") << QString();
        QTest::newRow("the web") << QByteArray("https://brevant.example/b.css") << QString();
        QTest::newRow("percent") << QByteArray("file:///a/100%25%20%23%3f.css") << "/a/100% #?.css";
        QTest::newRow("two slashes") << QByteArray("file:////Home/b.css") << "//Home/b.css";
        QTest::newRow("umlaut") << QByteArray("file:///a/%C3%BC.css") << u"/a/ü.css"_s;
        QTest::newRow("newline") << QByteArray("file:///a/x%0Ay.css") << "/a/x\ny.css";
    }

    void addressesOfOtherMachinesAreNoFiles()
    {
        QFETCH(QByteArray, address);
        QFETCH(QString, path);
        AppFixture app;
        QMimeData data;
        data.setData(u"text/uri-list"_s, address + "\r\n");
        QVERIFY(app.controller.tableViewAcceptDrop(data));
        QCOMPARE(app.queue.entries(), path.isEmpty() ? std::vector<QString>() : std::vector<QString>({path}));
    }

    void oneItemThenTwo()
    {
        AppFixture app;
        QVERIFY(app.drop({app.file(u"a.css"_s)}));
        QCOMPARE(app.state(), filledState("1 item", "1"));
        QCOMPARE(app.table->model()->rowCount(), 1);
        QVERIFY(app.drop({app.file(u"b.js"_s)}));
        QCOMPARE(app.state(), filledState("2 items", "2"));
        QCOMPARE(app.controller.numberOfRowsInTableView(), 2);
        QCOMPARE(app.controller.tableViewObjectValue(1), app.folder.filePath(u"b.js"_s));
    }

    void theOrderIsThatOfWhoBringsThem_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"drop", "double click", "open"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void theOrderIsThatOfWhoBringsThem()
    {
        QFETCH(QString, way);
        AppFixture app;
        const QStringList paths{app.file(u"b.css"_s), app.file(u"c.css"_s), app.file(u"a.css"_s)};
        app.controller.setRunOpenPanel([&](QWidget *, const QStringList &) { return paths; });
        if (way == u"drop")
            app.drop(paths);
        else if (way == u"open")
            app.delegate.applicationOpenFiles(paths);
        else
            QTest::mouseDClick(app.table->viewport(), Qt::LeftButton);
        QCOMPARE(app.queue.entries(), std::vector<QString>(paths.begin(), paths.end()));
    }

    void unsupportedFilesOnAFilledListRefreshIt()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s)});
        app.window.setStatusText(u"Well done!"_s);
        app.dockTile.setBadgeLabel(u"7"_s);
        QVERIFY(app.drop({app.file(u"notes.txt"_s), app.folder.filePath(u"a.css"_s)}));
        QCOMPARE(app.state(), filledState("1 item", "1"));
        QCOMPARE(app.queue.count(), 1);
    }

    void theBadgeIsNotTouchedWhileItIsOff()
    {
        AppFixture app;
        app.settings.setOverride(false, badgeCheckerKeyString);
        app.dockTile.setBadgeLabel(u"as it was"_s);
        app.drop({app.file(u"a.css"_s)});
        QCOMPARE(app.dockTile.badgeLabel(), u"as it was"_s);
    }

    void aFolderGivesAllBelowIt()
    {
        AppFixture app;
        QStringList expected;
        for (const char *name :
             {"site/css/a.css", "site/js/deep/er/b.js", "site/.hidden/c.css", "site/index.html"})
            expected.append(app.file(QString::fromUtf8(name)));
        app.file(u"site/readme.md"_s);
        app.drop({app.folder.filePath(u"site"_s)});
        QStringList added;
        for (const QString &entry : app.queue.entries())
            added.append(entry);
        added.sort();
        expected.sort();
        QCOMPARE(added, expected);
    }

    void htmlCanBeSwitchedOff()
    {
        AppFixture app;
        app.settings.setOverride(false, enableHTMLCheckerKeyString);
        app.file(u"site/index.html"_s);
        app.file(u"site/a.css"_s);
        QStringList offered;
        app.controller.setRunOpenPanel(
            [&](QWidget *, const QStringList &types) -> std::optional<QStringList> {
                offered = types;
                return QStringList(app.folder.filePath(u"site"_s));
            });
        app.controller.addFile();
        QCOMPARE(offered, QStringList({u"css"_s, u"js"_s}));
        QCOMPARE(app.queue.count(), 1);
    }

    void autoMinify_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("runs");
        for (const char *way : {"drop", "panel", "open"}) {
            const QString name = QString::fromUtf8(way);
            QTest::addRow("%s, true", way) << QJsonValue(true) << name << (name != u"panel");
            QTest::addRow("%s, false", way) << QJsonValue(false) << name << false;
            QTest::addRow("%s, 1", way) << QJsonValue(1) << name << false;
            QTest::addRow("%s, text", way) << QJsonValue(u"true"_s) << name << false;
        }
    }

    void autoMinify()
    {
        QFETCH(QJsonValue, stored);
        QFETCH(QString, way);
        QFETCH(bool, runs);
        AppFixture app;
        app.settings.setOverride(stored, autoMinifyCheckerKeyString);
        app.settings.setOverride(false, soundCheckerKeyString);
        const QStringList paths{app.file(u"a.css"_s)};
        app.controller.setRunOpenPanel([&](QWidget *, const QStringList &) { return paths; });
        if (way == u"drop")
            app.drop(paths);
        else if (way == u"panel")
            app.controller.addFile();
        else
            app.delegate.applicationOpenFiles(paths);
        QCOMPARE(app.jobs.isRunning(), runs);
        QCOMPARE(app.queue.count(), 1);
        QTRY_VERIFY(!app.jobs.isRunning());
        QCOMPARE(app.javaCalls().size(), runs ? 1 : 0);
        QCOMPARE(app.status(), runs ? u"Well done!"_s : u"1 item"_s);
    }

    void aDropOfKnownFilesMinifiesAllAgain()
    {
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        app.drop({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        app.settings.setOverride(true, autoMinifyCheckerKeyString);
        app.drop({app.file(u"notes.txt"_s)});
        QVERIFY(app.jobs.isRunning());
        QTRY_VERIFY(!app.jobs.isRunning());
        QCOMPARE(app.javaCalls().size(), 2);
    }

    void aCancelledPanelChangesNothing()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s)});
        app.window.setStatusText(u"as it was"_s);
        app.dockTile.setBadgeLabel(QString());
        app.window.ui().DropView->setImageNamed(u"dropP"_s);
        app.window.show();
        Seen spinner(app.window.ui().spinner, QEvent::Show);
        app.controller.setRunOpenPanel([](QWidget *, const QStringList &) { return std::nullopt; });
        const QString before = app.state();
        app.controller.addFile();
        QCOMPARE(app.state(), before);
        QCOMPARE(app.window.ui().DropView->imageName(), u"dropP"_s);
        QCOMPARE(spinner.times, 0);
    }

    void filesThatAreOpenedFromOutside()
    {
        AppFixture app;
        app.delegate.applicationOpenFiles({app.folder.filePath(u"missing.txt"_s)});
        QCOMPARE(app.state(), emptyState);
        app.delegate.applicationOpenFiles({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        QCOMPARE(app.state(), filledState("2 items", "2"));
    }

    void theSpinnerIsShownMeanwhile()
    {
        AppFixture app;
        app.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&app.window));
        Seen paintings(app.window.ui().spinner, QEvent::Paint);
        app.drop({app.file(u"a.css"_s)});
        QVERIFY(paintings.times > 0); // before the walk began: no event is handled until it is over
        QVERIFY(!app.window.ui().spinner->isVisible());
    }
};

BREVANT_TEST(tst_Adding, QApplication)
#include "tst_Adding.moc"
