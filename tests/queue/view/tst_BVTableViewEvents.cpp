// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QScreen>
#include <QTest>

using namespace brevant;
using namespace brevant::test;

namespace {

/// Sends the event that a right click, or the menu key, is followed by.
void askForMenu(Fixture &f, QPoint point, QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse)
{
    QContextMenuEvent event(reason, point, f.table.viewport()->mapToGlobal(point));
    QApplication::sendEvent(f.table.viewport(), &event);
}

std::unique_ptr<QMimeData> files(const QStringList &paths)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls += path.startsWith(u'/') ? QUrl::fromLocalFile(path) : QUrl(path);
    data->setUrls(urls);
    return data;
}

std::unique_ptr<QMimeData> text()
{
    auto data = std::make_unique<QMimeData>();
    data->setText(QStringLiteral("/w/a.css"));
    data->setHtml(QStringLiteral("<b>a</b>"));
    return data;
}

constexpr Qt::DropActions usual = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

struct Answer {
    bool accepted;
    Qt::DropAction action;
    bool operator==(const Answer &) const = default;
};

// Each comes as what must not become of it by itself: accepted, and as a move.
Answer enter(Fixture &f, const QMimeData &data, Qt::DropActions actions = usual)
{
    QDragEnterEvent event({200, 100}, actions, &data, Qt::LeftButton, {});
    event.setDropAction(Qt::MoveAction);
    event.accept();
    QApplication::sendEvent(f.table.viewport(), &event);
    return {event.isAccepted(), event.dropAction()};
}

// The application itself would deliver these two only after a drag that was taken.
Answer moveOver(Fixture &f, const QMimeData &data, Qt::DropActions actions = usual)
{
    QDragMoveEvent event({210, 120}, actions, &data, Qt::LeftButton, {});
    event.setDropAction(Qt::MoveAction);
    event.accept();
    f.table.dragMoveEvent(&event);
    return {event.isAccepted(), event.dropAction()};
}

Answer drop(Fixture &f, const QMimeData &data, Qt::DropActions actions = usual)
{
    QDropEvent event({210, 120}, actions, &data, Qt::LeftButton, {});
    event.setDropAction(Qt::MoveAction);
    event.accept();
    f.table.dropEvent(&event);
    return {event.isAccepted(), event.dropAction()};
}

void leave(Fixture &f)
{
    QDragLeaveEvent event;
    QApplication::sendEvent(f.table.viewport(), &event);
}

/// What is on the screen, once all that waits to be painted has been.
QImage painted(Fixture &f)
{
    QCoreApplication::processEvents();
    return f.window.screen()->grabWindow(f.window.winId()).toImage();
}

} // namespace

class tst_BVTableViewEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKeyWithNowhereToGoSelectsItsRow_data();
    void aKeyWithNowhereToGoSelectsItsRow();
    void shiftAndF10OpenTheMenu();
    void rightClickAddsTheRow();
    void rightClickBelowTheLastRow();
    void rightClickOnASelectedRow();
    void rightPressAloneKeepsTheSelection();
    void menuForEventAnswersTheTablesOwnMenu();
    void menuKeyIsForTheSelection();
    void noKeyWithoutASelection_data();
    void noKeyWithoutASelection();
    void spaceTogglesThePreview();
    void otherKeysGoOn();
    void forwardedKeysDoTheSame();
    void typingLooksForAName();
    void tabLeavesTheTable();
    void doubleClick_data();
    void doubleClick();
    void dragOfTheBackgroundMovesTheWindow();
    void dragOfARowSelects();
    void clickOnTheBackgroundDeselects();
    void anyFilesAreOfferedAsACopy_data();
    void anyFilesAreOfferedAsACopy();
    void whatIsNoFileIsRefused_data();
    void whatIsNoFileIsRefused();
    void moveOnlyIsRefused();
    void leavingPutsThePictureBack();
    void dropIsHandedOn();
    void nothingIsTakenWithoutATarget();
    void dropHighlightComesAndGoes();
    void keyboardFocusShows();
    void tabSelectsTheCurrentRow();
};

void tst_BVTableViewEvents::aKeyWithNowhereToGoSelectsItsRow_data()
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

void tst_BVTableViewEvents::aKeyWithNowhereToGoSelectsItsRow()
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

void tst_BVTableViewEvents::shiftAndF10OpenTheMenu()
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

void tst_BVTableViewEvents::rightClickAddsTheRow()
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

void tst_BVTableViewEvents::rightClickBelowTheLastRow()
{
    Fixture f(5);
    f.table.selectRowIndexes({1, 2}, false);
    QTest::mouseClick(f.table.viewport(), Qt::RightButton, {}, f.at(7));
    askForMenu(f, f.at(7));
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2}));
    QVERIFY(!f.menu.isVisible());
}

void tst_BVTableViewEvents::rightClickOnASelectedRow()
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

