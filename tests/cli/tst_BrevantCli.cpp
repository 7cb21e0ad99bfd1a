// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QFile>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { color : red ; }\n");
const QByteArray cssMinified("a{color:red}");

} // namespace

/// The options of the built program and its settings.
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
        QCOMPARE(version.out.count('\n'), 5);
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
        const Ended init =
            sandbox.runShell(u"mkdir gone && cd gone && rmdir ../gone && exec \"$CLI\" --init"_s);
        QVERIFY(!QFile::remove(u"/brevant.json"_s));
        QCOMPARE(init.err, QByteArray("brevant-cli: the working folder is gone\n"));
        QCOMPARE(init.status, 2);
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
};

BREVANT_TEST(tst_BrevantCli, QCoreApplication)
#include "tst_BrevantCli.moc"
