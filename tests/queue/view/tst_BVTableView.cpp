// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"
#include "widgets/Contrast.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTest>

using namespace brevant;
using namespace brevant::test;

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

/// Counts the cells that are painted.
class PaintCounter final : public QStyledItemDelegate {
public:
    void paint(QPainter *, const QStyleOptionViewItem &, const QModelIndex &) const override { ++paints; }
    mutable int paints = 0;
};

/// Counts what is told of the model and of its selection.
class ChangeCounter final {
public:
    explicit ChangeCounter(const Fixture &f)
        : selection(f.table.selectionModel(), &QItemSelectionModel::selectionChanged),
          m_resets(&f.queue, &FileQueue::modelReset), m_removals(&f.queue, &FileQueue::rowsRemoved),
          m_insertions(&f.queue, &FileQueue::rowsInserted), m_moves(&f.queue, &FileQueue::rowsMoved),
          m_layouts(&f.queue, &FileQueue::layoutChanged)
    {
    }

    [[nodiscard]] int ofModel() const
    {
        return static_cast<int>(m_resets.count() + m_removals.count() + m_insertions.count() +
                                m_moves.count() + m_layouts.count());
    }

    QSignalSpy selection;

private:
    QSignalSpy m_resets;
    QSignalSpy m_removals;
    QSignalSpy m_insertions;
    QSignalSpy m_moves;
    QSignalSpy m_layouts;
};

} // namespace

class tst_BVTableView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void oneColumnAsWideAsTheView();
    void selectedRowsAscend();
    void selectedRowIsTheLastAdded();
    void selectionIsPartOfTheRowsThatAreThere();
    void selectingDoesNotScroll();
    void selectAllAndDeselectAll();
    void selectionChangesAreTold();
    void reloadKeepsTheSelectedEntries_data();
    void reloadKeepsTheSelectedEntries();
    void reloadAfterAddingKeepsAll();
    void reloadKeepsTheScrollPosition();
    void keyboardGoesOnWhereTheRemovedRowWas();
    void framesOfCells();
    void bothLinesAreWhole();
    void paletteIsReadable_data();
    void paletteIsReadable();
    void selectedRowsAreFilled();
    void rowsAboveTheClipRectAreFilledToo();
    void nothingIsFilledBelowTheLastRow();
    void selectionIsNotPaintedByTheStyle();
    void transparentUntilGivenAColour();
    void hundredThousandRows_data();
    void hundredThousandRows();
};

void tst_BVTableView::oneColumnAsWideAsTheView()
{
    Fixture f(3);
    QVERIFY(f.table.horizontalHeader()->isHidden());
    QVERIFY(f.table.verticalHeader()->isHidden());
    QVERIFY(!f.table.showGrid());
    QCOMPARE(f.table.columnWidth(0), f.table.viewport()->width());
    f.table.resize(250, 300);
    QTRY_COMPARE(f.table.columnWidth(0), f.table.viewport()->width());
    QCOMPARE(f.table.rowHeight(0), 40);
    QVERIFY(!f.table.accessibleName().isEmpty());
}

void tst_BVTableView::selectedRowsAscend()
{
    Fixture f(10);
    QCOMPARE(f.table.selectedRowIndexes(), Rows());
    f.table.selectRowIndexes({7, 2, 3}, false);
    f.table.selectRowIndexes({5}, true);
    f.table.selectRowIndexes({2, 4}, true);
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{2, 3, 4, 5, 7}));
    f.table.selectRowIndexes({9}, false);
    QCOMPARE(f.table.selectedRowIndexes(), Rows{9});
}

void tst_BVTableView::selectedRowIsTheLastAdded()
{
    Fixture f(10);
    QCOMPARE(f.table.selectedRow(), -1);
    f.table.selectRowIndexes({8}, false);
    QCOMPARE(f.table.selectedRow(), 8);
    f.table.selectRowIndexes({1}, true);
    QCOMPARE(f.table.selectedRow(), 1);
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, Qt::ControlModifier, f.at(5));
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 5, 8}));
    QCOMPARE(f.table.selectedRow(), 5);
    // Without it, another one that is still selected.
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, Qt::ControlModifier, f.at(5));
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{1, 8}));
    QCOMPARE(f.table.selectedRow(), 8);
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, Qt::ShiftModifier, f.at(2));
    QCOMPARE(f.table.selectedRow(), 2);
    // Selected anew, though it was selected.
    f.table.selectRowIndexes({4}, true);
    QCOMPARE(f.table.selectedRow(), 4);
    f.table.deselectAll();
    QCOMPARE(f.table.selectedRow(), -1);
}

