// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ResultRow.h"

#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;
using Outcome = EntryResult::Outcome;
using Source = EntryResult::Source;
using State = ResultRow::State;

/// What became of a file, as it is reported. The report for machines is tested with the terminal's.
class tst_ResultRow final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void states_data()
    {
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<Source>("source");
        QTest::addColumn<State>("expected");
        QTest::newRow("done") << Outcome::Done << Source::Safe << State::Done;
        QTest::newRow("failed") << Outcome::CompressorFailed << Source::Safe << State::Failed;
        QTest::newRow("killed") << Outcome::CompressorKilled << Source::Safe << State::Failed;
        QTest::newRow("no output") << Outcome::NoOutput << Source::Safe << State::Failed;
        QTest::newRow("empty") << Outcome::EmptyOutput << Source::PutBack << State::PutBack;
        QTest::newRow("lost") << Outcome::EmptyOutput << Source::Lost << State::Failed;
        QTest::newRow("no gzip copy") << Outcome::NoGzipCopy << Source::Safe << State::Warned;
        QTest::newRow("no Brotli copy") << Outcome::NoBrotliCopy << Source::Safe << State::Warned;
        QTest::newRow("not minified") << Outcome::NotMinified << Source::Safe << State::Failed;
        QTest::newRow("not safe") << Outcome::NotSafe << Source::Safe << State::Skipped;
        QTest::newRow("refused") << Outcome::Refused << Source::Safe << State::Skipped;
    }

    void states()
    {
        QFETCH(const Outcome, outcome);
        QFETCH(const Source, source);
        EntryResult result;
        result.outcome = outcome;
        result.sourceState = source;
        QTEST(ResultRow(result).state, "expected");
        QCOMPARE(ResultRow(result).isMinified(), result.isMinified());
        QCOMPARE(ResultRow(result).reason(), result.reason());
    }

    void whatFailedCanBeAskedAgain()
    {
        EntryResult result;
        result.outcome = Outcome::CompressorFailed;
        result.status = 2;
        result.arguments = QStringList{u"-jar"_s};
        QCOMPARE(ResultRow(result).remarks->arguments, result.arguments);
        QCOMPARE(ResultRow(result).remarks->status, 2);
    }

    void onlyWhatIsToBeSaidIsKept()
    {
        EntryResult result;
        result.outcome = Outcome::Done;
        result.source = u"/w/a.js"_s;
        QVERIFY(!ResultRow(result).remarks);
        QVERIFY(ResultRow(result).output.isNull());
        QCOMPARE(ResultRow(result).sizeBefore, ResultRow::noSize);
        result.notes.append(u"a note"_s);
        QCOMPARE(ResultRow(result).remarks->notes, result.notes);
        result.notes.clear();
        result.messages.shown.push_back({CompressorMessage::Kind::Warning, u"a warning"_s, 3, 4});
        QCOMPARE(ResultRow(result).remarks->messages.shown, result.messages.shown);
    }

    void whatACheckHasFound()
    {
        EntryResult result;
        result.outcome = Outcome::Done;
        result.basis = CheckBasis();
        ResultRow row(result);
        QVERIFY(row.basis);
        ResultRow other = row;
        row.setChecked({});
        other.setChecked({});
        QVERIFY(!row.basis);
        QCOMPARE(row.state, State::Done);
        QCOMPARE(*row.remarks->checked, CheckedFile());
        QCOMPARE(row.remarks, other.remarks); // that of all such rows, which may be many
        other.setChecked({{}, {{ResultWarning::Kind::UseStrict}}});
        QCOMPARE(other.state, State::Done);
        QCOMPARE(other.remarks->checked->warnings.size(), 1);
        QCOMPARE(*row.remarks->checked, CheckedFile());
        other.setChecked({{}, {{ResultWarning::Kind::NotSmaller}}});
        QCOMPARE(other.state, State::Warned);
    }

    void percentSaved_data()
    {
        QTest::addColumn<qint64>("before");
        QTest::addColumn<qint64>("after");
        QTest::addColumn<QString>("expected");

        QTest::newRow("half") << qint64(200) << qint64(100) << u"50"_s;
        QTest::newRow("broken") << qint64(1000) << qint64(975) << u"2.5"_s;
        QTest::newRow("rounded") << qint64(3) << qint64(1) << u"66.7"_s;
        QTest::newRow("everything") << qint64(7) << qint64(0) << u"100"_s;
        QTest::newRow("nothing saved") << qint64(7) << qint64(7) << u"0"_s;
        QTest::newRow("grown") << qint64(10) << qint64(11) << u"-10"_s;
        QTest::newRow("hardly grown") << qint64(10000) << qint64(10001) << u"0"_s;
        QTest::newRow("grown enormously") << qint64(1) << qint64(2'000'001) << u"-200000000"_s;
        QTest::newRow("there was nothing") << qint64(0) << qint64(0) << u"0"_s;
        QTest::newRow("something from nothing") << qint64(0) << qint64(5) << u"0"_s;
        QTest::newRow("large") << qint64(3'000'000'000'000) << qint64(1'500'000'000'000) << u"50"_s;
    }

    void percentSaved()
    {
        QFETCH(qint64, before);
        QFETCH(qint64, after);
        QTEST(brevant::percentSaved(before, after), "expected");
    }
};

BREVANT_TEST(tst_ResultRow, QCoreApplication)
#include "tst_ResultRow.moc"
