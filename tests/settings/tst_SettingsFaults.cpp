// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsFile.h"
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <atomic>
#include <chrono>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Files that hold no settings, and places where none can be read or written.
class tst_SettingsFaults final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setUp()); }

    void badFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("blank") << QByteArray("\n");
        QTest::newRow("truncated") << QByteArray("{\"suffixKeyString\": \"-x\", \"gzi");
        QTest::newRow("truncated by one") << QByteArray("{\"suffixKeyString\": \"-x\"");
        QTest::newRow("array") << QByteArray("[{\"suffixKeyString\": \"-x\"}]");
        QTest::newRow("text after the object") << QByteArray("{\"suffixKeyString\": \"-x\"} x");
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe{}\x01\n\x80", 8);
        QTest::newRow("zeros") << QByteArray(4096, '\0');
        QTest::newRow("ini") << QByteArray("[General]\nsuffixKeyString=-x\n");
        QTest::newRow("not UTF-8") << QByteArray("{\"suffixKeyString\": \"\xfc\"}");
    }

    void badFile()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(writeFile(m_path, bytes));
        const CapturedStandardError standardError;
        {
            const auto store = makeStore();
            store->watchFile();
            for (int reader = 0; reader < 3; ++reader)
                QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
            QVERIFY(store->isFalse(gzipCheckerKeyString));
            store->synchronize();
            QCOMPARE(QFile::exists(badPath()), !bytes.isEmpty());
            QCOMPARE(readFile(m_path), bytes);
            QCOMPARE(standardError.lineCount(), 1);
            QVERIFY(standardError.text().contains(QFile::encodeName(m_path)));

            store->setBool(true, gzipCheckerKeyString);
            store->synchronize();
            QVERIFY(store->isTrue(gzipCheckerKeyString));
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
        }
        const QJsonObject expected{{gzipCheckerKeyString, true}};
        QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
        QVERIFY(makeStore()->isTrue(gzipCheckerKeyString));
        QCOMPARE(QFile::exists(badPath()), !bytes.isEmpty());
        if (!bytes.isEmpty())
            QCOMPARE(readFile(badPath()), bytes);
        QCOMPARE(standardError.lineCount(), 1);
    }

    void badFileWhileRunning()
    {
        const auto store = makeStore();
        store->setObject(u"-x"_s, suffixKeyString);
        store->synchronize();
        const CapturedStandardError standardError;
        QVERIFY(replaceFile(m_path, "garbage"));
        // The writer is the first to find it.
        store->setBool(true, gzipCheckerKeyString);
        store->synchronize();
        QCOMPARE(readFile(badPath()), QByteArray("garbage"));
        QCOMPARE(standardError.lineCount(), 1);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
        QVERIFY(store->isTrue(gzipCheckerKeyString));
    }

    void secondBadFileIsReportedToo()
    {
        const CapturedStandardError standardError;
        QVERIFY(writeFile(m_path, "one"));
        const auto store = makeStore();
        store->synchronize();
        QVERIFY(replaceFile(m_path, "two"));
        QVERIFY(store->isTrue(soundCheckerKeyString));
        store->synchronize();
        QCOMPARE(readFile(badPath()), QByteArray("two"));
        QCOMPARE(standardError.lineCount(), 2);
    }

    void emptyFileKeepsTheEarlierBadFile()
    {
        const CapturedStandardError standardError;
        QVERIFY(writeFile(m_path, "precious"));
        const auto store = makeStore();
        store->synchronize();
        QVERIFY(writeFile(m_path, ""));
        QVERIFY(store->isTrue(soundCheckerKeyString));
        store->synchronize();
        QCOMPARE(readFile(badPath()), QByteArray("precious"));
    }

    void fileInTheMiddleOfASave_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("emptied") << QByteArray();
        QTest::newRow("cut off") << QByteArray("{\"suffixKeyString\": \"-x\", \"gz");
    }

    void fileInTheMiddleOfASave()
    {
        QFETCH(QByteArray, bytes);
        const CapturedStandardError standardError;
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-1"})"));
        std::atomic<int> changes = 0;
        {
            SettingsFile file(
                m_path, [&changes] { ++changes; }, std::chrono::hours(1));
            for (int save = 2; save < 10; ++save) {
                QVERIFY(writeFile(m_path, bytes));
                QCOMPARE(file.value(suffixKeyString), QJsonValue(u'-' + QString::number(save - 1)));
                QVERIFY(
                    writeFile(m_path, QStringLiteral(R"({"suffixKeyString": "-%1"})").arg(save).toUtf8()));
                QCOMPARE(file.value(suffixKeyString), QJsonValue(u'-' + QString::number(save)));
                QCOMPARE(changes, save - 1);
            }
        }
        QVERIFY(!QFile::exists(badPath()));
        QCOMPARE(standardError.text(), QByteArray());
    }

    void badFileIsJudgedAMomentLater()
    {
        const CapturedStandardError standardError;
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
        std::atomic<int> changes = 0;
        SettingsFile file(
            m_path, [&changes] { ++changes; }, std::chrono::milliseconds(1));
        QVERIFY(writeFile(m_path, "precious"));
        file.refresh();
        QTRY_COMPARE(readFile(badPath()), QByteArray("precious"));
        QTRY_COMPARE(standardError.lineCount(), 1);
        QVERIFY(file.value(suffixKeyString).isUndefined());
        QTRY_COMPARE(changes, 1);
    }

    void badFileThatCannotBeKeptStays()
    {
        const CapturedStandardError standardError;
        QVERIFY(QDir().mkpath(badPath() + "/in the way"_L1));
        QVERIFY(writeFile(m_path, "precious"));
        const auto store = makeStore();
        for (int i = 0; i < 3; ++i) {
            store->setObject(QString::number(i), suffixKeyString);
            store->synchronize();
        }
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"2"_s));
        QCOMPARE(readFile(m_path), QByteArray("precious"));
        QCOMPARE(standardError.lineCount(), 2); // no settings in it; it cannot be written

        QVERIFY(QDir(badPath()).removeRecursively());
        store->setBool(true, gzipCheckerKeyString);
        store->synchronize();
        const QJsonObject expected{{suffixKeyString, u"2"_s}, {gzipCheckerKeyString, true}};
        QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
        QCOMPARE(readFile(badPath()), QByteArray("precious"));
    }

    void placeThatCannotBeRead_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<int>(
            "linesOfReading"); // the one line there is comes with the first writing at the latest
        QTest::newRow("folder") << u"folder"_s << 1;
        QTest::newRow("pipe") << u"pipe"_s << 1;
        QTest::newRow("link to itself") << u"loop"_s << 0; // nothing is there
    }

    void placeThatCannotBeRead()
    {
        QFETCH(QString, form);
        QFETCH(int, linesOfReading);
        if (form == "folder"_L1)
            QVERIFY(QDir().mkdir(m_path));
        else if (form == "pipe"_L1)
            QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        else
            QVERIFY(makeLink(u"settings.json"_s, m_path));
        struct stat before {};
        QCOMPARE(::lstat(QFile::encodeName(m_path).constData(), &before), 0);

        const CapturedStandardError standardError;
        const auto store = makeStore();
        for (int reader = 0; reader < 3; ++reader)
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
        QCOMPARE(standardError.lineCount(), linesOfReading);
        for (int i = 0; i < 20; ++i) {
            store->setObject(QString::number(i), suffixKeyString);
            store->synchronize();
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
        }
        QCOMPARE(standardError.lineCount(), 1);
        struct stat after {};
        QCOMPARE(::lstat(QFile::encodeName(m_path).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QVERIFY(!QFile::exists(badPath()));
    }

    void fileThatCannotBeReadAnyMore()
    {
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
        const CapturedStandardError standardError;
        const auto store = makeStore();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
        QVERIFY(QFile::remove(m_path) && QDir().mkdir(m_path));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
        QCOMPARE(standardError.lineCount(), 1);
        QVERIFY(QDir().rmdir(m_path) && writeFile(m_path, R"({"suffixKeyString": "-y"})"));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-y"_s));
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
    }

    void fileThatMayNotBeRead()
    {
        m_folder.reset();
        const OrdinaryUser user;
        m_folder = user.makeFolder();
        if (!m_folder)
            QSKIP("no ordinary user can have a folder here");
        m_path = m_folder->filePath(u"settings.json"_s);
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
        QVERIFY(setMode(m_path, 0));
        const CapturedStandardError standardError;
        const auto store = makeStore();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
        store->setBool(true, gzipCheckerKeyString);
        store->synchronize();
        QVERIFY(store->isTrue(gzipCheckerKeyString));
        QCOMPARE(standardError.lineCount(), 1);

        // What could not be read was not replaced, and counts again as soon as it can be read.
        QVERIFY(setMode(m_path, 0600));
        QCOMPARE(readFile(m_path), QByteArray(R"({"suffixKeyString": "-x"})"));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
        store->setBool(false, soundCheckerKeyString);
        store->synchronize();
        const QJsonObject expected{
            {suffixKeyString, u"-x"_s}, {gzipCheckerKeyString, true}, {soundCheckerKeyString, false}};
        QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
        m_folder.reset();
    }

    void placeThatCannotBeWritten_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("below a plain file") << u"%1/plain/settings.json"_s;
        QTest::newRow("deep below a plain file") << u"%1/plain/a/b/settings.json"_s;
        QTest::newRow("in a folder of the kernel") << u"/proc/brevant/settings.json"_s;
        QTest::newRow("link into a missing folder") << u"%1/link"_s;
    }

    void placeThatCannotBeWritten()
    {
        QFETCH(QString, path);
        QVERIFY(writeFile(m_folder->filePath(u"plain"_s), "plain"));
        QVERIFY(makeLink(u"missing/settings.json"_s, m_folder->filePath(u"link"_s)));
        m_path = path.startsWith(u'%') ? path.arg(m_folder->path()) : path;
        const CapturedStandardError standardError;
        {
            const auto store = makeStore();
            QCOMPARE(standardError.text(), QByteArray());
            for (int i = 0; i < 20; ++i) {
                store->setObject(QString::number(i), suffixKeyString);
                store->synchronize();
            }
            store->setBool(true, gzipCheckerKeyString);
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"19"_s));
            QVERIFY(store->isTrue(gzipCheckerKeyString));
        }
        QCOMPARE(standardError.lineCount(), 1);
        QCOMPARE(makeStore()->stringForKey(suffixKeyString), std::optional(u".min"_s));
    }

    void folderThatMayNotBeWritten()
    {
        m_folder.reset();
        const OrdinaryUser user;
        m_folder = user.makeFolder();
        if (!m_folder)
            QSKIP("no ordinary user can have a folder here");
        m_path = m_folder->filePath(u"settings.json"_s);
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
        QVERIFY(setMode(m_folder->path(), 0555));
        const CapturedStandardError standardError;
        const auto store = makeStore();
        for (int i = 0; i < 20; ++i) {
            store->setObject(i, lineBreakKeyString);
            store->synchronize();
        }
        QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(u"19"_s));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
        QCOMPARE(standardError.lineCount(), 1);
        QCOMPARE(readFile(m_path), QByteArray(R"({"suffixKeyString": "-x"})"));
        QVERIFY(setMode(m_folder->path(), 0755));
        m_folder.reset();
    }

    void writesAgainOnceItCan()
    {
        const QString folder = m_folder->filePath(u"plain"_s);
        QVERIFY(writeFile(folder, "in the way"));
        m_path = folder + "/settings.json"_L1;
        const CapturedStandardError standardError;
        const auto store = makeStore();
        store->setObject(u"-x"_s, suffixKeyString);
        store->synchronize();
        QCOMPARE(standardError.lineCount(), 1);

        QVERIFY(QFile::remove(folder));
        store->setBool(true, gzipCheckerKeyString);
        store->synchronize();
        const QJsonObject expected{{suffixKeyString, u"-x"_s}, {gzipCheckerKeyString, true}};
        QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected); // what failed before as well
        QCOMPARE(standardError.lineCount(), 1);
    }

private:
    [[nodiscard]] QString badPath() const { return m_path + ".bad"_L1; }
};

BREVANT_TEST(tst_SettingsFaults, QCoreApplication)
#include "tst_SettingsFaults.moc"
