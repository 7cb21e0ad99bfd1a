// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/Pty.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What a run says at its end, with the real compressors.
class tst_BrevantCliSummary final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void copiesSlowestAndBiggestSaving()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"a.css"_s, u"b\x1b[2J.css"_s, u"c.css"_s, u"d.css"_s})
            sandbox.add(name, "a { b : c }");
        const QByteArray best =
            QFile::encodeName(sandbox.add(u"e.css"_s, "/* a long comment */ a { b : c }"));
        const Ended ended = sandbox.run({u"--set"_s, u"gzipCheckerKeyString=true"_s, u"."_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, QByteArray());
        const QRegularExpression expected(u"\\n5 files: 76 -> 30 bytes, 60\\.5 % saved\\.\\n"
                                          "  gzip            \\d+ bytes\\n"
                                          "  slowest         \\d+\\.\\d\\d s  /[^\x1b\\n]*\\.css\\n"
                                          "  biggest saving  26 bytes  (/.*/e\\.css)\\n$"_s);
        const auto match = expected.match(QString::fromUtf8(ended.out));
        QVERIFY2(match.hasMatch(), ended.out);
        QCOMPARE(match.captured(1).toUtf8(), best);
    }

    void placesOfFailures_data()
    {
        QTest::addColumn<QString>("compressors");
        QTest::addColumn<QByteArray>("said"); // @ is the file
        QTest::newRow("classic") << u"classic"_s << "@:2:9: error: "_ba;
        QTest::newRow("modern") << u"modern"_s << "@:2:9: error: Unexpected \";\"\n"_ba;
    }

    void placesOfFailures()
    {
        QFETCH(const QString, compressors);
        QFETCH(QByteArray, said);
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.js"_s, "var x;\nvar y = ;\n"));
        const QStringList arguments{u"--set"_s, u"compressorsKeyString="_s + compressors, u"a.js"_s};
        const Ended ended = sandbox.run(arguments);
        QCOMPARE(ended.status, 1);
        const qsizetype place = ended.err.indexOf(said.replace("@", path));
        QVERIFY2(place >= 0, ended.err);
        QVERIFY2(ended.err.sliced(place).contains("\n    var y = ;\n            ^\nFailed: " + path),
                 ended.err);
        const Ended quiet = sandbox.run(QStringList{u"--quiet"_s} + arguments);
        QVERIFY2(!quiet.err.contains(": error: "), quiet.err);
    }

    void colours_data()
    {
        QTest::addColumn<QStringList>("variables"); // NAME=VALUE
        QTest::addColumn<bool>("onTerminal");
        QTest::addColumn<bool>("coloured");
        QTest::newRow("a terminal") << QStringList() << true << true;
        QTest::newRow("a file") << QStringList() << false << false;
        QTest::newRow("forced") << QStringList{u"CLICOLOR_FORCE=1"_s} << false << true;
        QTest::newRow("not forced") << QStringList{u"CLICOLOR_FORCE=0"_s} << false << false;
        QTest::newRow("not wanted") << QStringList{u"NO_COLOR=1"_s} << true << false;
        QTest::newRow("not said") << QStringList{u"NO_COLOR="_s} << true << true;
        QTest::newRow("not wanted above all")
            << QStringList{u"NO_COLOR=1"_s, u"CLICOLOR_FORCE=1"_s} << false << false;
        QTest::newRow("dumb") << QStringList{u"TERM=dumb"_s} << true << false;
    }

    void colours()
    {
        QFETCH(const QStringList, variables);
        QFETCH(const bool, onTerminal);
        QFETCH(const bool, coloured);
        Sandbox sandbox;
        for (const QString &variable : variables)
            sandbox.environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        sandbox.add(u"a.css"_s, "a { width : calc(1px + 2px) }");
        sandbox.add(u"b.js"_s, "var = ;");
        const QStringList arguments{u"--check"_s, u"a.css"_s, u"b.js"_s};
        QByteArray printed;
        if (onTerminal) {
            Pty terminal(sandbox, arguments, 200);
            QCOMPARE(terminal.waitForEnd(), 1);
            printed = terminal.output();
        } else {
            const Ended ended = sandbox.run(arguments);
            printed = ended.out + ended.err;
        }
        for (const QByteArray &words :
             {"\x1b[32m24.1 % saved\x1b[m"_ba, "\x1b[31mFailed:\x1b[m /"_ba, "\x1b[33mWarning:\x1b[m /"_ba})
            QVERIFY2(printed.contains(words) == coloured, words + " in " + printed);
        for (const QByteArray &words : {" saved"_ba, "1 failed"_ba, "Failed:"_ba, "Warning:"_ba})
            QVERIFY2(printed.contains(words), printed);
    }
};

BREVANT_TEST(tst_BrevantCliSummary, QCoreApplication)
#include "tst_BrevantCliSummary.moc"
