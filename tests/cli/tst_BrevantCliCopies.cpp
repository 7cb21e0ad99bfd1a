// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/OutDir.h"

#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QStringList copyRest{u"--out-dir=o"_s, u"--copy-rest"_s};

QByteArray pathIn(const Sandbox &sandbox, const QString &name)
{
    return QFile::encodeName(sandbox.path(name));
}

} // namespace

/// --copy-rest, which makes a mirrored tree complete, and --keep-times.
class tst_BrevantCliCopies final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void copiesWhatIsNotMinified()
    {
        const Sandbox sandbox;
        fill(sandbox,
             {u"w/a.css"_s, u"w/i/b.png"_s, u"w/i/ä 'c\"\n.woff"_s, u"w/d.php"_s, u"w/.htaccess"_s,
              u"w/e.mjs"_s, u"w/empty/"_s, u"w/.git/f.png"_s, u"w/node_modules/g.png"_s, u"w/left/out.png"_s,
              u"w/h.bak"_s, u"w/.brevant-cache.json"_s, u"w/lib.js/i.txt"_s, u"w/big"_s});
        sandbox.add(u"w/big"_s, QByteArray(3'000'000, 'x'));
        QVERIFY(setMode(sandbox.path(u"w/.htaccess"_s), 0751));
        const Ended ended =
            run(sandbox, copyRest + QStringList{u"--exclude=left"_s, u"--exclude=*.bak"_s, u"w"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, "brevant-cli: " + pathIn(sandbox, u"w/lib.js"_s) + " is a folder\n");
        QVERIFY2(ended.out.endsWith(" saved; 7 copied.\n"), ended.out);
        const QStringList copied{u".htaccess"_s,       u"big"_s,         u"d.php"_s, u"e.mjs"_s, u"i/b.png"_s,
                                 u"i/ä 'c\"\n.woff"_s, u"lib.js/i.txt"_s};
        QStringList all = copied + QStringList{u"a.min.css"_s};
        all.sort();
        QCOMPARE(files(sandbox, u"o"_s), all);
        for (const QString &name : copied)
            QCOMPARE(sandbox.read(u"o/"_s + name), sandbox.read(u"w/"_s + name));
        QCOMPARE(modeOf(sandbox.path(u"o/.htaccess"_s)), 0751);
        QCOMPARE(sandbox.read(u"o/a.min.css"_s), minified);
        QVERIFY(!sandbox.has(u"o/empty"_s));
    }

    void leavesWhatIsUnchanged()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.png"_s, u"w/b.png"_s, u"w/c.png"_s});
        QCOMPARE(run(sandbox, copyRest + QStringList{u"w"_s}).status, 0);
        const auto inode = [&](const QString &name) { return statusOf(sandbox.path(name)).st_ino; };
        const ino_t a = inode(u"o/a.png"_s);
        const ino_t b = inode(u"o/b.png"_s);
        QVERIFY(setModified(sandbox, u"o/a.png"_s));
        sandbox.add(u"w/b.png"_s, "w/B.png"); // of the same size
        sandbox.add(u"w/c.png"_s, "");
        const Ended ended = run(sandbox, copyRest + QStringList{u"w"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.out.endsWith("2 copied, 1 unchanged.\n"), ended.out);
        QVERIFY2(!ended.out.contains("0 files"), ended.out);
        QCOMPARE(inode(u"o/a.png"_s), a);
        QCOMPARE(modified(sandbox, u"o/a.png"_s), earlier);
        QVERIFY(inode(u"o/b.png"_s) != b);
        QCOMPARE(sandbox.read(u"o/b.png"_s), "w/B.png"_ba);
        QCOMPARE(sandbox.read(u"o/c.png"_s), ""_ba);
    }

    void links()
    {
        const Sandbox sandbox;
        fill(sandbox,
             {u"w/a.png"_s, u"w/a.css"_s, u"w/out/x.png"_s, u"secret.txt"_s, u"w/in->a.png"_s, u"w/in2->in"_s,
              u"w/source->a.css"_s, u"w/abroad->../secret.txt"_s, u"w/nowhere->nothing"_s, u"w/loop->loop"_s,
              u"w/folder->out"_s, u"w/excluded->out/x.png"_s, u"w/device->/dev/zero"_s});
        const Ended ended =
            run(sandbox, copyRest + QStringList{u"--exclude=out"_s, u"--sort"_s, u"w"_s, u"w/abroad"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(files(sandbox, u"o"_s),
                 (QStringList{u"a.min.css"_s, u"a.png"_s, u"in"_s, u"in2"_s, u"source"_s}));
        QCOMPARE(sandbox.read(u"o/in2"_s), "w/a.png"_ba);
        QVERIFY(S_ISREG(statusOf(sandbox.path(u"o/in"_s)).st_mode));
        QCOMPARE(sandbox.read(u"o/source"_s), css);
        for (const QString &name :
             {u"abroad"_s, u"nowhere"_s, u"loop"_s, u"folder"_s, u"excluded"_s, u"device"_s})
            QVERIFY2(ended.err.contains(pathIn(sandbox, u"w/"_s + name) +
                                        " is not copied: this link leads to no file of its tree\n"),
                     ended.err);
        QCOMPARE(run(sandbox, copyRest + QStringList{u"--quiet"_s, u"--exclude=out"_s, u"w"_s}).err,
                 QByteArray());
    }

    void whatIsNoFile()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.png"_s});
        QCOMPARE(::mkfifo(pathIn(sandbox, u"w/pipe"_s).constData(), 0600), 0);
        const Ended ended = sandbox.runShell(u"printf x >\"$(printf 'w/\\351.png')\"\n"
                                             "\"$CLI\" --out-dir o --copy-rest w\n"
                                             "cat o/*.png; ls o; rm w/*.png o/*.png"_s);
        QVERIFY2(ended.out.endsWith("2 copied.\nw/a.pngxa.png\n\xE9.png\n"), ended.out);
    }

    /// The list of what is there may be that of another program.
    void filesThatAreNamed()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.css"_s, u"w/i/b.png"_s, u"w/i/c.png"_s});
        const Ended ended = sandbox.runShell(
            u"printf '%s\\n' w/a.css w/i/b.png | \"$CLI\" --out-dir o --copy-rest --files-from - w/i/c.png"_s);
        QCOMPARE(ended.status, 0);
        QCOMPARE(files(sandbox, u"o"_s), (QStringList{u"c.png"_s, u"w/a.min.css"_s, u"w/i/b.png"_s}));
    }

    void isListed()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.css"_s, u"w/i/b c.png"_s});
        const QByteArray here = pathIn(sandbox, {});
        QCOMPARE(run(sandbox, copyRest + QStringList{u"--list"_s, u"w"_s}).out,
                 here + "/w/a.css\t" + here + "/o/a.min.css\n" + here + "/w/i/b c.png\t" + here +
                     "/o/i/b c.png\n");
        QCOMPARE(run(sandbox, copyRest + QStringList{u"--list"_s, u"--print0"_s, u"w/i"_s}).out,
                 here + "/w/i/b c.png" + '\0');
        QVERIFY(!sandbox.has(u"o"_s));
    }

    void partsMakeTheWhole()
    {
        const Sandbox sandbox;
        QStringList names;
        for (int i = 0; i < 9; ++i)
            names << u"w/%1.png"_s.arg(i) << u"w/d/%1.css"_s.arg(i);
        fill(sandbox, names + QStringList{u"w/l->1.png"_s, u"w/m->1.png"_s});
        QCOMPARE(run(sandbox, copyRest + QStringList{u"w"_s}).status, 0);
        const QMap<QString, QByteArray> whole = tree(sandbox.path(u"o"_s));
        QCOMPARE(files(sandbox, u"o"_s).size(), 20);
        qsizetype sum = 0;
        for (const QString &part : {u"1/3"_s, u"2/3"_s, u"3/3"_s}) {
            QVERIFY(QDir(sandbox.path(u"o"_s)).removeRecursively());
            QCOMPARE(run(sandbox, copyRest + QStringList{u"--shard"_s, part, u"w"_s}).status, 0);
            sum += files(sandbox, u"o"_s).size();
            QCOMPARE(run(sandbox, QStringList{u"--out-dir=p"_s, u"--copy-rest"_s, u"--shard"_s, part, u"w"_s})
                         .status,
                     0);
        }
        QCOMPARE(sum, 20);
        QCOMPARE(tree(sandbox.path(u"p"_s)), whole);
    }

    void failures()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.css"_s, u"w/b.png"_s, u"w/c.png"_s, u"o/b.png/"_s});
        sandbox.add(u"w/d.js"_s, "var = ;\n");
        const Ended ended = run(sandbox, copyRest + QStringList{u"w"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.endsWith("Not copied: " + pathIn(sandbox, u"w/b.png"_s) + ": Is a directory\n"),
                 ended.err);
        QVERIFY2(ended.out.contains("; 1 failed; 1 copied.\n"), ended.out);
        QCOMPARE(files(sandbox, u"o"_s), (QStringList{u"a.min.css"_s, u"c.png"_s}));
        QCOMPARE(run(sandbox, copyRest + QStringList{u"w/b.png"_s}).status, 1);
        // Once a run is broken, it does nothing more.
        const Ended stopped = run(sandbox, {u"--fail-fast"_s, u"--out-dir=p"_s, u"--copy-rest"_s, u"w/d.js"_s,
                                            u"w"_s, u"--jobs=1"_s});
        QCOMPARE(stopped.status, 1);
        QVERIFY(!sandbox.has(u"p/c.png"_s));
    }

    void nothingButCopies()
    {
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.png"_s});
        const Ended ended = run(sandbox, copyRest + QStringList{u"--report=r.json"_s, u"w"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.out.endsWith("1 copied.\n"), ended.out);
        QVERIFY(sandbox.read(u"r.json"_s).contains("\"done\": 0"));
        QCOMPARE(sandbox.read(u"o/a.png"_s), "w/a.png"_ba);
    }

    void keepsTimes_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QStringList>("outputs");
        QTest::newRow("classic") << QStringList{u"--gzip"_s, u"w"_s}
                                 << QStringList{u"w/a.min.css"_s, u"w/a.min.css.gz"_s};
        QTest::newRow("in place") << QStringList{u"--no-suffix"_s, u"w"_s} << QStringList{u"w/a.css"_s};
        if (!hasModern())
            return;
        const QStringList modern{u"--compressors=modern"_s};
        QTest::newRow("modern") << modern + QStringList{u"--gzip"_s, u"--source-maps"_s, u"w"_s}
                                << QStringList{u"w/a.min.css"_s, u"w/a.min.css.gz"_s, u"w/a.min.css.map"_s};
        QTest::newRow("modern, in place")
            << modern + QStringList{u"--no-suffix"_s, u"w"_s} << QStringList{u"w/a.css"_s};
        QTest::newRow("modern, with copies")
            << modern + copyRest + QStringList{u"w"_s} << QStringList{u"o/a.min.css"_s, u"o/b.png"_s};
    }

    void keepsTimes()
    {
        QFETCH(QStringList, options);
        QFETCH(QStringList, outputs);
        const Sandbox sandbox;
        fill(sandbox, {u"w/a.css"_s, u"w/b.png"_s});
        QVERIFY(setModified(sandbox, u"w/a.css"_s) && setModified(sandbox, u"w/b.png"_s));
        const Ended ended = sandbox.run(QStringList{u"--keep-times"_s} + options);
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, QByteArray());
        for (const QString &output : outputs)
            QCOMPARE(modified(sandbox, output), earlier);
        if (outputs.contains(u"o/b.png"_s)) { // also where the content is there already
            QVERIFY(sandbox.runShell(u"touch o/b.png"_s).status == 0);
            QCOMPARE(sandbox.run(QStringList{u"--keep-times"_s} + options).status, 0);
            QCOMPARE(modified(sandbox, u"o/b.png"_s), earlier);
        }
        // Without the option they have the time of the run.
        sandbox.add(u"w/a.css"_s, css + css);
        QVERIFY(setModified(sandbox, u"w/a.css"_s));
        QCOMPARE(sandbox.run(options).status, 0);
        QVERIFY(modified(sandbox, outputs[0]) != earlier);
    }

    void pagesHaveNoSourceMaps()
    {
        if (!hasModern())
            QSKIP("the modern compressors are not there");
        const Sandbox sandbox;
        fill(sandbox, {u"w/p.html"_s, u"w/p.min.html.map"_s}); // which is somebody else's
        QVERIFY(setModified(sandbox, u"w/p.html"_s));
        const QStringList options{u"--compressors=modern"_s, u"--set=enableHTMLCheckerKeyString=true"_s,
                                  u"--source-maps"_s, u"--keep-times"_s, u"w"_s};
        QCOMPARE(sandbox.run(options).status, 0);
        QCOMPARE(modified(sandbox, u"w/p.min.html"_s), earlier);
        QVERIFY(modified(sandbox, u"w/p.min.html.map"_s) != earlier);
        const Ended ended = sandbox.run(copyRest + options);
        QVERIFY2(ended.status == 0, ended.err);
        QCOMPARE(sandbox.read(u"o/p.min.html.map"_s), "w/p.min.html.map"_ba);
    }
};

BREVANT_TEST(tst_BrevantCliCopies, QCoreApplication)
#include "tst_BrevantCliCopies.moc"
