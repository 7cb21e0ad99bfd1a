// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/Pty.h"
#include "tests/cli/WatchedSite.h"

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What --watch minifies, with the real compressors.
class tst_BrevantCliWatch final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void firstRunAndChanges()
    {
        WatchedSite site;
        const QString a = site.sandbox.add(u"site/a.css"_s, "a { b : c }");
        site.sandbox.add(u"site/sub/b.js"_s, "let  x = 1;");
        QVERIFY2(site.start({u"site"_s}), site.err());
        QVERIFY2(site.out().endsWith("Watching 2 files in 2 folders. Ctrl+C ends.\n"), site.out());
        QCOMPARE(site.sandbox.read(u"site/a.min.css"_s), "a{b:c}"_ba);
        site.sandbox.add(u"site/a.css"_s, "a { b : d }");
        QVERIFY(site.prints(" " + QFile::encodeName(a) + " -> a.min.css, 11 -> 6 bytes, 45.5 % saved\n"));
        QCOMPARE(site.sandbox.read(u"site/a.min.css"_s), "a{b:d}"_ba);
        QVERIFY(replaceFile(a, "a { b : e }"));
        QVERIFY(site.makes(u"site/a.min.css"_s, "a{b:e}"));
        QCOMPARE(site.err(), QByteArray());
        QCOMPARE(site.count(u"site/sub/b.js"_s), 0);
    }

    void classicCompressors()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a { b : c }");
        QVERIFY2(site.start({u"--compressors=classic"_s, u"a.css"_s}), site.err());
        const QByteArray expected = bareOutput(site.sandbox.add(u"a.css"_s, "a { b : d }"));
        QVERIFY(site.makes(u"a.min.css"_s, expected));
    }

    void editors_data()
    {
        QTest::addColumn<QString>("script"); // leaves "a { b : d }" in a.css
        const QString text = u"'a { b : d }'"_s;
        QTest::newRow("written over") << u"printf %s %1 >a.css"_s.arg(text);
        QTest::newRow("renamed over") << u"printf %s %1 >.a.css.swp; mv .a.css.swp a.css"_s.arg(text);
        QTest::newRow("probe, backup, new file")
            << u">4913; rm 4913; mv a.css a.css~; printf %s %1 >a.css; rm a.css~"_s.arg(text);
        QTest::newRow("backup copy") << u"cp a.css a.css~; printf %s %1 >a.css; rm a.css~"_s.arg(text);
        QTest::newRow("deleted before") << u"rm a.css; printf %s %1 >a.css"_s.arg(text);
        QTest::newRow("another name for it") << u"printf %s %1 >t; rm a.css; ln t a.css; rm t"_s.arg(text);
        QTest::newRow("linked to") << u"printf %s %1 >t; ln -sf t a.css"_s.arg(text);
        QTest::newRow("several times")
            << u"for i in 1 2 3 4; do printf x >a.css; done; printf %s %1 >a.css"_s.arg(text);
    }

    void editors()
    {
        QFETCH(QString, script);
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a { b : c }");
        QVERIFY2(site.start({u"a.css"_s}), site.err());
        QCOMPARE(site.sandbox.runShell(script).status, 0);
        QVERIFY2(site.makes(u"a.min.css"_s, "a{b:d}"), site.out() + site.err());
        QCOMPARE(site.err(), QByteArray());
    }

    void newFolders()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"."_s}), site.err());
        // At a stroke, so that files are there before their folder is watched.
        QCOMPARE(site.sandbox.runShell(u"mkdir -p x/y/z; printf 'a{b:c}' >x/y/n.css"_s).status, 0);
        QVERIFY(site.makes(u"x/y/n.min.css"_s, "a{b:c}"));
        site.sandbox.add(u"x/y/z/o.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"x/y/z/o.min.css"_s, "a{b:d}"));
        // Moved in, moved on, and changed there.
        QDir(site.sandbox.home()).mkdir(u"f"_s);
        QVERIFY(writeFile(site.sandbox.home() + u"/f/p.css"_s, "a{b:c}"));
        QCOMPARE(site.sandbox.runShell(u"mv \"$HOME/f\" f"_s).status, 0);
        QVERIFY(site.makes(u"f/p.min.css"_s, "a{b:c}"));
        QCOMPARE(site.sandbox.runShell(u"mv f x/g"_s).status, 0);
        QVERIFY(site.prints("/x/g/p.css -> p.min.css"));
        site.sandbox.add(u"x/g/p.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"x/g/p.min.css"_s, "a{b:d}"));
        QCOMPARE(site.sandbox.runShell(u"rm -r x"_s).status, 0);
        QVERIFY(site.catchesUp());
        QCOMPARE(site.err(), QByteArray());
    }

    void pathsThatComeBack()
    {
        WatchedSite site;
        site.sandbox.add(u"top/site/a.css"_s, "a{b:c}");
        site.sandbox.add(u"b.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"top/site"_s, u"b.css"_s}), site.err());
        QCOMPARE(site.sandbox.runShell(u"rm -r top"_s).status, 0);
        QVERIFY(site.complains("/top/site is gone; it is watched again when it is back\n"));
        site.sandbox.add(u"b.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"b.min.css"_s, "a{b:d}"));
        site.sandbox.add(u"top/site/sub/c.css"_s, "a { b : c }");
        QVERIFY(site.makes(u"top/site/sub/c.min.css"_s, "a{b:c}"));
        site.sandbox.add(u"top/site/sub/c.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"top/site/sub/c.min.css"_s, "a{b:d}"));
        // Away and back by another name above it.
        QCOMPARE(site.sandbox.runShell(u"mv top/site gone"_s).status, 0);
        QVERIFY(QTest::qWaitFor([&] { return site.err().count("is gone") == 2; }, WatchedSite::longestWait));
        QCOMPARE(site.sandbox.runShell(u"rm gone/sub/c.min.css; mv gone top/site"_s).status, 0);
        QVERIFY(site.makes(u"top/site/sub/c.min.css"_s, "a{b:d}"));
        QCOMPARE(site.count(u"b.css"_s), 1);
    }

    void workingFolderMadeAnew_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("deleted") << u"rm -r \"$PWD\""_s;
        QTest::newRow("moved away") << u"mv \"$PWD\" ../moved"_s;
    }

    void workingFolderMadeAnew()
    {
        QFETCH(QString, script);
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"."_s, u"--exclude=/old.css"_s}), site.err());
        QCOMPARE(site.sandbox.runShell(script).status, 0);
        QVERIFY(site.complains(" is gone; it is watched again when it is back\n"));
        site.sandbox.add(u"old.css"_s, "a { b : d }");
        site.sandbox.add(u"a.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"a.min.css"_s, "a{b:d}"));
        QVERIFY(site.catchesUp());
        QVERIFY(!site.sandbox.has(u"old.min.css"_s));
    }

    void rulesOfAnyRun()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"--exclude"_s, u"old/"_s, u"--exclude=/sub/x.css"_s, u"."_s}), site.err());
        for (const QString &name : {u"old/a.css"_s, u"old/new/a.css"_s, u"node_modules/a.css"_s, u"a.txt"_s,
                                    u"sub/x.css"_s, u".git/a.css"_s, u"sub/y.css"_s, u"sub/y.min.css"_s})
            site.sandbox.add(name, "a { b : c }");
        QVERIFY(site.makes(u"sub/y.min.css"_s, "a{b:c}"));
        site.sandbox.add(u"old/b.css"_s, "a{b:c}");
        site.sandbox.add(u"node_modules/b.css"_s, "a{b:c}");
        site.sandbox.add(u"sub/x.css"_s, "a{b:c}");
        site.sandbox.add(u"a.min.css"_s, "a{b:c}");
        QVERIFY(site.catchesUp());
        const QStringList names = tree(site.sandbox.path()).keys();
        QCOMPARE(names.filter(u".min."_s),
                 QStringList({u"a.min.css"_s, u"marker1.min.css"_s, u"sub/y.min.css"_s}));
        QCOMPARE(site.err(), QByteArray());
    }

    void gitignoreOfTheMoment()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QCOMPARE(site.sandbox.runShell(u"git init -q ."_s).status, 0);
        QVERIFY2(site.start({u"--gitignore"_s, u"."_s}), site.err());
        site.sandbox.add(u".gitignore"_s, "/late/\nx.css\n");
        site.sandbox.add(u"late/a.css"_s, "a{b:c}");
        site.sandbox.add(u"x.css"_s, "a{b:c}");
        QVERIFY(site.catchesUp());
        QVERIFY(!site.sandbox.has(u"late/a.min.css"_s));
        QVERIFY(!site.sandbox.has(u"x.min.css"_s));
        site.sandbox.add(u".gitignore"_s, "");
        site.sandbox.add(u"x.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"x.min.css"_s, "a{b:d}"));
    }

    void foldersIgnoredWhileWatched()
    {
        WatchedSite site;
        site.sandbox.add(u"gen/deep/a.css"_s, "a{b:c}");
        QCOMPARE(site.sandbox.runShell(u"git init -q ."_s).status, 0);
        QVERIFY2(site.start({u"--gitignore"_s, u"."_s}), site.err());
        QCOMPARE(site.sandbox.read(u"gen/deep/a.min.css"_s), "a{b:c}"_ba);
        site.sandbox.add(u".gitignore"_s, "/gen/\n");
        for (const QString &name : {u"gen/a.css"_s, u"gen/deep/a.css"_s, u"gen/deep/new/a.css"_s})
            site.sandbox.add(name, "a { b : d }");
        QVERIFY(site.catchesUp());
        QVERIFY(!site.sandbox.has(u"gen/a.min.css"_s) && !site.sandbox.has(u"gen/deep/new/a.min.css"_s));
        QCOMPARE(site.sandbox.read(u"gen/deep/a.min.css"_s), "a{b:c}"_ba);
        site.sandbox.add(u".gitignore"_s, "");
        site.sandbox.add(u"gen/deep/a.css"_s, "a { b : e }");
        QVERIFY(site.makes(u"gen/deep/a.min.css"_s, "a{b:e}"));
        QCOMPARE(site.err(), QByteArray());
    }

    void outputsStartNothing_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("beside") << QStringList{u"--gzip"_s, u"--source-maps"_s};
        QTest::newRow("another folder below")
            << QStringList{u"--set=sameFolderKeyString=false"_s, u"--set=selectedFolderKeyString=out"_s};
    }

    void outputsStartNothing()
    {
        QFETCH(QStringList, options);
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        site.sandbox.add(u"out/readme"_s, "");
        QVERIFY2(site.start(options + QStringList{u"."_s}), site.err());
        site.sandbox.add(u"a.css"_s, "a { b : d }");
        QVERIFY(site.catchesUp());
        // The source goes and its output stays, which is no source for that.
        QVERIFY(QFile::remove(site.sandbox.path(u"a.css"_s)));
        QVERIFY(site.catchesUp());
        QVERIFY(site.catchesUp());
        QVERIFY2(tree(site.sandbox.path()).keys().filter(u".min.min."_s).isEmpty(), site.out());
        const QByteArray after = site.out().sliced(site.out().indexOf("Ctrl+C ends.\n"));
        QVERIFY2(after.count('\n') == 1 + 4, site.out());
        QCOMPARE(site.err(), QByteArray());
    }

    void failuresAndVanished()
    {
        WatchedSite site;
        site.sandbox.add(u"a.js"_s, "let a = 1;");
        QVERIFY2(site.start({u"."_s}), site.err());
        site.sandbox.add(u"a.js"_s, "let a = 1;\nlet x = ;\n");
        QVERIFY(site.complains("Failed: " + QFile::encodeName(site.sandbox.path(u"a.js"_s)) +
                               ": line 2, column 9: "));
        QVERIFY2(site.err().contains("    let x = ;\n"), site.err());
        QCOMPARE(site.sandbox.runShell(u"echo 'a{}' >\"$(printf 'r\\377.css')\""_s).status, 0);
        QVERIFY2(site.complains("r\\xFF.css: not minified: its path is not valid UTF-8"), site.err());
        QCOMPARE(site.sandbox.runShell(u"rm r*.css"_s).status, 0); // which Qt could not
        const QByteArray complaints = site.err();
        QCOMPARE(site.sandbox.runShell(u"for i in 1 2 3; do echo >$i.css; rm $i.css; done"_s).status, 0);
        site.sandbox.add(u"a.js"_s, "let a = 2;");
        QVERIFY(site.makes(u"a.min.js"_s, "let a=2;"));
        QCOMPARE(site.err(), complaints);
    }

    void changedWhileMinified()
    {
        WatchedSite site;
        site.sandbox.add(u"a.js"_s, "var a = 1;");
        QVERIFY2(site.start({u"--compressors=classic"_s, u"a.js"_s}), site.err());
        site.sandbox.add(u"a.js"_s, manyFunctions(1500));
        const auto program = static_cast<pid_t>(site.process().processId());
        pid_t java = -1;
        QVERIFY(QTest::qWaitFor([&] { return (java = childRunning(program, u"/usr/bin/java"_s)) > 0; },
                                WatchedSite::longestWait));
        ::kill(java, SIGSTOP);
        const QByteArray expected = bareOutput(site.sandbox.add(u"a.js"_s, "var b = 2;"));
        ::kill(java, SIGCONT);
        QVERIFY(QTest::qWaitFor([&] { return site.count(u"a.js"_s) == 2; }, WatchedSite::longestWait));
        QCOMPARE(site.sandbox.read(u"a.min.js"_s), expected);
    }

    void whatNeverSettles()
    {
        WatchedSite site;
        site.sandbox.add(u"a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"."_s}), site.err());
        int number = 0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                site.sandbox.add(u"a.css"_s, "a{b:c" + QByteArray::number(++number) + "}");
                return site.count(u"a.css"_s) > 0;
            },
            WatchedSite::longestWait));
        QVERIFY(site.makes(u"a.min.css"_s, "a{b:c" + QByteArray::number(number) + "}"));
    }

    void quiet()
    {
        WatchedSite site;
        site.sandbox.add(u"a.js"_s, "let  a = 1;");
        site.process().setProcessEnvironment(site.sandbox.environment);
        site.process().setWorkingDirectory(site.sandbox.path());
        site.process().start(cliProgram(),
                             {u"--watch"_s, u"--delete"_s, u"--quiet"_s, u"--compressors=modern"_s, u"."_s});
        QVERIFY(site.makes(u"a.min.js"_s, "let a=1;"));
        site.sandbox.add(u"a.js"_s, "let a = ;");
        QVERIFY(site.complains("Failed: "));
        QVERIFY(QFile::remove(site.sandbox.path(u"a.js"_s)));
        QVERIFY(QTest::qWaitFor([&] { return !site.sandbox.has(u"a.min.js"_s); }, WatchedSite::longestWait));
        QCOMPARE(site.err().count('\n'), 1);
        QCOMPARE(site.out(), QByteArray());
    }
};

BREVANT_TEST(tst_BrevantCliWatch, QCoreApplication)
#include "tst_BrevantCliWatch.moc"
