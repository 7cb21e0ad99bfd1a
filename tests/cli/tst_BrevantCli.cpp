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

/// The options of the built program, with the real compressors.
class tst_BrevantCli final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void helpAndVersion()
    {
        const Sandbox sandbox;
        const Ended help = sandbox.run({u"--help"_s});
        QCOMPARE(help.status, 0);
        QCOMPARE(help.err, QByteArray());
        QVERIFY(help.out.startsWith("Usage: brevant-cli [options] PATH...\n"));
        const Ended version = sandbox.run({u"--version"_s, u"nosuch"_s});
        QCOMPARE(version.status, 0);
        QVERIFY(version.out.startsWith("brevant-cli "));
        QCOMPARE(version.out.count('\n'), 1);
    }

    void wrongUses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("error");

        QTest::newRow("nothing") << QStringList() << QByteArray("no file or folder is named");
        QTest::newRow("unknown option")
            << QStringList{u"--bogus"_s, u"a.css"_s} << QByteArray("Unknown option 'bogus'.");
        QTest::newRow("unknown key") << QStringList{u"--set"_s, u"x=1"_s, u"a.css"_s}
                                     << QByteArray("--set: there is no setting \"x\"");
        QTest::newRow("bad value") << QStringList{u"--set"_s, u"gzipCheckerKeyString=ja"_s, u"a.css"_s}
                                   << QByteArray(
                                          "--set: gzipCheckerKeyString takes true or false, not \"ja\"");
        QTest::newRow("list and dry run") << QStringList{u"--list"_s, u"--dry-run"_s, u"a.css"_s}
                                          << QByteArray("--list and --dry-run cannot be used together");
    }

    void wrongUses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, error);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const Ended ended = sandbox.run(arguments);
        QCOMPARE(ended.err, "brevant-cli: " + error + "\nTry: brevant-cli --help\n");
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 2);
        QVERIFY(!sandbox.has(u"a.min.css"_s));
    }

    void aMissingPathStopsAll()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const Ended ended = sandbox.run({u"a.css"_s, u"no\nsuch.css"_s});
        QCOMPARE(ended.err, QByteArray("brevant-cli: no\\nsuch.css does not exist\n"));
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 2);
        QVERIFY(!sandbox.has(u"a.min.css"_s));
    }

    void wrongSettingsFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("cut off") << QByteArray("{\"suffixKeyString\": \"-m");
        QTest::newRow("an array") << QByteArray("[1]");
        QTest::newRow("something else") << QByteArray("suffixKeyString=-m\n");
    }

    void wrongSettingsFiles()
    {
        QFETCH(QByteArray, content);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"s.json"_s, content);
        sandbox.add(u"folder/x"_s, "");
        const Ended bad = sandbox.run({u"--settings"_s, u"s.json"_s, u"a.css"_s});
        QVERIFY2(bad.err.startsWith("brevant-cli: the settings file s.json holds no JSON object ("), bad.err);
        QCOMPARE(bad.status, 2);
        for (const QString &name : {u"missing.json"_s, u"folder"_s}) {
            const Ended ended = sandbox.run({u"--settings"_s, name, u"a.css"_s});
            QCOMPARE(ended.err, "brevant-cli: the settings file " + name.toUtf8() + " cannot be read\n");
            QCOMPARE(ended.status, 2);
        }
        // The file of somebody else is not touched.
        QCOMPARE(tree(sandbox.path()).keys(),
                 (QStringList{u"a.css"_s, u"folder/"_s, u"folder/x"_s, u"s.json"_s}));
        QCOMPARE(sandbox.read(u"s.json"_s), content);
    }

    void nothingListed_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("why");

        const QByteArray php("PHP and PHTML files are off (enablePHPCheckerKeyString)");
        QTest::newRow("defaults") << QStringList() << "; " + php;
        QTest::newRow("html off") << QStringList{u"--set"_s, u"enableHTMLCheckerKeyString=false"_s}
                                  << "; HTML files are off (enableHTMLCheckerKeyString), " + php;
        QTest::newRow("all on") << QStringList{u"--set"_s, u"enablePHPCheckerKeyString=true"_s}
                                << QByteArray();
        QTest::newRow("filter") << QStringList{u"--set"_s, u"enablePHPCheckerKeyString=true"_s, u"--set"_s,
                                               u"filterCheckerKeyString=true"_s}
                                << QByteArray("; files named .min are skipped (filterCheckerKeyString)");
        QTest::newRow("list") << QStringList{u"--list"_s} << "; " + php;
        QTest::newRow("dry run") << QStringList{u"--dry-run"_s} << "; " + php;
    }

    void nothingListed()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, why);
        const Sandbox sandbox;
        sandbox.add(u"folder/notes.txt"_s, "x");
        const Ended ended = sandbox.run(options + QStringList{u"folder"_s});
        QCOMPARE(ended.err, "Nothing to minify: no file of a kind that is on was found" + why + ".\n");
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 0);
    }

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

    void whoseSettingsCount()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"../home/config/brevant/settings.json"_s, R"({"suffixKeyString": "-user"})");
        sandbox.add(u"s.json"_s, R"({"suffixKeyString": "-file", "filterCheckerKeyString": false})");
        const auto suffix = [&](const QStringList &options) {
            const QByteArray out = sandbox.run(options + QStringList{u"--list"_s, u"a.css"_s}).out;
            return out.sliced(out.lastIndexOf("/a") + 2).replace(".css\n", "");
        };
        const QStringList file{u"--settings"_s, u"s.json"_s};
        const QStringList once{u"--set"_s, u"suffixKeyString=-set"_s};
        QCOMPARE(suffix({}), QByteArray("-user"));
        QCOMPARE(suffix(file), QByteArray("-file"));
        QCOMPARE(suffix(once), QByteArray("-set"));
        QCOMPARE(suffix(once + file), QByteArray("-set"));
        QCOMPARE(suffix(once + QStringList{u"--set"_s, u"suffixKeyString=1.50"_s}), QByteArray("1.50"));
    }

    void settingsAreNeverWritten()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        QCOMPARE(sandbox.run({u"--set"_s, u"suffixKeyString=-x"_s, u"a.css"_s}).status, 0);
        QVERIFY(sandbox.has(u"a-x.css"_s));
        QCOMPARE(tree(sandbox.home()).keys(), QStringList());
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

    void noFolderForTheOutputs_data()
    {
        QTest::addColumn<QStringList>("options");
        const QStringList other{u"--set"_s, u"sameFolderKeyString=false"_s};
        QTest::newRow("never chosen") << other;
        QTest::newRow("empty") << other + QStringList{u"--set"_s, u"selectedFolderKeyString="_s};
        QTest::newRow("list") << other + QStringList{u"--list"_s};
    }

    void noFolderForTheOutputs()
    {
        // It would be the root.
        QFETCH(QStringList, options);
        const Sandbox sandbox;
        sandbox.add(u"brevant-test-a.css"_s, css);
        const Ended ended = sandbox.run(options + QStringList{u"brevant-test-a.css"_s});
        QCOMPARE(ended.err, QByteArray("brevant-cli: sameFolderKeyString is not true, and "
                                       "selectedFolderKeyString names no folder for the outputs\n"));
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 2);
        QVERIFY(!QFile::remove(u"/brevant-test-a.min.css"_s));
    }

    void theWorkingFolderIsGone()
    {
        const Sandbox sandbox;
        const QString source = sandbox.add(u"a.css"_s, css);
        sandbox.add(u"gone/x"_s, "");
        const Ended ended = sandbox.runShell(u"cd gone && rm -r ../gone && exec \"$CLI\" \"$1\""_s, {source});
        QCOMPARE(ended.err, QByteArray("brevant-cli: the working folder is gone\n"));
        QCOMPARE(ended.status, 2);
        QVERIFY(!sandbox.has(u"a.min.css"_s));
    }

    void unknownKeysAreNamedOnce()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"s.json"_s, R"({"sufixKeyString": "-x", "suffixKeyString": "-m", "gzip\u001b": true})");
        const Ended ended = sandbox.run({u"--settings"_s, u"s.json"_s, u"a.css"_s});
        QCOMPARE(ended.err,
                 QByteArray("brevant-cli: the settings file s.json holds what is no setting: gzip\\x1b, "
                            "sufixKeyString\n"));
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a-m.css"_s), cssMinified);
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

BREVANT_TEST(tst_BrevantCli, QCoreApplication)
#include "tst_BrevantCli.moc"
