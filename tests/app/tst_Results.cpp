// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResultsFixture.h"
#include "app/results/ResultTable.h"
#include "app/results/RunChooser.h"
#include "tests/TestClass.h"
#include "tests/engine/LeftCopy.h"
#include "widgets/FilterField.h"

/// What the runs of the program leave in Results, and what is done from there.
class tst_Results final : public ResultsFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_app = std::make_unique<AppFixture>(); }

    void nothingIsMadeBeforeItIsNeeded()
    {
        m_app->window.show();
        QVERIFY(!mark());
        QVERIFY(!results());
        fill({"copy"});
        QVERIFY(!mark());
        run();
        QVERIFY(mark());
        QVERIFY(!results());
    }

    void withoutJava()
    {
        m_app->window.show();
        fill({"copy", "copy", "copy"});
        m_app->tools.java = u"/nowhere/java"_s;
        run();
        QCOMPARE(mark()->text(), u"3 of 3 not minified"_s);
        QCOMPARE(mark()->toolTip().section(u'.', 0, 0), u"3 not run"_s);
        const auto last = m_app->results.runs.all().back();
        QCOMPARE(last->rows.size(), 3U);
        QCOMPARE(last->reason, u"Java was not found at /nowhere/java."_s);
    }

    void stepsAreTakenTogether()
    {
        Results &shown = m_app->results;
        QStringList taken;
        const auto gather = [&](const QString &name) {
            shown.gather([&taken, name] { taken.append(name); });
        };
        gather(u"first"_s);
        QCOMPARE(taken, QStringList(u"first"_s));
        gather(u"second"_s);
        gather(u"third"_s);
        QCOMPARE(taken.size(), 1);
        QTRY_COMPARE(taken, (QStringList{u"first"_s, u"second"_s, u"third"_s}));
        gather(u"before it is shown"_s);
        QCOMPARE(taken.size(), 3);
        shown.show();
        QCOMPARE(taken.size(), 4);
    }

    void filesTakenOffTheListAreNoRows()
    {
        fill({"copy", "copy", "copy"});
        const QString gate = m_app->file(u"gate"_s);
        m_app->file(u"f0.css"_s, "wait " + gate.toUtf8());
        m_app->controller.minify();
        QTRY_COMPARE(m_app->status(), u"Minified 1 of 3 items."_s);
        m_app->controller.clear();
        QFile::remove(gate);
        QTRY_VERIFY(!m_app->jobs.isRunning());
        QCOMPARE(m_app->results.runs.all().back()->rows.size(), 1U);
    }

    void whatWorksAndWhereTo_data()
    {
        QTest::addColumn<bool>("isModern");
        QTest::addColumn<bool>("hasSuffix");
        QTest::addColumn<bool>("isBeside");
        QTest::addColumn<QString>("expected");
        QTest::newRow("default") << false << true << true
                                 << u"Classic compressors, outputs beside the sources"_s;
        QTest::newRow("in place") << false << false << true << u"Classic compressors, sources replaced"_s;
        QTest::newRow("elsewhere") << true << false << false << u"Modern compressors, outputs in /nowhere"_s;
    }

    void withoutASuffixSourcesAreReplaced()
    {
        m_app->settings.setOverride(QString(), suffixKeyString);
        run();
        QCOMPARE(m_app->results.runs.all().back()->manner, u"Classic compressors, sources replaced"_s);
    }

    void whatWorksAndWhereTo()
    {
        QFETCH(const bool, isModern);
        QFETCH(const bool, hasSuffix);
        QFETCH(const bool, isBeside);
        m_app->settings.setOverride(isModern ? u"modern"_s : u"classic"_s, compressorsKeyString);
        m_app->settings.setOverride(hasSuffix, suffixSwitcherKeyString);
        m_app->settings.setOverride(isBeside, sameFolderKeyString);
        m_app->settings.setOverride(u"/nowhere"_s, selectedFolderKeyString);
        run();
        QTEST(m_app->results.runs.all().back()->manner, "expected");
    }

    void resultsOpenByTheMenu()
    {
        QAction *const item = m_app->window.ui().resultsMenu;
        QCOMPARE(item->shortcut(), QKeySequence(u"Ctrl+L"_s));
        m_app->window.show();
        item->trigger();
        QVERIFY(results()->isVisible());
        m_app->window.close();
        QVERIFY(!results()->isVisible());
    }

    void whatFailedIsRunAgain()
    {
        m_app->window.show();
        fill({"copy", "fail", "copy", "empty"});
        run();
        m_app->results.show();
        const QString status = m_app->status();
        m_app->file(u"f1.css"_s, sound);
        // Compressors that are asked why they failed write elsewhere.
        const auto calls = [this] { return m_app->javaCalls().filter(u".min.css"_s).size(); };
        const qsizetype before = calls();
        press(u"Retry &Failed"_s);
        QTRY_COMPARE(m_app->results.runs.all().size(), 2U);
        QTRY_VERIFY(!m_app->jobs.isRunning());
        const auto again = m_app->results.runs.all().back();
        QCOMPARE(again->rows.size(), 2U);
        QCOMPARE(again->totals().count(ResultRow::State::Done), 1);
        QCOMPARE(calls(), before + 2);
        QCOMPARE(mark()->text(), u"1 of 2 failed"_s);
        // The main window is about its own runs.
        QCOMPARE(m_app->status(), status);
        QCOMPARE(m_app->queue.count(), 4);
        QVERIFY(!m_app->window.ui().minifyButton->isHidden());
        QTRY_VERIFY(results()->findChild<RunChooser *>()->currentText().contains(u"2 files"_s));
    }

    void filesAreOpenedAndRevealed()
    {
        fill({"copy"});
        run();
        m_app->results.show();
        trigger(u"&Open"_s);
        QCOMPARE(m_app->opened, QList<QUrl>{fileUrl(m_app->folder.filePath(u"f0.css"_s))});
        trigger(u"Re&veal Output"_s);
        // Without a file manager on the bus, the folder is opened.
        QTRY_COMPARE(m_app->opened.size(), 2);
        QCOMPARE(m_app->opened.back(), fileUrl(m_app->folder.path()));
    }

    void thePreviewFollowsNoSelectionOfResults()
    {
        m_app->window.show();
        fill({"copy", "copy"});
        run();
        m_app->table->selectRowIndexes({0}, false);
        m_app->delegate.togglePreviewPanel();
        m_app->results.show();
        PreviewPanel *const panel = m_app->delegate.sharedPreviewPanel();
        Source source;
        panel->setDataSource(&source);
        source.asked = 0;
        results()->findChild<ResultTable *>()->selectRow(1);
        QCOMPARE(source.asked, 0);
        panel->setDataSource(&m_app->controller);
        m_app->delegate.togglePreviewPanel();
    }

    void theFilterIsNoTextChangeToThePreferences()
    {
        m_app->window.show();
        m_app->controller.showPreferencePanel();
        m_app->results.show();
        m_app->settings.setObject(u"-outside"_s, suffixKeyString);
        QVERIFY(QTest::qWaitForWindowActive(results()));
        auto *const filter = results()->findChild<FilterField *>();
        filter->setFocus();
        QVERIFY(filter->hasFocus());
        QTest::keyClicks(filter, u"css"_s);
        QCOMPARE(filter->text(), u"css"_s);
        QCOMPARE(m_app->settings.stringForKey(suffixKeyString), u"-outside"_s);
    }

    void aStartThatPutSomethingBackShowsResults_data()
    {
        QTest::addColumn<bool>("asService");
        QTest::newRow("with a window") << false;
        QTest::newRow("for the bus") << true;
    }

    void aStartThatPutSomethingBackShowsResults()
    {
        QFETCH(const bool, asService);
        m_app->tools.originals = {m_app->folder.filePath(u"originals"_s)};
        const QString source = m_app->file(u"a.css"_s, "a{}");
        QVERIFY(test::LeftCopy(source, m_app->tools.originals.front()).isFilled());
        QVERIFY(QFile::resize(source, 0));
        Launch launch;
        launch.asService = asService;
        m_app->start(launch);
        if (asService) {
            QVERIFY(!results()); // before there is a window to belong to
            m_app->window.show();
        }
        QTRY_VERIFY(results() && results()->isVisible());
        const auto start = m_app->results.runs.all().front();
        QCOMPARE(start->rows.front().source, source);
        QCOMPARE(start->rows.front().state, ResultRow::State::PutBack);
        QCOMPARE(messageText(start->rows.front()),
                 source + u" was lost when a run was cut short, and has been put back."_s);
        QCOMPARE(results()->findChild<RunChooser *>()->currentText(), u"At the start, 1 file"_s);
        QVERIFY(!mark()); // which is about runs
    }

    void anOrdinaryStartShowsNoResults()
    {
        m_app->tools.originals = {m_app->folder.filePath(u"originals"_s)};
        m_app->start({});
        QVERIFY(QTest::qWaitForWindowExposed(&m_app->window));
        QCoreApplication::processEvents();
        QVERIFY(!results());
        QCOMPARE(m_app->results.runs.all().size(), 0U);
    }

private:
    struct Source : PreviewPanelDataSource {
        [[nodiscard]] int numberOfPreviewItemsInPreviewPanel() const override
        {
            ++asked;
            return 0;
        }
        [[nodiscard]] QUrl previewPanelPreviewItemAtIndex(int) const override { return {}; }
        mutable int asked = 0;
    };

    void press(const QString &text) const
    {
        for (QPushButton *const button : results()->findChildren<QPushButton *>()) {
            if (button->text() == text)
                button->click();
        }
    }

    void trigger(const QString &text) const
    {
        for (QAction *const action : results()->findChildren<QAction *>()) {
            if (action->text() == text)
                action->trigger();
        }
    }
};

BREVANT_TEST(tst_Results, QApplication)
#include "tst_Results.moc"
