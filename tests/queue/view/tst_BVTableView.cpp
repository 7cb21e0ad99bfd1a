// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/queue/view/TableFixture.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// Counts the cells that are painted.
class PaintCounter final : public QStyledItemDelegate {
public:
    void paint(QPainter *, const QStyleOptionViewItem &, const QModelIndex &) const override { ++paints; }
    mutable int paints = 0;
};

/// Counts the signals of the model and of its selection.
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
    void oneColumnAsWideAsTheView()
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

    void selectedRowsAscend()
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

    void selectedRowIsTheLastAdded()
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
        // When it is deselected, another one that is still selected.
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

    void selectionIsPartOfTheRowsThatAreThere()
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

    void selectingDoesNotScroll()
    {
        Fixture f(100);
        f.table.selectRowIndexes({90}, false);
        QCOMPARE(f.table.verticalScrollBar()->value(), 0);
        f.table.scrollRowToVisible(90);
        QVERIFY(f.table.verticalScrollBar()->value() > 0);
        QVERIFY(f.table.viewport()->rect().contains(f.table.frameOfCell(90)));
    }

    void selectAllAndDeselectAll()
    {
        Fixture f(4);
        f.table.selectAllRows();
        QCOMPARE(f.table.selectedRowIndexes(), (Rows{0, 1, 2, 3}));
        QVERIFY(f.table.selectedRow() >= 0);
        f.table.deselectAll();
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
    }

    void selectionChangesAreTold()
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

    void reloadKeepsTheSelectedEntries_data()
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

    void reloadKeepsTheSelectedEntries()
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

    void reloadAfterAddingKeepsAll()
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

    void reloadKeepsTheScrollPosition()
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

    void keyboardGoesOnWhereTheRemovedRowWas()
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

    void framesOfCells()
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

    /// None of the steps may take time that grows with the square of the rows or ranges.
    void hundredThousandRows_data()
    {
        QTest::addColumn<int>("step");
        QTest::newRow("one range") << 1;
        QTest::newRow("as many ranges as there can be") << 2;
    }

    void hundredThousandRows()
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
        QCOMPARE(image.pixel(360, 395 - 40 * (step - 1)), qRgb(204, 238, 255));

        f.queue.removeAt(chosen);
        f.table.reloadData();
        QCOMPARE(f.queue.rowCount(), count - static_cast<int>(chosen.size()));
        QCOMPARE(f.table.selectedRowIndexes(), Rows());
        QCOMPARE(f.selectionChanges.count(), 2);
        QCOMPARE(changes.selection.count(), 1);
        QCOMPARE(changes.ofModel(), 1);
    }
};

BREVANT_TEST(tst_BVTableView, QApplication)
#include "tst_BVTableView.moc"
