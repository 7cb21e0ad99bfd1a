// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutTree.h"

#include "cli/CommandLine.h"
#include "cli/FileCopies.h"
#include "settings/SettingsKeys.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// --out-dir and the options beside it, and where files have their places in that folder.
class tst_OutTree final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void options()
    {
        using Settings = decltype(CommandLine::settings);
        const CommandLine line = parseCommandLine(
            {u"--out-dir"_s, u"./o"_s, u"--copy-rest"_s, u"--keep-times"_s, u"--no-suffix"_s, u"a"_s});
        QCOMPARE(line.error, QString());
        QCOMPARE(line.outDir, QDir::currentPath() + u"/o"_s);
        QVERIFY(line.copyRest && line.keepTimes);
        QCOMPARE(line.settings, (Settings{{suffixSwitcherKeyString, false}}));
        QCOMPARE(parseCommandLine({u"a"_s}).outDir, QString());
        QVERIFY(!OutTree(parseCommandLine({u"a"_s})).isWanted());
    }

    void wrongUses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");
        QTest::newRow("suffix and none") << QStringList{u"--no-suffix"_s, u"--suffix=-m"_s}
                                         << u"--suffix and --no-suffix cannot be used together"_s;
        QTest::newRow("folder without a name")
            << QStringList{u"--out-dir="_s} << u"--out-dir needs the name of a folder"_s;
        QTest::newRow("out-dir and beside the sources")
            << QStringList{u"--set=sameFolderKeyString=true"_s, u"--out-dir=o"_s}
            << u"--out-dir and --set sameFolderKeyString cannot be used together"_s;
        QTest::newRow("out-dir and a chosen folder")
            << QStringList{u"--out-dir=o"_s, u"--set=selectedFolderKeyString=x"_s}
            << u"--out-dir and --set selectedFolderKeyString cannot be used together"_s;
    }

    void wrongUses()
    {
        QFETCH(QStringList, arguments);
        QTEST(parseCommandLine(arguments + QStringList{u"a"_s}).error, "expected");
    }

    void places_data()
    {
        QTest::addColumn<QStringList>("named");
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("place");
        const QString here = QDir::currentPath();
        const QStringList none;
        QTest::newRow("below a folder")
            << QStringList{u"src"_s} << none << here + u"/src/a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("in a folder") << QStringList{u"src/"_s} << none << here + u"/src/b.css"_s
                                     << u"b.css"_s;
        QTest::newRow("folder in another spelling")
            << QStringList{u"./x/../src//"_s} << none << here + u"/x/../src/a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("absolute folder") << QStringList{u"/s"_s} << none << u"/s/a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("root") << QStringList{u"/"_s} << none << u"/s/a.css"_s << u"s/a.css"_s;
        QTest::newRow("folder above")
            << QStringList{u".."_s} << none << here + u"/../a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("named file") << QStringList{u"src/a/b.css"_s} << none << here + u"/src/a/b.css"_s
                                    << u"b.css"_s;
        QTest::newRow("first of two folders")
            << QStringList{u"src"_s, u"src/a"_s} << none << here + u"/src/a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("inner folder first")
            << QStringList{u"src/a"_s, u"src"_s} << none << here + u"/src/a/b.css"_s << u"b.css"_s;
        QTest::newRow("not below what two dots have left")
            << QStringList{u"src"_s, u"src/../other"_s} << none << here + u"/src/../other/a/b.css"_s
            << u"a/b.css"_s;
        QTest::newRow("not in a folder with a longer name")
            << QStringList{u"sr"_s, u"src"_s} << none << here + u"/src/a.css"_s << u"a.css"_s;
        QTest::newRow("working folder")
            << QStringList{u"."_s} << none << here + u"/src/a.css"_s << u"src/a.css"_s;
        QTest::newRow("listed file") << none << QStringList{u"./src/a/b.css"_s} << here + u"/src/a/b.css"_s
                                     << u"src/a/b.css"_s;
        QTest::newRow("listed in another spelling")
            << none << QStringList{u"x/..//src/b.css"_s} << here + u"/x/..//src/b.css"_s << u"src/b.css"_s;
        QTest::newRow("listed by its absolute path")
            << none << QStringList{here + u"/src/b.css"_s} << here + u"/src/b.css"_s << u"src/b.css"_s;
        QTest::newRow("listed folder")
            << none << QStringList{u"src"_s} << here + u"/src/a/b.css"_s << u"src/a/b.css"_s;
        QTest::newRow("listed working folder")
            << none << QStringList{u"."_s} << here + u"/src/a/b.css"_s << u"src/a/b.css"_s;
        QTest::newRow("listed from elsewhere")
            << none << QStringList{u"../o/a/b.css"_s} << here + u"/../o/a/b.css"_s << u"b.css"_s;
        QTest::newRow("named, then listed") << QStringList{u"src"_s} << QStringList{u"src/a/b.css"_s}
                                            << here + u"/src/a/b.css"_s << u"a/b.css"_s;
        QTest::newRow("no path of the command line") << none << none << u"/x/a.css"_s << u"a.css"_s;
    }

    void places()
    {
        QFETCH(QStringList, named);
        QFETCH(QStringList, listed);
        QFETCH(QString, file);
        QFETCH(QString, place);
        CommandLine line;
        line.paths = named + listed;
        line.listed = listed.size();
        for (const QString &top : {u"/out"_s, u"/out//"_s, u"/"_s}) {
            line.outDir = top;
            QCOMPARE(OutTree(line).pathOf(file), (top.size() > 1 ? u"/out/"_s : u"/"_s) + place);
        }
    }

    void folders()
    {
        const QTemporaryDir folder;
        CommandLine line;
        line.outDir = folder.filePath(u"new/out/"_s);
        const OutTree tree(line);
        QString error;
        QVERIFY(tree.openFolderOf(tree.top() + u"/a b/ü/x.css"_s, error).isOpen());
        QVERIFY(QFileInfo(tree.top() + u"/a b/ü"_s).isDir());
        const mode_t mask = ::umask(0);
        ::umask(mask);
        QCOMPARE(modeOf(tree.top() + u"/a b"_s), 0777 & ~mask);
        QCOMPARE(modeOf(tree.top()), 0777 & ~mask);

        QVERIFY(makeLink(folder.path(), tree.top() + u"/link"_s));
        QVERIFY(!tree.openFolderOf(tree.top() + u"/link/x.css"_s, error).isOpen());
        QCOMPARE(error,
                 u"the folder %1/link cannot be made: a symbolic link is in its way"_s.arg(tree.top()));
        QVERIFY(makeLink(folder.filePath(u"x"_s), tree.top() + u"/y.css"_s));
        QVERIFY(!tree.openFolderOf(tree.top() + u"/y.css"_s, error).isOpen());
        QCOMPARE(error, tree.top() + u"/y.css is a symbolic link, and none is followed in --out-dir"_s);
        QVERIFY(writeFile(tree.top() + u"/file"_s, "x"));
        QVERIFY(!tree.openFolderOf(tree.top() + u"/file/x.css"_s, error).isOpen());
        QCOMPARE(error, u"the folder %1/file cannot be made: Not a directory"_s.arg(tree.top()));
    }

    void copyingStops()
    {
        const QTemporaryDir folder;
        CommandLine line;
        line.outDir = folder.filePath(u"out"_s);
        const OutTree tree(line);
        std::vector<FileCopy> copies;
        for (int i = 0; i < 20; ++i) {
            const QString name = QString::number(i);
            QVERIFY(writeFile(folder.filePath(name), "x"));
            copies.push_back({folder.filePath(name), folder.filePath(name), tree.top() + u'/' + name});
        }
        FileCopying copying(tree, false);
        copying.run(copies, 3, Stop::AfterFile);
        QVERIFY(copying.isStopped() && !copying.isAllDone());
        QCOMPARE(copying.inWords(), u"0 copied"_s);
        FileCopying again(tree, false);
        again.run(copies, 3, Stop::No);
        QVERIFY(!again.isStopped() && again.isAllDone());
        QCOMPARE(again.inWords(), u"20 copied"_s);
    }
};

BREVANT_TEST(tst_OutTree, QCoreApplication)
#include "tst_OutTree.moc"
