// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/Report.h"

#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using Kind = CompressorMessage::Kind;
using State = ResultRow::State;

/// A run for services that build projects.
class tst_Reports final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void junit()
    {
        const QTemporaryDir folder;
        const QString source = folder.filePath(u"b.js"_s);
        QVERIFY(writeFile(source, "var x;\nvar a<b = ;\n"));
        Report report =
            reportOf({row(State::Done, folder.filePath(u"a.css"_s)),
                      row(State::Failed, source, u"it failed"_s, {{Kind::Error, u"<no>"_s, 2, 6}}),
                      ResultRow(State::NotRun, u"/elsewhere/c.css"_s)});
        report.folder = folder.path();
        QCOMPARE(QString::fromUtf8(reportAsJUnit(report)), uR"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites name="brevant" tests="3" failures="1" errors="0" skipped="1" time="1.500">
    <testsuite name="brevant" tests="3" failures="1" errors="0" skipped="1" time="1.500" timestamp="2026-03-04T05:06:07">
        <testcase name="a.css" classname="brevant" file="a.css" time="0.250"/>
        <testcase name="b.js" classname="brevant" file="b.js" time="0.250">
            <failure message="&lt;no&gt;" type="error">b.js:2:6: &lt;no&gt;
    var a&lt;b = ;
         ^
</failure>
        </testcase>
        <testcase name="/elsewhere/c.css" classname="brevant" file="/elsewhere/c.css" time="0.000">
            <skipped message="not run"/>
        </testcase>
    </testsuite>
</testsuites>
)"_s);
    }

    void junitOfWarnings()
    {
        ResultRow lost = row(State::Done, u"/w/a.css"_s);
        lost.setChecked({{}, {{ResultWarning::Kind::Declaration, 3, {}, u".a"_s, u"top"_s, u"0s"_s}}});
        const ResultRow said = row(State::Warned, u"/w/b.js"_s, {}, {{Kind::Warning, u"Duplicate"_s, 0, 0}});
        const QByteArray text = reportAsJUnit(reportOf({lost, said}));
        QVERIFY2(text.contains("<failure message=\"declaration lost in .a: top: 0s\" type=\"warning\">"
                               "/w/a.css:3: declaration lost in .a: top: 0s\n"),
                 text);
        QVERIFY2(text.contains("<system-out>/w/b.js: Duplicate\n</system-out>"), text);
        QVERIFY2(text.contains("failures=\"1\""), text);
    }

    void junitIsXmlWhateverTheNames()
    {
        const QString name = u"/w/\x1b[1m<a>&\"\n\uFFFE\uFFFF\xDC80.js"_s;
        Report report = reportOf({row(State::Failed, name, name, {{Kind::Error, name, 0, 0}})});
        report.reason = name;
        QXmlStreamReader reader(reportAsJUnit(report));
        QString found;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"testcase")
                found = reader.attributes().value(u"name"_s).toString();
        }
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
        QCOMPARE(found, u"/w/\\x1b[1m<a>&\"\\n\uFFFD\uFFFD\\x80.js"_s);
    }

    void githubCommands()
    {
        const ResultRow failed = row(State::Failed, u"/w/a,b:c%\r\n.js"_s, u"it failed"_s,
                                     {{Kind::Error, u"100 %: a, b\r\nc"_s, 2, 6},
                                      {Kind::Error, u"more"_s, 3, 0},
                                      {Kind::Warning, u"careful"_s, 0, 0},
                                      {Kind::Information, u"by the way"_s, 0, 0}});
        QCOMPARE(QString::fromUtf8(reportAsGithubCommands(reportOf({failed}))),
                 u"::error file=/w/a%2Cb%3Ac%25%0D%0A.js,line=2,col=6::100 %25: a, b%0D%0Ac\n"
                 "::error file=/w/a%2Cb%3Ac%25%0D%0A.js,line=3::more\n"
                 "::warning file=/w/a%2Cb%3Ac%25%0D%0A.js::careful\n"_s);
    }

    void githubCommandsOfOtherOutcomes()
    {
        ResultRow checked = row(State::Done, u"/w/a.css"_s);
        checked.setChecked({{},
                            {{ResultWarning::Kind::Declaration, 3, {}, u".a"_s, u"top"_s, u"0s"_s, u"0"_s},
                             {ResultWarning::Kind::UseStrict, 4}}});
        ResultRow unchecked = row(State::Done, u"/w/b.css"_s);
        unchecked.setChecked({u"it is not UTF-8"_s, {}});
        const ResultRow putBack = row(State::PutBack, u"/w/c.js"_s, u"it failed; the source was put back"_s,
                                      {{Kind::Error, u"syntax error"_s, 1, 2}});
        Report report = reportOf({checked, unchecked, putBack, row(State::Done, u"/w/d.css"_s),
                                  ResultRow(State::NotRun, u"/w/e.css"_s)});
        report.reason = u"no\nJava"_s;
        QCOMPARE(QString::fromUtf8(reportAsGithubCommands(report)),
                 u"::error::no%0AJava\n"
                 "::warning file=/w/a.css,line=3::declaration changed in .a: top: 0s -> 0\n"
                 "::notice file=/w/a.css,line=4::\"use strict\" lost\n"
                 "::warning file=/w/b.css::not checked: it is not UTF-8\n"
                 "::error file=/w/c.js::it failed; the source was put back\n"
                 "::error file=/w/c.js,line=1,col=2::syntax error\n"
                 "::warning::1 of 5 files not run\n"_s);
    }

    void markdown()
    {
        ResultRow lost = row(State::Done, u"/w/a.css"_s);
        lost.setChecked({{}, {{ResultWarning::Kind::Declaration, 3}}});
        Report report = reportOf({row(State::Done, u"/w/a|b`c\n<d>&amp;~.css"_s), lost});
        report.folder = u"/w"_s;
        report.reason = u"*no* Java"_s;
        QCOMPARE(
            QString::fromUtf8(reportAsMarkdown(report)),
            u"# Brevant, 2026-03-04 05:06\n\n"
            "2 files · 2 kB → 1.2 kB · 40 % saved · 1 with warnings\n\n"
            "\\*no\\* Java\n\n"
            "| State | File | Before | After | Saved | gzip | Brotli | Time | Message |\n"
            "|---|---|--:|--:|--:|--:|--:|--:|---|\n"
            "| Done | a\\|b\\`c\\\\n\\<d\\>\\&amp;\\~.css | 1 kB | 600 bytes | 40.0 % | – | – | 0.25 s |  |\n"
            "| Done | a.css | 1 kB | 600 bytes | 40.0 % | – | – | 0.25 s | Warning: 1 declaration damaged |\n"_s);
        QVERIFY(!reportAsMarkdown(reportOf({})).contains('|'));
    }

private:
    static ResultRow row(State state, const QString &source, const QString &reason = {},
                         const std::vector<CompressorMessage> &messages = {})
    {
        ResultRow made(state, source);
        made.sizeBefore = 1000;
        made.sizeAfter = 600;
        made.seconds = 0.25;
        if (!reason.isEmpty() || !messages.empty())
            made.remarks = std::make_shared<ResultRemarks>(ResultRemarks{reason, {messages, 0}, {}});
        return made;
    }

    static Report reportOf(const std::vector<ResultRow> &rows)
    {
        return {rows, {}, QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7)), 1.5};
    }
};

BREVANT_TEST(tst_Reports, QCoreApplication)
#include "tst_Reports.moc"
