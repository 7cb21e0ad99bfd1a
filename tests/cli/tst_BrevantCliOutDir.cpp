// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/OutDir.h"

#include <QDir>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The tree of outputs below --out-dir, and what is refused for its sake.
class tst_BrevantCliOutDir final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void mirrorsTrees_data()
    {
        QTest::addColumn<QStringList>("family");
        QTest::newRow("classic") << QStringList();
        if (hasModern())
            QTest::newRow("modern") << QStringList{u"--compressors=modern"_s};
    }

    void mirrorsTrees()
    {
        QFETCH(QStringList, family);
        const Sandbox sandbox;
        const QString deep = QString(u"d/"_s).repeated(40) + u"c.css"_s;
        for (const QString &name :
             {u"src/a.css"_s, u"src/ä 'b\"/x\ny.css"_s, u"src/"_s + deep, u"lone/e.css"_s})
            sandbox.add(name, css);
        const QMap<QString, QByteArray> before = tree(sandbox.path(u"src"_s));
        const Ended ended = sandbox.run(
            family + QStringList{u"--gzip"_s, u"--out-dir"_s, u"o/new/"_s, u"src"_s, u"lone/e.css"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.out.contains("\n4 files: "), ended.out);
        const QString deepOutput = QString(deep).replace(u"c.css"_s, u"c.min.css"_s);
        for (const QString &name : {u"a.min.css"_s, u"ä 'b\"/x\ny.min.css"_s, deepOutput, u"e.min.css"_s}) {
            QCOMPARE(sandbox.read(u"o/new/"_s + name), minified);
            QCOMPARE(decompressed(sandbox.path(u"o/new/"_s + name + u".gz"_s)), minified);
        }
        QCOMPARE(files(sandbox, u"o/new"_s).size(), 8);
        QCOMPARE(tree(sandbox.path(u"src"_s)), before);
    }

    /// As pages name them so.
    void withoutASuffixNamesStay()
    {
        const Sandbox sandbox;
        sandbox.add(u"src/Base.CSS"_s, css);
        QCOMPARE(sandbox.run({u"--out-dir"_s, u"o"_s, u"--no-suffix"_s, u"src"_s}).status, 0);
        QCOMPARE(files(sandbox, u"o"_s), QStringList(u"Base.CSS"_s));
    }

    void canBeRunAgain_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("inside the tree") << QStringList{u"--out-dir=dist"_s, u"."_s};
        QTest::newRow("inside the tree, all") << QStringList{u"--all"_s, u"--out-dir=./dist"_s, u"."_s};
        QTest::newRow("the tree itself") << QStringList{u"--out-dir=src/../src"_s, u"src"_s};
        QTest::newRow("the tree itself, through a link") << QStringList{u"--out-dir=link"_s, u"src"_s};
        QTest::newRow("above the tree") << QStringList{u"--out-dir=."_s, u"src"_s};
        QTest::newRow("with copies") << QStringList{u"--out-dir=dist"_s, u"--copy-rest"_s, u"."_s};
    }

    void canBeRunAgain()
    {
        QFETCH(QStringList, arguments);
        const Sandbox sandbox;
        sandbox.add(u"src/a/b.css"_s, css);
        sandbox.add(u"src/c.css"_s, css);
        sandbox.add(u"src/c.png"_s, "png");
        QVERIFY(makeLink(u"src"_s, sandbox.path(u"link"_s)));
        QCOMPARE(run(sandbox, arguments).status, 0);
        const QMap<QString, QByteArray> first = tree(sandbox.path());
        QVERIFY(first.values().contains(minified));
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(run(sandbox, arguments).status, 0);
            QCOMPARE(tree(sandbox.path()).keys(), first.keys());
        }
    }

    /// A list of files, and all parts of a tree, come to what the folder comes to.
    void listsAndPartsAreLikeTheFolder()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"a.css"_s, u"x/b.css"_s, u"x/y/c.js"_s, u"x/y/d.css"_s, u"z/e.html"_s})
            sandbox.add(name, css);
        const Ended whole = sandbox.runShell(u"\"$CLI\" --list --sort --out-dir /o ."_s);
        QCOMPARE(whole.out.count('\n'), 5);
        QVERIFY(whole.out.contains("\t/o/x/y/d.min.css\n"));
        for (const QString &script :
             {u"find . -type f -print0 | \"$CLI\" --list --sort --out-dir /o --files-from - -0"_s,
              u"echo . | \"$CLI\" --list --sort --out-dir /o --files-from -"_s,
              u"for i in 1 2 3; do \"$CLI\" --list --out-dir /o --shard $i/3 .; done | LC_ALL=C sort"_s})
            QCOMPARE(sandbox.runShell(script).out, whole.out);
    }

    /// What is named like an output is none where outputs go elsewhere.
    void namedLikeOutputs()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"x/a.css"_s, u"x/a.min.css"_s})
            sandbox.add(name, css);
        QCOMPARE(sandbox.run({u"--list"_s, u"x"_s}).out.count('\n'), 1);
        const Ended elsewhere = sandbox.run({u"--list"_s, u"--out-dir=o"_s, u"x"_s});
        QCOMPARE(elsewhere.out.count('\n'), 2);
        QCOMPARE(elsewhere.err, QByteArray());
    }

    void refusesBeforeAnythingIsRun_data()
    {
        QTest::addColumn<QStringList>("there");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("named");
        const auto row = [](const char *name, const QStringList &there, const QStringList &arguments,
                            const QStringList &named) {
            QTest::newRow(name) << there << QStringList{u"--sort"_s} + arguments << named;
        };
        const QStringList o{u"--out-dir=o"_s};
        const QStringList rest{u"--out-dir=o"_s, u"--copy-rest"_s};
        row("two folders", {u"x/a.css"_s, u"y/a.css"_s}, o + QStringList{u"x"_s, u"y"_s},
            {u"x/a.css"_s, u"y/a.css"_s, u"o/a.min.css"_s});
        row("two files", {u"x/a.css"_s, u"y/a.css"_s}, o + QStringList{u"x/a.css"_s, u"y/a.css"_s},
            {u"x/a.css"_s, u"y/a.css"_s, u"o/a.min.css"_s});
        row("capitals", {u"x/a.CSS"_s, u"x/a.css"_s}, o + QStringList{u"x"_s},
            {u"x/a.CSS"_s, u"x/a.css"_s, u"o/a.min.css"_s});
        row("by a link", {u"x/a.css"_s, u"y/a.css"_s, u"o/real/"_s, u"o/y->real"_s, u"o/x->real"_s},
            o + QStringList{u"."_s}, {u"x/a.css"_s, u"y/a.css"_s, u"o/y/a.min.css"_s});
        row("another part", {u"x/a.css"_s, u"y/a.css"_s}, o + QStringList{u"--shard=1/2"_s, u"x"_s, u"y"_s},
            {u"x/a.css"_s, u"y/a.css"_s, u"o/a.min.css"_s});
        row("a source", {u"x/a.css"_s, u"o/a.min.css"_s}, o + QStringList{u"x"_s, u"o/a.min.css"_s},
            {u"o/a.min.css"_s});
        row("its own source", {u"o/a.css"_s}, o + QStringList{u"--no-suffix"_s, u"o"_s}, {u"o/a.css"_s});
        row("its own source by a hard link", {u"x/a.css"_s, u"o/a.css=x/a.css"_s},
            o + QStringList{u"--no-suffix"_s, u"x"_s}, {u"x/a.css"_s, u"o/a.css"_s});
        row("list", {u"x/a.css"_s, u"y/a.css"_s}, o + QStringList{u"--list"_s, u"x"_s, u"y"_s},
            {u"x/a.css"_s, u"y/a.css"_s});
        row("dry run", {u"x/a.css"_s, u"y/a.css"_s}, o + QStringList{u"--dry-run"_s, u"x"_s, u"y"_s},
            {u"x/a.css"_s, u"y/a.css"_s});
        row("copy and output", {u"x/a.css"_s, u"x/a.min.css"_s},
            rest + QStringList{u"--set=filterCheckerKeyString=true"_s, u"x"_s},
            {u"x/a.css"_s, u"x/a.min.css"_s, u"o/a.min.css"_s});
        row("copy and gzip copy", {u"x/a.css"_s, u"x/a.min.css.gz"_s},
            rest + QStringList{u"--gzip"_s, u"x"_s},
            {u"x/a.css"_s, u"x/a.min.css.gz"_s, u"o/a.min.css.gz"_s});
        row("two copies", {u"x/a.png"_s, u"y/a.png"_s}, rest + QStringList{u"x"_s, u"y"_s},
            {u"x/a.png"_s, u"y/a.png"_s, u"o/a.png"_s});
        row("copy over itself", {u"o/a.png"_s}, rest + QStringList{u"o"_s}, {u"o/a.png"_s});
    }

    void refusesBeforeAnythingIsRun()
    {
        QFETCH(QStringList, there);
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, named);
        const Sandbox sandbox;
        fill(sandbox, there);
        const QMap<QString, QByteArray> before = tree(sandbox.path());
        const Ended ended = run(sandbox, arguments);
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.err.count('\n'), 1);
        for (const QString &name : named)
            QVERIFY2(ended.err.contains(QFile::encodeName(sandbox.path(name))), ended.err);
        QCOMPARE(tree(sandbox.path()), before);
    }

    void wrongUses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("a file") << QStringList{u"--out-dir=x/a.css"_s} << "/x/a.css is no folder\n"_ba;
        QTest::newRow("copies without a folder")
            << QStringList{u"--copy-rest"_s} << "--copy-rest needs --out-dir, where the copies go\n"_ba;
        QTest::newRow("report over a copy")
            << QStringList{u"--out-dir=o"_s, u"--copy-rest"_s, u"--report=o/b.png"_s} << "/o/b.png\n"_ba;
        QTest::newRow("report over what is copied")
            << QStringList{u"--out-dir=o"_s, u"--copy-rest"_s, u"--report=x/b.png"_s} << "/x/b.png\n"_ba;
        QTest::newRow("report over an output")
            << QStringList{u"--out-dir=o"_s, u"--report=o/a.min.css"_s} << "/o/a.min.css\n"_ba;
    }

    void wrongUses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, said);
        const Sandbox sandbox;
        QVERIFY(QDir().mkdir(sandbox.path(u"o"_s)));
        fill(sandbox, {u"x/a.css"_s, u"x/b.png"_s});
        const Ended ended = run(sandbox, arguments + QStringList{u"x"_s});
        QCOMPARE(ended.status, 2);
        QVERIFY2(ended.err.endsWith(said), ended.err);
        QCOMPARE(ended.err.count('\n'), 1);
        QVERIFY(QDir(sandbox.path(u"o"_s)).isEmpty());
    }

    void namesThatAreNoUtf8()
    {
        const Sandbox sandbox;
        sandbox.add(u"x/a.css"_s, css);
        const Ended ended = sandbox.runShell(u"\"$CLI\" --out-dir \"$(printf 'o\\351')\" x"_s);
        QCOMPARE(ended.status, 2);
        QVERIFY2(ended.err.contains("o\\xE9\" is not valid UTF-8"), ended.err);
    }

    /// What it prints as a script makes what it makes.
    void dryRunIsWhatIsRun()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"x/a b/c'd.css"_s, u"x/e.css"_s, u"x/ü/f.png"_s, u"x/g h.txt"_s});
        QVERIFY(setModified(sandbox, u"x/e.css"_s) && setModified(sandbox, u"x/g h.txt"_s));
        const QStringList arguments{u"--keep-times"_s, u"--copy-rest"_s, u"--out-dir=o/p"_s, u"x"_s};
        const Ended printed = run(sandbox, QStringList{u"--dry-run"_s} + arguments);
        QVERIFY2(printed.status == 0 && !sandbox.has(u"o"_s), printed.err);
        QCOMPARE(sandbox.runShell(QString::fromUtf8(printed.out)).status, 0);
        QMap<QString, QByteArray> byScript = tree(sandbox.path(u"o"_s));
        for (QByteArray &content : byScript)
            content = content.trimmed(); // esbuild ends its style sheets with a line end
        QCOMPARE(modified(sandbox, u"o/p/e.min.css"_s), earlier);
        QCOMPARE(modified(sandbox, u"o/p/g h.txt"_s), earlier);
        QVERIFY(QDir(sandbox.path(u"o"_s)).removeRecursively());
        QCOMPARE(run(sandbox, arguments).status, 0);
        QCOMPARE(tree(sandbox.path(u"o"_s)), byScript);
    }

    void linksInTheFolderAreNotFollowed()
    {
        const Sandbox sandbox;
        fill(sandbox,
             {u"x/a.css"_s, u"x/b/c.css"_s, u"x/b/d.png"_s, u"x/e.png"_s, u"x/f.css"_s, u"x/g.css"_s,
              u"out/g"_s, u"o/"_s, u"o/b->../out"_s, u"o/a.min.css->../out/a"_s, u"o/e.png->../out/e"_s,
              u"o/g.min.css.brevantgziptemp->../out/g"_s}); // which cp would write through

        const Ended ended =
            run(sandbox, {u"--out-dir=o"_s, u"--copy-rest"_s, u"--gzip"_s, u"--sort"_s, u"x"_s});
        QCOMPARE(ended.status, 1);
        const QByteArray o = QFile::encodeName(sandbox.path(u"o"_s));
        const QByteArray x = QFile::encodeName(sandbox.path(u"x"_s));
        const QByteArray isLink = " is a symbolic link, and none is followed in --out-dir\n";
        const QByteArray inTheWay = "the folder " + o + "/b cannot be made: a symbolic link is in its way\n";
        QCOMPARE(ended.err, "Failed: " + x + "/a.css: not minified: " + o + "/a.min.css" + isLink +
                                "Failed: " + x + "/b/c.css: not minified: " + inTheWay + "Failed: " + x +
                                "/g.css: not minified: " + o + "/g.min.css.brevantgziptemp" + isLink +
                                "Not copied: " + x + "/b/d.png: " + inTheWay + "Not copied: " + x +
                                "/e.png: " + o + "/e.png" + isLink);
        QVERIFY2(ended.out.contains("3 failed; 0 copied.\n"), ended.out);
        QCOMPARE(tree(sandbox.path(u"out"_s)), (QMap<QString, QByteArray>{{u"g"_s, "out/g"}}));
        QCOMPARE(sandbox.read(u"o/f.min.css"_s), minified);
    }
};

BREVANT_TEST(tst_BrevantCliOutDir, QCoreApplication)
#include "tst_BrevantCliOutDir.moc"
