// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanModel.h"
#include "app/results/StateCell.h"
#include "engine/ResultRow.h"
#include "tests/TestClass.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <optional>

using namespace brevant;
using namespace Qt::StringLiterals;
using Kind = PlannedProblem::Kind;
using State = PlannedFile::State;

/// The table of planned outputs, while what is known of the files grows.
class tst_PlanModel final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<PlanModel>();
        m_tester.emplace(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }

    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void cells()
    {
        m_model->setFiles(0, files(), 3);
        QCOMPARE(line(0), u"1|Will fail|b.css|/w|/o/b.css|Folder cannot be written"_s);
        QCOMPARE(line(1), u"2|Take care|a.css|/w/x|/o/a.css|Replaces the source in row 1"_s);
        QCOMPARE(line(2), u"3|Ready|c.js|/w|/o/c.js|"_s);
        const QModelIndex state = m_model->index(0, PlanModel::State);
        QCOMPARE(state.data(StateRole).toInt(), int(ResultRow::State::Failed));
        QVERIFY(!m_model->index(0, PlanModel::Name).data(StateRole).isValid());
        QVERIFY(m_model->index(0, PlanModel::GoesTo).data(PathRole).toBool());
        QVERIFY(m_model->index(0, PlanModel::Folder).data(MutedRole).toBool());
    }

    void aNoteIsNoProblem()
    {
        std::vector<PlannedFile> noted = files();
        noted[1].problems.push_back({.kind = Kind::OutputIsNewer});
        noted[2].problems = {{.kind = Kind::OutputIsNewer}};
        m_model->setFiles(0, noted, 3);
        QCOMPARE(line(2), u"3|Ready|c.js|/w|/o/c.js|Output is newer than the source"_s);
        QVERIFY(m_model->index(2, PlanModel::Problem).data(MutedRole).toBool());
        QVERIFY(!m_model->index(1, PlanModel::Problem).data(MutedRole).toBool());
    }

    void sorting_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("names");
        QTest::newRow("row") << int(PlanModel::Row) << u"b.css a.css c.js"_s;
        QTest::newRow("state") << int(PlanModel::State) << u"b.css a.css c.js"_s;
        QTest::newRow("name") << int(PlanModel::Name) << u"a.css b.css c.js"_s;
        QTest::newRow("folder") << int(PlanModel::Folder) << u"b.css c.js a.css"_s;
        QTest::newRow("problem") << int(PlanModel::Problem) << u"c.js b.css a.css"_s;
    }

    void sorting()
    {
        QFETCH(const int, column);
        m_model->setFiles(0, files(), 3);
        m_model->sort(column);
        QTEST(names(), "names");
    }

    void filters()
    {
        m_model->setFiles(0, files(), 3);
        m_model->setFilter(State::TakeCare, {});
        QCOMPARE(names(), u"a.css"_s);
        m_model->setFilter({}, u"FOLDER"_s);
        QCOMPARE(names(), u"b.css"_s);
        m_model->setFilter({}, u"/o/c"_s);
        QCOMPARE(names(), u"c.js"_s);
        m_model->setFilter(State::Ready, u"x"_s);
        QCOMPARE(names(), QString());
        m_model->setFilter({}, {});
        QCOMPARE(names(), u"b.css a.css c.js"_s);
    }

    void whatIsKnownStaysUntilThereIsNews()
    {
        m_model->setFiles(0, files(), 3);
        std::vector<PlannedFile> unchecked = files();
        for (PlannedFile &file : unchecked) {
            file.isChecked = false;
            file.problems.clear();
        }
        unchecked[2].output = u"/elsewhere/c.js"_s;
        m_model->setFiles(0, unchecked, 3);
        QCOMPARE(states(), u"Will fail, Take care, Checking"_s);
        unchecked[0].isChecked = true;
        m_model->setFiles(0, {unchecked[0]}, 3);
        QCOMPARE(states(), u"Ready, Take care, Checking"_s);
        m_model->setFiles(0, {unchecked[0]}, 1);
        QCOMPARE(states(), u"Ready"_s);
        m_model->setFiles(0, {}, 0);
        QCOMPARE(m_model->rowCount(), 0);
    }

    void newsLeaveRowsInTheirPlacesUntilTheFilterIsAskedAgain()
    {
        m_model->setFiles(0, files(), 3);
        m_model->setFilter(State::TakeCare, {});
        std::vector<PlannedFile> news = files();
        news[2].problems = {{.kind = Kind::ReplacesItself}};
        m_model->setFiles(2, {news[2]}, 3);
        QCOMPARE(names(), u"a.css"_s);
        QVERIFY(m_model->isStale());
        m_model->setFilter(State::TakeCare, {});
        QCOMPARE(names(), u"a.css c.js"_s);
        QVERIFY(!m_model->isStale());
    }

private:
    static std::vector<PlannedFile> files()
    {
        return {{u"/w/b.css"_s, u"/o/b.css"_s, 1, true, {{.kind = Kind::FolderNotWritable, .isFatal = true}}},
                {u"/w/x/a.css"_s, u"/o/a.css"_s, 1, true, {{.kind = Kind::ReplacesSource, .row = 0}}},
                {u"/w/c.js"_s, u"/o/c.js"_s, 1, true, {}}};
    }

    QString line(int row) const
    {
        QStringList cells;
        for (int column = 0; column < PlanModel::ColumnCount; ++column)
            cells.append(m_model->index(row, column).data().toString());
        return cells.join(u'|');
    }

    QString column(int column, const QString &separator) const
    {
        QStringList cells;
        for (int row = 0; row < m_model->rowCount(); ++row)
            cells.append(m_model->index(row, column).data().toString());
        return cells.join(separator);
    }
    QString names() const { return column(PlanModel::Name, u" "_s); }
    QString states() const { return column(PlanModel::State, u", "_s); }

    std::unique_ptr<PlanModel> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
};

BREVANT_TEST(tst_PlanModel, QCoreApplication)
#include "tst_PlanModel.moc"
