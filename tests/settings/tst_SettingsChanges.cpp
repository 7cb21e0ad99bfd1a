// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"
#include "tests/Files.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;

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
class tst_SettingsChanges final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void seenByTheNextReader_data();
    void seenByTheNextReader();
    void fileComesAndGoes();
    void oneNoticeAfterAReader();
    void oneNoticeFromTheWatcher_data();
    void oneNoticeFromTheWatcher();
    void watchedFromBeforeTheFolderExists();
    void watchedThroughALink();
    void noNoticeWithoutADifference();
    void oneNoticePerOwnWrite_data();
    void oneNoticePerOwnWrite();
    void foreignKeysAreNotOverwritten();
    void foreignChangeUnderAWriteIsNoticed();
    void ownValueWinsUntilItIsWritten();
    void twoStoresTakeTurns();

private:
    [[nodiscard]] std::unique_ptr<SettingsStore> makeStore() const
    {
        auto store = std::make_unique<SettingsStore>(m_path);
        store->registerDefaults(registeredDefaults());
        return store;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_SettingsChanges::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_path = m_folder->filePath(QStringLiteral("settings.json"));
}

void tst_SettingsChanges::seenByTheNextReader_data()
{
    QTest::addColumn<bool>("inPlace");
    QTest::newRow("written in place") << true;
    QTest::newRow("replaced") << false;
}

void tst_SettingsChanges::seenByTheNextReader()
{
    QFETCH(bool, inPlace);
    QVERIFY(writeFile(m_path, suffixJson(QStringLiteral("-start"))));
    const auto store = makeStore();
    // All of one size, and faster than the clock of file times; where that clock is finer (ext4 and tmpfs
    // since Linux 6.13), this holds easily. On a ramfs it does not.
    for (int i = 0; i < 200; ++i) {
        const QString suffix = QStringLiteral("-%1").arg(i + 1000);
        QVERIFY(inPlace ? writeFile(m_path, suffixJson(suffix)) : replaceFile(m_path, suffixJson(suffix)));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(suffix));
    }
}

void tst_SettingsChanges::fileComesAndGoes()
{
    const auto store = makeStore();
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral(".min")));
        QVERIFY(writeFile(m_path, suffixJson(QStringLiteral("-x"))));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-x")));
        QVERIFY(QFile::remove(m_path));
    }
    QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x", "gzipCheckerKeyString": true})"));
    QVERIFY(store->isTrue(gzipCheckerKeyString));
    QVERIFY(replaceFile(m_path, suffixJson(QStringLiteral("-x")))); // a key that is gone
    QVERIFY(store->isFalse(gzipCheckerKeyString));
}

void tst_SettingsChanges::oneNoticeAfterAReader()
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

void tst_SettingsChanges::oneNoticeFromTheWatcher_data()
{
    QTest::addColumn<bool>("existsAtFirst");
    QTest::addColumn<bool>("readAtOnce");
    QTest::newRow("file is there, nobody reads") << true << false;
    QTest::newRow("file is new, nobody reads") << false << false;
    QTest::newRow("file is there, a reader is first") << true << true;
    QTest::newRow("file is new, a reader is first") << false << true;
}

void tst_SettingsChanges::oneNoticeFromTheWatcher()
{
    QFETCH(bool, existsAtFirst);
    QFETCH(bool, readAtOnce);
    if (existsAtFirst)
        QVERIFY(writeFile(m_path, suffixJson(QStringLiteral("-start"))));
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
    QVERIFY(replaceFile(m_path, suffixJson(QStringLiteral("-back"))));
    QTRY_COMPARE(notices.count(), 12);
}

void tst_SettingsChanges::watchedFromBeforeTheFolderExists()
{
    m_path = m_folder->filePath(QStringLiteral("config/brevant/settings.json"));
    const auto store = makeStore();
    store->watchFile();
    const QSignalSpy notices(store.get(), &SettingsStore::didChange);
    store->setBool(true, gzipCheckerKeyString);
    store->synchronize();
    QCOMPARE(notices.count(), 1);
    deliverNotices();
    QVERIFY(replaceFile(m_path, suffixJson(QStringLiteral("-x"))));
    QTRY_COMPARE(notices.count(), 2);
}

void tst_SettingsChanges::watchedThroughALink()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("dotfiles")));
    const QString target = m_folder->filePath(QStringLiteral("dotfiles/mine.json"));
    QVERIFY(writeFile(target, suffixJson(QStringLiteral("-start"))));
    QVERIFY(makeLink(QStringLiteral("dotfiles/mine.json"), m_path));
    const auto store = makeStore();
    store->watchFile();
    const QSignalSpy notices(store.get(), &SettingsStore::didChange);
    for (int i = 1; i <= 5; ++i) {
        QVERIFY(replaceFile(target, suffixJson(QString::number(i))));
        QTRY_COMPARE(notices.count(), i);
    }
}

void tst_SettingsChanges::noNoticeWithoutADifference()
{
    QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-x"})"));
    const auto store = makeStore();
    const QSignalSpy notices(store.get(), &SettingsStore::didChange);
    QVERIFY(replaceFile(m_path, "{ \"suffixKeyString\" :\n \"-x\" }\n")); // another text of the same values
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-x")));
    deliverNotices();
    QCOMPARE(notices.count(), 0);
}

void tst_SettingsChanges::oneNoticePerOwnWrite_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::newRow("boolean") << QJsonValue(true);
    QTest::newRow("text") << QJsonValue(QStringLiteral("\u00fc\n\"x"));
    QTest::newRow("integer") << QJsonValue(1);
    QTest::newRow("whole number as a double") << QJsonValue(1.0);
    QTest::newRow("fraction") << QJsonValue(0.1);
}

void tst_SettingsChanges::oneNoticePerOwnWrite()
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

void tst_SettingsChanges::foreignKeysAreNotOverwritten()
{
    const auto store = makeStore();
    for (int i = 0; i < 20; ++i) {
        // Nobody reads in between, and each change comes right before a write.
        QVERIFY(replaceFile(
            m_path, QJsonDocument(QJsonObject{{suffixKeyString, i}, {QStringLiteral("x"), i}}).toJson()));
        store->setObject(i, lineBreakKeyString);
        store->synchronize();
        const QJsonObject expected{{suffixKeyString, i}, {QStringLiteral("x"), i}, {lineBreakKeyString, i}};
        QCOMPARE(QJsonDocument::fromJson(readFile(m_path)).object(), expected);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString::number(i)));
    }
}

void tst_SettingsChanges::foreignChangeUnderAWriteIsNoticed()
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

void tst_SettingsChanges::ownValueWinsUntilItIsWritten()
{
    const auto store = makeStore();
    for (int i = 0; i < 50; ++i) {
        QVERIFY(replaceFile(m_path, suffixJson(QStringLiteral("-theirs"))));
        store->setObject(QStringLiteral("-ours"), suffixKeyString);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-ours")));
        store->synchronize();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-ours")));
        QVERIFY(replaceFile(m_path, suffixJson(QStringLiteral("-theirs"))));
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-theirs")));
    }
}

void tst_SettingsChanges::twoStoresTakeTurns()
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

BREVANT_TEST(tst_SettingsChanges, QCoreApplication)
#include "tst_SettingsChanges.moc"
