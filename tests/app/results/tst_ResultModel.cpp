// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunMaker.h"
#include "app/results/ResultModel.h"
#include "tests/TestClass.h"

#include <QAbstractItemModelTester>

#include <optional>

using namespace brevant;
using namespace brevant::test;
using Column = ResultModel::Column;
using Shown = ResultModel::Shown;
using State = ResultRow::State;

/// The table of results: sorting, filtering, and a run that goes on under both.
class tst_ResultModel final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_runs = std::make_unique<ResultRuns>();
        m_model = std::make_unique<ResultModel>(*m_runs);
        m_tester.emplace(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void nothing()
    {
        QCOMPARE(m_model->rowCount(), 0);
        m_model->sort(Column::Name);
        m_model->setFilter(Shown::Failed, u"x"_s);
        QCOMPARE(m_model->rowCount(), 0);
    }

    void cells()
    {
        ResultRow done = row(State::Done, u"/w/b.css"_s, 1000, 600);
        done.gzipSize = 1;
        done.seconds = 0.456;
        show({done, failure(u"/w/a.js"_s, u"Unexpected"_s, 68, 58)});
        QCOMPARE(line(0), u"Done|b.css|/w|1 kB|600 bytes|40.0 %|1 byte|–|0.46 s|"_s);
        QCOMPARE(line(1), u"Failed|a.js|/w|100 bytes|–|–|–|–|–|68:58  Unexpected"_s);
        const QModelIndex number = m_model->index(0, Column::Before);
        QCOMPARE(number.data(Qt::TextAlignmentRole).toInt(),
                 int(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter));
        QVERIFY(!m_model->isEmptyColumn(Column::Gzip));
        QVERIFY(m_model->isEmptyColumn(Column::Brotli));
        QVERIFY(!m_model->isEmptyColumn(Column::Message));
    }

    void sorting_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("ascending");
        QTest::addColumn<QString>("descending");
        QTest::newRow("as listed") << -1 << u"b a d c e"_s << u"b a d c e"_s;
        QTest::newRow("the worst first") << int(Column::State) << u"a e d c b"_s << u"b c d e a"_s;
        QTest::newRow("name") << int(Column::Name) << u"a b c d e"_s << u"e d c b a"_s;
        QTest::newRow("folder") << int(Column::Folder) << u"b a c e d"_s << u"d b a c e"_s;
        QTest::newRow("before") << int(Column::Before) << u"d e a b c"_s << u"c b a e d"_s;
        QTest::newRow("after") << int(Column::After) << u"a d e b c"_s << u"c b a d e"_s;
        QTest::newRow("saved") << int(Column::Saved) << u"a d e b c"_s << u"c b a d e"_s;
        QTest::newRow("time") << int(Column::Time) << u"b a d c e"_s << u"b a d c e"_s;
        QTest::newRow("message") << int(Column::Message) << u"b a d e c"_s << u"c e d a b"_s;
    }

    void sorting()
    {
        QFETCH(const int, column);
        show(mixedRows());
        m_model->sort(column);
        QTEST(names(), "ascending");
        m_model->sort(column, Qt::DescendingOrder);
        QTEST(names(), "descending");
        m_model->sort(-1);
        QCOMPARE(names(), u"b a d c e"_s);
    }

    void whoHoldsARowIsLedToItsNewPlace()
    {
        show(mixedRows());
        const QPersistentModelIndex held = m_model->index(0, Column::Before);
        m_model->sort(Column::State);
        QCOMPARE(held.row(), 4);
        QCOMPARE(held.column(), int(Column::Before));
        QCOMPARE(m_model->recordAt(4), 0);
        QCOMPARE(m_model->rowOf(0), 4);
    }

    void filtering_data()
    {
        QTest::addColumn<Shown>("shown");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("all") << Shown::All << QString() << u"b a d c e"_s;
        QTest::newRow("done") << Shown::Done << QString() << u"b c"_s;
        QTest::newRow("failed") << Shown::Failed << QString() << u"a"_s;
        QTest::newRow("put back") << Shown::PutBack << QString() << u"e"_s;
        QTest::newRow("skipped") << Shown::Skipped << QString() << u"d"_s;
        QTest::newRow("not run") << Shown::NotRun << QString() << QString();
        QTest::newRow("warnings") << Shown::Warned << QString() << u"c"_s;
        QTest::newRow("a name") << Shown::All << u"B.CSS"_s << u"b"_s;
        QTest::newRow("a folder") << Shown::All << u"sub"_s << u"d"_s;
        QTest::newRow("a message") << Shown::All << u"unexpected"_s << u"a"_s;
        QTest::newRow("both") << Shown::Done << u".css"_s << u"b"_s;
        QTest::newRow("none") << Shown::All << u"nowhere"_s << QString();
    }

    void filtering()
    {
        QFETCH(const Shown, shown);
        QFETCH(const QString, text);
        show(mixedRows());
        m_model->setFilter(shown, text);
        QTEST(names(), "expected");
        m_model->sort(Column::Name, Qt::DescendingOrder);
        m_model->setFilter(Shown::All, {});
        QCOMPARE(names(), u"e d c b a"_s);
    }

    void aRunGoesOnUnderneath_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<Shown>("shown");
        QTest::addColumn<QString>("during");
        QTest::addColumn<QString>("after");
        QTest::newRow("as listed") << -1 << Shown::All << u"c a d b"_s << u"c a d b"_s;
        QTest::newRow("by name") << int(Column::Name) << Shown::All << u"a b c d"_s << u"a b c d"_s;
        QTest::newRow("by size") << int(Column::Before) << Shown::All << u"b a c d"_s << u"a b c d"_s;
        QTest::newRow("only done") << -1 << Shown::Done << u"c d"_s << u"c d b"_s;
        QTest::newRow("only failed") << -1 << Shown::Failed << u"a"_s << u"a"_s;
    }

    void aRunGoesOnUnderneath()
    {
        QFETCH(const int, column);
        QFETCH(const Shown, shown);
        m_runs->start(1, u"Classic"_s);
        m_model->setRun(m_runs->find(1));
        m_model->sort(column);
        m_model->setFilter(shown, {});
        add(row(State::Done, u"/w/c.css"_s, 30, 1));
        add(row(State::Failed, u"/w/a.css"_s, 10));
        add(row(State::Done, u"/w/d.css"_s, 40, 1));
        m_runs->startFile(1, u"/w/b.css"_s, 4);
        QTEST(names(), "during");
        m_runs->endFile(1, row(State::Done, u"/w/b.css"_s, 20, 1));
        QTEST(names(), "after");
    }

    void anotherRunChangesNothing()
    {
        show(mixedRows());
        addRun(*m_runs, 2, mixedRows());
        QCOMPARE(m_model->rowCount(), 5);
    }

private:
    void show(const std::vector<ResultRow> &rows)
    {
        addRun(*m_runs, 1, rows);
        m_model->setRun(m_runs->find(1));
    }

    void add(const ResultRow &made)
    {
        m_runs->startFile(1, made.source, 4);
        m_runs->endFile(1, made);
    }

    /// The names without their extensions.
    QString names() const
    {
        QStringList found;
        for (int at = 0; at < m_model->rowCount(); ++at)
            found.append(m_model->index(at, Column::Name).data().toString().section(u'.', 0, 0));
        return found.join(u' ');
    }

    QString line(int at) const
    {
        QStringList found;
        for (int column = 0; column < m_model->columnCount(); ++column)
            found.append(m_model->index(at, column).data().toString());
        return found.join(u'|');
    }

    std::unique_ptr<ResultRuns> m_runs;
    std::unique_ptr<ResultModel> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
};

BREVANT_TEST(tst_ResultModel, QCoreApplication)
#include "tst_ResultModel.moc"
