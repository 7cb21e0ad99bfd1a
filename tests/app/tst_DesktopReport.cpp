// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopFixture.h"
#include "app/results/ResultsWindow.h"
#include "tests/TestClass.h"

#include <QDialog>
#include <QSignalSpy>

using namespace brevant;
using namespace Qt::StringLiterals;

/// What the notifications say of runs and of sources.
class tst_DesktopReport final : public DesktopFixture {
    Q_OBJECT

private Q_SLOTS:
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

    void whatOnlyLacksACopyIsMinified_data()
    {
        QTest::addColumn<QLatin1StringView>("setting");
        QTest::addColumn<QString>("inTheWay");
        QTest::newRow("gzip") << gzipCheckerKeyString << u"f0.min.css.gz"_s;
        QTest::newRow("Brotli") << brotliCheckerKeyString << u"f0.min.css.br"_s;
    }

    void whatOnlyLacksACopyIsMinified()
    {
        QFETCH(const QLatin1StringView, setting);
        QFETCH(const QString, inTheWay);
        AppFixture &app = filled({"copy"});
        app.settings.setOverride(true, setting);
        app.file(inTheWay + u"/file"_s);
        app.window.hide();
        run();
        QTRY_COMPARE(texts(), QStringList{u"Minified 1 file|"_s + here()});
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
        app.quit();
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
        app.quit();
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

    void closedDuringARunItWaitsForAClick_data()
    {
        QTest::addColumn<bool>("isClicked");
        QTest::newRow("clicked") << true;
        QTest::newRow("closed") << false;
    }

    void closedDuringARunItWaitsForAClick()
    {
        QFETCH(const bool, isClicked);
        AppFixture &app = filled({"copy"});
        QVERIFY(QTest::qWaitForWindowActive(&app.window));
        const QSignalSpy ending(&app, &Application::ending);
        app.controller.minify();
        app.window.close();
        QTRY_COMPARE(m_service->shown.size(), 1);
        letAllArrive();
        QTest::qWait(2000); // the sound has its time, and more
        QCOMPARE(ending.size(), 0);
        if (isClicked)
            m_service->click(1);
        else
            m_service->closedByUser(1);
        QTRY_COMPARE(ending.size(), isClicked ? 0 : 1);
        QTRY_COMPARE(app.window.isVisible(), isClicked);
        const auto *const results = app.window.findChild<ResultsWindow *>();
        QCOMPARE(results && results->isVisible(), isClicked);
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
        app.quit(); // which takes back the other
        letAllArrive();
        QCOMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
    }

    void sentencesStayTogetherUntilTheyAreClosed()
    {
        AppFixture &app = filled({});
        const auto last = [this] { return texts().value(texts().size() - 1).section(u'|', 1); };
        app.desktopReport.tell({});
        app.desktopReport.tell({u"one"_s, u"two"_s});
        QTRY_COMPARE(last(), u"one\ntwo"_s);
        letAllArrive();
        app.desktopReport.tell({u"three"_s});
        QTRY_COMPARE(last(), u"one\ntwo\nthree"_s);
        QCOMPARE(m_service->shown.constLast().replaces, 1U);
        letAllArrive();
        m_service->closedByUser(1);
        letAllArrive();
        app.desktopReport.tell(QStringList(12, u"more"_s));
        QTRY_COMPARE(last(), u"more\n"_s.repeated(10) + u"and 2 more, on standard error"_s);
    }
};

BREVANT_TEST(tst_DesktopReport, QApplication)
#include "tst_DesktopReport.moc"
