// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RunReport.h"

#include "cli/CommandLine.h"
#include "tests/TestClass.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;
using End = RunEnd;
using Outcome = EntryResult::Outcome;

namespace {

EntryResult result(const QString &source, Outcome outcome, std::optional<qint64> before = {},
                   std::optional<qint64> after = {}, int status = 0)
{
    EntryResult made;
    made.source = source;
    made.output = source + u".out"_s;
    made.outcome = outcome;
    made.status = status;
    made.sizeBefore = before;
    made.sizeAfter = after;
    return made;
}

QJsonObject parsed(const RunReport &report)
{
    const Report made = report.toReport();
    return QJsonDocument::fromJson(reportAsJson(made.rows, made.reason)).object();
}

} // namespace

class tst_RunReport final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothing()
    {
        RunReport report({});
        report.runEnded(End::Completed, {});
        QCOMPARE(report.summary(), u"0 files: 0 -> 0 bytes, 0 % saved.\n"_s);
        QCOMPARE(report.failures(), QString());
        QVERIFY(report.isAllDone());
    }

    void allDone()
    {
        RunReport report({u"/w/a.css"_s, u"/w/b.css"_s});
        report.entryEnded(result(u"/w/a.css"_s, Outcome::Done, 1000, 500));
        report.entryEnded(result(u"/w/b.css"_s, Outcome::Done, 1000, 700));
        report.runEnded(End::Completed, {});
        QCOMPARE(report.doneCount(), 2);
        QVERIFY(report.isAllDone());
        QCOMPARE(report.summary(), u"2 files: 2,000 -> 1,200 bytes, 40 % saved.\n"_s);
        QCOMPARE(report.failures(), QString());
    }

    void oneFile()
    {
        RunReport report({u"/w/a.css"_s});
        report.entryEnded(result(u"/w/a.css"_s, Outcome::Done, 4, 3));
        report.runEnded(End::Completed, {});
        QCOMPARE(report.summary(), u"1 file: 4 -> 3 bytes, 25 % saved.\n"_s);
    }

    void someFailed()
    {
        RunReport report({u"/w/a.js"_s, u"/w/b.css"_s, u"/w/c.html"_s});
        report.entryEnded(result(u"/w/a.js"_s, Outcome::CompressorFailed, 900, 800, 2));
        report.entryEnded(result(u"/w/b.css"_s, Outcome::Done, 10, 5));
        report.entryEnded(result(u"/w/c.html"_s, Outcome::NoOutput, 70, {}));
        report.runEnded(End::Completed, {});
        QCOMPARE(report.doneCount(), 1);
        QVERIFY(!report.isAllDone());
        // What failed counts neither before nor after.
        QCOMPARE(report.summary(), u"1 file: 10 -> 5 bytes, 50 % saved; 2 failed.\n"_s);
        QCOMPARE(report.failures(), u"Failed: /w/a.js: the compressor ended with status 2\n"
                                    "Failed: /w/c.html: the compressor wrote no output\n"_s);
    }

    void stopped()
    {
        RunReport report({u"/w/a.css"_s, u"/w/b.css"_s, u"/w/c.css"_s});
        report.entryEnded(result(u"/w/a.css"_s, Outcome::Done, 10, 5));
        report.runEnded(End::Stopped, {});
        QVERIFY(!report.isAllDone());
        QCOMPARE(report.summary(), u"1 file: 10 -> 5 bytes, 50 % saved.\n"
                                   "Stopped before /w/b.css; 2 files not minified.\n"_s);
    }

    void stoppedAmidSeveral()
    {
        // The second waited for the first, and the third did not.
        RunReport report({u"/w/a.css"_s, u"/w/b.css"_s, u"/w/c.css"_s, u"/w/d.css"_s});
        report.entryEnded(result(u"/w/a.css"_s, Outcome::Done, 10, 5));
        report.entryEnded(result(u"/w/c.css"_s, Outcome::Done, 10, 5));
        report.runEnded(End::Stopped, {});
        QVERIFY2(report.summary().endsWith(u"Stopped before /w/b.css; 2 files not minified.\n"_s),
                 qPrintable(report.summary()));
    }

    void lostSources()
    {
        RunReport report({});
        EntryResult lost = result(u"/w/a.js"_s, Outcome::CompressorFailed, 10, 10, 1);
        lost.sourceState = EntryResult::Source::PutBack;
        report.entryEnded(lost);
        lost.sourceState = EntryResult::Source::Lost;
        lost.detail = u"No space left on device"_s;
        report.entryEnded(lost);
        lost.sourceState = EntryResult::Source::Safe;
        lost.outcome = Outcome::NotSafe;
        lost.detail = u"another run is at work on it"_s;
        report.entryEnded(lost);
        report.runEnded(End::Completed, {});
        QCOMPARE(
            report.failures(),
            u"Failed: /w/a.js: the compressor ended with status 1; the source was put back\n"
            "Failed: /w/a.js: the compressor ended with status 1; the source could not be put back (No space "
            "left on device), the next start tries again\n"
            "Failed: /w/a.js: not minified, as another run is at work on it\n"_s);
    }

    void javaNotStarted()
    {
        RunReport report({u"/w/a.css"_s});
        report.runEnded(End::JavaNotStarted, u"no Java"_s);
        QVERIFY(!report.isAllDone());
        QCOMPARE(parsed(report)[u"reason"_s].toString(), u"no Java"_s);
        QCOMPARE(report.summary(), u"0 files: 0 -> 0 bytes, 0 % saved.\n"
                                   "Stopped before /w/a.css; 1 file not minified.\n"_s);
    }

    void failuresInWords_data()
    {
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("reason");

        QTest::newRow("failed") << Outcome::CompressorFailed << 74
                                << u"the compressor ended with status 74"_s;
        QTest::newRow("killed") << Outcome::CompressorKilled << 9
                                << u"the compressor was ended by signal 9"_s;
        QTest::newRow("no output") << Outcome::NoOutput << 0 << u"the compressor wrote no output"_s;
        QTest::newRow("empty") << Outcome::EmptyOutput << 0 << u"the compressor left an empty output"_s;
        QTest::newRow("no copy") << Outcome::NoGzipCopy << 0 << u"the gzip copy could not be made"_s;
    }

    void failuresInWords()
    {
        QFETCH(Outcome, outcome);
        QFETCH(int, status);
        QFETCH(QString, reason);
        RunReport report({u"/w/a.js"_s});
        report.entryEnded(result(u"/w/a.js"_s, outcome, 5, 5, status));
        report.runEnded(End::Completed, {});
        QCOMPARE(report.failures(), u"Failed: /w/a.js: %1\n"_s.arg(reason));
        const QJsonObject file = parsed(report)[u"files"_s][0].toObject();
        QCOMPARE(file[u"outcome"_s].toString(), u"failed"_s);
        QCOMPARE(file[u"reason"_s].toString(), reason);
    }

    void namesAreMadeVisible()
    {
        RunReport report({u"/w/\x1b[2J%1\n.js"_s, u"/w/%2\r.js"_s});
        report.entryEnded(result(u"/w/\x1b[2J%1\n.js"_s, Outcome::NoOutput));
        report.runEnded(End::Stopped, {});
        QCOMPARE(report.failures(), u"Failed: /w/\\x1b[2J%1\\n.js: the compressor wrote no output\n"_s);
        QVERIFY2(report.summary().endsWith(u"Stopped before /w/%2\\x0d.js; 1 file not minified.\n"_s),
                 qPrintable(report.summary()));
        // Machines get the names as they are.
        QCOMPARE(parsed(report)[u"files"_s][0][u"source"_s].toString(), u"/w/\x1b[2J%1\n.js"_s);
        EntryResult kept = result(u"/w/a.js"_s, Outcome::CompressorFailed, 5, 5, 1);
        kept.sourceState = EntryResult::Source::PutBack;
        kept.kept = u"/k/kept-1-a\n.js"_s;
        RunReport another({u"/w/a.js"_s});
        another.entryEnded(kept);
        another.runEnded(End::Completed, {});
        QCOMPARE(another.failures(), u"Failed: /w/a.js: the compressor ended with status 1; the source was "
                                     u"put back, and what was in it "
                                     "is kept as /k/kept-1-a\\n.js\n"_s);
    }

    void json()
    {
        RunReport report({u"/w/a.css"_s, u"/w/b.js"_s});
        EntryResult done = result(u"/w/a.css"_s, Outcome::Done, 5'000'000'000, 20);
        done.gzipSize = 30;
        done.seconds = 0.12345;
        report.entryEnded(done);
        EntryResult failed = result(u"/w/b.js"_s, Outcome::CompressorFailed, std::nullopt, std::nullopt, 1);
        failed.output.reset();
        report.entryEnded(failed);
        report.runEnded(End::Completed, {});

        const QString version = versionText().section(u' ', 1).trimmed();
        const QJsonObject expected{
            {u"version"_s, reportVersion},
            {u"brevant"_s, version},
            {u"done"_s, 1},
            {u"failed"_s, 1},
            {u"notRun"_s, 0},
            {u"files"_s,
             QJsonArray{
                 QJsonObject{{u"source"_s, u"/w/a.css"_s},
                             {u"output"_s, u"/w/a.css.out"_s},
                             {u"sizeBefore"_s, qint64(5'000'000'000)},
                             {u"sizeAfter"_s, 20},
                             {u"gzipSize"_s, 30},
                             {u"seconds"_s, 0.123},
                             {u"outcome"_s, u"done"_s}},
                 QJsonObject{{u"source"_s, u"/w/b.js"_s},
                             {u"output"_s, QJsonValue::Null},
                             {u"sizeBefore"_s, QJsonValue::Null},
                             {u"sizeAfter"_s, QJsonValue::Null},
                             {u"gzipSize"_s, QJsonValue::Null},
                             {u"seconds"_s, 0},
                             {u"outcome"_s, u"failed"_s},
                             {u"reason"_s, u"the compressor ended with status 1"_s}},
             }},
        };
        QCOMPARE(parsed(report), expected);
        QVERIFY(reportAsJson(report.toReport().rows, {}).contains("5000000000")); // and not 5e+09
    }

    void jsonOfAStop()
    {
        RunReport report({u"/w/a.css"_s, u"/w/b.css"_s});
        report.entryEnded(result(u"/w/a.css"_s, Outcome::Done, 2, 1));
        report.runEnded(End::Stopped, {});
        const QJsonObject object = parsed(report);
        QCOMPARE(object[u"notRun"_s].toInt(), 1);
        QCOMPARE(object[u"files"_s].toArray().size(), 2);
        QCOMPARE(object[u"files"_s][1].toObject(),
                 (QJsonObject{{u"source"_s, u"/w/b.css"_s}, {u"outcome"_s, u"not run"_s}}));
    }
};

BREVANT_TEST(tst_RunReport, QCoreApplication)
#include "tst_RunReport.moc"
