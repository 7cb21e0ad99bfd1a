// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunMaker.h"
#include "app/results/ReportTexts.h"
#include "engine/report/Report.h"
#include "tests/TestClass.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// A run for other programs and for readers.
class tst_ReportTexts final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theJsonIsTheTerminals()
    {
        const QJsonObject report = QJsonDocument::fromJson(reportAsJson(mixedRows(), {})).object();
        QCOMPARE(report[u"done"_s].toInt(), 1);
        QCOMPARE(report[u"failed"_s].toInt(), 4); // also what only lacks a copy
    }

    void whatAStartTells()
    {
        ResultRuns runs;
        runs.addStart({{StartNews::Kind::PutBack, u"/w/a.css"_s, u"It was put back."_s},
                       {StartNews::Kind::Failed, {}, u"The folder cannot be read."_s},
                       {StartNews::Kind::Failed, {}, u"Nor can that."_s}});
        const RunRecord &start = *runs.all().front();
        const QJsonObject report = QJsonDocument::fromJson(reportAsJson(start.rows, start.reason)).object();
        QCOMPARE(report[u"files"_s].toArray().size(), 1); // each of these has a path
        QCOMPARE(report[u"files"_s][0][u"reason"_s], QJsonValue(u"It was put back."_s));
        QCOMPARE(report[u"failed"_s].toInt(), 1);
        QCOMPARE(report[u"reason"_s], QJsonValue(u"The folder cannot be read. Nor can that."_s));
    }

    void whatChecksHaveFound()
    {
        ResultRow warned = row(State::Done, u"/w/a.css"_s, 1000, 600);
        warned.setChecked({{}, {{ResultWarning::Kind::Declaration, 3, {}, u".a"_s, u"top"_s, u"0s"_s}}});
        ResultRow sound = row(State::Done, u"/w/b.css"_s, 1000, 600);
        sound.setChecked({});
        const RunRecord run = record({warned, sound});
        const QJsonObject report = QJsonDocument::fromJson(reportAsJson(run.rows, {})).object();
        QCOMPARE(report[u"done"_s].toInt(), 2);
        QCOMPARE(report[u"files"_s][0][u"warnings"_s][0][u"before"_s], QJsonValue(u"0s"_s));
        QCOMPARE(report[u"files"_s][1][u"warnings"_s], QJsonValue(QJsonArray()));
        QVERIFY(reportAsCsv(run).contains(",Warning: 1 declaration damaged\r\n"));
        QVERIFY(reportAsMarkdown({run.rows, run.reason, run.started})
                    .contains("| Warning: 1 declaration damaged |\n"));
    }

    void csv()
    {
        ResultRow done = row(State::Done, u"/w/a, \"b\".css"_s, 1000, 600);
        done.gzipSize = 300;
        done.seconds = 0.5;
        const RunRecord run = record({done, row(State::NotRun, u"/w/c.css"_s)});
        QCOMPARE(QString::fromUtf8(reportAsCsv(run)),
                 u"state,source,output,size before,size after,gzip size,Brotli size,seconds,message\r\n"
                 "done,\"/w/a, \"\"b\"\".css\",\"/w/a, \"\"b\"\".css.out\",1000,600,300,,0.500,\r\n"
                 "not run,/w/c.css,/w/c.css.out,,,,,0.000,\r\n"_s);
    }

    void markdown()
    {
        const RunRecord run = record({row(State::Done, u"/w/a|b_c.css"_s, 1000, 600),
                                      failure(u"/w/d.js"_s, u"Unexpected <x>"_s, 2, 3)});
        QCOMPARE(QString::fromUtf8(reportAsMarkdown({run.rows, run.reason, run.started})),
                 u"# Brevant, 2026-03-04 05:06\n\n"
                 "2 files · 1 kB → 600 bytes · 40 % saved · 1 failed\n\n"
                 "| State | File | Before | After | Saved | gzip | Brotli | Time | Message |\n"
                 "|---|---|--:|--:|--:|--:|--:|--:|---|\n"
                 "| Done | /w/a\\|b\\_c.css | 1 kB | 600 bytes | 40.0 % | – | – | – |  |\n"
                 "| Failed | /w/d.js | 100 bytes | – | – | – | – | – | 2:3  Unexpected \\<x\\> |\n"_s);
    }

private:
    static RunRecord record(const std::vector<ResultRow> &rows)
    {
        RunRecord made;
        made.rows = rows;
        made.started = QDateTime(QDate(2026, 3, 4), QTime(5, 6));
        return made;
    }
};

BREVANT_TEST(tst_ReportTexts, QCoreApplication)
#include "tst_ReportTexts.moc"
