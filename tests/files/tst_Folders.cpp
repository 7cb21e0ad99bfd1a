// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/Folders.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;

class tst_Folders final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sameFile_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("isSame");

        QTest::newRow("itself") << u"f"_s << u"f"_s << true;
        QTest::newRow("another spelling") << u"f"_s << u"d/../f"_s << true;
        QTest::newRow("another link to it") << u"f"_s << u"hard"_s << true;
        QTest::newRow("a symbolic link") << u"soft"_s << u"f"_s << true;
        QTest::newRow("through a linked folder") << u"d/g"_s << u"e/g"_s << true;
        QTest::newRow("equal content") << u"f"_s << u"d/g"_s << false;
        QTest::newRow("one not there") << u"f"_s << u"none"_s << false;
        QTest::newRow("neither there") << u"none"_s << u"nothing"_s << false;
        QTest::newRow("not there, equal paths") << u"none"_s << u"none"_s << true;
    }

    void sameFile()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"d"_s));
        QVERIFY(writeFile(folder.filePath(u"f"_s), "x"));
        QVERIFY(writeFile(folder.filePath(u"d/g"_s), "x"));
        QVERIFY(makeHardLink(folder.filePath(u"f"_s), folder.filePath(u"hard"_s)));
        QVERIFY(makeLink(u"f"_s, folder.filePath(u"soft"_s)));
        QVERIFY(makeLink(u"d"_s, folder.filePath(u"e"_s)));
        QTEST(FileMarks::areOfSameFile(folder.filePath(a), folder.filePath(b)), "isSame");
        QTEST(FileMarks::areOfSameFile(folder.filePath(b), folder.filePath(a)), "isSame");
    }

    void marks()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"d"_s) && QDir(folder.path()).mkdir(u"e"_s));
        QVERIFY(writeFile(folder.filePath(u"d/a"_s), "x") && writeFile(folder.filePath(u"e/b"_s), "x"));
        QVERIFY(makeLink(u"../e/b"_s, folder.filePath(u"d/soft"_s)));
        QVERIFY(makeLink(u"none"_s, folder.filePath(u"d/broken"_s)));
        const auto place = [&](const QString &name) { return FileMarks::ofPlace(folder.filePath(name)); };
        const auto file = [&](const QString &name) {
            return FileMarks::ofFile(folder.filePath(name)).value_or(u"none"_s);
        };
        const QList<std::pair<QString, QStringList>> all{
            {u"d/a"_s, {place(u"d/a"_s), file(u"d/a"_s)}},
            {u"d/soft"_s, {place(u"d/soft"_s), place(u"e/b"_s), file(u"e/b"_s)}},
            {u"d/broken"_s, {place(u"d/broken"_s), place(u"d/none"_s)}},
            {u"e/b"_s, {place(u"e/b"_s), file(u"e/b"_s)}},
            {u"e/none"_s, {place(u"e/none"_s)}},
            {u"gone/a"_s, {folder.filePath(u"gone/a"_s)}},
            {u"d/../e/b"_s, {place(u"e/b"_s), file(u"e/b"_s)}},
        };
        FileMarks::Reader reader;
        for (const auto &[name, expected] : all) {
            QCOMPARE(FileMarks::all(folder.filePath(name)), expected);
            QCOMPARE(reader.all(folder.filePath(name)), expected);
        }
    }

    void whatIsThere()
    {
        const QTemporaryDir folder;
        const QByteArray link = QFile::encodeName(folder.filePath(u"link"_s));
        QVERIFY(isThere(QFile::encodeName(folder.path())));
        QVERIFY(!isThere(link));
        QVERIFY(makeLink(u"none"_s, folder.filePath(u"link"_s)));
        QVERIFY(isThere(link));
        QVERIFY(!isThere(link + "/below"));
        QVERIFY(!statusOf(link) && S_ISLNK(statusOfLink(link)->st_mode));
        QVERIFY(makeLink(u"."_s, folder.filePath(u"here"_s)));
        const QByteArray here = QFile::encodeName(folder.filePath(u"here"_s));
        QVERIFY(leadsToFolder(here) && S_ISDIR(statusOf(here)->st_mode));
        QVERIFY(!leadsToFolder(link) && S_ISLNK(statusOfLink(here)->st_mode));
    }
};

BREVANT_TEST(tst_Folders, QCoreApplication)
#include "tst_Folders.moc"
