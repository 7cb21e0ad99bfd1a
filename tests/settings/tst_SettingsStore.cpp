// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"
#include "tests/Files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace brevant;
using namespace brevant::test;

class tst_SettingsStore final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void firstStart();
    void readingWritesNothing();
    void booleans_data();
    void booleans();
    void texts_data();
    void texts();
    void numberSetByTheProgram();
    void unknownKeyAnswersNothing();
    void textsAreNotChecked();
    void bothWaysToSetABoolean();
    void onlyWhatWasSetIsInTheFile();
    void unknownKeysAndFormsAreKept();
    void valuesPersist();
    void destructorWritesEverything();
    void overrides();
    void modeIsKept();
    void newFoldersArePrivate();
    void linkIsFollowed_data();
    void linkIsFollowed();
    void foldersAreMade();
    void fileInTheWorkingFolder();
    void standardPlace_data();
    void standardPlace();
    void settingDoesNotWait();

private:
    [[nodiscard]] std::unique_ptr<SettingsStore> makeStore() const
    {
        auto store = std::make_unique<SettingsStore>(m_path);
        store->registerDefaults(registeredDefaults());
        return store;
    }
    [[nodiscard]] QJsonObject fileContent() const
    {
        return QJsonDocument::fromJson(readFile(m_path)).object();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_SettingsStore::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_path = m_folder->filePath(QStringLiteral("settings.json"));
}

void tst_SettingsStore::firstStart()
{
    const auto store = makeStore();
    QJsonObject read;
    for (const SettingKey &setting : allSettingKeys)
        read.insert(setting.key, store->objectForKey(setting.key));
    QCOMPARE(read, registeredDefaults());
    QCOMPARE(store->stringForKey(selectedFolderKeyString), std::optional(QString()));
    QVERIFY(store->isTrue(sameFolderKeyString));
    QVERIFY(!store->isFalse(sameFolderKeyString));
}

void tst_SettingsStore::readingWritesNothing()
{
    {
        const auto store = makeStore();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral(".min")));
        store->synchronize();
    }
    QVERIFY(QDir(m_folder->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void tst_SettingsStore::booleans_data()
{
    QTest::addColumn<bool>("defaultState");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<bool>("isTrue");
    QTest::addColumn<bool>("isFalse");
    for (const bool state : {false, true}) {
        const auto row = [state](const char *json, bool flag, bool strictTrue = false,
                                 bool strictFalse = false) {
            QTest::addRow("%s|default %s", json, state ? "true" : "false")
                << state << flag << strictTrue << strictFalse;
        };
        row("true", true, true, false);
        row("false", false, false, true);
        for (const char *json : {"1", "-1", "0.5", "1e300", "\"true\"", "\"TRUE\"", "\"yes\"", "\"YES\"",
                                 "\"1\"", "\"-1\"", "\"0.5\"", "\"007\""})
            row(json, true);
        for (const char *json :
             {"0", "0.0", "-0.0", "\"0\"", "\"0.0\"", "\"no\"", "\"false\"", "\"\"", "\"on\"", "\"y\"",
              "\"truely\"", "\"nan\"", "[]", "[true]", "{}", "{\"a\":true}"})
            row(json, false);
        row("null", state, state, !state); // as if it were not set
    }
}

void tst_SettingsStore::booleans()
{
    QFETCH(bool, defaultState);
    const QLatin1StringView key = defaultState ? soundCheckerKeyString : gzipCheckerKeyString;
    const QByteArray json = QByteArray(QTest::currentDataTag()).split('|').front();
    QVERIFY(writeFile(m_path, "{\"" + QByteArray(key.data(), key.size()) + "\": " + json + "}"));
    const auto store = makeStore();
    QTEST(store->boolForKey(key), "flag");
    QTEST(store->isTrue(key), "isTrue");
    QTEST(store->isFalse(key), "isFalse");
}

void tst_SettingsStore::texts_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *json, const QString &expected) {
        QTest::newRow(json) << QByteArray(json) << expected;
    };
    row("\"abc\"", QStringLiteral("abc"));
    row("\"\"", QString());
    row("\" 80 \"", QStringLiteral(" 80 "));
    row("\"\\u00fc\\n\"", QStringLiteral("\u00fc\n"));
    row("80", QStringLiteral("80"));
    row("1.5", QStringLiteral("1.5"));
    row("-3", QStringLiteral("-3"));
    row("0", QStringLiteral("0"));
    row("0.1", QStringLiteral("0.1"));
    row("80.0", QStringLiteral("80"));
    row("1000000", QStringLiteral("1000000"));
    row("9007199254740993", QStringLiteral("9007199254740993"));
    for (const char *json : {"true", "false", "null", "[]", "[\"abc\"]", "{}"})
        row(json, QStringLiteral("500"));
}

