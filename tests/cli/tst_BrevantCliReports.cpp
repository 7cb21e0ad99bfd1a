// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QFile>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The formats of the report, and reports on standard output, with the real compressors.
class tst_BrevantCliReports final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void formats_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("part"); // of the report; @ is the working folder
        QTest::newRow("by default") << QStringList() << "\"text\": \"syntax error\""_ba;
        QTest::newRow("json") << format(u"json"_s) << "\"version\": 1"_ba;
        QTest::newRow("junit") << format(u"junit"_s)
                               << "b.js:2:10: syntax error\n    var f = () =&gt; 1;\n             ^\n"_ba;
        QTest::newRow("github") << format(u"github"_s)
                                << "::error file=@/b.js,line=2,col=10::syntax error\n"_ba;
        QTest::newRow("markdown") << format(u"markdown"_s)
                                  << "| Failed | b.js | 28 bytes | – | – | – | – | "_ba;
    }

    void formats()
    {
        QFETCH(const QStringList, options);
        QFETCH(QByteArray, part);
        Sandbox sandbox;
        sandbox.environment.insert(u"LC_ALL"_s, u"de_DE.UTF-8"_s);
        sandbox.add(u"a.css"_s, "a { b : c }");
        sandbox.add(u"b.js"_s, "var x = 1;\nvar f = () => 1;\n");
        part.replace("@", QFile::encodeName(sandbox.path()));
        const Ended filed = sandbox.run(QStringList{u"--report"_s, u"report"_s} + options + sources());
        QCOMPARE(filed.status, 1);
        QVERIFY2(filed.out.contains("Well done!"), filed.out);
        QVERIFY2(sandbox.read(u"report"_s).contains(part), sandbox.read(u"report"_s));
        // Whatever else is said, by the compressors too, moves aside.
        const Ended printed = sandbox.run(QStringList{u"--report"_s, u"-"_s} + options + sources());
        QCOMPARE(printed.status, 1);
        QVERIFY2(printed.out.contains(part), printed.out);
        QVERIFY2(!printed.out.contains("Well done!"), printed.out);
        QVERIFY2(printed.err.contains("Well done!"), printed.err);
        QVERIFY(!sandbox.has(u"-"_s));
    }

    void compressorsPrintElsewhereToo()
    {
        // htmlcompressor says on standard output what is wrong.
        const Sandbox sandbox;
        sandbox.add(u"a.html"_s, "<p>a</p>");
        QVERIFY(QFile::setPermissions(sandbox.path(u"a.html"_s), {}));
        const Ended ended =
            sandbox.run({u"--report"_s, u"-"_s, u"--report-format"_s, u"github"_s, u"a.html"_s});
        QVERIFY2(ended.out.isEmpty() || ended.out.startsWith("::"), ended.out);
    }

    void failFast()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        sandbox.add(u"b.js"_s, "var = ;");
        sandbox.add(u"c.css"_s, "a { b : c }");
        const QStringList arguments{u"--jobs"_s, u"1"_s,    u"--report"_s, u"r.json"_s,
                                    u"a.css"_s,  u"b.js"_s, u"c.css"_s};
        const Ended ended = sandbox.run(QStringList{u"--fail-fast"_s} + arguments);
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.out.endsWith("Stopped before " + QFile::encodeName(sandbox.path(u"c.css"_s)) +
                                    "; 1 file not minified.\n"),
                 ended.out);
        QVERIFY(sandbox.has(u"a.min.css"_s));
        QVERIFY(!sandbox.has(u"c.min.css"_s));
        QVERIFY2(sandbox.read(u"r.json"_s).contains("\"notRun\": 1,"), sandbox.read(u"r.json"_s));
        // Without it the run goes on.
        QCOMPARE(sandbox.run(arguments).status, 1);
        QVERIFY(sandbox.has(u"c.min.css"_s));
        QCOMPARE(sandbox.run({u"--fail-fast"_s, u"a.css"_s, u"c.css"_s}).status, 0);
    }

    void timeoutOfClassic()
    {
        const Sandbox sandbox;
        const QByteArray slow = manyFunctions(20'000); // half a minute
        sandbox.add(u"a.js"_s, slow);
        const Ended ended =
            sandbox.run({u"--timeout"_s, u"1"_s, u"--set"_s, u"suffixSwitcherKeyString=false"_s, u"a.js"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("a.js: the compressor took longer than 1 s and was ended"), ended.err);
        QVERIFY(sandbox.read(u"a.js"_s) == slow);
    }

    void timeoutOfModern()
    {
        // What it has started holds its output open, and would be waited for.
        const Sandbox sandbox;
        const QString stub = sandbox.add(u"stub"_s, "#!/bin/sh\nsleep 600 &\necho $! >\"$PIDFILE\"\nwait\n");
        QVERIFY(QFile::setPermissions(stub, QFile::ReadOwner | QFile::ExeOwner));
        sandbox.add(u"a.css"_s, "a { b : c }");
        const Ended ended = sandbox.runShell(
            u"export PIDFILE=\"$PWD/pid\"; \"$CLI\" --timeout 1 --set compressorsKeyString=modern "
            "--set esbuildPathKeyString=\"$PWD/stub\" a.css; status=$?; "
            "while kill -0 \"$(cat pid)\" 2>/dev/null; do sleep .05; done; exit $status"_s);
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("a.css: stub took too long and was ended"), ended.err);
        QVERIFY(!sandbox.has(u"a.min.css"_s));
    }

    void reportOfNothing()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.txt"_s, "");
        const Ended ended = sandbox.run({u"--report=-"_s, u"--report-format=markdown"_s, u"a.txt"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.out.endsWith("\n0 files\n\n"), ended.out);
    }

    void standardOutputThatIsFull()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        const Ended ended = sandbox.runShell(u"\"$CLI\" --report - a.css >/dev/full"_s);
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.endsWith("brevant-cli: the report on standard output cannot be written: No space "
                                    "left on device\n"),
                 ended.err);
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("no such format")
            << QStringList{u"--report"_s, u"-"_s, u"--report-format"_s, u"xml"_s}
            << "--report-format takes one of json, junit, github, markdown, not \"xml\""_ba;
        QTest::newRow("no report") << QStringList{u"--report-format"_s, u"junit"_s}
                                   << "--report-format needs --report"_ba;
        for (const QString &value : {u"0"_s, u"1.5"_s, u"86401"_s, u""_s})
            QTest::addRow("timeout \"%s\"", qPrintable(value))
                << QStringList{u"--timeout"_s, value}
                << "--timeout takes a number from 1 to 86400, not \""_ba + value.toUtf8() + "\"";
        QTest::newRow("fail fast with nothing to run")
            << QStringList{u"--fail-fast"_s, u"--list"_s}
            << "--fail-fast needs a run, which --list and --dry-run are not"_ba;
        for (const QString &action : {u"--list"_s, u"--dry-run"_s})
            QTest::addRow("printed with %s", qPrintable(action))
                << QStringList{u"--report"_s, u"-"_s, action}
                << "--report needs a run, which --list and --dry-run are not"_ba;
    }

    void wrongUsage()
    {
        QFETCH(const QStringList, options);
        QFETCH(const QByteArray, error);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        const Ended ended = sandbox.run(options + QStringList{u"a.css"_s});
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.err.split('\n').first(), "brevant-cli: " + error);
        QCOMPARE(ended.out, QByteArray());
        QVERIFY(!sandbox.has(u"a.min.css"_s));
    }

private:
    static QStringList format(const QString &name) { return {u"--report-format"_s, name}; }
    static QStringList sources() { return {u"a.css"_s, u"b.js"_s}; }
};

BREVANT_TEST(tst_BrevantCliReports, QCoreApplication)
#include "tst_BrevantCliReports.moc"