void tst_BVTableViewEvents::rightPressAloneKeepsTheSelection()
{
    Fixture f(5);
    f.table.selectRowIndexes({1, 2}, false);
    for (const int row : {0, 2, 7}) {
        QTest::mouseClick(f.table.viewport(), Qt::RightButton, {}, f.at(row));
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2}));
    }
}

void tst_BVTableViewEvents::menuForEventAnswersTheTablesOwnMenu()
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

void tst_BVTableViewEvents::menuKeyIsForTheSelection()
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

void tst_BVTableViewEvents::noKeyWithoutASelection_data()
{
    QTest::addColumn<int>("key");
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown,
                              Qt::Key_3, Qt::Key_Return, Qt::Key_Escape})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << int(key);
}

void tst_BVTableViewEvents::noKeyWithoutASelection()
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

void tst_BVTableViewEvents::spaceTogglesThePreview()
{
    Fixture f(8);
    f.table.selectRowIndexes({2, 3}, false);
    QTest::keyClick(&f.table, Qt::Key_Space);
    QCOMPARE(f.previewToggles.count(), 1);
    QTest::keyClick(&f.table, Qt::Key_Space, Qt::ShiftModifier);
    QCOMPARE(f.previewToggles.count(), 2);
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{2, 3}));
}

void tst_BVTableViewEvents::otherKeysGoOn()
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

void tst_BVTableViewEvents::forwardedKeysDoTheSame()
{
    Fixture f(8);
    f.table.selectRowIndexes({2}, false);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, {});
    f.table.keyDown(&down);
    QCOMPARE(f.table.selectedRowIndexes(), Rows{3});
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, {}, QStringLiteral(" "));
    f.table.keyDown(&space);
    QCOMPARE(f.previewToggles.count(), 1);
}

void tst_BVTableViewEvents::typingLooksForAName()
{
    Fixture f(3);
    // However slow the machine is, two keys are one word, but after a pause.
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

void tst_BVTableViewEvents::tabLeavesTheTable()
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

void tst_BVTableViewEvents::doubleClick_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::newRow("on a row") << 5 << 2;
    QTest::newRow("below the last row") << 5 << 8;
    QTest::newRow("in the empty table") << 0 << 4;
}

void tst_BVTableViewEvents::doubleClick()
{
    QFETCH(const int, count);
    QFETCH(const int, row);
    Fixture f(count);
    QWidget *const viewport = f.table.viewport();
    const QPoint place = f.window.pos();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, f.at(row));
    QCOMPARE(f.doubleActions.count(), 0);
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, f.at(row));
    QCOMPARE(f.doubleActions.count(), 1);
    QCOMPARE(f.window.pos(), place);
    QTest::mouseDClick(viewport, Qt::RightButton, {}, f.at(row));
    QCOMPARE(f.doubleActions.count(), 1);
}

void tst_BVTableViewEvents::dragOfTheBackgroundMovesTheWindow()
{
    Fixture f(3);
    QVERIFY(f.table.mouseDownCanMoveWindow());
    f.table.selectRowIndexes({1}, false);
    QWidget *const viewport = f.table.viewport();
    const QPoint start = f.at(6);
    const QPoint place = f.window.pos();
    const QPoint step(QApplication::startDragDistance(), 0);
    QTest::mousePress(viewport, Qt::LeftButton, {}, start);
    QTest::mouseMove(viewport, start + step - QPoint(1, 0));
    QCOMPARE(f.window.pos(), place);
    QTest::mouseMove(viewport, start + step);
    QCOMPARE(f.window.pos(), place + step);
    // The window has come along, so that the pointer is where it was on it.
    QTest::mouseMove(viewport, start + step);
    QCOMPARE(f.window.pos(), place + 2 * step);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, start);
    QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
    QTest::mouseMove(viewport, f.at(7));
    QCOMPARE(f.window.pos(), place + 2 * step);
}

void tst_BVTableViewEvents::dragOfARowSelects()
{
    Fixture f(6);
    QWidget *const viewport = f.table.viewport();
    const QPoint place = f.window.pos();
    QTest::mousePress(viewport, Qt::LeftButton, {}, f.at(1));
    // QTest moves no pressed button.
    for (const int row : {2, 3}) {
        QMouseEvent move(QEvent::MouseMove, f.at(row), viewport->mapToGlobal(f.at(row)), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(viewport, &move);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, f.at(3));
    QCOMPARE(f.window.pos(), place);
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2, 3}));
}

void tst_BVTableViewEvents::clickOnTheBackgroundDeselects()
{
    Fixture f(3);
    f.table.selectRowIndexes({1}, false);
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, Qt::ControlModifier, f.at(6));
    QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, {}, f.at(6));
    QCOMPARE(f.table.selectedRowIndexes(), Rows());
}

void tst_BVTableViewEvents::anyFilesAreOfferedAsACopy_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("a file") << QStringList{QStringLiteral("/w/a.css")};
    QTest::newRow("a file that cannot be used") << QStringList{QStringLiteral("/w/notes.txt")};
    QTest::newRow("a folder") << QStringList{QStringLiteral("/tmp")};
    QTest::newRow("a file among links")
        << QStringList{QStringLiteral("https://example.org/"), QStringLiteral("/w/a.css")};
}

