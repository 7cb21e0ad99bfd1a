// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/WatchedSite.h"

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// --watch with --out-dir and --changed.
class tst_BrevantCliWatchTrees final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void mirroredTree()
    {
        WatchedSite site;
        site.sandbox.add(u"src/a.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"--delete"_s, u"--out-dir"_s, u"src/out"_s, u"--no-suffix"_s, u"src"_s}),
                 site.err());
        QCOMPARE(site.sandbox.read(u"src/out/a.css"_s), "a{b:c}"_ba);
        site.sandbox.add(u"src/deep/er/b.css"_s, "a { b : c }");
        QVERIFY(site.makes(u"src/out/deep/er/b.css"_s, "a{b:c}"));
        site.sandbox.add(u"src/deep/er/b.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"src/out/deep/er/b.css"_s, "a{b:d}"));
        QCOMPARE(site.sandbox.runShell(u"mv src/deep \"$HOME\""_s).status, 0);
        QVERIFY(site.removes(u"src/out/deep/er/b.css"_s));
        QVERIFY(QFile::remove(site.sandbox.path(u"src/a.css"_s)));
        QVERIFY(site.removes(u"src/out/a.css"_s));
        QVERIFY(!site.sandbox.has(u"src/out/out"_s));
        QCOMPARE(site.err(), QByteArray());
    }

    void restOfTheTree()
    {
        WatchedSite site;
        site.sandbox.add(u"src/a.css"_s, "a{b:c}");
        site.sandbox.add(u"src/logo.svg"_s, "one");
        QVERIFY2(site.start({u"--out-dir=out"_s, u"--copy-rest"_s, u"src"_s}), site.err());
        QCOMPARE(site.sandbox.read(u"out/logo.svg"_s), "one"_ba);
        site.sandbox.add(u"src/logo.svg"_s, "other");
        QVERIFY(site.makes(u"out/logo.svg"_s, "other"));
        QVERIFY(site.prints(" 1 copied\n"));
        site.sandbox.add(u"src/new/font.woff"_s, "font");
        QVERIFY(site.makes(u"out/new/font.woff"_s, "font"));
        QCOMPARE(site.err(), QByteArray());
    }

    void projectFileThatChanges()
    {
        WatchedSite site;
        site.sandbox.add(u"src/a.css"_s, "a{b:c}");
        site.sandbox.add(u"brevant.json"_s, "{\"paths\": [\"src\"]}");
        QVERIFY2(site.start({}), site.err());
        QVERIFY2(site.out().endsWith("Watching 1 file in 1 folder. Ctrl+C ends.\n"), site.out());
        site.sandbox.add(u"brevant.json"_s, "{\"paths\": [\".\"]}");
        QVERIFY(site.complains("/brevant.json has changed; start again to use it\n"));
        site.sandbox.add(u"src/a.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"src/a.min.css"_s, "a{b:d}"));
    }

    /// Which is watched itself, for the project file and for a path that is gone.
    void outputsInTheFolderOfTheProject()
    {
        WatchedSite site;
        site.sandbox.add(u"src/a.css"_s, "a{b:c}");
        site.sandbox.add(u"brevant.json"_s, "{\"paths\": [\"src\"], \"outDir\": \".\"}");
        QVERIFY2(site.start({}), site.err());
        site.sandbox.add(u"src/a.css"_s, "a { b : d }");
        QVERIFY(site.makes(u"a.min.css"_s, "a{b:d}"));
        QCOMPARE(site.sandbox.runShell(u"rm -r src"_s).status, 0);
        QVERIFY(site.complains("/src is gone; it is watched again when it is back\n"));
        site.sandbox.add(u"src/a.css"_s, "a { b : e }");
        QVERIFY(site.makes(u"a.min.css"_s, "a{b:e}"));
    }

    void twoSourcesWithOneOutput()
    {
        WatchedSite site;
        site.sandbox.add(u"one/a.css"_s, "a{b:c}");
        site.sandbox.add(u"two/b.css"_s, "a{b:c}");
        QVERIFY2(site.start({u"--out-dir=out"_s, u"one"_s, u"two"_s}), site.err());
        const QString name = u"out/a.min.css"_s;
        QVERIFY(site.sandbox.has(name));
        site.sandbox.add(u"two/a.css"_s, "a { b : d }");
        QVERIFY(site.complains(QFile::encodeName(site.sandbox.path(u"two/a.css"_s))));
        QCOMPARE(site.sandbox.read(name), "a{b:c}"_ba);
    }

    void onlyWhatHasChangedSince()
    {
        WatchedSite site;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            site.sandbox.add(name, "a { b : c }");
        QCOMPARE(site.sandbox.run({u"--changed"_s, u"--compressors=modern"_s, u"."_s}).status, 0);
        site.sandbox.add(u"c.css"_s, "a { b : d }");
        QVERIFY2(site.start({u"--changed"_s, u"--delete"_s, u"."_s}), site.err());
        QVERIFY2(site.out().contains("2 files unchanged.\n"), site.out());
        QVERIFY2(site.out().contains("Watching 3 files"), site.out());
        QCOMPARE(site.sandbox.read(u"c.min.css"_s), "a{b:d}"_ba);
        // What was made before is its own too.
        QVERIFY(QFile::remove(site.sandbox.path(u"a.css"_s)));
        QVERIFY(site.removes(u"a.min.css"_s));
        site.sandbox.add(u"b.css"_s, "a { b : e }");
        QVERIFY(site.makes(u"b.min.css"_s, "a{b:e}"));
        QVERIFY(site.catchesUp());
        QCOMPARE(site.err(), QByteArray()); // before the end, which may find it at work
        QCOMPARE(site.end(SIGTERM), 143);
        const Ended ended = site.sandbox.run({u"--changed"_s, u"--compressors=modern"_s, u"."_s});
        QVERIFY2(ended.out.contains("3 files unchanged.\n"), ended.out);
    }
};

BREVANT_TEST(tst_BrevantCliWatchTrees, QCoreApplication)
#include "tst_BrevantCliWatchTrees.moc"