void tst_SettingsStore::texts()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, expected);
    QVERIFY(writeFile(m_path, "{\"lineBreakKeyString\": " + json + "}"));
    QCOMPARE(makeStore()->stringForKey(lineBreakKeyString), std::optional(expected));

    SettingsStore withoutDefaults(m_path);
    const bool isText = json.startsWith('"') || json.at(0) == '-' || (json.at(0) >= '0' && json.at(0) <= '9');
    QCOMPARE(withoutDefaults.stringForKey(lineBreakKeyString).has_value(), isText);
}

void tst_SettingsStore::numberSetByTheProgram()
{
    const auto store = makeStore();
    store->setObject(1, badgeCheckerKeyString);
    store->setObject(80.0, lineBreakKeyString);
    for (int round = 0; round < 2; ++round) { // before it is written and after
        QVERIFY(store->boolForKey(badgeCheckerKeyString));
        QVERIFY(!store->isTrue(badgeCheckerKeyString));
        QVERIFY(!store->isFalse(badgeCheckerKeyString));
        QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(QStringLiteral("80")));
        store->synchronize();
    }
}

void tst_SettingsStore::unknownKeyAnswersNothing()
{
    const auto store = makeStore();
    const QLatin1StringView key("noSuchKey");
    QVERIFY(store->objectForKey(key).isUndefined());
    QVERIFY(!store->stringForKey(key).has_value());
    QVERIFY(!store->boolForKey(key));
    QVERIFY(!store->isTrue(key));
    QVERIFY(!store->isFalse(key));
}

void tst_SettingsStore::textsAreNotChecked()
{
    {
        const auto store = makeStore();
        store->setObject(QString(), suffixKeyString);
        store->setObject(QStringLiteral("no number"), lineBreakKeyString);
        store->setObject(QStringLiteral("iso-8859-15"), selectedEncodingKeyString);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString()));
        QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(QStringLiteral("no number")));
    }
    const auto store = makeStore();
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString()));
    QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(QStringLiteral("no number")));
    QCOMPARE(store->stringForKey(selectedEncodingKeyString), std::optional(QStringLiteral("iso-8859-15")));
}

void tst_SettingsStore::bothWaysToSetABoolean()
{
    const auto store = makeStore();
    store->setBool(true, gzipCheckerKeyString);
    store->setObject(true, filterCheckerKeyString);
    store->setBool(false, soundCheckerKeyString);
    store->setObject(false, badgeCheckerKeyString);
    store->synchronize();
    QVERIFY(store->isTrue(gzipCheckerKeyString) && store->isTrue(filterCheckerKeyString));
    QVERIFY(store->isFalse(soundCheckerKeyString) && store->isFalse(badgeCheckerKeyString));
    const QJsonObject expected{{gzipCheckerKeyString, true},
                               {filterCheckerKeyString, true},
                               {soundCheckerKeyString, false},
                               {badgeCheckerKeyString, false}};
    QCOMPARE(fileContent(), expected);
}

void tst_SettingsStore::onlyWhatWasSetIsInTheFile()
{
    const auto store = makeStore();
    store->setObject(QStringLiteral(".min"), suffixKeyString); // set, though equal to the default
    store->synchronize();
    const QJsonObject expected{{suffixKeyString, QStringLiteral(".min")}};
    QCOMPARE(fileContent(), expected);
}

void tst_SettingsStore::unknownKeysAndFormsAreKept()
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

void tst_SettingsStore::valuesPersist()
{
    makeStore()->setBool(false, sameFolderKeyString);
    makeStore()->setObject(QStringLiteral("/out/\u00fc \"q\""), selectedFolderKeyString);
    const auto store = makeStore();
    QVERIFY(store->isFalse(sameFolderKeyString));
    QCOMPARE(store->stringForKey(selectedFolderKeyString),
             std::optional(QStringLiteral("/out/\u00fc \"q\"")));
}

void tst_SettingsStore::destructorWritesEverything()
{
    QJsonObject expected;
    {
        const auto store = makeStore();
        for (const SettingKey &setting : allSettingKeys) {
            const QString value = QStringLiteral("value of ") + setting.key;
            store->setObject(QStringLiteral("not yet"), setting.key);
            store->setObject(value, setting.key);
            expected.insert(setting.key, value);
        }
    }
    QCOMPARE(fileContent(), expected);
}

void tst_SettingsStore::overrides()
{
    QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-file", "gzipCheckerKeyString": false})"));
    const auto store = makeStore();
    store->setOverride(QStringLiteral("-run"), suffixKeyString);
    store->setOverride(true, gzipCheckerKeyString);
    store->setOverride(1, soundCheckerKeyString);
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-run")));
    QVERIFY(store->isTrue(gzipCheckerKeyString));
    QVERIFY(store->boolForKey(soundCheckerKeyString) && !store->isTrue(soundCheckerKeyString));

    store->setObject(QStringLiteral("-set"), suffixKeyString);
    store->setObject(QStringLiteral("80"), lineBreakKeyString);
    store->synchronize();
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-run")));
    const QJsonObject expected{{suffixKeyString, QStringLiteral("-set")},
                               {gzipCheckerKeyString, false},
                               {lineBreakKeyString, QStringLiteral("80")}};
    QCOMPARE(fileContent(), expected);
}

