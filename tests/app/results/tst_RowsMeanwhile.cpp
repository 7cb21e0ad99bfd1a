// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowFixture.h"
#include "tests/TestClass.h"

#include <QHeaderView>
#include <QScrollBar>

using namespace brevant;
using namespace brevant::test;
using Column = ResultModel::Column;
using State = ResultRow::State;

/// What the user of Results sees while a run goes on and rows come.
class tst_RowsMeanwhile final : public WindowFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<InquiryFixture>();
        m_bench->runs.start(1, u"Classic compressors"_s);
        open();
    }

    void cleanup() { m_window.reset(); }

    void whatTheUserLooksAtStays_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<Qt::SortOrder>("order");
        QTest::newRow("as listed") << -1 << Qt::AscendingOrder;
        QTest::newRow("by name") << int(Column::Name) << Qt::AscendingOrder;
        QTest::newRow("by name, from the last") << int(Column::Name) << Qt::DescendingOrder;
        QTest::newRow("by state") << int(Column::State) << Qt::AscendingOrder;
        QTest::newRow("by state, from the best") << int(Column::State) << Qt::DescendingOrder;
    }

    void whatTheUserLooksAtStays()
    {
        QFETCH(int, column);
        QFETCH(Qt::SortOrder, order);
        addFiles(0, 100);
        table()->horizontalHeader()->setSortIndicator(column, order);
        QTRY_VERIFY(table()->verticalScrollBar()->maximum() > 50);
        table()->verticalScrollBar()->setValue(40);
        const QString top = atTheTop();
        table()->selectRow(45);
        const QString selected = table()->currentFile()->source;
        const QRect place = table()->visualRect(table()->currentIndex());
        addFiles(100, 200);
        QCOMPARE(atTheTop(), top);
        QCOMPARE(table()->currentFile()->source, selected);
        QCOMPARE(table()->visualRect(table()->currentIndex()), place);
    }

    void theFirstRowsAreSeenAtTheTop()
    {
        table()->horizontalHeader()->setSortIndicator(Column::Name, Qt::DescendingOrder);
        addFiles(0, 100);
        QCOMPARE(atTheTop(), u"f298.css"_s);
    }

    void theSelectedFileIsFoundAgain()
    {
        addFiles(0, 100);
        table()->selectRow(0);
        table()->horizontalHeader()->setSortIndicator(Column::Name, Qt::DescendingOrder);
        QTRY_VERIFY(isInSight(table()->currentIndex()));
        table()->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        m_bench->runs.startFile(1, u"/w/bad.js"_s, 101);
        m_bench->runs.endFile(1, failure(u"/w/bad.js"_s, u"Unexpected"_s, 1, 1));
        table()->selectRow(100);
        QTRY_VERIFY(isInSight(table()->currentIndex()));
        m_bench->runs.end(1, {}); // which sorts them, the worst first
        QVERIFY(table()->currentIndex().row() < 20);
        QTRY_VERIFY(isInSight(table()->currentIndex()));
    }

private:
    /// Every other name goes before those that are there already.
    void addFiles(int from, int to)
    {
        for (int i = from; i < to; ++i) {
            const QString source = u"/w/f%1.css"_s.arg(i % 2 == 0 ? 200 + i : 200 - i, 3, 10, QChar(u'0'));
            m_bench->runs.startFile(1, source, to);
            m_bench->runs.endFile(1, row(i % 7 == 0 ? State::Failed : State::Done, source, 100, 50));
        }
    }

    [[nodiscard]] QString atTheTop() const
    {
        return table()->indexAt(QPoint(1, 1)).siblingAtColumn(Column::Name).data().toString();
    }

    [[nodiscard]] bool isInSight(const QModelIndex &index) const
    {
        return table()->viewport()->rect().contains(table()->visualRect(index).center());
    }
};

BREVANT_TEST(tst_RowsMeanwhile, QApplication)
#include "tst_RowsMeanwhile.moc"
