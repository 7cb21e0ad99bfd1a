// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FolderWalk.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What a walk is told about its entries, and where it is told not to go.
class tst_FolderWalkFilter final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(m_folder.path()).mkpath(u"in/deeper"_s));
        QVERIFY(QDir(m_folder.path()).mkpath(u"out/deeper"_s));
        for (const QString &name : {u"a.css"_s, u"in/b.css"_s, u"in/deeper/c.css"_s, u"out/d.css"_s})
            QVERIFY(writeFile(m_folder.filePath(name), ""));
        QVERIFY(QFile::link(u"in"_s, m_folder.filePath(u"link"_s)));
    }

    void foldersThatAreNotEntered()
    {
        QStringList visited;
        QStringList asked;
        FolderWalk walk;
        walk.visit = [&](const QString &path, EntryType) { visited << path; };
        walk.isEntered = [&](const QString &path) {
            asked << path;
            return path != u"out" && path != u"in/deeper";
        };
        walkFolder(m_folder.path(), walk);
        visited.sort();
        asked.sort();
        QCOMPARE(visited,
                 QStringList({u"a.css"_s, u"in"_s, u"in/b.css"_s, u"in/deeper"_s, u"link"_s, u"out"_s}));
        QCOMPARE(asked, QStringList({u"in"_s, u"in/deeper"_s, u"out"_s})); // folders alone, each once
    }

    /// A file system need not say of which type an entry is, but must not say a wrong one.
    void types()
    {
        QHash<QString, EntryType> types;
        FolderWalk walk;
        walk.visit = [&](const QString &path, EntryType type) { types.insert(path, type); };
        walkFolder(m_folder.path(), walk);
        QCOMPARE(types.size(), 9);
        QCOMPARE(types.value(u"link"_s), EntryType::Unknown);
        QVERIFY(types.value(u"a.css"_s) != EntryType::Folder);
        QVERIFY(types.value(u"in"_s) != EntryType::File);
    }

private:
    QTemporaryDir m_folder;
};

BREVANT_TEST(tst_FolderWalkFilter, QCoreApplication)
#include "tst_FolderWalkFilter.moc"
