// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "tests/Files.h"
#include "tests/NoThreads.h"
#include "tests/TestClass.h"

#include <QMessageBox>
#include <QSignalSpy>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// Runs in the window, and the end of the program.
class tst_Running final : public QObject {
    Q_OBJECT

private:
    /// Writes down every status and the selection at that moment.
    class Watch final : public QObject {
    public:
        explicit Watch(AppFixture &app) : m_app(app)
        {
            app.window.ui().progressTextField->installEventFilter(this);
            connect(app.table, &BVTableView::selectionDidChange, this, [this] { note(); });
        }
        QStringList seen;

        bool eventFilter(QObject *, QEvent *) override
        {
            note();
            return false;
        }

    private:
        void note()
        {
            QString line = m_app.status() + u':';
            for (const int row : m_app.table->selectedRowIndexes())
                line += u" %1"_s.arg(row);
            if (seen.isEmpty() || seen.last() != line)
                seen.append(line);
        }
        AppFixture &m_app;
    };

    static std::unique_ptr<AppFixture> filled(int count, const QByteArray &text = "copy")
    {
        auto app = std::make_unique<AppFixture>();
        app->settings.setOverride(false, soundCheckerKeyString);
        app->fill(count, text);
        app->window.show();
        return app;
    }

    /// Makes the compressor wait at file `number`, until the file whose path is returned is removed.
    static QString holdAt(const AppFixture &app, int number)
    {
        const QString gate = app.file(u"gate"_s);
        app.file(u"f%1.css"_s.arg(number), "wait " + gate.toUtf8());
        return gate;
    }

    /// Writes down the order in which the controls change.
    class ControlWatch final : public QObject {
    public:
        explicit ControlWatch(const Ui::MainWindow &ui)
        {
            for (QPushButton *const button : {ui.minifyButton, ui.clearButton})
                button->installEventFilter(this);
            for (QAction *const action : {ui.minifyMenu, ui.clearMenu})
                connect(action, &QAction::enabledChanged, this, [this, action](bool isEnabled) {
                    changes.append(action->objectName() + (isEnabled ? u'+' : u'-'));
                });
        }
        QStringList changes;

        bool eventFilter(QObject *button, QEvent *event) override
        {
            if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
                changes.append(button->objectName() + (event->type() == QEvent::Show ? u'+' : u'-'));
            return false;
        }
    };

    static bool soundIsLoaded() { return test::readFile(u"/proc/self/maps"_s).contains("/libsndfile.so"); }

private Q_SLOTS:
    /// The first test: what is loaded stays.
    void theSoundIsReadThoughItIsOff()
    {
        const auto app = filled(1);
        const QString gate = holdAt(*app, 0);
        app->controller.minify();
        QVERIFY(!soundIsLoaded());
        QFile::remove(gate);
        QTRY_VERIFY(!app->jobs.isRunning());
        QVERIFY(soundIsLoaded());
    }

    void controlsChangeInOrder()
    {
        const auto app = filled(1);
        QVERIFY(QTest::qWaitForWindowExposed(&app->window));
        ControlWatch watch(app->window.ui());
        app->controller.minify();
        QTRY_VERIFY(!app->jobs.isRunning());
        QCOMPARE(watch.changes.join(u' '), u"minifyMenu- clearMenu- clearButton- minifyButton- "
                                           "minifyMenu+ clearMenu+ clearButton+ minifyButton+"_s);
        watch.changes.clear();
        app->controller.clear();
        app->drop({app->file(u"a.css"_s)});
        QCOMPARE(watch.changes.join(u' '), u"minifyButton- clearButton- minifyMenu- clearMenu- "
                                           "minifyButton+ clearButton+ minifyMenu+ clearMenu+"_s);
    }

