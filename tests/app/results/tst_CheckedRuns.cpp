// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "InquiryFixture.h"
#include "tests/TestClass.h"

#include <QSignalSpy>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// When the results of runs are checked, and what becomes of what is found.
class tst_CheckedRuns final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<InquiryFixture>(); }

    void theResultsOfARunAreChecked()
    {
        const QSignalSpy checked(&m_bench->inquiry, &Inquiry::checked);
        addRun(m_bench->runs, 1,
               {m_bench->damagedRow(u"a.css"_s),
                m_bench->doneRow(u"b.css"_s, ".b { top: 1px }", ".b{top:1px}"),
                row(State::Done, u"/w/c.css"_s, 2, 1), m_bench->failedRow(u"d.js"_s)});
        QTRY_COMPARE(checked.size(), 1);
        QCOMPARE(checked.at(0).at(0).toInt(), 1);
        QCOMPARE(m_bench->rowOf(1, 0).state, State::Warned);
        QCOMPARE(m_bench->rowOf(1, 0).remarks->checked->warnings.size(), 2);
        QVERIFY(m_bench->isChecked(1, 1));
        QCOMPARE(m_bench->rowOf(1, 1).state, State::Done);
        QVERIFY(!m_bench->rowOf(1, 2).remarks); // of a modern compressor, or its source is gone
        QVERIFY(!m_bench->isChecked(1, 3));
    }

    void changedFilesAreNot()
    {
        const ResultRow damaged = m_bench->damagedRow(u"a.css"_s);
        QVERIFY(writeFile(damaged.source, "b{}"));
        addRun(m_bench->runs, 1, {damaged});
        QTRY_VERIFY(m_bench->isChecked(1, 0));
        QCOMPARE(m_bench->rowOf(1, 0).state, State::Done);
        QCOMPARE(m_bench->rowOf(1, 0).remarks->checked->obstacle, u"the source has changed since the run"_s);
        QCOMPARE(messageText(m_bench->rowOf(1, 0)), QString());
    }

    void nothingIsCheckedDuringARun()
    {
        const QSignalSpy changed(&m_bench->inquiry, &Inquiry::changed);
        m_bench->runs.start(1, u"Classic compressors"_s);
        addRun(m_bench->runs, 2, {m_bench->damagedRow(u"a.css"_s)});
        m_bench->inquiry.wantModern(2); // is asked what is next
        QVERIFY(changed.isEmpty());
        m_bench->runs.end(1, {});
        QTRY_VERIFY(m_bench->isChecked(2, 0));
    }

    void aRunInterrupts()
    {
        const QSignalSpy changed(&m_bench->inquiry, &Inquiry::changed);
        addRun(m_bench->runs, 1, many());
        m_bench->runs.start(2, u"Classic compressors"_s);
        QTRY_COMPARE(changed.size(), 2); // a piece was begun, and ended
        QVERIFY(!m_bench->isChecked(1, countOfMany - 1));
        m_bench->runs.end(2, {});
        QTRY_VERIFY(m_bench->isChecked(1, countOfMany - 1));
        for (std::size_t row = 0; row < countOfMany; ++row)
            QVERIFY(m_bench->isChecked(1, row));
    }

    /// Who waits for a reason does not wait for all results of a run.
    void questionsComeFirst()
    {
        const QString gate = m_bench->path(u"gate"_s);
        QVERIFY(writeFile(gate, ""));
        QVERIFY(m_bench->setCompressor(u"while [ -e '%1' ]; do sleep 0.01; done; "_s.arg(gate) +
                                       m_bench->syntaxError));
        std::vector<ResultRow> rows = many();
        rows.insert(rows.begin(), m_bench->failedRow(u"a.js"_s));
        addRun(m_bench->runs, 1, rows);
        m_bench->inquiry.wantReason(1, 0);
        QTRY_VERIFY(m_bench->inquiry.isAskingWhy(1, 0));
        QVERIFY(!m_bench->isChecked(1, countOfMany));
        QVERIFY(QFile::remove(gate));
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
        QTRY_VERIFY(m_bench->isChecked(1, countOfMany));
    }

    void whatNobodyAsksForIsCheckedAllTheSame()
    {
        addRun(m_bench->runs, 1, many());
        m_bench->inquiry.wantNothing();
        QTRY_VERIFY(m_bench->isChecked(1, countOfMany - 1));
    }

    void theLastRunComesFirst()
    {
        m_bench->runs.start(3, u"Classic compressors"_s);
        addRun(m_bench->runs, 1, {m_bench->damagedRow(u"a.css"_s)});
        addRun(m_bench->runs, 2, {m_bench->damagedRow(u"b.css"_s)});
        const QSignalSpy checked(&m_bench->inquiry, &Inquiry::checked);
        m_bench->runs.end(3, {});
        QTRY_COMPARE(checked.size(), 2);
        QCOMPARE(checked.at(0).at(0).toInt(), 2);
        QCOMPARE(checked.at(1).at(0).toInt(), 1);
    }

    void aRunThatIsForgottenMeanwhile()
    {
        for (int run = 1; run <= 11; ++run)
            addRun(m_bench->runs, run, {m_bench->damagedRow(u"%1.css"_s.arg(run))});
        QVERIFY(!m_bench->runs.find(1));
        for (int run = 2; run <= 11; ++run)
            QTRY_VERIFY(m_bench->isChecked(run, 0));
    }

    void itsEndEndsTheChecks()
    {
        addRun(m_bench->runs, 1, many());
        m_bench.reset();
    }

private:
    /// More than are checked in one piece.
    [[nodiscard]] std::vector<ResultRow> many() const
    {
        std::vector<ResultRow> rows;
        for (std::size_t i = 0; i < countOfMany; ++i)
            rows.push_back(m_bench->damagedRow(u"%1.css"_s.arg(i)));
        return rows;
    }

    static constexpr std::size_t countOfMany = 201;
    std::unique_ptr<InquiryFixture> m_bench;
};

BREVANT_TEST(tst_CheckedRuns, QCoreApplication)
#include "tst_CheckedRuns.moc"
