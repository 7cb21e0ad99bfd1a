// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "app/RunNews.h"
#include "tests/TestClass.h"
#include "tests/app/platform/NotificationService.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDialog>

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Writes down what a dock is told of the progress, "0.5" or "gone", and of the badge, "3" or "gone".
class Dock final : public QObject {
    Q_OBJECT

public:
    explicit Dock(QDBusConnection bus)
    {
        bus.connect(QString(), QString(), u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                    SLOT(update(QDBusMessage)));
    }
    QStringList progress;
    QStringList badges;

private Q_SLOTS:
    void update(const QDBusMessage &message)
    {
        const auto properties = qdbus_cast<QVariantMap>(message.arguments().value(1));
        if (properties.contains(u"count-visible"_s)) {
            const bool isShown = properties.value(u"count-visible"_s).toBool();
            badges.append(isShown ? properties.value(u"count"_s).toString() : u"gone"_s);
        }
        if (properties.value(u"progress-visible"_s).toBool())
            progress.append(QString::number(properties.value(u"progress"_s).toDouble()));
        else if (properties.contains(u"progress-visible"_s))
            progress.append(u"gone"_s);
    }
};

/// What the desktop hears of runs: the progress on the dock icon, and the notification at the end.
class tst_RunNews final : public QObject {
    Q_OBJECT

private:
    /// Fills the list with files that tell the stub what to do. The window is shown and active.
    AppFixture &filled(const QList<QByteArray> &texts, const QString &folder = {})
    {
        m_app = std::make_unique<AppFixture>(QDBusConnection(u"own"_s));
        m_app->settings.setOverride(false, soundCheckerKeyString);
        QStringList paths;
        for (const QByteArray &text : texts)
            paths.append(m_app->file(u"%1f%2.css"_s.arg(folder).arg(paths.size()), text));
        m_app->drop(paths);
        m_app->window.show();
        m_app->window.activateWindow();
        return *m_app;
    }

    /// One whole run, and all that the desktop hears of it.
    void run()
    {
        m_app->controller.minify();
        QTRY_VERIFY(!m_app->jobs.isRunning());
        letAllArrive();
    }

    /// Lets everything that is on its way arrive; what is asked for in an answer comes in a second round.
    static void letAllArrive()
    {
        for (const QString &from : {u"own"_s, u"desktop"_s, u"own"_s, u"desktop"_s}) {
            const QString to = QDBusConnection(from == u"own" ? u"desktop"_s : u"own"_s).baseService();
            QDBusPendingCall ping = QDBusConnection(from).asyncCall(
                QDBusMessage::createMethodCall(to, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
            ping.waitForFinished();
            QCoreApplication::processEvents();
        }
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList result;
        for (const NotificationService::Shown &shown : m_service->shown)
            result.append(shown.summary + u'|' + shown.body);
        return result;
    }

    /// The fixture's folder, as a notification shows it: below the home folder.
    [[nodiscard]] QString here() const { return u"~/"_s + QFileInfo(m_app->folder.path()).fileName(); }

    PrivateBus m_bus;
    std::unique_ptr<Dock> m_dock;
    std::unique_ptr<NotificationService> m_service;
    std::unique_ptr<AppFixture> m_app;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!m_bus.address().isEmpty(), "dbus-daemon does not start");
        qputenv("HOME", QDir::tempPath().toLocal8Bit());
    }

    void init()
    {
        const auto bus = QDBusConnection::connectToBus(m_bus.address(), u"desktop"_s);
        QVERIFY(bus.isConnected());
        QVERIFY(QDBusConnection::connectToBus(m_bus.address(), u"own"_s).isConnected());
        m_dock = std::make_unique<Dock>(bus);
        m_service = std::make_unique<NotificationService>(bus);
        letAllArrive();
    }

    void cleanup()
    {
        m_app.reset();
        m_service.reset();
        m_dock.reset();
        QDBusConnection::disconnectFromBus(u"own"_s);
        QDBusConnection::disconnectFromBus(u"desktop"_s);
    }

    void whoLooksAtTheWindowIsNotNotified()
    {
        AppFixture &app = filled({"copy"});
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        run();
        QDialog dialog(&app.window);
        dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        run();
        QCOMPARE(m_service->asked, QStringList());
    }

