// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/ChangedSite.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <csignal>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Runs with --changed that fail, that are stopped, that share their outputs with others.
class tst_BrevantCliChangedRuns final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void aFileThatFails()
    {
        const ChangedSite site;
        site.sandbox.add(u"w/b.js"_s, "var first = ;");
        QCOMPARE(site.run().status, 1);
        const Ended again = site.run();
        QCOMPARE(again.status, 1);
        QVERIFY2(again.out.startsWith("2 files unchanged.\n"), again.out);
        QVERIFY2(again.err.contains("Failed: "), again.err);
        site.sandbox.add(u"w/b.js"_s, "var first = 1;");
        QCOMPARE(site.done(), QStringList{u"b.js"_s});
        QCOMPARE(site.done(), QStringList());
    }

    void partOfTheTree()
    {
        const ChangedSite site;
        QCOMPARE(site.done(), all);
        site.sandbox.add(u"w/a.css"_s, "a { b : d ; }");
        QCOMPARE(site.sandbox.run(site.options + QStringList{u"w/a.css"_s}).status, 0);
        QCOMPARE(site.done(), QStringList());
    }

    void whatIsPrinted()
    {
        const ChangedSite site;
        QCOMPARE(site.run({u"--list"_s}).out.count('\n'), 3);
        QCOMPARE(site.run({u"--dry-run"_s}).out.count('\n'), 3);
        QVERIFY(!site.sandbox.has(u".brevant-cache.json"_s));
        QCOMPARE(site.done(), all);
        site.sandbox.add(u"w/a.css"_s, "a { b : d ; }");
        const QByteArray source = QFile::encodeName(site.sandbox.path(u"w/a.css"_s));
        const Ended list = site.run({u"--list"_s});
        QVERIFY2(list.out.startsWith(source + '\t'), list.out);
        QCOMPARE(list.out.count('\n'), 1);
        QVERIFY2(list.err.endsWith("2 files unchanged.\n"), list.err);
        const Ended commands = site.run({u"--dry-run"_s});
        QVERIFY2(commands.out.contains(" < " + source + " > "), commands.out);
        QCOMPARE(commands.out.count('\n'), 1);
        QCOMPARE(commands.err, QByteArray("2 files unchanged.\n"));
        QCOMPARE(site.run({u"--list"_s, u"--quiet"_s}).err, QByteArray());
        site.sandbox.add(u"w/b.js"_s, "var third = 1 ;");
        QVERIFY(site.run().out.startsWith("1 file unchanged.\nMinified 1 of 2 items."));
        const Ended quiet = site.run({u"--quiet"_s});
        QCOMPARE(quiet.out + quiet.err, QByteArray());
    }

    /// Neither is what has been done before written over by what is left.
    void othersOutputs_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("run") << QStringList{};
        QTest::newRow("dry run") << QStringList{u"--dry-run"_s};
    }

    void othersOutputs()
    {
        QFETCH(QStringList, options);
        ChangedSite site;
        site.options << u"--all"_s << u"--sort"_s;
        site.sandbox.add(u"w/a.min.css"_s, css);
        const Ended first = site.run();
        QVERIFY2(first.err.contains("is the source of another file in the list"), first.err);
        const Ended second = site.run(options);
        QVERIFY2((second.out + second.err).contains("is the source of another file in the list"),
                 second.out + second.err);
        QCOMPARE(site.sandbox.read(u"w/a.min.css"_s), css);

        QVERIFY(QFile::remove(site.sandbox.path(u"w/a.min.css"_s)));
        site.sandbox.add(u"w/sub/a.css"_s, "a { b : d ; }");
        QVERIFY(QDir().mkdir(site.sandbox.path(u"out"_s)));
        site.options = QStringList{u"--changed"_s, u"--sort"_s,
                                   u"--set"_s,     u"sameFolderKeyString=false"_s,
                                   u"--set"_s,     u"selectedFolderKeyString=out"_s} +
                       options;
        if (options.isEmpty())
            QVERIFY(site.run().err.contains("is that of another file in the list"));
        const Ended fourth = site.run();
        QVERIFY2((fourth.out + fourth.err).contains("is that of another file in the list"),
                 fourth.out + fourth.err);
        QVERIFY(!options.isEmpty() || site.sandbox.read(u"out/a.min.css"_s) == "a{b:c}");
    }

    void inPlace_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("no suffix") << QStringList{u"--set"_s, u"suffixSwitcherKeyString=false"_s};
        QTest::newRow("empty suffix") << QStringList{u"--set"_s, u"suffixKeyString="_s};
        QTest::newRow("list") << QStringList{u"--set"_s, u"suffixKeyString="_s, u"--list"_s};
        QTest::newRow("the folder of the sources")
            << QStringList{u"--set"_s, u"suffixKeyString="_s,
                           u"--set"_s, u"sameFolderKeyString=false"_s,
                           u"--set"_s, u"selectedFolderKeyString=link"_s};
    }

    void inPlace()
    {
        QFETCH(QStringList, options);
        const ChangedSite site;
        QVERIFY(makeLink(u"w"_s, site.sandbox.path(u"link"_s)));
        const auto tree = brevant::test::tree(site.sandbox.path());
        const Ended ended = site.run(QStringList{u"--sort"_s} + options);
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.err,
                 "brevant-cli: --changed cannot tell what is done where outputs replace their sources, "
                 "as that of " +
                     QFile::encodeName(site.sandbox.path(u"w/a.css"_s)) +
                     " would: add --suffix .min or --out-dir DIR\n");
        QCOMPARE(brevant::test::tree(site.sandbox.path()), tree);
    }

    void warningsAreSaidAgain()
    {
        ChangedSite site;
        site.options = {u"--changed"_s, u"--check"_s};
        site.sandbox.add(u"w/a.css"_s,
                         "@media (min-width:1px) and (max-width:2px){a{width:calc(1px + 2px)}}");
        const Ended first = site.run();
        if (!first.err.contains("Warning: "))
            QSKIP("the classic compressors damage nothing of this");
        QCOMPARE(first.status, 1);
        const Ended second = site.run();
        QCOMPARE(second.err, first.err);
        QCOMPARE(second.status, 1);
    }

    /// What was done before a stop is not done again.
    void stopped()
    {
        ChangedSite site;
        site.options = {u"--changed"_s, u"--sort"_s, u"--jobs"_s, u"1"_s};
        site.sandbox.add(u"w/b.js"_s, manyFunctions(3000));
        const QString cli = cliProgram();
        const Ended ended =
            site.sandbox.runProgram(cli, site.options + QStringList{u"w"_s}, {}, [&](qint64 process) {
                QTRY_VERIFY_WITH_TIMEOUT(site.sandbox.has(u"w/a.min.css"_s) &&
                                             QFileInfo(site.sandbox.path(u"w/a.min.css"_s)).size() > 0,
                                         30'000);
                ::kill(static_cast<pid_t>(process), SIGTERM);
            });
        QCOMPARE(ended.status, 128 + SIGTERM);
        const QStringList left = site.done();
        QVERIFY2(!left.contains(u"a.css"_s) && left.contains(u"c.html"_s), qPrintable(left.join(u' ')));
        QCOMPARE(site.done(), QStringList());
    }

    void twoAtOnce()
    {
        ChangedSite site;
        for (int i = 0; i < 20; ++i)
            site.sandbox.add(u"w/%1.css"_s.arg(i), css);
        const Ended ended = site.sandbox.runShell(
            u"\"$CLI\" \"$@\" --shard 1/2 w & one=$!; \"$CLI\" \"$@\" --shard 2/2 w || exit 1; wait $one"_s,
            site.options);
        QCOMPARE(ended.status, 0);
        QCOMPARE(site.done(), QStringList());
    }

    void readOnlyFolder()
    {
        const OrdinaryUser user;
        if (!user.isReady())
            QSKIP("cannot become an ordinary user here");
        ChangedSite site;
        QVERIFY(setMode(site.sandbox.path(), 0500));
        const Ended ended = site.run();
        QVERIFY(setMode(site.sandbox.path(), 0700));
        if (ended.status == -1)
            QSKIP("an ordinary user may not run the program here");
        QCOMPARE(ended.err, "brevant-cli: " + QFile::encodeName(site.sandbox.path(u".brevant-cache.json"_s)) +
                                " cannot be written: Permission denied\n");
        QCOMPARE(ended.status, 0);
        QVERIFY(site.sandbox.has(u"w/a.min.css"_s));
    }

    void notUsed()
    {
        const ChangedSite site;
        QVERIFY(makeLink(u"/etc/passwd"_s, site.sandbox.path(u".brevant-cache.json"_s)));
        const QByteArray why =
            "brevant-cli: " + QFile::encodeName(site.sandbox.path(u".brevant-cache.json"_s)) +
            " is not used: it is a link\n";
        for (int round = 0; round < 2; ++round) {
            const Ended ended = site.run();
            QCOMPARE(ended.err, why);
            QCOMPARE(ended.status, 0);
            QVERIFY2(ended.out.contains("\n3 files: "), ended.out);
        }
        QCOMPARE(site.run({u"--quiet"_s}).err, QByteArray());
        QCOMPARE(QFile::symLinkTarget(site.sandbox.path(u".brevant-cache.json"_s)), u"/etc/passwd"_s);
    }

    /// Such paths cannot be handed to a compressor, and stand in no cache.
    void rawBytes()
    {
        const ChangedSite site;
        QVERIFY(site.sandbox.runShell(u"cp w/a.css \"$(printf 'w/\\351.css')\""_s).status == 0);
        for (int round = 0; round < 2; ++round) {
            const Ended ended = site.run();
            QCOMPARE(ended.status, 1);
            QVERIFY2(ended.err.contains("is not valid UTF-8"), ended.err);
        }
        QVERIFY(site.sandbox.runShell(u"rm \"$(printf 'w/\\351.css')\""_s).status == 0);
        QVERIFY(QJsonDocument::fromJson(site.sandbox.read(u".brevant-cache.json"_s)).isObject());
    }
};

BREVANT_TEST(tst_BrevantCliChangedRuns, QCoreApplication)
#include "tst_BrevantCliChangedRuns.moc"
