// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPlace.h"
#include "tests/TestClass.h"

#include <QTest>

using brevant::previewPlace;

namespace {

constexpr QSize wanted(660, 480);
constexpr QSize window(520, 560);

/// The row of that number in the list of a window with its title and menu.
QRect rowOf(const QRect &frame, int row)
{
    return {frame.left(), frame.top() + 60 + 40 * row, frame.width(), 40};
}

} // namespace

class tst_PreviewPlace final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void besideTheWindow_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QRect>("expected");
        const QRect full(0, 0, 1920, 1080);
        QTest::newRow("right of it") << full << QPoint(100, 200) << QRect(QPoint(632, 240), wanted);
        QTest::newRow("left of it") << full << QPoint(1380, 200) << QRect(QPoint(708, 240), wanted);
        QTest::newRow("right, kept on the screen")
            << full << QPoint(100, -60) << QRect(QPoint(632, 0), wanted);
        QTest::newRow("a panel at the left")
            << QRect(70, 0, 1850, 1080) << QPoint(100, 200) << QRect(QPoint(632, 240), wanted);
        QTest::newRow("narrower at the right")
            << QRect(0, 0, 1280, 800) << QPoint(200, 100) << QRect(732, 140, 548, 480);
        QTest::newRow("narrower at the left")
            << QRect(0, 0, 1280, 800) << QPoint(560, 100) << QRect(0, 140, 548, 480);
        QTest::newRow("below") << QRect(0, 0, 800, 1280) << QPoint(140, 100)
                               << QRect(QPoint(70, 672), wanted);
        QTest::newRow("lower above") << QRect(0, 0, 800, 1000) << QPoint(140, 412) << QRect(70, 0, 660, 400);
    }

    void besideTheWindow()
    {
        QFETCH(const QRect, area);
        QFETCH(const QPoint, at);
        const QRect frame(at, window);
        const QRect place = previewPlace(frame, rowOf(frame, 2), wanted, area);
        QTEST(place, "expected");
        QVERIFY(area.contains(place));
        QVERIFY(!place.intersects(frame));
    }

    void clearOfTheRow_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<int>("row");
        QTest::newRow("1366x768, middle, first row")
            << QRect(0, 0, 1366, 768) << QRect(423, 100, 520, 560) << 0;
        QTest::newRow("1366x768, middle, last row")
            << QRect(0, 0, 1366, 768) << QRect(423, 100, 520, 560) << 11;
        QTest::newRow("a window as large as the screen, first row")
            << QRect(0, 0, 1366, 768) << QRect(0, 0, 1366, 768) << 0;
        QTest::newRow("a window as large as the screen, last row")
            << QRect(0, 0, 1366, 768) << QRect(0, 0, 1366, 768) << 15;
        QTest::newRow("1366x768 at 150 %") << QRect(0, 0, 910, 512) << QRect(195, 10, 520, 460) << 0;
    }

    void clearOfTheRow()
    {
        QFETCH(const QRect, area);
        QFETCH(const QRect, frame);
        QFETCH(const int, row);
        const QRect place = previewPlace(frame, rowOf(frame, row), wanted, area);
        QVERIFY(area.contains(place));
        QVERIFY(!place.intersects(rowOf(frame, row)));
        QVERIFY(place.width() >= 320 && place.height() >= 240);
    }

    void inTheMiddleIfNothingElseServes()
    {
        const QRect area(0, 0, 700, 500);
        // A row in the middle of so small a screen, or none.
        QCOMPARE(previewPlace(area, {0, 230, 700, 40}, wanted, area), QRect(QPoint(20, 10), wanted));
        QCOMPARE(previewPlace(area, {}, wanted, area), QRect(QPoint(20, 10), wanted));
        QCOMPARE(previewPlace(area, {}, wanted, {0, 0, 400, 300}), QRect(0, 0, 400, 300));
    }
};

BREVANT_TEST(tst_PreviewPlace, brevant::test::NoApplication)
#include "tst_PreviewPlace.moc"
