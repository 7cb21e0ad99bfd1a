// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

QByteArray suffixJson(const QString &suffix)
{
    return QJsonDocument(QJsonObject{{suffixKeyString, suffix}}).toJson();
}

void deliverNotices()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace

/// Changes that others make to the file, and the notices of all changes.
class tst_SettingsChanges final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setUp()); }

    void seenByTheNextReader_data()
    {
        QTest::addColumn<bool>("inPlace");
        QTest::newRow("written in place") << true;
        QTest::newRow("replaced") << false;
    }

    void seenByTheNextReader()
    {
        QFETCH(bool, inPlace);
        QVERIFY(writeFile(m_path, suffixJson(u"-start"_s)));
        const auto store = makeStore();
        // All of one size, and faster than the clock of file times; where that clock is finer (ext4 and tmpfs
        // since Linux 6.13), this holds easily. On a ramfs it does not.
        for (int i = 0; i < 200; ++i) {
            const QString suffix = u"-%1"_s.arg(i + 1000);
            QVERIFY(inPlace ? writeFile(m_path, suffixJson(suffix))
                            : replaceFile(m_path, suffixJson(suffix)));
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(suffix));
        }
    }

    void fileComesAndGoes()
    {
        const auto store = makeStore();
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u".min"_s));
            QVERIFY(writeFile(m_path, suffixJson(u"-x"_s)));
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
            QVERIFY(QFile::remove(m_path));
        }
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x", "gzipCheckerKeyString": true})"));
        QVERIFY(store->isTrue(gzipCheckerKeyString));
        QVERIFY(replaceFile(m_path, suffixJson(u"-x"_s))); // a key that is gone
        QVERIFY(store->isFalse(gzipCheckerKeyString));
    }

    void oneNoticeAfterAReader()
    {
        const auto store = makeStore();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        for (int i = 1; i <= 20; ++i) {
            QVERIFY(replaceFile(m_path, suffixJson(QString::number(i))));
            for (int reader = 0; reader < 5; ++reader)
                QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
            deliverNotices();
            QCOMPARE(notices.count(), i);
        }
    }

    void oneNoticeFromTheWatcher_data()
    {
        QTest::addColumn<bool>("existsAtFirst");
        QTest::addColumn<bool>("readAtOnce");
        QTest::newRow("file is there, nobody reads") << true << false;
        QTest::newRow("file is new, nobody reads") << false << false;
        QTest::newRow("file is there, a reader is first") << true << true;
        QTest::newRow("file is new, a reader is first") << false << true;
    }

    void oneNoticeFromTheWatcher()
    {
        QFETCH(bool, existsAtFirst);
        QFETCH(bool, readAtOnce);
        if (existsAtFirst)
            QVERIFY(writeFile(m_path, suffixJson(u"-start"_s)));
        const auto store = makeStore();
        store->watchFile();
        store->watchFile(); // asked for twice by mistake: still one notice
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        for (int i = 1; i <= 10; ++i) {
            QVERIFY(replaceFile(m_path, suffixJson(QString::number(i))));
            if (readAtOnce)
                QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
            QTRY_COMPARE(notices.count(), i);
        }
        deliverNotices();
        QCOMPARE(notices.count(), 10);
        QVERIFY(QFile::remove(m_path));
        QTRY_COMPARE(notices.count(), 11);
        QVERIFY(replaceFile(m_path, suffixJson(u"-back"_s)));
        QTRY_COMPARE(notices.count(), 12);
    }

    void watchedFromBeforeTheFolderExists()
    {
        m_path = m_folder->filePath(u"config/brevant/settings.json"_s);
        const auto store = makeStore();
        store->watchFile();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        store->setBool(true, gzipCheckerKeyString);
        store->synchronize();
        QCOMPARE(notices.count(), 1);
        deliverNotices();
        QVERIFY(replaceFile(m_path, suffixJson(u"-x"_s)));
        QTRY_COMPARE(notices.count(), 2);
    }

    void watchedThroughALink()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(u"dotfiles"_s));
        const QString target = m_folder->filePath(u"dotfiles/mine.json"_s);
        QVERIFY(writeFile(target, suffixJson(u"-start"_s)));
        QVERIFY(makeLink(u"dotfiles/mine.json"_s, m_path));
        const auto store = makeStore();
        store->watchFile();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        for (int i = 1; i <= 5; ++i) {
            QVERIFY(replaceFile(target, suffixJson(QString::number(i))));
            QTRY_COMPARE(notices.count(), i);
        }
    }

    void noNoticeWithoutADifference()
    {
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
        const auto store = makeStore();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        QVERIFY(
            replaceFile(m_path, "{ \"suffixKeyString\" :\n \"-x\" }\n")); // another text of the same values
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-x"_s));
        deliverNotices();
        QCOMPARE(notices.count(), 0);
    }

    void oneNoticePerOwnWrite_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("boolean") << QJsonValue(true);
        QTest::newRow("text") << QJsonValue(u"\u00fc\n\"x"_s);
        QTest::newRow("integer") << QJsonValue(1);
        QTest::newRow("whole number as a double") << QJsonValue(1.0);
        QTest::newRow("fraction") << QJsonValue(0.1);
    }

    void oneNoticePerOwnWrite()
    {
        QFETCH(QJsonValue, value);
        const auto store = makeStore();
        store->watchFile();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        for (int i = 1; i <= 20; ++i) {
            store->setObject(value, i % 2 == 0 ? badgeCheckerKeyString : suffixKeyString);
            QCOMPARE(notices.count(), i); // at once, whichever key it is and even if the value is the same
            store->synchronize();
            deliverNotices();
            QCOMPARE(notices.count(), i); // and none more once it is in the file
        }
    }

    void foreignKeysAreNotOverwritten()
    {
        const auto store = makeStore();
        for (int i = 0; i < 20; ++i) {
            // Nobody reads in between, and each change comes right before a write.
            QVERIFY(
                replaceFile(m_path, QJsonDocument(QJsonObject{{suffixKeyString, i}, {u"x"_s, i}}).toJson()));
            store->setObject(i, lineBreakKeyString);
            store->synchronize();
            const QJsonObject expected{{suffixKeyString, i}, {u"x"_s, i}, {lineBreakKeyString, i}};
            QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
        }
    }

    void foreignChangeUnderAWriteIsNoticed()
    {
        const auto store = makeStore();
        const QSignalSpy notices(store.get(), &SettingsStore::didChange);
        for (int i = 1; i <= 20; ++i) {
            QVERIFY(replaceFile(m_path, suffixJson(QString::number(i))));
            store->setObject(QString::number(i), lineBreakKeyString);
            store->synchronize();
            QTRY_COMPARE(notices.count(), 2 * i); // one for the set, one for what the others changed
        }
        deliverNotices();
        QCOMPARE(notices.count(), 40);
    }

    void ownValueWinsUntilItIsWritten()
    {
        const auto store = makeStore();
        for (int i = 0; i < 50; ++i) {
            QVERIFY(replaceFile(m_path, suffixJson(u"-theirs"_s)));
            store->setObject(u"-ours"_s, suffixKeyString);
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-ours"_s));
            store->synchronize();
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-ours"_s));
            QVERIFY(replaceFile(m_path, suffixJson(u"-theirs"_s)));
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-theirs"_s));
        }
    }

    void twoStoresTakeTurns()
    {
        const auto one = makeStore();
        const auto two = makeStore();
        for (int i = 0; i < 100; ++i) {
            one->setObject(QString::number(i), suffixKeyString);
            one->synchronize();
            QCOMPARE(two->stringForKey(suffixKeyString), std::optional(QString::number(i)));
            two->setObject(QString::number(i), lineBreakKeyString);
            two->synchronize();
            QCOMPARE(one->stringForKey(lineBreakKeyString), std::optional(QString::number(i)));
            const QJsonObject expected{{suffixKeyString, QString::number(i)},
                                       {lineBreakKeyString, QString::number(i)}};
            QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
        }
    }
};

BREVANT_TEST(tst_SettingsChanges, QCoreApplication)
#include "tst_SettingsChanges.moc"
