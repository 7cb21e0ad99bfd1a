// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { color : red ; }\n");
const QByteArray cssMinified("a{color:red}");
const QByteArray js("var  x = 1 ;\n");

} // namespace

/// What the built program prints and writes, with the real compressors.
class tst_BrevantCliPrinted final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void list()
    {
        const Sandbox sandbox;
        sandbox.add(u"b.JS"_s, js);
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"x.txt"_s, "");
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const Ended ended = sandbox.run({u"--list"_s, u"b.JS"_s, u"a.css"_s, u"x.txt"_s, u"b.JS"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.out,
                 folder + "/b.JS\t" + folder + "/b.min.js\n" + folder + "/a.css\t" + folder + "/a.min.css\n");
        // No output path can be formed at the beginning of a run.
        sandbox.add(u"s.json"_s, R"({"suffixSwitcherKeyString": 1})");
        QCOMPARE(sandbox.run({u"--list"_s, u"--settings"_s, u"s.json"_s, u"a.css"_s}).out,
                 folder + "/a.css\t\n");
        QCOMPARE(tree(sandbox.path()).size(), 4);
    }

    void linesAndSummary()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"b.js"_s, js);
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const Ended ended = sandbox.run({u"a.css"_s, u"b.js"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.out, "Minified 1 of 2 items. " + folder + "/a.css -> " + folder +
                                "/a.min.css, 20 -> 12 bytes\n"
                                "Minified 2 of 2 items. " +
                                folder + "/b.js -> " + folder +
                                "/b.min.js, 13 -> 8 bytes\n"
                                "Well done!\n"
                                "2 files: 33 -> 20 bytes, 39.4 % saved.\n");
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), cssMinified);
        QCOMPARE(sandbox.read(u"b.min.js"_s), QByteArray("var x=1;"));
        QCOMPARE(sandbox.read(u"a.css"_s), css);
    }

    void quiet()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"empty.js"_s, "");
        const Ended good = sandbox.run({u"--quiet"_s, u"a.css"_s});
        QCOMPARE(good.out, QByteArray());
        QCOMPARE(good.err, QByteArray());
        QCOMPARE(good.status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), cssMinified);
        const Ended failing = sandbox.run({u"--quiet"_s, u"empty.js"_s});
        QCOMPARE(failing.out, QByteArray());
        const QByteArray failure = "Failed: " + QFile::encodeName(sandbox.path(u"empty.js"_s)) +
                                   ": the compressor ended with status 1\n";
        QVERIFY2(failing.err.endsWith(failure), failing.err);
        QCOMPARE(failing.status, 1);
    }

    void dryRunDoesWhatTheRunDoes()
    {
        const Sandbox sandbox;
        sandbox.add(u"site/a b's $x.css"_s, css);
        sandbox.add(u"site/js/Ünï\n.js"_s, "var f = function (number) { return number + 1 ; };\nvar y ;\n");
        sandbox.add(u"site/-p.html"_s, "<p>a</p>\n  <p>b</p>\n");
        const auto before = tree(sandbox.path());
        const QStringList arguments{
            u"--set"_s, u"gzipCheckerKeyString=true"_s, u"--set"_s, u"lineBreakSwitcherKeyString=true"_s,
            u"--set"_s, u"lineBreakKeyString=20"_s,     u"site"_s};
        const Ended dry = sandbox.run(QStringList{u"--dry-run"_s} + arguments);
        QCOMPARE(dry.status, 0);
        QCOMPARE(dry.err, QByteArray());
        QCOMPARE(tree(sandbox.path()), before);

        const auto outputs = [&] {
            QMap<QString, QByteArray> files = tree(sandbox.path());
            for (auto file = files.begin(); file != files.end(); ++file) {
                if (file.key().endsWith(u".gz"))
                    file.value() = decompressed(sandbox.path(file.key())); // its header holds a time
            }
            return files;
        };
        const QString script = QString::fromUtf8(dry.out);
        QCOMPARE(sandbox.runProgram(u"/bin/bash"_s, {u"-c"_s, script}).err, QByteArray());
        const auto byShell = outputs();
        QVERIFY(QDir(sandbox.path(u"site"_s)).removeRecursively());
        for (auto file = before.begin(); file != before.end(); ++file) {
            if (!file.key().endsWith(u'/'))
                sandbox.add(file.key(), file.value());
        }
        QCOMPARE(sandbox.run(arguments).status, 0);
        QCOMPARE(outputs(), byShell);
        QCOMPARE(byShell.size(), before.size() + 6);
        QCOMPARE(byShell[u"site/a b's $x.min.css.gz"_s], cssMinified);
    }

    void dryRunOfAnUndecidedSwitch()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, js);
        sandbox.add(u"s.json"_s, R"({"nomungeSwitcherKeyString": 1})");
        const Ended ended = sandbox.run({u"--dry-run"_s, u"--settings"_s, u"s.json"_s, u"a.js"_s});
        QCOMPARE(ended.out, "cd " + QFile::encodeName(toolsFolder()) + "\n# " +
                                QFile::encodeName(sandbox.path(u"a.js"_s)) +
                                ": not minified: a switch of its compressor is neither true nor false\n");
    }

    void report()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"empty.js"_s, "");
        sandbox.add(u"r.json"_s, "an older report");
        const Ended ended = sandbox.run({u"--report"_s, u"r.json"_s, u"--set"_s,
                                         u"gzipCheckerKeyString=true"_s, u"a.css"_s, u"empty.js"_s});
        QCOMPARE(ended.status, 1);
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"done"_s].toInt(), 1);
        QCOMPARE(report[u"failed"_s].toInt(), 1);
        QCOMPARE(report[u"notRun"_s].toInt(), 0);
        QCOMPARE(report[u"files"_s].toArray().size(), 2);
        QJsonObject first = report[u"files"_s][0].toObject();
        const double seconds = first.take(u"seconds"_s).toDouble();
        QVERIFY2(seconds > 0.01 && seconds < 60, qPrintable(QString::number(seconds)));
        const auto gzipSize = QFile(sandbox.path(u"a.min.css.gz"_s)).size();
        QVERIFY(gzipSize > 0);
        QCOMPARE(first, (QJsonObject{{u"source"_s, sandbox.path(u"a.css"_s)},
                                     {u"output"_s, sandbox.path(u"a.min.css"_s)},
                                     {u"sizeBefore"_s, css.size()},
                                     {u"sizeAfter"_s, cssMinified.size()},
                                     {u"gzipSize"_s, gzipSize},
                                     {u"outcome"_s, u"done"_s}}));
        const QJsonObject second = report[u"files"_s][1].toObject();
        QCOMPARE(second[u"outcome"_s].toString(), u"failed"_s);
        QCOMPARE(second[u"reason"_s].toString(), u"the compressor ended with status 1"_s);
        QCOMPARE(second[u"sizeBefore"_s], QJsonValue(0));
    }

    void reportThatCannotBeWritten()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const Ended ended = sandbox.run({u"--report"_s, u"missing/r.json"_s, u"a.css"_s});
        QVERIFY2(ended.err.startsWith("brevant-cli: the report missing/r.json cannot be written: "),
                 ended.err);
        QCOMPARE(ended.status, 2);
        QCOMPARE(tree(sandbox.path()).keys(), QStringList{u"a.css"_s}); // it was tried before the run
    }

    void fullOutput_data()
    {
        QTest::addColumn<QString>("option");
        for (const QString &option : {u"--list"_s, u"--dry-run"_s, u"--help"_s, u"--version"_s})
            QTest::addRow("%s", qPrintable(option)) << option;
    }

    void fullOutput()
    {
        QFETCH(QString, option);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"b.css"_s, css);
        const Ended ended = sandbox.runShell(u"\"$CLI\" \"$1\" a.css b.css >/dev/full"_s, {option});
        QCOMPARE(ended.err,
                 QByteArray("brevant-cli: standard output cannot be written: No space left on device\n"));
        QCOMPARE(ended.status, 1);
    }

    void gzipTwice()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const QStringList arguments{u"--set"_s, u"gzipCheckerKeyString=true"_s, u"a.css"_s};
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(sandbox.run(arguments).status, 0);
            QCOMPARE(tree(sandbox.path()).keys(),
                     (QStringList{u"a.css"_s, u"a.min.css"_s, u"a.min.css.gz"_s}));
            QCOMPARE(sandbox.read(u"a.min.css"_s), cssMinified);
            QCOMPARE(decompressed(sandbox.path(u"a.min.css.gz"_s)), cssMinified);
        }
        // Off again: the copy of before stays as it is.
        const QByteArray copy = sandbox.read(u"a.min.css.gz"_s);
        sandbox.add(u"a.css"_s, "b { color : blue ; }");
        QCOMPARE(sandbox.run({u"a.css"_s}).status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), QByteArray("b{color:blue}"));
        QCOMPARE(sandbox.read(u"a.min.css.gz"_s), copy);
    }

    void aReaderThatGoesAway()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            sandbox.add(name, css);
        const Ended ended =
            sandbox.runShell(u"{ \"$CLI\" a.css b.css c.css; echo $? >status; } | head -n 1"_s);
        QVERIFY(ended.out.startsWith("Minified 1 of 3 items. "));
        QTRY_COMPARE(sandbox.read(u"status"_s), QByteArray("0\n"));
        for (const QString &name : {u"a.min.css"_s, u"b.min.css"_s, u"c.min.css"_s})
            QCOMPARE(sandbox.read(name), cssMinified);
    }
};

BREVANT_TEST(tst_BrevantCliPrinted, QCoreApplication)
#include "tst_BrevantCliPrinted.moc"
