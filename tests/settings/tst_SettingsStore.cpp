// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/StoreFixture.h"

#include <QJsonDocument>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
/// What readers get for which value.
class tst_SettingsStore final : public QObject, StoreFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(setUp()); }

    void firstStart()
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

    void booleans_data()
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

    void booleans()
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

    void texts_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *json, const QString &expected) {
            QTest::newRow(json) << QByteArray(json) << expected;
        };
        row("\"abc\"", u"abc"_s);
        row("\"\"", QString());
        row("\" 80 \"", u" 80 "_s);
        row("\"\\u00fc\\n\"", u"\u00fc\n"_s);
        row("80", u"80"_s);
        row("1.5", u"1.5"_s);
        row("-3", u"-3"_s);
        row("0", u"0"_s);
        row("0.1", u"0.1"_s);
        row("80.0", u"80"_s);
        row("1000000", u"1000000"_s);
        row("9007199254740993", u"9007199254740993"_s);
        for (const char *json : {"true", "false", "null", "[]", "[\"abc\"]", "{}"})
            row(json, u"500"_s);
    }

    void texts()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, expected);
        QVERIFY(writeFile(m_path, "{\"lineBreakKeyString\": " + json + "}"));
        QCOMPARE(makeStore()->stringForKey(lineBreakKeyString), std::optional(expected));

        SettingsStore withoutDefaults(m_path);
        const bool isText =
            json.startsWith('"') || json.at(0) == '-' || (json.at(0) >= '0' && json.at(0) <= '9');
        QCOMPARE(withoutDefaults.stringForKey(lineBreakKeyString).has_value(), isText);
    }

    void numberSetByTheProgram()
    {
        const auto store = makeStore();
        store->setObject(1, badgeCheckerKeyString);
        store->setObject(80.0, lineBreakKeyString);
        for (int round = 0; round < 2; ++round) { // before it is written and after
            QVERIFY(store->boolForKey(badgeCheckerKeyString));
            QVERIFY(!store->isTrue(badgeCheckerKeyString));
            QVERIFY(!store->isFalse(badgeCheckerKeyString));
            QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(u"80"_s));
            store->synchronize();
        }
    }

    void unknownKeyAnswersNothing()
    {
        const auto store = makeStore();
        const QLatin1StringView key("noSuchKey");
        QVERIFY(store->objectForKey(key).isUndefined());
        QVERIFY(!store->stringForKey(key).has_value());
        QVERIFY(!store->boolForKey(key));
        QVERIFY(!store->isTrue(key));
        QVERIFY(!store->isFalse(key));
    }

    void textsAreNotChecked()
    {
        {
            const auto store = makeStore();
            store->setObject(QString(), suffixKeyString);
            store->setObject(u"no number"_s, lineBreakKeyString);
            store->setObject(u"iso-8859-15"_s, selectedEncodingKeyString);
            QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString()));
            QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(u"no number"_s));
        }
        const auto store = makeStore();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(QString()));
        QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(u"no number"_s));
        QCOMPARE(store->stringForKey(selectedEncodingKeyString), std::optional(u"iso-8859-15"_s));
    }

    void bothWaysToSetABoolean()
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

    void overrides()
    {
        QVERIFY(writeFile(m_path, R"({"suffixKeyString": "-file", "gzipCheckerKeyString": false})"));
        const auto store = makeStore();
        store->setOverride(u"-run"_s, suffixKeyString);
        store->setOverride(true, gzipCheckerKeyString);
        store->setOverride(1, soundCheckerKeyString);
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-run"_s));
        QVERIFY(store->isTrue(gzipCheckerKeyString));
        QVERIFY(store->boolForKey(soundCheckerKeyString) && !store->isTrue(soundCheckerKeyString));

        store->setObject(u"-set"_s, suffixKeyString);
        store->setObject(u"80"_s, lineBreakKeyString);
        store->synchronize();
        QCOMPARE(store->stringForKey(suffixKeyString), std::optional(u"-run"_s));
        const QJsonObject expected{
            {suffixKeyString, u"-set"_s}, {gzipCheckerKeyString, false}, {lineBreakKeyString, u"80"_s}};
        QCOMPARE(fileContent(), expected);
    }

    void variantsDifferInOneValue()
    {
        const auto store = makeStore();
        store->registerDefaults({{suffixKeyString, u"-default"_s}, {lineBreakKeyString, u"1"_s}});
        store->setOverride(true, gzipCheckerKeyString);
        store->setObject(u"-set"_s, suffixKeyString); // not written yet
        const auto variant = store->variant(u"80"_s, lineBreakKeyString);
        QCOMPARE(variant->stringForKey(lineBreakKeyString), std::optional(u"80"_s));
        QCOMPARE(variant->stringForKey(suffixKeyString), std::optional(u"-set"_s));
        QVERIFY(variant->isTrue(gzipCheckerKeyString));
        QCOMPARE(store->stringForKey(lineBreakKeyString), std::optional(u"1"_s));
        store->setObject(u"-later"_s, suffixKeyString);
        QCOMPARE(variant->stringForKey(suffixKeyString), std::optional(u"-later"_s));
        store->synchronize();
        QCOMPARE(fileContent(), QJsonObject({{suffixKeyString, u"-later"_s}}));
    }
};

BREVANT_TEST(tst_SettingsStore, QCoreApplication)
#include "tst_SettingsStore.moc"