void tst_BVTableView::selectionIsPartOfTheRowsThatAreThere()
{
    Fixture f(3);
    f.table.selectRowIndexes({-1, 2, 3, 100}, false);
    QCOMPARE(f.table.selectedRowIndexes(), Rows{2});
    QCOMPARE(f.table.selectedRow(), 2);
    f.table.selectRowIndexes({77}, true);
    QCOMPARE(f.table.selectedRowIndexes(), Rows{2});
    QCOMPARE(f.table.selectedRow(), 2);
    f.table.selectRowIndexes({}, false);
    QCOMPARE(f.table.selectedRowIndexes(), Rows());
    BVTableView withoutModel;
    withoutModel.selectRowIndexes({0}, false);
    QCOMPARE(withoutModel.selectedRowIndexes(), Rows());
}

void tst_BVTableView::selectingDoesNotScroll()
{
    Fixture f(100);
    f.table.selectRowIndexes({90}, false);
    QCOMPARE(f.table.verticalScrollBar()->value(), 0);
    f.table.scrollRowToVisible(90);
    QVERIFY(f.table.verticalScrollBar()->value() > 0);
    QVERIFY(f.table.viewport()->rect().contains(f.table.frameOfCell(90)));
}

void tst_BVTableView::selectAllAndDeselectAll()
{
    Fixture f(4);
    f.table.selectAllRows();
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{0, 1, 2, 3}));
    QVERIFY(f.table.selectedRow() >= 0);
    f.table.deselectAll();
    QCOMPARE(f.table.selectedRowIndexes(), Rows());
}

void tst_BVTableView::selectionChangesAreTold()
{
    Fixture f(4);
    f.table.selectRowIndexes({1}, false);
    QCOMPARE(f.selectionChanges.count(), 1);
    f.table.selectRowIndexes({1}, true);
    QCOMPARE(f.selectionChanges.count(), 1);
    QTest::mouseClick(f.table.viewport(), Qt::LeftButton, {}, f.at(2));
    QCOMPARE(f.selectionChanges.count(), 2);
    f.queue.removeAt({0});
    f.table.reloadData();
    QCOMPARE(f.selectionChanges.count(), 3);
    f.queue.removeAt({2});
    f.table.reloadData();
    QCOMPARE(f.selectionChanges.count(), 3);
    f.queue.clear();
    f.table.reloadData();
    QCOMPARE(f.selectionChanges.count(), 4);
    QCOMPARE(f.table.selectedRow(), -1);
}

void tst_BVTableView::reloadKeepsTheSelectedEntries_data()
{
    QTest::addColumn<Rows>("selected");
    QTest::addColumn<Rows>("removed");
    QTest::addColumn<Rows>("expected");
    QTest::addColumn<int>("last");
    QTest::newRow("others removed") << Rows{1, 4} << Rows{0, 2} << Rows{0, 2} << 2;
    QTest::newRow("the selected removed") << Rows{1, 2} << Rows{1, 2} << Rows() << -1;
    QTest::newRow("some of the selected removed") << Rows{1, 2, 5} << Rows{2} << Rows{1, 4} << 4;
    QTest::newRow("the last one removed") << Rows{1, 2, 5} << Rows{5} << Rows{1, 2} << 2;
    QTest::newRow("nothing selected") << Rows() << Rows{0} << Rows() << -1;
    QTest::newRow("all removed") << Rows{0, 5} << Rows{0, 1, 2, 3, 4, 5} << Rows() << -1;
}

void tst_BVTableView::reloadKeepsTheSelectedEntries()
{
    QFETCH(const Rows, selected);
    QFETCH(const Rows, removed);
    QFETCH(const Rows, expected);
    QFETCH(const int, last);
    Fixture f(6);
    f.table.selectRowIndexes(selected, false);
    f.queue.removeAt(removed);
    f.table.reloadData();
    QCOMPARE(f.table.selectedRowIndexes(), expected);
    QCOMPARE(f.table.selectedRow(), last);
}

void tst_BVTableView::reloadAfterAddingKeepsAll()
{
    Fixture f(3);
    f.table.selectRowIndexes({2, 0}, false);
    f.add(5);
    f.table.reloadData();
    QCOMPARE(f.queue.rowCount(), 8);
    QCOMPARE(f.table.selectedRowIndexes(), (Rows{0, 2}));
    QCOMPARE(f.table.selectedRow(), 0);
    QCOMPARE(f.selectionChanges.count(), 1);
}

