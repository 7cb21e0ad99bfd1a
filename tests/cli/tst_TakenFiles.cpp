// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TakenFiles.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Each file is taken once, however it is come to.
class tst_TakenFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(u"a/b"_s));
        QVERIFY(QFile::link(u"a"_s, m_folder.filePath(u"link"_s)));
    }

    void once_data()
    {
        // One word for each search, with the paths that it comes to; "!" for those that have been taken.
        QTest::addColumn<QStringList>("searches");
        QTest::newRow("one search, back in a folder") << QStringList{u"a/1 a/b/1 a/2 b/1"_s};
        QTest::newRow("two searches of one folder") << QStringList{u"a/1 a/b/1"_s, u"!a/1 a/2 !a/b/1"_s};
        QTest::newRow("file by file") << QStringList{u"a/1"_s, u"a/2"_s, u"!a/1"_s, u"!a/2"_s, u"a/3"_s};
        QTest::newRow("one search, and a link") << QStringList{u"a/1 a/b/1 !link/1 link/2 !a/2 !link/b/1"_s};
        QTest::newRow("a link first") << QStringList{u"link/b/1"_s, u"a/1 !a/b/1 a/b/2"_s};
        QTest::newRow("another spelling") << QStringList{u"a/1"_s, u"!a/b/../1 a/b/../2"_s, u"!a//2"_s};
        QTest::newRow("no such folder") << QStringList{u"n/1 n/2"_s, u"!n/1 n/3 m/1"_s};
    }

    void once()
    {
        QFETCH(const QStringList, searches);
        TakenFiles taken;
        for (const QString &search : searches) {
            taken.beginSearch();
            for (QString path : search.split(u' ')) {
                const bool isTaken = path.startsWith(u'!');
                path = m_folder.filePath(isTaken ? path.sliced(1) : path);
                QVERIFY2(taken.take(path) != isTaken, qPrintable(path));
            }
        }
    }

private:
    QTemporaryDir m_folder;
};

BREVANT_TEST(tst_TakenFiles, QCoreApplication)
#include "tst_TakenFiles.moc"
