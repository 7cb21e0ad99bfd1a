// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunMaker.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;
using Warning = ResultWarning::Kind;
using Rows = std::vector<ResultRow>;

/// A run in words.
class tst_RunRecord final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void totals()
    {
        const RunTotals totals = record(mixedRows(), 2, 5).totals();
        QCOMPARE(totals.count(State::Failed), 1);
        QCOMPARE(totals.count(State::Done), 1);
        // What failed counts neither before nor after.
        QCOMPARE(totals.all.before, 4000);
        QCOMPARE(totals.all.after, 2100);
        QCOMPARE(totals.ofKinds.at(0).before, 1000);
        QCOMPARE(totals.ofKinds.at(1).before, 0);
        QCOMPARE(totals.ofKinds.at(2).after, 1500);
    }

    void totalsInWords()
    {
        const RunRecord run = record(mixedRows(), 2, 5);
        QCOMPARE(
            totalsText(run.totals(), Qt::LeftToRight),
            u"5 files · 4 kB → 2.1 kB · 47.5 % saved · 1 failed · 1 put back · 1 skipped · 1 with warnings"_s);
        QVERIFY(totalsText(run.totals(), Qt::RightToLeft)
                    .contains(isolated(u"4 kB"_s) + u" ← "_s + isolated(u"2.1 kB"_s)));
        const RunRecord one = record({row(State::NotRun, u"/w/a.css"_s)}, 0, 1);
        QCOMPARE(totalsText(one.totals(), Qt::LeftToRight), u"1 file · 1 not run"_s);
    }

    void shortResults_data()
    {
        QTest::addColumn<Rows>("rows");
        QTest::addColumn<int>("minified");
        QTest::addColumn<bool>("isAllWell");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("details");
        const ResultRow done = row(State::Done, u"/w/a.css"_s, 1000, 573);
        const ResultRow failed = row(State::Failed, u"/w/b.css"_s, 1000);
        const ResultRow putBack = row(State::PutBack, u"/w/c.css"_s, 1000);
        QTest::newRow("all done") << Rows{done, done} << 2 << true << u"43 % saved"_s << QString();
        QTest::newRow("nothing saved")
            << Rows{row(State::Done, u"/w/a.css"_s, 10, 10)} << 1 << true << u"0 % saved"_s << QString();
        QTest::newRow("grown") << Rows{row(State::Done, u"/w/a.css"_s, 10, 11)} << 1 << true
                               << u"10 % larger"_s << QString();
        QTest::newRow("one failed") << Rows{done, failed} << 1 << false << u"1 of 2 failed"_s
                                    << u"1 failed."_s;
        QTest::newRow("all failed") << Rows{failed, failed} << 0 << false << u"2 of 2 failed"_s
                                    << u"2 failed."_s;
        QTest::newRow("put back") << Rows{done, failed, putBack} << 1 << false << u"2 of 3 not minified"_s
                                  << u"1 failed, 1 put back."_s;
        QTest::newRow("with warnings") << Rows{done, row(State::Warned, u"/w/d.css"_s, 1000, 573)} << 2
                                       << false << u"43 % saved"_s << u"1 with warnings."_s;
        QTest::newRow("one output replaced another")
            << Rows{done, done} << 1 << false << u"1 of 2 not minified"_s << QString();
    }

    void shortResults()
    {
        QFETCH(const Rows, rows);
        QFETCH(const int, minified);
        const ShortResult result = shortResult(record(rows, minified, static_cast<int>(rows.size())));
        QTEST(result.isAllWell, "isAllWell");
        QTEST(result.text, "text");
        QTEST(result.details, "details");
    }

    void messages_data()
    {
        QTest::addColumn<ResultRow>("row");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << row(State::Done, u"/w/a.css"_s) << QString();
        QTest::newRow("a place") << failure(u"/w/a.js"_s, u"Unexpected \"}\""_s, 68, 58)
                                 << u"68:58  Unexpected \"}\""_s;
        QTest::newRow("no place") << failure(u"/w/a.js"_s, u"too long"_s, 0, 0) << u"too long"_s;
        QTest::newRow("a reason") << row(State::Failed, u"/w/a.js"_s, 1, 1, u"the disk is full"_s)
                                  << u"The disk is full"_s;
        ResultRow putBack = failure(u"/w/a.js"_s, u"Unexpected"_s, 1, 2);
        putBack.state = State::PutBack;
        auto remarks = std::make_shared<ResultRemarks>(*putBack.remarks);
        remarks->reason = u"it failed; the source was put back"_s;
        putBack.remarks = remarks;
        QTest::newRow("put back") << putBack << u"It failed; the source was put back"_s;
        ResultRow warned = row(State::Warned, u"/w/a.js"_s, 2, 1);
        ResultRemarks said;
        said.messages.shown.push_back({CompressorMessage::Kind::Warning, u"Duplicate key"_s, 3, 4});
        warned.remarks = std::make_shared<ResultRemarks>(said);
        QTest::newRow("a warning") << warned << u"Warning: 3:4  Duplicate key"_s;
        ResultRow noted = row(State::Done, u"/w/a.js"_s, 2, 2);
        said.messages.shown = {{CompressorMessage::Kind::Information, u"not smaller"_s}};
        noted.remarks = std::make_shared<ResultRemarks>(said);
        QTest::newRow("an information") << noted << u"Not smaller"_s;
        QTest::newRow("lost declarations")
            << checkedRow({{Warning::Declaration, 3}, {Warning::Declaration, 4}, {Warning::UseStrict, 1}})
            << u"Warning: 2 declarations damaged"_s;
        QTest::newRow("a note") << checkedRow({{Warning::UseStrict, 1}}) << u"Note: \"use strict\" lost"_s;
        QTest::newRow("all well") << checkedRow({}) << QString();
        ResultRow uncopied = row(State::Warned, u"/w/a.js"_s, 2, 1, u"the gzip copy could not be made"_s);
        uncopied.setChecked({{}, {{Warning::NotSmaller}}});
        QTest::newRow("first what became of it") << uncopied << u"The gzip copy could not be made"_s;
        QTest::newRow("a trick") << row(State::Failed, u"/w/a.js"_s, 1, 1, u"a\nb\x1b[2J"_s)
                                 << u"A\\nb\\x1b[2J"_s;
    }

    void messages()
    {
        QFETCH(const ResultRow, row);
        QTEST(messageText(row), "expected");
    }

    void messagesAboutAFile()
    {
        ResultRow checked =
            checkedRow({{Warning::NotSmaller},
                        {Warning::Declaration, 3, {u"@media print"_s}, u".a"_s, u"top"_s, u"0s"_s, u"0"_s},
                        {Warning::UseStrict, 4}});
        using Kind = CompressorMessage::Kind;
        const std::vector<CompressorMessage> expected{
            {Kind::Warning, u"not smaller than its source"_s, 0, 0},
            {Kind::Warning, u"declaration changed in @media print, .a: top: 0s → 0"_s, 3, 0},
            {Kind::Information, u"\"use strict\" lost"_s, 4, 0}};
        QCOMPARE(messagesAbout(checked), expected);
        QCOMPARE(firstPlaceIn(checked), expected[1]);
        checked.setChecked({{}, {{Warning::NotSmaller}}});
        QCOMPARE(firstPlaceIn(checked), expected[0]);
        const ResultRow failed = row(State::Failed, u"/w/a.js"_s, 1, 1, u"the disk is full"_s);
        QCOMPARE(firstPlaceIn(failed).text, u"the disk is full"_s);
        QVERIFY(messagesAbout(row(State::Done, u"/w/a.css"_s)).empty());
    }

    void folders()
    {
        QCOMPARE(folderText(QDir::homePath() + u"/site/a.css"_s), u"~/site"_s);
        QCOMPARE(folderText(u"/w/a.css"_s), u"/w"_s);
    }

private:
    static ResultRow checkedRow(const QList<ResultWarning> &warnings)
    {
        ResultRow made = row(State::Done, u"/w/a.css"_s, 2, 1);
        made.setChecked({{}, warnings});
        return made;
    }

    static RunRecord record(const Rows &rows, int minified, int count)
    {
        RunRecord made;
        made.rows = rows;
        made.minified = minified;
        made.count = count;
        return made;
    }
};

BREVANT_TEST(tst_RunRecord, QCoreApplication)
#include "tst_RunRecord.moc"
