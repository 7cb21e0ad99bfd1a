// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"
#include "widgets/Contrast.h"

#include <QPainter>
#include <QScrollBar>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

constexpr QRgb fill = qRgb(204, 238, 255);

QImage painted(Fixture &f)
{
    QImage image(f.window.size(), QImage::Format_RGB32);
    f.window.render(&image);
    return image;
}

/// The colour at the right end of the rows, where no text is.
QRgb groundAt(const QImage &image, int y)
{
    return image.pixel(360, y);
}

} // namespace

class tst_BVTableViewPainting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Letters with accents and descenders: neither line runs into the other or out of its row.
    void bothLinesAreWhole()
    {
        const QString letters = u"ÅÉŲgjpqyçß"_s;
        FileQueue queue;
        queue.append(u"/%1/%1.css"_s.arg(letters));
        queue.reload();
        BVTableView table;
        table.setModel(&queue);
        QFont font(u"DejaVu Sans Mono"_s);
        const auto lineFits = [&font, &letters](int pixels, qreal height) {
            font.setPixelSize(pixels);
            const QFontMetricsF metrics(font);
            const QRectF ink = metrics.tightBoundingRect(letters);
            return metrics.height() <= height && -ink.top() <= metrics.ascent() && ink.bottom() <= height;
        };
        QVERIFY(lineFits(13, table.frameOfCell(0).height() * 0.4));
        QVERIFY(lineFits(11, table.frameOfCell(0).height() * 0.6));

        // And so it is painted: the row between the two lines is empty, unless a lower letter reaches it.
        table.setBackgroundColor(QColor(Qt::white));
        table.setItemDelegateForColumn(0, new ImageTextCell(&table));
        table.resize(400, 40);
        const QImage image = table.grab().toImage();
        const auto hasInk = [&image](int y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != qRgb(255, 255, 255))
                    return true;
            }
            return false;
        };
        int lines = hasInk(0) ? 1 : 0;
        for (int y = 1; y < 40; ++y)
            lines += hasInk(y) && !hasInk(y - 1) ? 1 : 0;
        QVERIFY(!hasInk(39));
        QCOMPARE(lines, 2);
    }

    void paletteIsReadable_data()
    {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("disabled");
        QTest::addColumn<bool>("textStays");
        QTest::addColumn<bool>("disabledStays");
        QTest::newRow("readable") << QColor(20, 20, 60) << QColor(90, 80, 100) << true << true;
        QTest::newRow("too light a grey") << QColor(Qt::black) << QColor(190, 190, 190) << true << false;
        QTest::newRow("dark theme") << QColor(240, 240, 240) << QColor(150, 150, 150) << false << false;
        QTest::newRow("translucent") << QColor(0, 0, 0, 200) << QColor(0, 0, 0, 90) << false << false;
    }

    void paletteIsReadable()
    {
        QFETCH(const QColor, text);
        QFETCH(const QColor, disabled);
        QFETCH(const bool, textStays);
        QFETCH(const bool, disabledStays);
        BVTableView table;
        QPalette platform;
        platform.setColor(QPalette::Text, text);
        platform.setColor(QPalette::Disabled, QPalette::Text, disabled);
        table.setPalette(platform);
        QStyleOptionViewItem option;
        table.initViewItemOption(&option);
        const QPalette &own = option.palette;
        QCOMPARE(own.color(QPalette::Active, QPalette::Text) == text, textStays);
        QCOMPARE(own.color(QPalette::Disabled, QPalette::Text) == disabled, disabledStays);
        for (const QColor &ground : {QColor(Qt::white), QColor(fill)}) {
            QVERIFY(contrast(own.color(QPalette::Active, QPalette::Text), ground) >= 4.5);
            QVERIFY(contrast(own.color(QPalette::Disabled, QPalette::Text), ground) >= 4.5);
        }
        QVERIFY(own.color(QPalette::Disabled, QPalette::Text) != own.color(QPalette::Active, QPalette::Text));
    }

    void selectedRowsAreFilled()
    {
        Fixture f(5);
        f.table.selectRowIndexes({1, 2, 4}, false);
        const QImage image = painted(f);
        const QRgb white = qRgb(255, 255, 255);
        for (const int row : {0, 3})
            QCOMPARE(groundAt(image, 40 * row + 20), white);
        for (const int row : {1, 2, 4}) {
            const int top = 40 * row;
            QCOMPARE(groundAt(image, top), white);
            QCOMPARE(groundAt(image, top + 1), fill);
            QCOMPARE(groundAt(image, top + 38), fill);
            QCOMPARE(groundAt(image, top + 39), white);
            QCOMPARE(image.pixel(1, top + 1), white);
            QCOMPARE(image.pixel(2, top + 1), fill); // no rounding
            QCOMPARE(image.pixel(397, top + 38), fill);
            QCOMPARE(image.pixel(398, top + 38), white);
        }
    }

    void rowsAboveTheClipRectAreFilledToo()
    {
        Fixture f(20);
        f.table.selectRowIndexes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, false);
        QImage image(400, 400, QImage::Format_RGB32);
        const auto fillsFor = [&](const QRect &clipRect, const QRect &clip) {
            image.fill(Qt::white);
            QPainter painter(&image);
            if (clip.isValid())
                painter.setClipRect(clip);
            f.table.highlightSelectionInClipRect(painter, clipRect);
            painter.end();
            Rows rows;
            for (int row = 0; row < 10; ++row) {
                if (groundAt(image, 40 * row + 20) == fill)
                    rows.push_back(row);
            }
            return rows;
        };
        const QRect fiveToSeven(0, 200, 400, 120);
        QCOMPARE(fillsFor(fiveToSeven, {}), (Rows{0, 1, 2, 3, 4, 5, 6, 7}));
        QCOMPARE(fillsFor(fiveToSeven, fiveToSeven), (Rows{5, 6, 7}));
        // Rows 0 to 9 selected and 5 to 14 in view: those that show are filled.
        f.table.verticalScrollBar()->setValue(200);
        f.table.selectRowIndexes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, false);
        QCOMPARE(fillsFor(f.table.viewport()->rect(), {}), (Rows{0, 1, 2, 3, 4}));
        QCOMPARE(painted(f).pixel(360, 20), fill);
        QCOMPARE(painted(f).pixel(360, 40 * 4 + 20), fill);
        QVERIFY(painted(f).pixel(360, 40 * 5 + 20) != fill);
    }

    void nothingIsFilledBelowTheLastRow()
    {
        Fixture f(3);
        f.table.selectAllRows();
        QImage image(400, 400, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        f.table.highlightSelectionInClipRect(painter, QRect(0, 200, 400, 100));
        painter.end();
        QCOMPARE(groundAt(image, 20), qRgb(255, 255, 255));
        QCOMPARE(groundAt(painted(f), 130), qRgb(255, 255, 255));
    }

    void selectionIsNotPaintedByTheStyle()
    {
        Fixture f(3);
        f.window.activateWindow();
        f.table.setFocus();
        f.table.selectRowIndexes({1}, false);
        const QImage image = painted(f);
        const QRgb highlight = f.table.palette().color(QPalette::Highlight).rgb();
        for (int y = 0; y < 160; ++y) {
            for (int x = 0; x < 400; ++x)
                QVERIFY(image.pixel(x, y) != highlight);
        }
    }

    void transparentUntilGivenAColour()
    {
        Fixture f(0);
        QVERIFY(!f.table.backgroundColor().has_value());
        const QRgb behind = f.window.palette().color(QPalette::Window).rgb();
        QCOMPARE(painted(f).pixel(200, 200), behind);
        f.table.setBackgroundColor(QColor(Qt::white));
        QCOMPARE(f.table.backgroundColor(), std::optional<QColor>(Qt::white));
        QCOMPARE(painted(f).pixel(200, 200), qRgb(255, 255, 255));
        f.table.setBackgroundColor(std::nullopt);
        QCOMPARE(painted(f).pixel(200, 200), behind);
        // What is behind shows through on the screen as well.
        QPalette palette = f.picture.palette();
        palette.setColor(QPalette::Window, Qt::red);
        f.picture.setPalette(palette);
        f.picture.setAutoFillBackground(true);
        QCOMPARE(painted(f).pixel(200, 200), qRgb(255, 0, 0));
    }
};

BREVANT_TEST(tst_BVTableViewPainting, QApplication)
#include "tst_BVTableViewPainting.moc"