    void threeEntriesWalkThroughTheList()
    {
        const auto app = filled(3);
        Watch watch(*app);
        app->controller.minify();
        QTRY_VERIFY(!app->jobs.isRunning());
        for (const char *line :
             {"Minified 1 of 3 items.: 0", "Minified 2 of 3 items.: 1", "Minified 3 of 3 items.: 2"})
            QVERIFY2(watch.seen.contains(QString::fromUtf8(line)), qPrintable(watch.seen.join(u'\n')));
        QCOMPARE(app->state(), u"buttons on, menu on, table #ffffff, \"Well done!\", badge \"3\""_s);
        QVERIFY(app->table->selectedRowIndexes().empty());
        QCOMPARE(app->queue.count(), 3);
    }

    void anEmptyListEndsWellAndUnlocks()
    {
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        app.controller.minify();
        QTRY_COMPARE(app.state(), u"buttons on, menu on, table clear, \"Well done!\", badge \"\""_s);
        QCOMPARE(app.javaCalls(), QStringList());
    }

    void controlsAreLockedMeanwhile()
    {
        const auto app = filled(1);
        const QString gate = holdAt(*app, 0);
        QTest::mouseClick(app->window.ui().minifyButton, Qt::LeftButton);
        QTRY_COMPARE(app->state(),
                     u"buttons off, menu off, table #ffffff, \"Minified 1 of 1 items.\", badge \"1\""_s);
        app->drop({app->file(u"late.css"_s)}); // worked on too
        QCOMPARE(app->state(), u"buttons on, menu on, table #ffffff, \"2 items\", badge \"2\""_s);
        QFile::remove(gate);
        QTRY_COMPARE(app->status(), u"Well done!"_s);
        QVERIFY(QFile::exists(app->folder.filePath(u"late.min.css"_s)));
    }

    void withoutJava()
    {
        auto app = filled(2);
        app->tools.java = u"/nowhere/java"_s;
        app->controller.minify();
        QTRY_COMPARE(
            app->state(),
            u"buttons on, menu on, table #ffffff, \"Java was not found at /nowhere/java.\", badge \"2\""_s);
        QTRY_VERIFY(!app->jobs.isRunning());
    }

    void removingAndClearingDuringARun()
    {
        const auto app = filled(30);
        const QString gate = holdAt(*app, 3);
        app->controller.minify();
        QTRY_COMPARE(app->status(), u"Minified 4 of 30 items."_s);
        app->table->selectRowIndexes({0, 1, 2}, false);
        app->controller.removeRow();
        QCOMPARE(app->queue.count(), 27);
        QCOMPARE(app->status(), u"27 items"_s);
        app->controller.clear();
        QFile::remove(gate);
        QTRY_VERIFY(!app->jobs.isRunning());
        QCOMPARE(app->javaCalls().size(), 4);
        QCOMPARE(app->status(), u"Well done!"_s);
        QVERIFY(!app->window.ui().minifyButton->isHidden());
    }

    void severalRunsAtOnce()
    {
        const auto app = filled(8);
        app->settings.setOverride(true, autoMinifyCheckerKeyString);
        app->controller.minify();
        app->drop({}); // starts a run over the whole list, whatever is under way, as the others do
        app->delegate.applicationOpenFiles({});
        app->delegate.minifyFiles({});
        QTRY_VERIFY(!app->jobs.isRunning());
        QCOMPARE(app->javaCalls().size(), 4 * 8);
        QCOMPARE(app->state(), u"buttons on, menu on, table #ffffff, \"Well done!\", badge \"8\""_s);
    }

