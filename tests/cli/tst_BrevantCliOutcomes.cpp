// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What counts as done, with the real compressors: their exit status alone does not tell.
class tst_BrevantCliOutcomes final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void outcomes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("older");  // output of a run before; null for none
        QTest::addColumn<QByteArray>("output"); // what is left
        QTest::addColumn<QByteArray>("reason"); // empty if done

        const QByteArray none;
        const QByteArray absent("(cannot be read)");
        const QByteArray old("older");
        QTest::newRow("css") << u"a.css"_s << QByteArray("a { b : c ; }") << none << QByteArray("a{b:c}")
                             << none;
        QTest::newRow("css over an older output")
            << u"a.css"_s << QByteArray("a { b : c ; }") << old << QByteArray("a{b:c}") << none;
        QTest::newRow("empty css") << u"a.css"_s << QByteArray("") << none << QByteArray("") << none;
        QTest::newRow("empty html") << u"a.html"_s << QByteArray("") << old << QByteArray("") << none;
        QTest::newRow("css of comments")
            << u"a.css"_s << QByteArray(" /* a */\n/* b **/ ") << none << QByteArray("") << none;
        QTest::newRow("blank css") << u"a.css"_s << QByteArray(" \t\r\n") << old << QByteArray("") << none;
        QTest::newRow("html of comments")
            << u"a.html"_s << QByteArray("<!-- a -->\n<!----> <!--b-->") << none << QByteArray("") << none;
        QTest::newRow("html with a condition") << u"a.html"_s << QByteArray("<!--[if IE]>a<![endif]-->")
                                               << none << QByteArray("<!--[if IE]>a<![endif]-->") << none;
        QTest::newRow("css of an empty rule")
            << u"a.css"_s << QByteArray("/* a */ a { }") << none << QByteArray("")
            << QByteArray("the compressor left an empty output");
        QTest::newRow("js of a comment") << u"a.js"_s << QByteArray("/* a */\n") << none << QByteArray("")
                                         << QByteArray("the compressor ended with status 1");
        QTest::newRow("empty js") << u"a.js"_s << QByteArray("") << old << QByteArray("")
                                  << QByteArray("the compressor ended with status 1");
        QTest::newRow("bad js") << u"a.js"_s << QByteArray("var = ;") << none << absent
                                << QByteArray("the compressor ended with status 2");
        QTest::newRow("bad js, older output") << u"a.js"_s << QByteArray("var f = () => 1;") << old << old
                                              << QByteArray("the compressor ended with status 2");
        QTest::newRow("bad script in html") << u"a.html"_s << QByteArray("<script>var = ;</script>") << old
                                            << old << QByteArray("the compressor ended with status 1");
    }

    void outcomes()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, older);
        QFETCH(QByteArray, reason);
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(name, source));
        const QString output = u"a.min."_s + name.section(u'.', -1);
        if (!older.isNull())
            sandbox.add(output, older);
        const Ended ended = sandbox.run({name});
        QTEST(sandbox.read(output), "output");
        QCOMPARE(sandbox.read(name), source);
        QCOMPARE(ended.status, reason.isEmpty() ? 0 : 1);
        if (reason.isEmpty()) {
            QCOMPARE(ended.err, QByteArray());
        } else {
            QVERIFY2(ended.err.endsWith("Failed: " + path + ": " + reason + "\n"), ended.err);
            QVERIFY2(ended.out.startsWith("Minified 1 of 1 items. " + path + ": " + reason + "\n"),
                     ended.out);
            QVERIFY2(ended.out.endsWith("0 files: 0 -> 0 bytes, 0 % saved; 1 failed.\n"), ended.out);
        }
    }

    void failuresByName()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, "var = ;");
        sandbox.add(u"b.css"_s, "b { c : d ; }");
        sandbox.add(u"c\n.js"_s, "");
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const Ended ended = sandbox.run({u"a.js"_s, u"b.css"_s, u"c\n.js"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("[ERROR]"), ended.err); // the compressor's own words
        QVERIFY2(ended.err.endsWith("Failed: " + folder + "/a.js: the compressor ended with status 2\n" +
                                    "Failed: " + folder + "/c\\n.js: the compressor ended with status 1\n"),
                 ended.err);
        QCOMPARE(ended.err.count("Failed: "), 2);
        QVERIFY2(ended.out.endsWith("Well done!\n1 file: 13 -> 6 bytes, 53.8 % saved; 2 failed.\n"),
                 ended.out);
        QCOMPARE(sandbox.read(u"b.min.css"_s), QByteArray("b{c:d}"));
    }

    void vanishedSourceAndOlderOutput()
    {
        // The compressor for HTML says ERROR and ends with 0.
        const Sandbox sandbox;
        QVERIFY(QFile::link(u"/nonexistent/page"_s, sandbox.path(u"gone.html"_s)));
        sandbox.add(u"gone.min.html"_s, "older");
        const QByteArray path = QFile::encodeName(sandbox.path(u"gone.html"_s));
        const Ended ended = sandbox.run({u"gone.html"_s});
        QVERIFY2(ended.out.contains("ERROR"), ended.out);
        QCOMPARE(ended.err, "Failed: " + path + ": the source cannot be read: No such file or directory\n");
        QCOMPARE(ended.status, 1);
        QCOMPARE(sandbox.read(u"gone.min.html"_s), QByteArray("older"));
    }

    void overItsOwnSource()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        const QStringList arguments{u"--set"_s, u"suffixSwitcherKeyString=false"_s, u"a.css"_s};
        // The second time nothing changes but the time, and that is a success.
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(sandbox.run(arguments).status, 0);
            QCOMPARE(tree(sandbox.path()), (QMap<QString, QByteArray>{{u"a.css"_s, "a{b:c}"}}));
        }
    }

    void olderCopyIsNoCopy()
    {
        // The compressor leaves nothing, and the older copy brings the older output back: still a failure.
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        const QStringList options{u"--set"_s, u"gzipCheckerKeyString=true"_s};
        QCOMPARE(sandbox.run(options + QStringList{u"a.css"_s}).status, 0);
        sandbox.add(u"a.js"_s, "var = ;");
        QVERIFY(QFile::copy(sandbox.path(u"a.min.css.gz"_s), sandbox.path(u"a.min.js.gz"_s)));
        const Ended ended = sandbox.run(options + QStringList{u"a.js"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("a.js: the compressor ended with status 2\n"), ended.err);
        QCOMPARE(sandbox.read(u"a.min.js"_s), QByteArray("a{b:c}"));
    }

    void missingFolder()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        sandbox.add(u"b.html"_s, "<p>a</p>");
        const Ended ended =
            sandbox.run({u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s,
                         u"selectedFolderKeyString="_s + sandbox.path(u"new"_s), u"a.css"_s, u"b.html"_s});
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.err.count("Failed: "), 1);
        QVERIFY(!sandbox.has(u"new/a.min.css"_s));
        QCOMPARE(sandbox.read(u"new/b.min.html"_s),
                 QByteArray("<p>a</p>")); // that compressor makes the folder
    }

    void noOutputPath()
    {
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.css"_s, "a { b : c ; }"));
        sandbox.add(u"../s.json"_s, R"({"suffixSwitcherKeyString": 1})");
        const Ended ended = sandbox.run({u"--settings"_s, u"../s.json"_s, u"a.css"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.endsWith("Failed: " + path +
                                    ": not minified: suffixSwitcherKeyString is neither true nor false\n"),
                 ended.err);
        QCOMPARE(tree(sandbox.path()).keys(), QStringList{u"a.css"_s});
    }

    void obstacles_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("output is a folder") << u"taken"_s << QByteArray("the output is a folder");
        QTest::newRow("no such folder")
            << u"new"_s << QByteArray("the folder of the output: No such file or directory");
        QTest::newRow("a file as folder")
            << u"file"_s << QByteArray("the folder of the output: Not a directory");
        QTest::newRow("no such source")
            << u"out"_s << QByteArray("the source cannot be read: No such file or directory");
    }

    void obstacles()
    {
        QFETCH(QString, folder);
        QFETCH(QByteArray, reason);
        const Sandbox sandbox;
        sandbox.add(u"file"_s, "");
        sandbox.add(u"taken/a.min.css/x"_s, "");
        sandbox.add(u"out/x"_s, "");
        if (folder == u"out")
            QVERIFY(QFile::link(u"/nonexistent/a.css"_s, sandbox.path(u"a.css"_s)));
        else
            sandbox.add(u"a.css"_s, "a { b : c ; }");
        const Ended ended = sandbox.run({u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s,
                                         u"selectedFolderKeyString="_s + folder, u"a.css"_s});
        QCOMPARE(ended.status, 1);
        const QByteArray path = QFile::encodeName(sandbox.path(u"a.css"_s));
        QVERIFY2(ended.err.endsWith("Failed: " + path + ": " + reason + "\n"), ended.err);
    }

    void whatMayNotBeTouched_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("source") << u"w/a.css"_s << 0 << QByteArray("the source cannot be read");
        QTest::newRow("output") << u"w/a.min.css"_s << 0400 << QByteArray("the output cannot be written");
        QTest::newRow("folder") << u"w"_s << 0500 << QByteArray("the folder of the output cannot be written");
    }

    void whatMayNotBeTouched()
    {
        QFETCH(QString, name);
        QFETCH(int, mode);
        QFETCH(QByteArray, reason);
        const OrdinaryUser user;
        if (!user.isReady())
            QSKIP("cannot become an ordinary user here");
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"w/a.css"_s, "a { b : c ; }"));
        if (name == u"w/a.min.css")
            sandbox.add(name, "old");
        QVERIFY(setMode(sandbox.path(name), static_cast<mode_t>(mode)));
        const Ended ended = sandbox.run({u"w/a.css"_s});
        QVERIFY(setMode(sandbox.path(name), 0700));
        if (ended.status == -1)
            QSKIP("an ordinary user may not run the program here");
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.endsWith("Failed: " + path + ": " + reason + ": Permission denied\n"), ended.err);
    }

    void anEmptyRunIsReportedToo()
    {
        const Sandbox sandbox;
        sandbox.add(u"notes.txt"_s, "nothing to minify");
        sandbox.add(u"report.json"_s, "from the run before");
        QCOMPARE(sandbox.run({u"--report"_s, u"report.json"_s, u"notes.txt"_s}).status, 0);
        QVERIFY(sandbox.read(u"report.json"_s).contains("\"files\": [\n    ]"));
    }

    void aFolderToSaveInCountsFromHere()
    {
        const Sandbox sandbox;
        sandbox.add(u"site/a.css"_s, "a { b : c }");
        QVERIFY(QDir().mkdir(sandbox.path(u"out"_s)));
        const Ended ended = sandbox.run({u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s,
                                         u"selectedFolderKeyString=out"_s, u"site"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"out/a.min.css"_s), QByteArray("a{b:c}"));
    }
};

BREVANT_TEST(tst_BrevantCliOutcomes, QCoreApplication)
#include "tst_BrevantCliOutcomes.moc"
