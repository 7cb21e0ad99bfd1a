// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QTest>

#include <pwd.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
/// What is written, and where.
class tst_SettingsOnDisk final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setUp()); }

    void readingWritesNothing()
    {
        {
            const auto store = makeStore();
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
            store->synchronize();
        }
        QVERIFY(QDir(m_folder->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void onlyWhatWasSetIsInTheFile()
    {
        const auto store = makeStore();
        store->setObject(u".min"_s, suffixKeyString); // set, though equal to the default
        store->synchronize();
        const QJsonObject expected{{suffixKeyString, u".min"_s}};
        QCOMPARE(fileContent(), expected);
    }

    void unknownKeysAndFormsAreKept()
    {
        const QByteArray json =
            R"({"other": {"a": [1, 2.5, null, "x"]}, "soundCheckerKeyString": 1, "big": 9007199254740993,
        "badgeCheckerKeyString": "YES", "gzipCheckerKeyString": null, "": "empty"})";
        QVERIFY(writeFile(m_path, json));
        const auto store = makeStore();
        store->setBool(true, filterCheckerKeyString);
        store->synchronize();
        QJsonObject expected = QJsonDocument::fromJson(json).object();
        expected.insert(filterCheckerKeyString, true);
        QCOMPARE(fileContent(), expected);
        QVERIFY(readFile(m_path).contains("9007199254740993"));
    }

    void valuesPersist()
    {
        makeStore()->setBool(false, sameFolderKeyString);
        makeStore()->setObject(u"/out/\u00fc \"q\""_s, selectedFolderKeyString);
        const auto store = makeStore();
        QVERIFY(store->isFalse(sameFolderKeyString));
        QCOMPARE(store->stringForKey(selectedFolderKeyString), std::optional(u"/out/\u00fc \"q\""_s));
    }

    void destructorWritesEverything()
    {
        QJsonObject expected;
        {
            const auto store = makeStore();
            for (const SettingKey &setting : allSettingKeys) {
                const QString value = u"value of "_s + setting.key;
                store->setObject(u"not yet"_s, setting.key);
                store->setObject(value, setting.key);
                expected.insert(setting.key, value);
            }
        }
        QCOMPARE(fileContent(), expected);
    }

    void modeIsKept()
    {
        QVERIFY(writeFile(m_path, "{}"));
        QVERIFY(setMode(m_path, 0604));
        makeStore()->setBool(true, gzipCheckerKeyString);
        QCOMPARE(modeOf(m_path), mode_t{0604});
    }

    void newFoldersArePrivate()
    {
        const QTemporaryDir top;
        QVERIFY(setMode(top.path(), 0755));
        {
            SettingsStore store(top.filePath(u"a/b/settings.json"_s));
            store.setBool(true, gzipCheckerKeyString);
        }
        QCOMPARE(modeOf(top.path()), mode_t{0755});
        QCOMPARE(modeOf(top.filePath(u"a"_s)), mode_t{0700});
        QCOMPARE(modeOf(top.filePath(u"a/b"_s)), mode_t{0700});
        QVERIFY(QFile::exists(top.filePath(u"a/b/settings.json"_s)));
    }

    void linkIsFollowed_data()
    {
        QTest::addColumn<bool>("absolute");
        QTest::addColumn<bool>("dangling");
        QTest::newRow("absolute") << true << false;
        QTest::newRow("relative") << false << false;
        QTest::newRow("absolute, dangling") << true << true;
        QTest::newRow("relative, dangling") << false << true;
    }

    void linkIsFollowed()
    {
        QFETCH(bool, absolute);
        QFETCH(bool, dangling);
        QVERIFY(QDir(m_folder->path()).mkdir(u"dotfiles"_s));
        const QString target = m_folder->filePath(u"dotfiles/mine.json"_s);
        if (!dangling)
            QVERIFY(writeFile(target, R"({"suffixKeyString": "-old"})"));
        QVERIFY(makeLink(absolute ? target : u"dotfiles/mine.json"_s, m_path));

        const auto store = makeStore();
        const QString before = dangling ? u".min"_s : u"-old"_s;
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(before));
        store->setObject(u"-new"_s, suffixKeyString);
        store->synchronize();
        QVERIFY(QFileInfo(m_path).isSymLink());
        QVERIFY(!QFileInfo(target).isSymLink());
        QVERIFY(readFile(target).contains("-new"));
        QVERIFY(replaceFile(target, R"({"suffixKeyString": "-out"})"));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-out"_s));
    }

    void foldersAreMade()
    {
        m_path = m_folder->filePath(u"a/b/c/settings.json"_s);
        makeStore()->setBool(true, gzipCheckerKeyString);
        QVERIFY(makeStore()->isTrue(gzipCheckerKeyString));
        QVERIFY(fileContent().value(gzipCheckerKeyString).toBool());
    }

    void fileInTheWorkingFolder()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        m_path = u"mine.json"_s;
        makeStore()->setBool(true, gzipCheckerKeyString);
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(readFile(m_folder->filePath(m_path)).contains("true"));
    }

    void standardPlace_data()
    {
        QTest::addColumn<QByteArray>("home");
        QTest::addColumn<QByteArray>("configHome");
        QTest::addColumn<QString>("expected");
        const QByteArray me("/home/of/me");
        const QString mine = u"/home/of/me/.config/brevant/settings.json"_s;
        const QString listed = QFile::decodeName(::getpwuid(::getuid())->pw_dir);
        QTest::newRow("set") << me << QByteArray("/some/where") << u"/some/where/brevant/settings.json"_s;
        QTest::newRow("unset") << me << QByteArray() << mine;
        QTest::newRow("relative") << me << QByteArray("where") << mine;
        QTest::newRow("no home") << QByteArray() << QByteArray()
                                 << listed + u"/.config/brevant/settings.json"_s;
    }

    void standardPlace()
    {
        QFETCH(QByteArray, home);
        QFETCH(QByteArray, configHome);
        const QByteArray oldHome = qgetenv("HOME");
        const QByteArray oldConfigHome = qgetenv("XDG_CONFIG_HOME");
        qputenv("HOME", home);
        if (configHome.isEmpty())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", configHome);
        const QString path = SettingsStore::defaultFilePath();
        qputenv("HOME", oldHome);
        qputenv("XDG_CONFIG_HOME", oldConfigHome);
        QTEST(path, "expected");
    }

    void lastOfManySetsIsWritten()
    {
        const auto store = makeStore();
        for (int i = 0; i < 200; ++i)
            store->setObject(QString::number(i), lineBreakKeyString);
        store->synchronize();
        QCOMPARE(fileContent().value(lineBreakKeyString).toString(), u"199"_s);
    }
};

BREVANT_TEST(tst_SettingsOnDisk, QCoreApplication)
#include "tst_SettingsOnDisk.moc"
