// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/preview/PreviewPanel.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// Removing, clearing, selecting and revealing; the badge.
class tst_Editing final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void removingTheOnlyEntry()
    {
        AppFixture app;
        app.fill(1);
        app.settings.setOverride(false, badgeCheckerKeyString);
        app.dockTile.setBadgeLabel(u"1"_s);
        app.controller.selectAll();
        app.controller.removeRow();
        QCOMPARE(app.state(), u"buttons off, menu off, table clear, \"\", badge \"\""_s);
        QCOMPARE(app.table->model()->rowCount(), 0);
    }

    void removingTwoOfThree()
    {
        AppFixture app;
        app.fill(3);
        app.table->selectRowIndexes({0, 2}, false);
        app.controller.removeRow();
        QCOMPARE(app.state(), u"buttons on, menu on, table #ffffff, \"1 item\", badge \"1\""_s);
    }

    void removingTheFirstAndThirdOfFour()
    {
        AppFixture app;
        app.fill(4);
        app.table->selectRowIndexes({0, 2}, false);
        app.controller.removeRow();
        QCOMPARE(app.queue.entries(),
                 std::vector<QString>({app.folder.filePath(u"f1.css"_s), app.folder.filePath(u"f3.css"_s)}));
        QCOMPARE(app.state(), u"buttons on, menu on, table #ffffff, \"2 items\", badge \"2\""_s);
    }

    void theRowThatTakesThePlaceIsSelected_data()
    {
        QTest::addColumn<std::vector<int>>("selected"); // in this order
        QTest::addColumn<std::vector<int>>("after");
        QTest::newRow("the first") << std::vector<int>{0} << std::vector<int>{0};
        QTest::newRow("in the middle") << std::vector<int>{2} << std::vector<int>{2};
        QTest::newRow("the last") << std::vector<int>{5} << std::vector<int>{4};
        QTest::newRow("several together") << std::vector<int>{1, 2, 3} << std::vector<int>{1};
        QTest::newRow("apart, the lower last") << std::vector<int>{1, 4} << std::vector<int>{3};
        QTest::newRow("apart, the upper last") << std::vector<int>{4, 1} << std::vector<int>{1};
        QTest::newRow("up to the end") << std::vector<int>{3, 4, 5} << std::vector<int>{2};
        QTest::newRow("all") << std::vector<int>{0, 1, 2, 3, 4, 5} << std::vector<int>{};
        QTest::newRow("none") << std::vector<int>{} << std::vector<int>{};
    }

    void theRowThatTakesThePlaceIsSelected()
    {
        QFETCH(std::vector<int>, selected);
        QFETCH(std::vector<int>, after);
        AppFixture app;
        app.fill(6);
        for (const int row : selected)
            app.table->selectRowIndexes({row}, true);
        app.controller.removeRow();
        QCOMPARE(app.queue.count(), 6 - static_cast<int>(selected.size()));
        QCOMPARE(app.table->selectedRowIndexes(), after);
    }

    /// The list first, then the preview, then what is said of both.
    void removingReloadsInOrder()
    {
        AppFixture app;
        app.fill(3);
        app.table->selectRowIndexes({1}, false);
        app.delegate.togglePreviewPanel();
        struct Source final : PreviewPanelDataSource {
            AppFixture &app;
            mutable QStringList seen;
            explicit Source(AppFixture &fixture) : app(fixture) {}
            [[nodiscard]] int numberOfPreviewItemsInPreviewPanel() const override
            {
                seen.append(u"%1 rows, \"%2\""_s.arg(app.table->model()->rowCount()).arg(app.status()));
                return 0;
            }
            [[nodiscard]] QUrl previewPanelPreviewItemAtIndex(int) const override { return {}; }
        } source(app);
        app.delegate.sharedPreviewPanel()->setDataSource(&source);
        app.table->deselectAll();
        source.seen.clear();
        app.controller.removeRow(); // of none, so that no selection changes
        QCOMPARE(source.seen, QStringList({u"3 rows, \"3 items\""_s}));
        app.table->selectRowIndexes({1}, false);
        source.seen.clear();
        app.controller.removeRow();
        source.seen.removeDuplicates();
        QCOMPARE(source.seen, QStringList({u"2 rows, \"3 items\""_s}));
        QCOMPARE(app.status(), u"2 items"_s);
        app.delegate.togglePreviewPanel();
    }

    void removingNothingRewritesLabelAndBadge()
    {
        AppFixture app;
        app.fill(2);
        app.table->deselectAll();
        app.window.setStatusText(u"Well done!"_s);
        app.dockTile.setBadgeLabel(QString());
        app.controller.removeRow();
        QCOMPARE(app.state(), u"buttons on, menu on, table #ffffff, \"2 items\", badge \"2\""_s);
    }

    void clearing()
    {
        AppFixture app;
        app.fill(3);
        app.settings.setOverride(false, badgeCheckerKeyString);
        for (int twice = 0; twice < 2; ++twice) { // the second time it is empty already
            app.controller.clear();
            QCOMPARE(app.state(), u"buttons off, menu off, table clear, \"\", badge \"\""_s);
            QCOMPARE(app.queue.count(), 0);
            QCOMPARE(app.table->model()->rowCount(), 0);
        }
    }

    void clearingAnEmptyListClearsWhatARunHasLeft()
    {
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        app.controller.minify();
        QTRY_VERIFY(!app.jobs.isRunning());
        app.dockTile.setBadgeLabel(u"3"_s);
        QCOMPARE(app.state(), u"buttons on, menu on, table clear, \"Well done!\", badge \"3\""_s);
        app.controller.clear();
        QCOMPARE(app.state(), u"buttons off, menu off, table clear, \"\", badge \"\""_s);
    }

    void clearingAloneTakesTheWindowsColourAway()
    {
        AppFixture app;
        app.fill(1);
        app.window.setPalette(QPalette(Qt::red));
        app.controller.selectAll();
        app.controller.removeRow();
        QCOMPARE(app.window.palette().color(QPalette::Window), QColor(Qt::red));
        app.controller.clear();
        QCOMPARE(app.window.palette().color(QPalette::Window), QPalette().color(QPalette::Window));
    }

    void selectingAll()
    {
        AppFixture app;
        app.fill(3);
        app.controller.selectAll();
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({0, 1, 2}));
    }

    void keysAndMenuItems()
    {
        AppFixture app;
        app.fill(3);
        app.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&app.window));
        app.window.activateWindow();
        QTest::keyClick(&app.window, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(app.table->selectedRowIndexes().size(), std::size_t(3));
        app.table->selectRowIndexes({1}, false);
        QTest::keyClick(app.table, Qt::Key_Delete);
        QCOMPARE(app.queue.count(), 2);
        QTest::keyClick(&app.window, Qt::Key_Backspace, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(app.queue.count(), 0);
    }

    void theItemsForASelectionNeedOne()
    {
        AppFixture app;
        app.fill(2);
        const Ui::MainWindow &ui = app.window.ui();
        for (const QAction *action : {ui.removeMenu, ui.revealMenu, ui.quickLookMenu})
            QVERIFY2(!action->isEnabled(), qPrintable(action->text()));
        app.table->selectRowIndexes({0}, false);
        for (const QAction *action : {ui.removeMenu, ui.revealMenu, ui.quickLookMenu})
            QVERIFY2(action->isEnabled(), qPrintable(action->text()));
    }

    void revealing()
    {
        AppFixture app;
        app.drop({app.file(u"a/a.css"_s), app.file(u"b/b.css"_s), app.file(u"c/c.css"_s)});
        app.controller.revealInFinder(); // nothing is selected
        QTest::qWait(50);
        QCOMPARE(app.opened, QList<QUrl>());
        for (const int row : {0, 2, 1})
            app.table->selectRowIndexes({row}, true);
        app.controller.revealInFinder();
        // The one added last; without a file manager, its folder.
        QTRY_COMPARE(app.opened, QList<QUrl>({QUrl::fromLocalFile(app.folder.filePath(u"b"_s))}));
    }

    void aRightClickRevealsWhatItClicked()
    {
        AppFixture app;
        const QStringList paths{app.file(u"a/a.css"_s), app.file(u"b/b.css"_s)};
        app.drop(paths);
        app.window.show();
        app.table->selectRowIndexes({0}, false);
        const QPoint point = app.table->frameOfCell(1).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, app.table->viewport()->mapToGlobal(point));
        QVERIFY(app.table->menuForEvent(event) != nullptr);
        app.window.ui().revealMenu->trigger();
        QTRY_COMPARE(app.opened, QList<QUrl>({QUrl::fromLocalFile(app.folder.filePath(u"b"_s))}));
    }

    void badgeFollowsItsSetting()
    {
        AppFixture app;
        app.fill(3);
        QCOMPARE(app.dockTile.badgeLabel(), u"3"_s);
        app.settings.setBool(false, badgeCheckerKeyString);
        QCOMPARE(app.dockTile.badgeLabel(), QString());
        app.settings.setBool(true, badgeCheckerKeyString);
        QCOMPARE(app.dockTile.badgeLabel(), u"3"_s);
        app.controller.selectAll();
        app.controller.removeRow();
        QCOMPARE(app.dockTile.badgeLabel(), QString());
        app.settings.setBool(true, gzipCheckerKeyString);
        QCOMPARE(app.dockTile.badgeLabel(), QString());
    }

    void badgePolicy_data()
    {
        QTest::addColumn<QString>("event");
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<int>("queued");
        QTest::addColumn<QString>("badge"); // "?" is what it was before
        QTest::newRow("setting, off") << "setting" << false << 3 << "";
        QTest::newRow("setting, off, empty") << "setting" << false << 0 << "";
        QTest::newRow("setting, on") << "setting" << true << 3 << "3";
        QTest::newRow("setting, on, empty") << "setting" << true << 0 << "?";
        QTest::newRow("drop, on") << "drop" << true << 3 << "4";
        QTest::newRow("drop, off") << "drop" << false << 3 << "?";
        QTest::newRow("panel, on") << "panel" << true << 0 << "1";
        QTest::newRow("panel, off") << "panel" << false << 0 << "?";
        QTest::newRow("open, on") << "open" << true << 12 << "13";
        QTest::newRow("open, off") << "open" << false << 12 << "?";
        QTest::newRow("remove, on") << "remove" << true << 3 << "2";
        QTest::newRow("remove, off") << "remove" << false << 3 << "?";
        QTest::newRow("remove the last, on") << "remove" << true << 1 << "";
        QTest::newRow("remove the last, off") << "remove" << false << 1 << "";
        QTest::newRow("clear, on") << "clear" << true << 3 << "";
        QTest::newRow("clear, off") << "clear" << false << 3 << "";
        QTest::newRow("run, on") << "run" << true << 2 << "?";
        QTest::newRow("run, off") << "run" << false << 2 << "?";
    }

    void badgePolicy()
    {
        QFETCH(QString, event);
        QFETCH(bool, isOn);
        QFETCH(int, queued);
        QFETCH(QString, badge);
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        app.settings.setOverride(isOn, badgeCheckerKeyString);
        app.fill(queued);
        app.dockTile.setBadgeLabel(u"?"_s);
        const QStringList more{app.file(u"more.css"_s)};
        app.controller.setRunOpenPanel([&](QWidget *, const QStringList &) { return more; });
        if (event == u"setting") {
            app.settings.setBool(true, nomungeSwitcherKeyString);
        } else if (event == u"drop") {
            app.drop(more);
        } else if (event == u"panel") {
            app.controller.addFile();
        } else if (event == u"open") {
            app.delegate.applicationOpenFiles(more);
        } else if (event == u"remove") {
            app.table->selectRowIndexes({0}, false);
            app.controller.removeRow();
        } else if (event == u"clear") {
            app.controller.clear();
        } else {
            app.controller.minify();
            QTRY_VERIFY(!app.jobs.isRunning());
        }
        QCOMPARE(app.dockTile.badgeLabel(), badge);
    }
};

BREVANT_TEST(tst_Editing, QApplication)
#include "tst_Editing.moc"