void tst_BVTableView::reloadKeepsTheScrollPosition()
{
    Fixture f(200);
    f.table.verticalScrollBar()->setValue(1000);
    f.queue.removeAt({150});
    f.table.reloadData();
    QCOMPARE(f.table.verticalScrollBar()->value(), 1000);
    f.add(1);
    f.table.reloadData();
    QCOMPARE(f.table.verticalScrollBar()->value(), 1000);
}

void tst_BVTableView::keyboardGoesOnWhereTheRemovedRowWas()
{
    Fixture f(6);
    f.table.selectRowIndexes({3}, false);
    f.queue.removeAt({3});
    f.table.reloadData();
    QCOMPARE(f.table.currentIndex().row(), 3);
    f.table.selectRowIndexes({4}, false);
    f.queue.removeAt({0, 4});
    f.table.reloadData();
    QCOMPARE(f.table.currentIndex().row(), 2);
}

void tst_BVTableView::framesOfCells()
{
    Fixture f(100);
    const QRect frame = f.table.frameOfCell(2);
    QCOMPARE(frame.left(), 0);
    QCOMPARE(frame.width(), f.table.viewport()->width());
    QCOMPARE(frame.top(), 80);
    QCOMPARE(frame.height(), 40);
    QCOMPARE(f.table.frameOfCellOnScreen(2), frame.translated(f.table.viewport()->mapToGlobal(QPoint())));
    f.table.verticalScrollBar()->setValue(40);
    QCOMPARE(f.table.frameOfCell(2), frame.translated(0, -40));
    QVERIFY(f.table.frameOfCell(100).isEmpty());
    QVERIFY(f.table.frameOfCell(-1).isEmpty());
    QVERIFY(f.table.frameOfCellOnScreen(100).isEmpty());
}

/// Letters with all that can be above and below them: neither line runs into the other, or out of its row.
void tst_BVTableView::bothLinesAreWhole()
{
    const QString letters = QStringLiteral("ÅÉŲgjpqyçß");
    FileQueue queue;
    queue.append(QStringLiteral("/%1/%1.css").arg(letters));
    queue.reload();
    BVTableView table;
    table.setModel(&queue);
    QFont font(QStringLiteral("DejaVu Sans Mono"));
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

void tst_BVTableView::paletteIsReadable_data()
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

void tst_BVTableView::paletteIsReadable()
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

void tst_BVTableView::selectedRowsAreFilled()
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

void tst_BVTableView::rowsAboveTheClipRectAreFilledToo()
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

void tst_BVTableView::nothingIsFilledBelowTheLastRow()
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

void tst_BVTableView::selectionIsNotPaintedByTheStyle()
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

void tst_BVTableView::transparentUntilGivenAColour()
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

/// None of the steps here may be taken once for each row, or each range, with work for all the others.
void tst_BVTableView::hundredThousandRows_data()
{
    QTest::addColumn<int>("step");
    QTest::newRow("one range") << 1;
    QTest::newRow("as many ranges as there can be") << 2;
}

void tst_BVTableView::hundredThousandRows()
{
    QFETCH(const int, step);
    constexpr int count = 100000;
    Fixture f(count);
    PaintCounter cell;
    f.table.setItemDelegateForColumn(0, &cell);
    ChangeCounter changes(f);
    Rows chosen;
    for (int row = 0; row < count; row += step)
        chosen.push_back(row);
    if (step == 1)
        f.table.selectAllRows();
    else
        f.table.selectRowIndexes(chosen, false);
    QCOMPARE(f.table.selectedRowIndexes(), chosen);
    QCOMPARE(changes.selection.count(), 1);
    QCOMPARE(f.selectionChanges.count(), 1);

    f.table.scrollRowToVisible(count - 1);
    QImage image(f.window.size(), QImage::Format_RGB32);
    cell.paints = 0;
    f.window.render(&image);
    QCOMPARE(cell.paints, 10); // those in view
    QCOMPARE(image.pixel(360, 395 - 40 * (step - 1)), fill);

    f.queue.removeAt(chosen);
    f.table.reloadData();
    QCOMPARE(f.queue.rowCount(), count - static_cast<int>(chosen.size()));
    QCOMPARE(f.table.selectedRowIndexes(), Rows());
    QCOMPARE(f.selectionChanges.count(), 2);
    QCOMPARE(changes.selection.count(), 1);
    QCOMPARE(changes.ofModel(), 1);
}

BREVANT_TEST(tst_BVTableView, QApplication)
#include "tst_BVTableView.moc"
