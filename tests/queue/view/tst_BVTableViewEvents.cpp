// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// Sends the event that follows a right click or the menu key.
void askForMenu(Fixture &f, QPoint point, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    QContextMenuEvent event(reason, point, f.table.viewport()->mapToGlobal(point));
    QApplication::sendEvent(f.table.viewport(), &event);
}

} // namespace

class tst_BVTableViewEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyWithNowhereToGoSelectsItsRow_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("row");
        QTest::newRow("up") << Qt::Key_Up << 0;
        QTest::newRow("home") << Qt::Key_Home << 0;
        QTest::newRow("page up") << Qt::Key_PageUp << 0;
        QTest::newRow("down") << Qt::Key_Down << 2;
        QTest::newRow("end") << Qt::Key_End << 2;
        QTest::newRow("page down") << Qt::Key_PageDown << 2;
    }

    void aKeyWithNowhereToGoSelectsItsRow()
    {
        QFETCH(const Qt::Key, key);
        QFETCH(const int, row);
        Fixture f(3);
        f.table.selectRowIndexes({row}, false);
        f.table.selectAllRows();
        QTest::keyClick(&f.table, key);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{row});
        QCOMPARE(f.table.selectedRow(), row);
    }

    void shiftAndF10OpenTheMenu()
    {
        Fixture f(3);
        QTest::keyClick(&f.table, Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(!f.menu.isVisible()); // no row is selected
        f.table.selectRowIndexes({1}, false);
        QTest::keyClick(&f.table, Qt::Key_F10);
        QVERIFY(!f.menu.isVisible());
        QTest::keyClick(&f.table, Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(f.menu.isVisible());
        f.menu.hide();
        QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
    }

    void rightClickAddsTheRow()
    {
        Fixture f(8);
        f.table.selectRowIndexes({1, 2}, false);
        QTest::mousePress(f.table.viewport(), Qt::RightButton, {}, f.at(4));
        askForMenu(f, f.at(4));
        QTest::mouseRelease(f.table.viewport(), Qt::RightButton, {}, f.at(4));
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2, 4}));
        QCOMPARE(f.table.selectedRow(), 4);
        QVERIFY(f.menu.isVisible());
        f.menu.close();
    }

    void rightClickBelowTheLastRow()
    {
        Fixture f(5);
        f.table.selectRowIndexes({1, 2}, false);
        QTest::mouseClick(f.table.viewport(), Qt::RightButton, {}, f.at(7));
        askForMenu(f, f.at(7));
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2}));
        QVERIFY(!f.menu.isVisible());
    }

    void rightClickOnASelectedRow()
    {
        // What is revealed from the menu is the row that was clicked, whatever was selected last.
        Fixture f(8);
        f.table.selectRowIndexes({1, 2, 5}, false);
        QTest::mouseClick(f.table.viewport(), Qt::RightButton, {}, f.at(2));
        askForMenu(f, f.at(2));
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2, 5}));
        QCOMPARE(f.table.selectedRow(), 2);
        f.menu.close();
    }

    void rightPressAloneKeepsTheSelection()
    {
        Fixture f(5);
        f.table.selectRowIndexes({1, 2}, false);
        for (const int row : {0, 2, 7}) {
            QTest::mouseClick(f.table.viewport(), Qt::RightButton, {}, f.at(row));
            QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2}));
        }
    }

    void menuForEventAnswersTheTablesOwnMenu()
    {
        Fixture f(5);
        const auto menuAt = [&f](QPoint point) {
            const QPoint onScreen = f.table.viewport()->mapToGlobal(point);
            return f.table.menuForEvent(QContextMenuEvent(QContextMenuEvent::Mouse, point, onScreen));
        };
        QCOMPARE(menuAt(f.at(3)), &f.menu);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
        QCOMPARE(menuAt(f.at(5)), nullptr);
        f.table.setMenu(nullptr);
        QCOMPARE(menuAt(f.at(0)), nullptr);
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{0, 3}));
        askForMenu(f, f.at(0));
    }

    void menuKeyIsForTheSelection()
    {
        Fixture f(8);
        askForMenu(f, f.at(1), QContextMenuEvent::Keyboard);
        QVERIFY(!f.menu.isVisible());
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
        f.table.selectRowIndexes({3}, false);
        askForMenu(f, f.at(1), QContextMenuEvent::Keyboard);
        QVERIFY(f.menu.isVisible());
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
        f.menu.close();

        Fixture many(100);
        many.table.selectRowIndexes({80}, false);
        askForMenu(many, many.at(1), QContextMenuEvent::Keyboard);
        QVERIFY(many.table.viewport()->rect().contains(many.table.frameOfCell(80))); // what the menu is about
        many.menu.close();
    }

    void noKeyWithoutASelection_data()
    {
        QTest::addColumn<int>("key");
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown,
                                  Qt::Key_3, Qt::Key_Return, Qt::Key_Escape})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << int(key);
    }

    void noKeyWithoutASelection()
    {
        QFETCH(const int, key);
        Fixture f(8);
        QKeyEvent event(QEvent::KeyPress, key, {}, QKeySequence(key).toString());
        event.ignore();
        QApplication::sendEvent(&f.table, &event);
        QVERIFY(event.isAccepted());
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
        QCOMPARE(f.previewToggles.count(), 0);
        QTest::keyClick(&f.table, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
    }

    void spaceTogglesThePreview()
    {
        Fixture f(8);
        f.table.selectRowIndexes({2, 3}, false);
        QTest::keyClick(&f.table, Qt::Key_Space);
        QCOMPARE(f.previewToggles.count(), 1);
        QTest::keyClick(&f.table, Qt::Key_Space, Qt::ShiftModifier);
        QCOMPARE(f.previewToggles.count(), 2);
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{2, 3}));
    }

    void otherKeysGoOn()
    {
        Fixture f(8);
        f.table.selectRowIndexes({2}, false);
        QTest::keyClick(&f.table, Qt::Key_Down);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
        QTest::keyClick(&f.table, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{3, 4}));
        QTest::keyClick(&f.table, Qt::Key_End);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{7});
        QCOMPARE(f.previewToggles.count(), 0);
    }

    void forwardedKeysDoTheSame()
    {
        Fixture f(8);
        f.table.selectRowIndexes({2}, false);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, {});
        f.table.keyDown(&down);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
        QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, {}, u" "_s);
        f.table.keyDown(&space);
        QCOMPARE(f.previewToggles.count(), 1);
    }

    void typingLooksForAName()
    {
        Fixture f(3);
        // However slow the machine is, two keys belong to one word unless there is a pause between them.
        const auto pauseBefore = [&f](char key) {
            QApplication::setKeyboardInputInterval(0);
            QTest::qWait(2);
            QTest::keyClick(&f.table, key);
            QApplication::setKeyboardInputInterval(60'000);
        };
        for (const char *path : {"/w/apple.css", "/w/Banana.css", "/x/berry.js", "/w/bean.js"})
            f.queue.append(QLatin1StringView(path));
        f.table.reloadData();
        f.table.selectRowIndexes({0}, false);
        pauseBefore('b');
        QCOMPARE(f.table.selectedRowIndexes(), Rows{4});
        QTest::keyClick(&f.table, 'b');
        QCOMPARE(f.table.selectedRowIndexes(), Rows{5});
        pauseBefore('b');
        QTest::keyClick(&f.table, 'e');
        QTest::keyClick(&f.table, 'r');
        QCOMPARE(f.table.selectedRowIndexes(), Rows{5});
        pauseBefore('a');
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
        QTest::keyClick(&f.table, 'z');
        QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
    }

    void tabLeavesTheTable()
    {
        Fixture f(3);
        QWidget other(&f.window);
        other.setFocusPolicy(Qt::StrongFocus);
        other.show();
        f.window.activateWindow();
        f.table.setFocus();
        QTRY_VERIFY(f.table.hasFocus());
        QTest::keyClick(&f.table, Qt::Key_Tab);
        QVERIFY(!f.table.hasFocus());
        f.table.setFocus();
        f.table.selectRowIndexes({1}, false);
        QTest::keyClick(&f.table, Qt::Key_Tab);
        QVERIFY(!f.table.hasFocus());
    }

    void keyboardFocusShows()
    {
        Fixture f(3);
        f.table.selectRowIndexes({0}, false);
        f.window.activateWindow();
        f.table.setFocus(Qt::MouseFocusReason);
        QTRY_VERIFY(f.table.hasFocus());
        const QImage before = f.onScreen();
        f.table.clearFocus();
        f.table.setFocus(Qt::TabFocusReason);
        QVERIFY(f.onScreen() != before);
        f.table.clearFocus();
        QCOMPARE(f.onScreen(), before);
    }

    void tabSelectsTheCurrentRow()
    {
        Fixture f(3);
        f.window.activateWindow();
        const auto comeBy = [&f](Qt::FocusReason reason) {
            f.table.clearFocus();
            f.table.setFocus(reason);
            return f.table.hasFocus();
        };
        QTRY_VERIFY(comeBy(Qt::OtherFocusReason));
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
        QVERIFY(comeBy(Qt::TabFocusReason));
        QCOMPARE(f.table.selectedRowIndexes(), Rows{0}); // none was current before
        f.table.selectRowIndexes({0, 2}, false);
        QVERIFY(comeBy(Qt::TabFocusReason));
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{0, 2}));
        f.table.deselectAll();
        QVERIFY(comeBy(Qt::MouseFocusReason));
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
        QVERIFY(comeBy(Qt::BacktabFocusReason));
        QCOMPARE(f.table.selectedRowIndexes(), Rows{2});
        QTest::keyClick(&f.table, Qt::Key_Up);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
    }
};

BREVANT_TEST(tst_BVTableViewEvents, QApplication)
#include "tst_BVTableViewEvents.moc"