void tst_SettingsStore::modeIsKept()
{
    QVERIFY(writeFile(m_path, "{}"));
    QVERIFY(setMode(m_path, 0604));
    makeStore()->setBool(true, gzipCheckerKeyString);
    QCOMPARE(modeOf(m_path), mode_t{0604});
}

void tst_SettingsStore::newFoldersArePrivate()
{
    const QTemporaryDir top;
    QVERIFY(setMode(top.path(), 0755));
    {
        SettingsStore store(top.filePath(QStringLiteral("a/b/settings.json")));
        store.setBool(true, gzipCheckerKeyString);
    }
    QCOMPARE(modeOf(top.path()), mode_t{0755});
    QCOMPARE(modeOf(top.filePath(QStringLiteral("a"))), mode_t{0700});
    QCOMPARE(modeOf(top.filePath(QStringLiteral("a/b"))), mode_t{0700});
    QVERIFY(QFile::exists(top.filePath(QStringLiteral("a/b/settings.json"))));
}

void tst_SettingsStore::linkIsFollowed_data()
{
    QTest::addColumn<bool>("absolute");
    QTest::addColumn<bool>("dangling");
    QTest::newRow("absolute") << true << false;
    QTest::newRow("relative") << false << false;
    QTest::newRow("absolute, dangling") << true << true;
    QTest::newRow("relative, dangling") << false << true;
}

void tst_SettingsStore::linkIsFollowed()
{
    QFETCH(bool, absolute);
    QFETCH(bool, dangling);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("dotfiles")));
    const QString target = m_folder->filePath(QStringLiteral("dotfiles/mine.json"));
    if (!dangling)
        QVERIFY(writeFile(target, R"({"suffixKeyString": "-old"})"));
    QVERIFY(makeLink(absolute ? target : QStringLiteral("dotfiles/mine.json"), m_path));

    const auto store = makeStore();
    const QString before = dangling ? QStringLiteral(".min") : QStringLiteral("-old");
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(before));
    store->setObject(QStringLiteral("-new"), suffixKeyString);
    store->synchronize();
    QVERIFY(QFileInfo(m_path).isSymLink());
    QVERIFY(!QFileInfo(target).isSymLink());
    QVERIFY(readFile(target).contains("-new"));
    QVERIFY(replaceFile(target, R"({"suffixKeyString": "-out"})"));
    QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QStringLiteral("-out")));
}

void tst_SettingsStore::foldersAreMade()
{
    m_path = m_folder->filePath(QStringLiteral("a/b/c/settings.json"));
    makeStore()->setBool(true, gzipCheckerKeyString);
    QVERIFY(makeStore()->isTrue(gzipCheckerKeyString));
    QVERIFY(fileContent().value(gzipCheckerKeyString).toBool());
}

void tst_SettingsStore::fileInTheWorkingFolder()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    m_path = QStringLiteral("mine.json");
    makeStore()->setBool(true, gzipCheckerKeyString);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(readFile(m_folder->filePath(m_path)).contains("true"));
}

void tst_SettingsStore::standardPlace_data()
{
    QTest::addColumn<QByteArray>("configHome");
    QTest::addColumn<QString>("expected");
    QTest::newRow("set") << QByteArray("/some/where") << QStringLiteral("/some/where/brevant/settings.json");
    QTest::newRow("unset") << QByteArray() << QStringLiteral("/home/of/me/.config/brevant/settings.json");
}

void tst_SettingsStore::standardPlace()
{
    QFETCH(QByteArray, configHome);
    const QByteArray oldHome = qgetenv("HOME");
    const QByteArray oldConfigHome = qgetenv("XDG_CONFIG_HOME");
    qputenv("HOME", "/home/of/me");
    if (configHome.isEmpty())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", configHome);
    const QString path = SettingsStore::defaultFilePath();
    qputenv("HOME", oldHome);
    qputenv("XDG_CONFIG_HOME", oldConfigHome);
    QTEST(path, "expected");
}

void tst_SettingsStore::settingDoesNotWait()
{
    const auto store = makeStore();
    qint64 worst = 0;
    for (int i = 0; i < 200; ++i) {
        QElapsedTimer timer;
        timer.start();
        store->setObject(QString::number(i), lineBreakKeyString);
        worst = std::max(worst, timer.nsecsElapsed());
    }
    QElapsedTimer timer;
    timer.start();
    store->synchronize();
    qInfo("the slowest of 200 sets took %.3f ms; the disk was done %.3f ms later",
          static_cast<double>(worst) / 1e6, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    QCOMPARE(fileContent().value(lineBreakKeyString).toString(), QStringLiteral("199"));
}

BREVANT_TEST(tst_SettingsStore, QCoreApplication)
#include "tst_SettingsStore.moc"
