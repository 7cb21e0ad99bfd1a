// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { b : c ; }");

} // namespace

/// Which files a command line comes to.
class tst_BrevantCliListing final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void oneFileInSeveralSpellings_data()
    {
        QTest::addColumn<QStringList>("typed");
        QTest::addColumn<QStringList>("files");
        const QStringList one{u"d/a.css"_s};
        QTest::newRow("separators") << QStringList{u"d/a.css"_s, u"d//a.css"_s, u"d/../d/a.css"_s} << one;
        QTest::newRow("file, then folders") << QStringList{u"d/a.css"_s, u"d/../d"_s, u"."_s} << one;
        QTest::newRow("through a link to the folder")
            << QStringList{u"d/a.css"_s, u"link/a.css"_s, u"link"_s} << one;
        QTest::newRow("link to the file")
            << QStringList{u"d/a.css"_s, u"other.css"_s} << QStringList{u"d/a.css"_s, u"other.css"_s};
    }

    void oneFileInSeveralSpellings()
    {
        QFETCH(QStringList, typed);
        const Sandbox sandbox;
        sandbox.add(u"d/a.css"_s, css);
        QVERIFY(QFile::link(u"d"_s, sandbox.path(u"link"_s)));
        if (typed.contains(u"other.css"_s))
            QVERIFY(QFile::link(u"d/a.css"_s, sandbox.path(u"other.css"_s)));
        QTEST(listed(sandbox, typed), "files");
    }

    void copiesOfBefore_data()
    {
        QTest::addColumn<QStringList>("there");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("files");

        const QStringList folder{u"w"_s};
        const auto set = [&](const QString &setting) { return QStringList{u"--set"_s, setting} + folder; };
        const QStringList both{u"w/a.js"_s, u"w/a.min.js"_s};
        const QStringList source{u"w/a.js"_s};
        QTest::newRow("beside its source") << both << folder << source;
        QTest::newRow("the source's extension in capitals")
            << QStringList{u"w/a.JS"_s, u"w/a.min.js"_s} << folder << QStringList{u"w/a.JS"_s};
        QTest::newRow("its own in capitals") << QStringList{u"w/a.js"_s, u"w/a.min.JS"_s} << folder
                                             << QStringList{u"w/a.js"_s, u"w/a.min.JS"_s};
        QTest::newRow("copy of a copy")
            << QStringList{u"w/a.js"_s, u"w/a.min.js"_s, u"w/a.min.min.js"_s} << folder << source;
        QTest::newRow("no source beside it") << QStringList{u"w/a.min.js"_s, u"w/sub/a.js"_s} << folder
                                             << QStringList{u"w/a.min.js"_s, u"w/sub/a.js"_s};
        QTest::newRow("source of another kind") << QStringList{u"w/a.css"_s, u"w/a.min.js"_s} << folder
                                                << QStringList{u"w/a.css"_s, u"w/a.min.js"_s};
        QTest::newRow("a folder in the source's place")
            << QStringList{u"w/a.js/b.css"_s, u"w/a.min.js"_s} << folder
            << QStringList{u"w/a.js/b.css"_s, u"w/a.min.js"_s};
        QTest::newRow("another suffix") << both << set(u"suffixKeyString=-x"_s) << both;
        QTest::newRow("that suffix") << QStringList{u"w/a.js"_s, u"w/a-x.js"_s}
                                     << set(u"suffixKeyString=-x"_s) << source;
        QTest::newRow("empty suffix") << QStringList{u"w/a.JS"_s, u"w/a.js"_s} << set(u"suffixKeyString="_s)
                                      << QStringList{u"w/a.JS"_s, u"w/a.js"_s};
        QTest::newRow("no suffix") << both << set(u"suffixSwitcherKeyString=false"_s) << both;
        QTest::newRow("another folder") << both
                                        << QStringList{u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s,
                                                       u"selectedFolderKeyString=out"_s, u"w"_s}
                                        << both;
        QTest::newRow("named itself") << both << QStringList{u"w"_s, u"w/a.min.js"_s} << both;
        QTest::newRow("all") << both << QStringList{u"--all"_s, u"w"_s} << both;
    }

    void copiesOfBefore()
    {
        QFETCH(QStringList, there);
        QFETCH(QStringList, arguments);
        const Sandbox sandbox;
        for (const QString &name : there)
            sandbox.add(name, "var x;");
        QTEST(listed(sandbox, arguments), "files");
    }

    void copiesOfBeforeAreNamed()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"w/a.css"_s, u"w/a.min.css"_s, u"v/b.css"_s, u"v/b.min.css"_s})
            sandbox.add(name, css);
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const Ended one = sandbox.run({u"--list"_s, u"w"_s});
        QCOMPARE(one.err, "1 file passed over, as the output of another (--all takes all):\n" + folder +
                              "/w/a.min.css\n");
        QCOMPARE(one.status, 0);
        QCOMPARE(sandbox.run({u"--list"_s, u"w"_s, u"v"_s}).err,
                 "2 files passed over, as outputs of others (--all takes all):\n" + folder +
                     "/w/a.min.css\n" + folder + "/v/b.min.css\n");
        // What is named itself has not been passed over, in whatever spelling.
        QCOMPARE(sandbox.run({u"--list"_s, u"w"_s, u"w/../w/a.min.css"_s}).err, QByteArray());
        QCOMPARE(sandbox.run({u"--list"_s, u"--all"_s, u"w"_s}).err, QByteArray());
        QCOMPARE(sandbox.run({u"w"_s}).err, QByteArray());
    }

    void secondRun()
    {
        const Sandbox sandbox;
        sandbox.add(u"w/a.css"_s, css);
        sandbox.add(u"w/b.html"_s, "<p>a</p>");
        for (int round = 0; round < 3; ++round) {
            const Ended ended = sandbox.run({u"w"_s});
            QCOMPARE(ended.err, QByteArray());
            QCOMPARE(ended.status, 0);
            QVERIFY2(ended.out.contains("\n2 files: "), ended.out);
            QCOMPARE(tree(sandbox.path(u"w"_s)).keys(),
                     (QStringList{u"a.css"_s, u"a.min.css"_s, u"b.html"_s, u"b.min.html"_s}));
        }
    }

    void foldersNamedLikeFiles()
    {
        const Sandbox sandbox;
        sandbox.add(u"w/lib.js/a.css"_s, css);
        QVERIFY(QFile::link(u"lib.js"_s, sandbox.path(u"w/link.css"_s)));
        const QByteArray folder = QFile::encodeName(sandbox.path(u"w"_s));
        for (const QString &option : {u"--list"_s, u"--dry-run"_s, u"--jobs=1"_s}) {
            const Ended ended = sandbox.run({option, u"w"_s});
            QCOMPARE(ended.status, 0);
            QList<QByteArray> lines = ended.err.split('\n');
            std::ranges::sort(lines); // within a folder the order is the file system's
            QCOMPARE(lines, (QList<QByteArray>{"", "brevant-cli: " + folder + "/lib.js is a folder",
                                               "brevant-cli: " + folder + "/link.css is a folder"}));
        }
        QVERIFY(sandbox.has(u"w/lib.js/a.min.css"_s));
        QCOMPARE(sandbox.run({u"--quiet"_s, u"w"_s}).err, QByteArray()); // nothing has failed
    }

    void foldersAlone()
    {
        const Sandbox sandbox;
        QVERIFY(QDir().mkdir(sandbox.path(u"lib.js"_s)));
        const Ended ended = sandbox.run({u"lib.js"_s});
        QVERIFY2(ended.err.startsWith("brevant-cli: " + QFile::encodeName(sandbox.path(u"lib.js"_s)) +
                                      " is a folder\nNothing to minify: "),
                 ended.err);
        QCOMPARE(ended.status, 0);
    }

    void unreadableFolders_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("alone");
        QTest::newRow("run") << QStringList{u"."_s} << false;
        QTest::newRow("quiet") << QStringList{u"--quiet"_s, u"."_s} << false;
        QTest::newRow("list") << QStringList{u"--list"_s, u"."_s} << false;
        QTest::newRow("dry run") << QStringList{u"--dry-run"_s, u"."_s} << false;
        QTest::newRow("alone") << QStringList{u"locked"_s} << true;
        QTest::newRow("alone, list") << QStringList{u"--list"_s, u"locked"_s} << true;
    }

    void unreadableFolders()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, alone);
        const OrdinaryUser user;
        if (!user.isReady())
            QSKIP("cannot become an ordinary user here");
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        QVERIFY(QDir().mkdir(sandbox.path(u"locked"_s)));
        QVERIFY(setMode(sandbox.path(u"locked"_s), 0));
        const Ended ended = sandbox.run(arguments);
        QVERIFY(setMode(sandbox.path(u"locked"_s), 0700));
        if (ended.status == -1)
            QSKIP("an ordinary user may not run the program here");
        const QByteArray path = QFile::encodeName(sandbox.path(u"locked"_s));
        QCOMPARE(ended.err, "brevant-cli: " + path + " cannot be read: Permission denied\n");
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.out.contains("a.css"), !alone && !arguments.contains(u"--quiet"_s));
    }

private:
    /// What --list prints as sources, relative to the sandbox and sorted.
    [[nodiscard]] static QStringList listed(const Sandbox &sandbox, const QStringList &arguments)
    {
        const QByteArray out = sandbox.run(QStringList{u"--list"_s} + arguments).out;
        QStringList names;
        for (const QByteArray &line : out.split('\n').first(out.count('\n')))
            names << QString::fromUtf8(line.split('\t').first()).sliced(sandbox.path().size() + 1);
        names.sort();
        return names;
    }
};

BREVANT_TEST(tst_BrevantCliListing, QCoreApplication)
#include "tst_BrevantCliListing.moc"
