// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

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
    data->setText(u"/w/a.css"_s);
    data->setHtml(u"<b>a</b>"_s);
    return data;
}

constexpr Qt::DropActions usual = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

struct Answer {
    bool accepted;
    Qt::DropAction action;
    bool operator==(const Answer &) const = default;
};

// Each event begins as accepted and as a move, which the table has to change.
Answer enter(Fixture &f, const QMimeData &data, Qt::DropActions actions = usual)
{
    QDragEnterEvent event({200, 100}, actions, &data, Qt::LeftButton, {});
    event.setDropAction(Qt::MoveAction);
    event.accept();
    QApplication::sendEvent(f.table.viewport(), &event);
    return {event.isAccepted(), event.dropAction()};
}

// QApplication would deliver these two only after an accepted drag.
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

} // namespace

/// Clicks and drags, of the background, of rows and of files from elsewhere.
class tst_BVTableViewDrags : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void doubleClick_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("row");
        QTest::newRow("on a row") << 5 << 2;
        QTest::newRow("below the last row") << 5 << 8;
        QTest::newRow("in the empty table") << 0 << 4;
    }

    void doubleClick()
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

    void dragOfTheBackgroundMovesTheWindow()
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
        // The window has moved along, so that the pointer is where it was on it.
        QTest::mouseMove(viewport, start + step);
        QCOMPARE(f.window.pos(), place + 2 * step);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, start);
        QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
        QTest::mouseMove(viewport, f.at(7));
        QCOMPARE(f.window.pos(), place + 2 * step);
    }

    void dragOfARowSelects()
    {
        Fixture f(6);
        QWidget *const viewport = f.table.viewport();
        const QPoint place = f.window.pos();
        QTest::mousePress(viewport, Qt::LeftButton, {}, f.at(1));
        // QTest::mouseMove() presses no button.
        for (const int row : {2, 3}) {
            QMouseEvent move(QEvent::MouseMove, f.at(row), viewport->mapToGlobal(f.at(row)), Qt::NoButton,
                             Qt::LeftButton, {});
            QApplication::sendEvent(viewport, &move);
        }
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, f.at(3));
        QCOMPARE(f.window.pos(), place);
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 2, 3}));
    }

    void clickOnTheBackgroundDeselects()
    {
        Fixture f(3);
        f.table.selectRowIndexes({1}, false);
        QTest::mouseClick(f.table.viewport(), Qt::LeftButton, Qt::ControlModifier, f.at(6));
        QCOMPARE(f.table.selectedRowIndexes(), Rows{1});
        QTest::mouseClick(f.table.viewport(), Qt::LeftButton, {}, f.at(6));
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
    }

    void anyFilesAreOfferedAsACopy_data()
    {
        QTest::addColumn<QStringList>("paths");
        QTest::newRow("a file") << QStringList{u"/w/a.css"_s};
        QTest::newRow("a file that cannot be used") << QStringList{u"/w/notes.txt"_s};
        QTest::newRow("a folder") << QStringList{u"/tmp"_s};
        QTest::newRow("a file among links") << QStringList{u"https://example.org/"_s, u"/w/a.css"_s};
    }

    void anyFilesAreOfferedAsACopy()
    {
        QFETCH(const QStringList, paths);
        Fixture f(0);
        const auto data = files(paths);
        QCOMPARE(enter(f, *data), (Answer{true, Qt::CopyAction}));
        QCOMPARE(f.picture.imageName(), u"dropP"_s);
        QCOMPARE(moveOver(f, *data), (Answer{true, Qt::CopyAction}));
        QCOMPARE(f.target.validated, 2);
    }

    void whatIsNoFileIsRefused_data()
    {
        QTest::addColumn<QStringList>("addresses"); // none: plain text
        QTest::newRow("text") << QStringList();
        QTest::newRow("a web link") << QStringList{u"https://example.org/a.css"_s};
        QTest::newRow("links") << QStringList{u"mailto:a@example.org"_s, u"sftp://b/a.css"_s};
    }

    void whatIsNoFileIsRefused()
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
            QCOMPARE(f.picture.imageName(), u"dropN"_s);
        }
    }

    void moveOnlyIsRefused()
    {
        // A source that can only move would delete the files, as it believes them to be elsewhere.
        Fixture f(0);
        const auto data = files({u"/w/a.css"_s});
        QVERIFY(!enter(f, *data, Qt::MoveAction).accepted);
        QVERIFY(!drop(f, *data, Qt::MoveAction).accepted);
        QCOMPARE(f.target.dropped, QStringList());
    }

    void leavingPutsThePictureBack()
    {
        Fixture f(0);
        enter(f, *files({u"/w/a.css"_s}));
        QCOMPARE(f.picture.imageName(), u"dropP"_s);
        leave(f);
        QCOMPARE(f.picture.imageName(), u"dropN"_s);
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

    void dropIsHandedOn()
    {
        Fixture f(2);
        const QStringList paths{u"/w/a one.css"_s, u"/w/notes.txt"_s};
        const auto data = files(paths);
        enter(f, *data);
        QCOMPARE(drop(f, *data), (Answer{true, Qt::CopyAction}));
        QCOMPARE(f.target.dropped, paths);
        QCOMPARE(f.picture.imageName(), u"dropN"_s);
    }

    void nothingIsTakenWithoutATarget()
    {
        Fixture f(0);
        f.table.setDropTarget(nullptr);
        const auto data = files({u"/w/a.css"_s});
        QVERIFY(!enter(f, *data).accepted);
        QVERIFY(!drop(f, *data).accepted);
    }

    void dropHighlightComesAndGoes()
    {
        Fixture f(3);
        const QImage before = f.onScreen();
        const auto data = files({u"/w/a.css"_s});
        enter(f, *data);
        QVERIFY(f.onScreen() != before);
        leave(f);
        QCOMPARE(f.onScreen(), before);
        enter(f, *data);
        drop(f, *data);
        QCOMPARE(f.onScreen(), before);
    }
};

BREVANT_TEST(tst_BVTableViewDrags, QApplication)
#include "tst_BVTableViewDrags.moc"
