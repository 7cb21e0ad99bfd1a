// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/Pty.h"
#include "tests/cli/WatchedSite.h"

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// How often the threads of a process have begun to wait, proc(5).
qint64 waitsOf(qint64 process)
{
    qint64 waits = 0;
    const QDir threads(u"/proc/%1/task"_s.arg(process));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QByteArray &line : readFile(threads.filePath(thread + u"/status"_s)).split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                waits += line.sliced(line.indexOf(':') + 1).trimmed().toLongLong();
        }
    }
    return waits;
}

/// Waits until a process has nothing to do: its one thread, without children, sleeps.
bool fallsAsleep(qint64 process)
{
    const QString folder = u"/proc/%1/"_s.arg(process);
    return QTest::qWaitFor(
        [&] {
            return readFile(folder + u"status"_s).contains("\nThreads:\t1\n") &&
                   readFile(folder + u"task/%1/children"_s.arg(process)).isEmpty() &&
                   readFile(folder + u"stat"_s).contains(") S ");
        },
        WatchedSite::longestWait);
}

} // namespace

/// How --watch waits and ends, what --delete deletes, and what they refuse.
class tst_BrevantCliWatchEnds final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void signals_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<int>("status");
        QTest::newRow("SIGINT") << SIGINT << 130;
        QTest::newRow("SIGTERM") << SIGTERM << 143;
        QTest::newRow("SIGHUP") << SIGHUP << 129;
    }

    void signals()
    {
        QFETCH(int, signal);
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"."_s}), site.err());
        QTEST(site.end(signal), "status");
        QCOMPARE(site.err(), QByteArray());
    }

    void signalDuringAFile()
    {
        WatchedSite site;
        site.sandbox.add(u"a.js"_s, "var a = 1;");
        QVERIFY2(site.start({u"--compressors=classic"_s, u"."_s}), site.err());
        const QString source = site.sandbox.add(u"a.js"_s, manyFunctions(1500));
        const auto program = static_cast<pid_t>(site.process().processId());
        pid_t java = -1;
        QVERIFY(QTest::qWaitFor([&] { return (java = childRunning(program, u"/usr/bin/java"_s)) > 0; },
                                WatchedSite::longestWait));
        ::kill(java, SIGSTOP);
        site.signal(SIGINT);
        QVERIFY(site.complains("Stopping after this file; once more to end at once.\n"));
        ::kill(java, SIGCONT);
        QVERIFY(site.process().waitForFinished(WatchedSite::longestWait));
        QCOMPARE(site.process().exitCode(), 130);
        QVERIFY(site.sandbox.read(u"a.min.js"_s) == bareOutput(source));
    }

    void onATerminal()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a{b:c}");
        Pty terminal(sandbox, {u"--watch"_s, u"--compressors=modern"_s, u"."_s});
        QVERIFY(terminal.waitUntil([&] { return terminal.output().contains("Ctrl+C ends.\r\n"); }));
        sandbox.add(u"a.css"_s, "a { b : d }");
        QVERIFY(terminal.waitUntil([&] { return terminal.output().endsWith("45.5 % saved\r\n"); }));
        QVERIFY(fallsAsleep(terminal.processId()));
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), 130);
        QVERIFY2(terminal.output().endsWith("saved\r\n^C\r\n"), terminal.output());
    }

    void nothingHappensWhileNothingChanges()
    {
        WatchedSite site;
        site.sandbox.add(u"site/a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"site"_s}), site.err());
        site.sandbox.add(u"site/a.css"_s, "a { b : d }");
        QVERIFY(site.prints("a.min.css, 11 -> 6"));
        const qint64 process = site.process().processId();
        QVERIFY(fallsAsleep(process));
        const qint64 before = waitsOf(process);
        for (int i = 0; i < 5; ++i) {
            site.sandbox.add(u"elsewhere/a%1.css"_s.arg(i), "a{b:c}");
            site.sandbox.add(u"../log%1.css"_s.arg(i), "a{b:c}"); // beside the working folder
            QCOMPARE(site.sandbox.run({u"--compressors=modern"_s, u"elsewhere"_s}).status, 0);
        }
        QCOMPARE(waitsOf(process), before);
        QCOMPARE(site.count(u"site/a.css"_s), 1);
    }

    void deletesItsOutputs()
    {
        WatchedSite site;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s, u"old/d.css"_s, u"out/readme"_s})
            site.sandbox.add(name, "a { b : c }");
        site.sandbox.add(u"b.min.css.gz"_s, "of somebody else");
        QVERIFY2(site.start({u"--delete"_s, u"--brotli"_s, u"--source-maps"_s, u"."_s}), site.err());
        for (const QString &name : {u"a.min.css"_s, u"a.min.css.br"_s, u"a.min.css.map"_s})
            QVERIFY2(site.sandbox.has(name), qPrintable(name));
        site.sandbox.add(u"c.min.css"_s, "by hand");
        QCOMPARE(site.sandbox.runShell(u"rm a.css b.css c.css; mv old/d.css e.css"_s).status, 0);
        QVERIFY(site.prints("/e.css -> e.min.css"));
        QVERIFY(site.catchesUp());
        QStringList names = tree(site.sandbox.path()).keys();
        names.removeIf([](const QString &name) { return name.startsWith(u"marker"); });
        QCOMPARE(names,
                 QStringList({u"b.min.css.gz"_s, u"c.min.css"_s, u"e.css"_s, u"e.min.css"_s,
                              u"e.min.css.br"_s, u"e.min.css.map"_s, u"old/"_s, u"out/"_s, u"out/readme"_s}));
        QVERIFY2(site.out().contains(" " + QFile::encodeName(site.sandbox.path(u"a.min.css"_s)) +
                                     " deleted, as a.css is gone\n"),
                 site.out());
        QCOMPARE(site.sandbox.read(u"c.min.css"_s), "by hand"_ba);
    }

    void deletesNothingUnasked()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"."_s}), site.err());
        QVERIFY(QFile::remove(site.sandbox.path(u"a.css"_s)));
        QVERIFY(site.catchesUp());
        QVERIFY(site.sandbox.has(u"a.min.css"_s));
    }

    void deletesForFoldersMovedAway()
    {
        WatchedSite site;
        site.sandbox.add(u"out/readme"_s, "");
        site.sandbox.add(u"src/f/a.css"_s, "a{b:c}");
        site.sandbox.add(u"src/b.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"--delete"_s, u"--set=sameFolderKeyString=false"_s,
                             u"--set=selectedFolderKeyString=out"_s, u"src"_s}),
                 site.err());
        QVERIFY(site.sandbox.has(u"out/a.min.css"_s));
        QCOMPARE(site.sandbox.runShell(u"mv src/f \"$HOME\""_s).status, 0);
        QVERIFY(
            QTest::qWaitFor([&] { return !site.sandbox.has(u"out/a.min.css"_s); }, WatchedSite::longestWait));
        QVERIFY(site.sandbox.has(u"out/b.min.css"_s));
    }

    void noOutputOverOthers()
    {
        // A new file that would be written over what another has: as in any run it fails.
        WatchedSite site;
        site.sandbox.add(u"out/readme"_s, "");
        site.sandbox.add(u"src/a.css"_s, "a{b:c}");
        site.sandbox.add(u"src/link.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"--set=sameFolderKeyString=false"_s, u"--set=selectedFolderKeyString=out"_s,
                             u"src"_s}),
                 site.err());
        const QByteArray source = "precious { b : c }";
        const QString precious = site.sandbox.add(u"src/precious.css"_s, source);
        QVERIFY(site.prints("/src/precious.css -> "));
        QVERIFY(makeHardLink(precious, site.sandbox.path(u"out/new.min.css"_s)));
        site.sandbox.add(u"src/new.css"_s, "a { b : d }");
        QVERIFY(site.complains("/out/new.min.css is the source of another file in the list\n"));
        QCOMPARE(site.sandbox.read(u"src/precious.css"_s), source);
    }

    void moreChangesThanTheSystemKeeps()
    {
        const int kept = readFile(u"/proc/sys/fs/inotify/max_queued_events"_s).trimmed().toInt();
        if (kept <= 0 || kept > 100'000)
            QSKIP("the system keeps too many changes");
        WatchedSite site;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"sub/c.css"_s, u"d.css"_s})
            site.sandbox.add(name, "a{b:c}");
        QVERIFY2(site.start({u"--delete"_s, u"."_s}), site.err());
        site.sandbox.add(u"sub/old/e.css"_s, "a{b:c}");
        QVERIFY(site.makes(u"sub/old/e.min.css"_s, "a{b:c}"));
        QTest::qWait(1100); // the slack that changes are given: the others are older than that
        site.sandbox.add(u"sub/old/e.css"_s, "a { b : c }");
        QVERIFY(
            QTest::qWaitFor([&] { return site.count(u"sub/old/e.css"_s) == 2; }, WatchedSite::longestWait));
        site.signal(SIGSTOP);
        const QString one = site.sandbox.path(u"one.txt"_s);
        const QString other = site.sandbox.path(u"other.txt"_s);
        for (int i = 0; i < kept; ++i) // each at least two changes
            QVERIFY(writeFile(i % 2 == 0 ? one : other, {}));
        site.sandbox.add(u"a.css"_s, "a { b : d }");
        QCOMPARE(site.sandbox.runShell(u"rm d.css; mv sub/old new; mkdir sub/more"_s).status, 0);
        site.sandbox.add(u"sub/more/f.css"_s, "a{b:c}");
        site.signal(SIGCONT);
        QVERIFY(site.makes(u"a.min.css"_s, "a{b:d}"));
        QVERIFY(site.makes(u"sub/more/f.min.css"_s, "a{b:c}"));
        QVERIFY(site.removes(u"d.min.css"_s));
        QCOMPARE(site.count(u"b.css"_s), 0);
        QCOMPARE(site.count(u"sub/c.css"_s), 0);
        // All is watched by its present name.
        site.sandbox.add(u"new/e.css"_s, "a { b : e }");
        site.sandbox.add(u"sub/c.css"_s, "a { b : e }");
        QVERIFY(site.makes(u"new/e.min.css"_s, "a{b:e}"));
        QVERIFY(site.makes(u"sub/c.min.css"_s, "a{b:e}"));
    }

    void limitsOfTheSystem_data()
    {
        QTest::addColumn<QString>("limit");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("watches") << u"2 >/proc/sys/user/max_inotify_watches"_s
                                 << "there are too many folders to watch: raise the limit with: sudo sysctl "
                                    "fs.inotify.max_user_watches="_ba;
        QTest::newRow("instances") << u"0 >/proc/sys/user/max_inotify_instances"_s
                                   << "too many programs watch folders: raise the limit with: sudo sysctl "
                                      "fs.inotify.max_user_instances="_ba;
    }

    void limitsOfTheSystem()
    {
        QFETCH(QString, limit);
        QFETCH(QByteArray, expected);
        const Sandbox sandbox;
        for (const QString &name : {u"a/a.css"_s, u"b/a.css"_s, u"c/a.css"_s})
            sandbox.add(name, "a{b:c}");
        const QString inside = u"unshare --user --map-root-user sh -c 'echo %1 && %2'"_s;
        if (sandbox.runShell(inside.arg(limit, u"true"_s)).status != 0)
            QSKIP("there are no limits that could be set here");
        const Ended ended =
            sandbox.runShell(inside.arg(limit, u"exec \"$CLI\" --watch --compressors modern ."_s));
        QVERIFY2(ended.err.startsWith("brevant-cli: --watch: " + expected), ended.err);
        QCOMPARE(ended.err.count('\n'), 1);
        QCOMPARE(ended.status, 1);
        QVERIFY(!sandbox.has(u"a/a.min.css"_s));
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected"); // @ is the working folder
        const auto beside = [](const QString &option) {
            return u"--watch and %1 cannot be used together: "_s.arg(option);
        };
        for (const QString &option : {u"--report=r"_s, u"--fail-fast"_s, u"--shard=1/2"_s, u"--all"_s})
            QTest::addRow("%s", qPrintable(option))
                << QStringList{option} << beside(option.section(u'=', 0, 0));
        QTest::newRow("--list") << QStringList{u"--list"_s}
                                << u"--watch needs a run, which --list and --dry-run are not\n"_s;
        QTest::newRow("--dry-run") << QStringList{u"--dry-run"_s}
                                   << u"--watch needs a run, which --list and --dry-run are not\n"_s;
        QTest::newRow("in place")
            << QStringList{u"--set=suffixSwitcherKeyString=false"_s}
            << u"--watch needs outputs apart from their sources, and @/a.css is both: add --suffix .min\n"_s;
        QTest::newRow("outputs among sources")
            << QStringList{u"--set=sameFolderKeyString=false"_s, u"--set=selectedFolderKeyString=sub"_s,
                           u"sub"_s}
            << u"--watch: outputs would go to @/sub, where sources are looked for: "
               "name another folder for them\n"_s;
    }

    void refusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a{b:c}");
        sandbox.add(u"sub/b.css"_s, "a{b:c}");
        const auto before = tree(sandbox.path());
        const Ended ended =
            sandbox.run(QStringList{u"--watch"_s, u"--compressors=modern"_s, u"."_s} + arguments);
        expected.replace(u'@', sandbox.path());
        QVERIFY2(ended.err.startsWith("brevant-cli: " + expected.toUtf8()), ended.err);
        QCOMPARE(ended.status, 2);
        QCOMPARE(tree(sandbox.path()), before);
    }

    void deleteAlone()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a{b:c}");
        const Ended ended = sandbox.run({u"--delete"_s, u"a.css"_s});
        QVERIFY2(ended.err.startsWith("brevant-cli: --delete needs --watch\n"), ended.err);
        QCOMPARE(ended.status, 2);
    }
};

BREVANT_TEST(tst_BrevantCliWatchEnds, QCoreApplication)
#include "tst_BrevantCliWatchEnds.moc"