void tst_BVTableViewEvents::anyFilesAreOfferedAsACopy()
{
    QFETCH(const QStringList, paths);
    Fixture f(0);
    const auto data = files(paths);
    QCOMPARE(enter(f, *data), (Answer{true, Qt::CopyAction}));
    QCOMPARE(f.picture.imageName(), QStringLiteral("dropP"));
    QCOMPARE(moveOver(f, *data), (Answer{true, Qt::CopyAction}));
    QCOMPARE(f.target.validated, 2);
}

void tst_BVTableViewEvents::whatIsNoFileIsRefused_data()
{
    QTest::addColumn<QStringList>("addresses"); // none: plain text
    QTest::newRow("text") << QStringList();
    QTest::newRow("a web link") << QStringList{QStringLiteral("https://example.org/a.css")};
    QTest::newRow("links") << QStringList{QStringLiteral("mailto:a@example.org"),
                                          QStringLiteral("sftp://b/a.css")};
}

void tst_BVTableViewEvents::whatIsNoFileIsRefused()
{
    QFETCH(const QStringList, addresses);
    for (const int rows : {0, 3}) {
        Fixture f(rows);
        const auto data = addresses.isEmpty() ? text() : files(addresses);
        QVERIFY(!enter(f, *data).accepted);
        QVERIFY(!moveOver(f, *data).accepted);
        QVERIFY(!drop(f, *data).accepted);
        QCOMPARE(f.target.validated, 0);
        QCOMPARE(f.target.drops, 0);
        QCOMPARE(f.picture.imageName(), QStringLiteral("dropN"));
    }
}

void tst_BVTableViewEvents::moveOnlyIsRefused()
{
    // A source that only moves would delete what it believes to be elsewhere now.
    Fixture f(0);
    const auto data = files({QStringLiteral("/w/a.css")});
    QVERIFY(!enter(f, *data, Qt::MoveAction).accepted);
    QVERIFY(!drop(f, *data, Qt::MoveAction).accepted);
    QCOMPARE(f.target.dropped, QStringList());
}

void tst_BVTableViewEvents::leavingPutsThePictureBack()
{
    Fixture f(0);
    enter(f, *files({QStringLiteral("/w/a.css")}));
    QCOMPARE(f.picture.imageName(), QStringLiteral("dropP"));
    leave(f);
    QCOMPARE(f.picture.imageName(), QStringLiteral("dropN"));
    // The picture may be gone before the table.
    BVTableView table;
    auto picture = std::make_unique<BVImageView>();
    table.setDropView(picture.get());
    QCOMPARE(table.dropView(), picture.get());
    picture.reset();
    QCOMPARE(table.dropView(), nullptr);
    QDragLeaveEvent event;
    QApplication::sendEvent(table.viewport(), &event);
}

void tst_BVTableViewEvents::dropIsHandedOn()
{
    Fixture f(2);
    const QStringList paths{QStringLiteral("/w/a one.css"), QStringLiteral("/w/notes.txt")};
    const auto data = files(paths);
    enter(f, *data);
    QCOMPARE(drop(f, *data), (Answer{true, Qt::CopyAction}));
    QCOMPARE(f.target.dropped, paths);
    QCOMPARE(f.picture.imageName(), QStringLiteral("dropN"));
}

void tst_BVTableViewEvents::nothingIsTakenWithoutATarget()
{
    Fixture f(0);
    f.table.setDropTarget(nullptr);
    const auto data = files({QStringLiteral("/w/a.css")});
    QVERIFY(!enter(f, *data).accepted);
    QVERIFY(!drop(f, *data).accepted);
}

void tst_BVTableViewEvents::dropHighlightComesAndGoes()
{
    Fixture f(3);
    const QImage before = painted(f);
    const auto data = files({QStringLiteral("/w/a.css")});
    enter(f, *data);
    QVERIFY(painted(f) != before);
    leave(f);
    QCOMPARE(painted(f), before);
    enter(f, *data);
    drop(f, *data);
    QCOMPARE(painted(f), before);
}

void tst_BVTableViewEvents::keyboardFocusShows()
{
    Fixture f(3);
    f.table.selectRowIndexes({0}, false);
    f.window.activateWindow();
    f.table.setFocus(Qt::MouseFocusReason);
    QTRY_VERIFY(f.table.hasFocus());
    const QImage before = painted(f);
    f.table.clearFocus();
    f.table.setFocus(Qt::TabFocusReason);
    QVERIFY(painted(f) != before);
    f.table.clearFocus();
    QCOMPARE(painted(f), before);
}

void tst_BVTableViewEvents::tabSelectsTheCurrentRow()
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

BREVANT_TEST(tst_BVTableViewEvents, QApplication)
#include "tst_BVTableViewEvents.moc"