    void outOfSight_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"hidden", "minimised", "hidden behind another of its windows"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void outOfSight()
    {
        QFETCH(const QString, how);
        AppFixture &app = filled({"copy", "copy"});
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        QDialog preferences;
        if (how == u"minimised")
            app.window.showMinimized();
        else if (how.startsWith(u"hidden"))
            app.window.hide();
        if (how.endsWith(u"windows")) {
            preferences.show();
            preferences.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&preferences));
        }
        run();
        QTRY_COMPARE(texts(), QStringList{u"Minified 2 files|"_s + here()});
        letAllArrive();

        // Seen, it has done its work.
        app.delegate.applicationShouldHandleReopen(false);
        QTRY_COMPARE(m_service->asked.value(m_service->asked.size() - 1), u"close 1"_s);
    }

    void words_data()
    {
        QTest::addColumn<QList<QByteArray>>("texts");
        QTest::addColumn<QString>("summary");
        QTest::addColumn<bool>("hasFolder");
        using Texts = QList<QByteArray>;
        QTest::newRow("one") << Texts{"copy"} << u"Minified 1 file"_s << true;
        QTest::newRow("three") << Texts{"copy", "copy", "copy"} << u"Minified 3 files"_s << true;
        QTest::newRow("some") << Texts{"copy", "fail", "empty"} << u"Minified 1 of 3 files"_s << true;
        QTest::newRow("none") << Texts{"fail", "silent"} << u"Nothing was minified"_s << false;
    }

    void words()
    {
        QFETCH(const QList<QByteArray>, texts);
        QFETCH(const QString, summary);
        QFETCH(const bool, hasFolder);
        filled(texts).window.hide();
        run();
        QTRY_COMPARE(this->texts(), QStringList{summary + u'|' + (hasFolder ? here() : QString())});
    }

    void outputsThatReplaceOneAnotherCountOnce()
    {
        AppFixture &app = filled({"copy"}, u"a/"_s);
        app.drop({app.file(u"b/f0.css"_s), app.file(u"b/g.css"_s)});
        QDir(app.folder.path()).mkdir(u"out"_s);
        QVERIFY(QFile::link(app.folder.filePath(u"out"_s), app.folder.filePath(u"link"_s)));
        app.settings.setOverride(false, sameFolderKeyString);
        app.settings.setOverride(app.folder.filePath(u"link"_s), selectedFolderKeyString);
        app.window.hide();
        run();
        QTRY_COMPARE(texts(), QStringList{u"Minified 2 of 3 files|"_s + here() + u"/link"_s});
    }

    void outputsInSeveralFolders()
    {
        AppFixture &app = filled({"copy"}, u"a/"_s);
        app.drop({app.file(u"b/f.css"_s), app.file(u"a/g.css"_s)});
        app.window.hide();
        run();
        QTRY_COMPARE(texts(), QStringList{u"Minified 3 files|"_s});
    }

    void withoutJava()
    {
        AppFixture &app = filled({"copy", "copy"});
        app.tools.java = u"/nowhere/java"_s;
        app.window.hide();
        app.controller.minify();
        QTRY_COMPARE(texts(), QStringList{u"Nothing was minified|Java was not found at /nowhere/java."_s});
        QTRY_VERIFY(!app.jobs.isRunning());
        QTRY_COMPARE(m_dock->progress, QStringList({u"0"_s, u"gone"_s}));
    }

    void filesTakenOffTheListDoNotCount()
    {
        AppFixture &app = filled({"copy", "copy", "copy"});
        const QString gate = app.file(u"gate"_s);
        app.file(u"f0.css"_s, "wait " + gate.toUtf8());
        app.window.hide();
        app.controller.minify();
        QTRY_COMPARE(app.status(), u"Minified 1 of 3 items."_s);
        app.controller.clear();
        QFile::remove(gate);
        QTRY_COMPARE(texts(), QStringList{u"Minified 1 file|"_s + here()});
    }

    void anEmptyRunIsNoNews()
    {
        filled({}).window.hide();
        run();
        QCOMPARE(m_service->asked, QStringList());
        QCOMPARE(m_dock->progress, QStringList());
    }

    void theNextRunTakesThePlace()
    {
        filled({"copy"}).window.hide();
        run();
        QTRY_COMPARE(m_service->shown.size(), 1);
        letAllArrive();
        run();
        QTRY_COMPARE(m_service->shown.size(), 2);
        QCOMPARE(m_service->shown.constLast().replaces, 1U);
    }

    void aClickBringsTheWindowUp()
    {
        AppFixture &app = filled({"copy"});
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        app.window.hide();
        run();
        QTRY_COMPARE(m_service->shown.size(), 1);
        letAllArrive();
        m_service->click(1, u"a token"_s);
        QTRY_VERIFY(app.window.isVisible());
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
        QTRY_COMPARE(m_service->asked.value(m_service->asked.size() - 1), u"close 1"_s);
    }

    void quittingIsNoNews_data()
    {
        QTest::addColumn<int>("heldAt");
        QTest::newRow("files are left") << 0;
        QTest::newRow("at the last file") << 1;
    }

    void quittingIsNoNews()
    {
        QFETCH(const int, heldAt);
        AppFixture &app = filled({"copy", "copy"});
        const QString gate = app.file(u"gate"_s);
        app.file(u"f%1.css"_s.arg(heldAt), "wait " + gate.toUtf8());
        app.controller.minify();
        QTRY_COMPARE(app.status(), u"Minified %1 of 2 items."_s.arg(heldAt + 1));
        app.lifetime.quit();
        QFile::remove(gate);
        QTRY_VERIFY(!app.jobs.isRunning());
        letAllArrive();
        QCOMPARE(m_service->asked, QStringList());
        QCOMPARE(m_dock->progress.value(m_dock->progress.size() - 1), u"gone"_s);
    }

    void quittingTakesItAway()
    {
        AppFixture &app = filled({"copy"});
        app.window.hide();
        run();
        QTRY_COMPARE(m_service->shown.size(), 1);
        letAllArrive();
        app.lifetime.quit();
        QTRY_COMPARE(m_service->asked.value(m_service->asked.size() - 1), u"close 1"_s);
    }

    void closedDuringARunItStaysWhenTheProgramEnds()
    {
        AppFixture &app = filled({"copy"});
        const QString gate = app.file(u"gate"_s);
        app.file(u"f0.css"_s, "wait " + gate.toUtf8());
        app.controller.minify();
        QTRY_COMPARE(app.status(), u"Minified 1 of 1 items."_s);
        app.window.close();
        QFile::remove(gate);
        QTRY_COMPARE(m_service->shown.size(), 1);
        letAllArrive();
        m_app.reset();
        letAllArrive();
        QCOMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
    }

    void whatBecameOfASourceIsSaidInAnyCase()
    {
        AppFixture &app = filled({"cut 1 and more text", "copy"});
        app.settings.setOverride(false, suffixSwitcherKeyString);
        app.tools.originals = {app.folder.filePath(u"originals"_s)};
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        app.controller.minify();
        QTRY_COMPARE(texts(), QStringList{u"About your source files|%1: the compressor ended with status 1; "
                                          "the source was put back"_s.arg(app.folder.filePath(u"f0.css"_s))});
        QTRY_VERIFY(!app.jobs.isRunning());
        QCOMPARE(m_service->shown.constFirst().timeout, 0);
        letAllArrive();
        app.lifetime.quit(); // which takes back the other
        letAllArrive();
        QCOMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
    }

    void sentencesStayTogetherUntilTheyAreClosed()
    {
        AppFixture &app = filled({});
        const auto last = [this] { return texts().value(texts().size() - 1).section(u'|', 1); };
        app.runNews.tell({});
        app.runNews.tell({u"one"_s, u"two"_s});
        QTRY_COMPARE(last(), u"one\ntwo"_s);
        letAllArrive();
        app.runNews.tell({u"three"_s});
        QTRY_COMPARE(last(), u"one\ntwo\nthree"_s);
        QCOMPARE(m_service->shown.constLast().replaces, 1U);
        letAllArrive();
        m_service->closedByUser(1);
        letAllArrive();
        app.runNews.tell(QStringList(12, u"more"_s));
        QTRY_COMPARE(last(), u"more\n"_s.repeated(10) + u"and 2 more, on standard error"_s);
    }

    void progressOfARun()
    {
        filled({"copy", "fail", "copy", "copy"});
        run();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"0.25"_s, u"0.5"_s, u"0.75"_s, u"gone"_s}));
        QCOMPARE(m_dock->badges, QStringList{u"4"_s}); // beside it, and not touched
        run();
        QCOMPARE(m_dock->progress.size(), 10);
    }

    void eachChangeOfASettingTellsTheBadgeOnce()
    {
        AppFixture &app = filled({"copy", "copy", "copy"});
        for (const bool isOn : {false, true})
            app.settings.setBool(isOn, badgeCheckerKeyString);
        app.settings.setObject(u"-small"_s, suffixKeyString);
        letAllArrive();
        QCOMPARE(m_dock->badges, QStringList({u"3"_s, u"gone"_s, u"3"_s, u"3"_s}));
    }

    void onlyWholePercentsAreTold()
    {
        AppFixture &app = filled({});
        for (int done = 0; done < 10'000; ++done)
            app.runNews.setProgress(1, done, 10'000);
        app.runNews.runEnded(1, {});
        QTRY_COMPARE(m_dock->progress.value(m_dock->progress.size() - 1), u"gone"_s);
        QCOMPARE(m_dock->progress.size(), 101);
        QCOMPARE(m_dock->progress.at(99), u"0.99"_s);
    }

    void theLastOfSeveralRunsTakesItAway()
    {
        AppFixture &app = filled({});
        RunNews &news = app.runNews;
        news.setProgress(1, 0, 4);
        news.setProgress(1, 3, 4);
        news.setProgress(2, 0, 6);
        news.runEnded(1, {});
        news.setProgress(2, 5, 6);
        news.runEnded(2, {});
        letAllArrive();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"0.75"_s, u"0.3"_s, u"0.4"_s, u"0.9"_s, u"gone"_s}));
    }

    void aListThatIsClearedMeanwhile()
    {
        AppFixture &app = filled({});
        app.runNews.setProgress(1, 0, 0);
        app.runNews.setProgress(1, 3, 2);
        app.runNews.runEnded(1, {});
        letAllArrive();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"1"_s, u"gone"_s}));
    }
};

BREVANT_TEST(tst_RunNews, QApplication)
#include "tst_RunNews.moc"
