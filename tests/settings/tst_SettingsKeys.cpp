// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_SettingsKeys final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstEighteenInOrder()
    {
        const QStringList expected{
            u"suffixKeyString"_s,
            u"suffixSwitcherKeyString"_s,
            u"lineBreakKeyString"_s,
            u"lineBreakSwitcherKeyString"_s,
            u"nomungeSwitcherKeyString"_s,
            u"preserveSemiSwitcherKeyString"_s,
            u"disableOptimizationsSwitcherKeyString"_s,
            u"sameFolderKeyString"_s,
            u"selectedFolderKeyString"_s,
            u"soundCheckerKeyString"_s,
            u"filterCheckerKeyString"_s,
            u"autoMinifyCheckerKeyString"_s,
            u"selectedEncodingKeyString"_s,
            u"enableHTMLCheckerKeyString"_s,
            u"enablePHPCheckerKeyString"_s,
            u"badgeCheckerKeyString"_s,
            u"gzipCheckerKeyString"_s,
            u"keepXMLSpaceCheckerKeyString"_s,
        };
        QStringList keys;
        for (const SettingKey &setting : allSettingKeys)
            keys << QString(setting.key);
        QCOMPARE(keys.first(expected.size()), expected);
    }

    void defaults_data()
    {
        QTest::addColumn<QLatin1StringView>("constant");
        QTest::addColumn<QJsonValue>("expected");
        const auto row = [](const char *key, QLatin1StringView constant, const QJsonValue &expected) {
            QTest::newRow(key) << constant << expected;
        };
        row("suffixKeyString", suffixKeyString, u".min"_s);
        row("suffixSwitcherKeyString", suffixSwitcherKeyString, true);
        row("lineBreakKeyString", lineBreakKeyString, u"500"_s);
        row("lineBreakSwitcherKeyString", lineBreakSwitcherKeyString, false);
        row("nomungeSwitcherKeyString", nomungeSwitcherKeyString, false);
        row("preserveSemiSwitcherKeyString", preserveSemiSwitcherKeyString, false);
        row("disableOptimizationsSwitcherKeyString", disableOptimizationsSwitcherKeyString, false);
        row("sameFolderKeyString", sameFolderKeyString, true);
        row("selectedFolderKeyString", selectedFolderKeyString, QString());
        row("soundCheckerKeyString", soundCheckerKeyString, true);
        row("filterCheckerKeyString", filterCheckerKeyString, false);
        row("autoMinifyCheckerKeyString", autoMinifyCheckerKeyString, false);
        row("selectedEncodingKeyString", selectedEncodingKeyString, u"utf-8"_s);
        row("enableHTMLCheckerKeyString", enableHTMLCheckerKeyString, true);
        row("enablePHPCheckerKeyString", enablePHPCheckerKeyString, false);
        row("badgeCheckerKeyString", badgeCheckerKeyString, true);
        row("gzipCheckerKeyString", gzipCheckerKeyString, false);
        row("keepXMLSpaceCheckerKeyString", keepXMLSpaceCheckerKeyString, false);
        row("compressorsKeyString", compressorsKeyString, u"classic"_s);
        row("keepCommentsCheckerKeyString", keepCommentsCheckerKeyString, false);
        row("sourceMapCheckerKeyString", sourceMapCheckerKeyString, false);
        row("brotliCheckerKeyString", brotliCheckerKeyString, false);
        row("keepOriginalsCheckerKeyString", keepOriginalsCheckerKeyString, false);
    }

    void defaults()
    {
        QFETCH(QLatin1StringView, constant);
        QFETCH(QJsonValue, expected);
        QCOMPARE(QString(constant), QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(registeredDefaults().value(constant), expected);

        const SettingKey *setting = findSettingKey(QString(constant));
        QVERIFY(setting != nullptr);
        QCOMPARE(setting->key, constant);
        QCOMPARE(setting->type == SettingType::Boolean, expected.isBool());
        QCOMPARE(setting->type == SettingType::Text, expected.isString());
    }

    void registersAll()
    {
        QJsonObject defaults;
        QSet<QString> keys;
        for (const SettingKey &setting : allSettingKeys) {
            const bool isText = setting.type == SettingType::Text;
            keys.insert(setting.key);
            if (setting.key != esbuildPathKeyString)
                defaults.insert(setting.key, isText ? QJsonValue(QString(setting.defaultText))
                                                    : QJsonValue(setting.defaultState));
        }
        QCOMPARE(registeredDefaults(), defaults);
        QVERIFY(keys.size() >= 18);
        QCOMPARE(keys.size(), qsizetype(allSettingKeys.size())); // none stands there twice
    }

    void aPathWithoutADefaultIsAbsent()
    {
        QVERIFY(!registeredDefaults().contains(esbuildPathKeyString));
        QCOMPARE(findSettingKey(u"esbuildPathKeyString")->type, SettingType::Text);
        const QTemporaryDir folder;
        SettingsStore store(folder.filePath(u"settings.json"_s));
        store.registerDefaults(registeredDefaults());
        QVERIFY(store.objectForKey(esbuildPathKeyString).isUndefined());
        QCOMPARE(store.stringForKey(esbuildPathKeyString), std::nullopt);
        store.setObject(u"/opt/esbuild"_s, esbuildPathKeyString);
        QCOMPARE(store.stringForKey(esbuildPathKeyString), u"/opt/esbuild"_s);
        store.setObject(true, esbuildPathKeyString); // no text
        QCOMPARE(store.stringForKey(esbuildPathKeyString), std::nullopt);
    }

    void findsByTheWholeName()
    {
        QVERIFY(findSettingKey(u"suffixKeyStrin") == nullptr);
        QVERIFY(findSettingKey(u"suffixkeystring") == nullptr);
        QVERIFY(findSettingKey(u"") == nullptr);
        QCOMPARE(findSettingKey(u"suffixKeyString"), &allSettingKeys.front());
        QCOMPARE(findSettingKey(u"keepXMLSpaceCheckerKeyString"), &allSettingKeys[17]);
    }
};

BREVANT_TEST(tst_SettingsKeys, QCoreApplication)
#include "tst_SettingsKeys.moc"