    void returnAndSpacePressTheButtonWithTheFocus_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<bool>("onClear");
        QTest::newRow("Return on Clear") << Qt::Key_Return << true;
        QTest::newRow("Enter on Clear") << Qt::Key_Enter << true;
        QTest::newRow("Space on Clear") << Qt::Key_Space << true;
        QTest::newRow("Return on Minify") << Qt::Key_Return << false;
        QTest::newRow("Space on Minify") << Qt::Key_Space << false;
    }

    void returnAndSpacePressTheButtonWithTheFocus()
    {
        QFETCH(Qt::Key, key);
        QFETCH(bool, onClear);
        const auto app = filled(1);
        app->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&app->window));
        const Ui::MainWindow &ui = app->window.ui();
        QVERIFY(ui.minifyButton->isDefault() && !ui.clearButton->isDefault());
        QPushButton *const button = onClear ? ui.clearButton : ui.minifyButton;
        button->setFocus(Qt::TabFocusReason);
        QCOMPARE(ui.clearButton->isDefault(), onClear);
        QCOMPARE(ui.minifyButton->isDefault(), !onClear); // one of them looks like the default
        QTest::keyClick(button, key);
        QCOMPARE(app->queue.count(), onClear ? 0 : 1);
        QCOMPARE(app->jobs.isRunning(), !onClear);
        QTRY_VERIFY(!app->jobs.isRunning());
        QVERIFY(ui.minifyButton->isDefault());
    }

    void returnMinifies()
    {
        const auto app = filled(1);
        QVERIFY(QTest::qWaitForWindowExposed(&app->window));
        app->window.activateWindow();
        QTest::keyClick(&app->window, Qt::Key_Return);
        QVERIFY(app->jobs.isRunning());
        QTRY_VERIFY(!app->jobs.isRunning());
    }

    void closingDuringARunHidesAndReopeningShows()
    {
        const auto app = filled(1);
        const QString gate = holdAt(*app, 0);
        app->controller.minify();
        QTRY_VERIFY(app->status().startsWith(u"Minified"_s));
        app->window.close();
        QVERIFY(app->window.isHidden());
        QVERIFY(app->jobs.isRunning());
        for (const bool visible : {false, true}) {
            QVERIFY(app->delegate.applicationShouldHandleReopen(visible));
            QVERIFY(app->window.isVisible());
        }
        QFile::remove(gate);
        QTRY_COMPARE(app->status(), u"Well done!"_s);
        QVERIFY(app->window.isVisible());
    }

    void quittingEndsAfterTheFile()
    {
        const auto app = filled(5);
        const QString gate = holdAt(*app, 1);
        app->controller.minify();
        QTRY_COMPARE(app->status(), u"Minified 2 of 5 items."_s);
        app->quit();
        QVERIFY(app->window.isHidden());
        QVERIFY(app->jobs.isRunning());
        QFile::remove(gate);
        QTRY_VERIFY(!app->jobs.isRunning());
        QCOMPARE(app->javaCalls().size(), 2);
        QVERIFY(QFile::exists(app->folder.filePath(u"f1.min.css"_s)));
        QVERIFY(!QFile::exists(app->folder.filePath(u"f2.min.css"_s)));
    }

    void destroyingDuringARunNeitherCrashesNorHangs()
    {
        for (int round = 0; round < 10; ++round) {
            const auto app = filled(5);
            app->controller.minify();
            app->controller.minify();
            QTest::qWait(round);
        }
    }

    void whereNoThreadIsToBeHadItIsSaid()
    {
        const auto app = filled(2);
        const QString before = app->state();
        {
            const test::NoThreads none;
            loadFonts().wait();
            app->controller.minify();
            app->delegate.minifyFiles({});
        }
        const auto sheets = app->window.findChildren<QMessageBox *>();
        QCOMPARE(sheets.size(), 2);
        QCOMPARE(sheets.first()->text(), u"The system has no room for another task"_s);
        QVERIFY(sheets.first()->informativeText().startsWith(u"Nothing was begun: "_s));
        QCOMPARE(app->state(), before);
        QVERIFY(!app->jobs.isRunning());
        qDeleteAll(sheets);
        app->controller.minify();
        QTRY_COMPARE(app->status(), u"Well done!"_s);
    }

    void reopeningUndoesMinimising()
    {
        AppFixture app;
        app.window.showMinimized();
        app.delegate.applicationShouldHandleReopen(true);
        QVERIFY(!app.window.isMinimized());
        QVERIFY(app.window.isVisible());
    }
};

BREVANT_TEST(tst_Running, QApplication)
#include "tst_Running.moc"
