// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"
#include "tests/TestClass.h"

#include <QTest>

#include <set>

using namespace brevant;

class tst_SettingsKeys final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysInOrder();
    void defaults_data();
    void defaults();
    void registersAllEighteen();
    void findsByTheWholeName();
};

void tst_SettingsKeys::keysInOrder()
{
    const QStringList expected{
        QStringLiteral("suffixKeyString"),
        QStringLiteral("suffixSwitcherKeyString"),
        QStringLiteral("lineBreakKeyString"),
        QStringLiteral("lineBreakSwitcherKeyString"),
        QStringLiteral("nomungeSwitcherKeyString"),
        QStringLiteral("preserveSemiSwitcherKeyString"),
        QStringLiteral("disableOptimizationsSwitcherKeyString"),
        QStringLiteral("sameFolderKeyString"),
        QStringLiteral("selectedFolderKeyString"),
        QStringLiteral("soundCheckerKeyString"),
        QStringLiteral("filterCheckerKeyString"),
        QStringLiteral("autoMinifyCheckerKeyString"),
        QStringLiteral("selectedEncodingKeyString"),
        QStringLiteral("enableHTMLCheckerKeyString"),
        QStringLiteral("enablePHPCheckerKeyString"),
        QStringLiteral("badgeCheckerKeyString"),
        QStringLiteral("gzipCheckerKeyString"),
        QStringLiteral("keepXMLSpaceCheckerKeyString"),
    };
    QStringList keys;
    for (const SettingKey &setting : allSettingKeys)
        keys << QString(setting.key);
    QCOMPARE(keys, expected);
}

void tst_SettingsKeys::defaults_data()
{
    QTest::addColumn<QLatin1StringView>("constant");
    QTest::addColumn<QJsonValue>("expected");
    const auto row = [](const char *key, QLatin1StringView constant, const QJsonValue &expected) {
        QTest::newRow(key) << constant << expected;
    };
    row("suffixKeyString", suffixKeyString, QStringLiteral(".min"));
    row("suffixSwitcherKeyString", suffixSwitcherKeyString, true);
    row("lineBreakKeyString", lineBreakKeyString, QStringLiteral("500"));
    row("lineBreakSwitcherKeyString", lineBreakSwitcherKeyString, false);
    row("nomungeSwitcherKeyString", nomungeSwitcherKeyString, false);
    row("preserveSemiSwitcherKeyString", preserveSemiSwitcherKeyString, false);
    row("disableOptimizationsSwitcherKeyString", disableOptimizationsSwitcherKeyString, false);
    row("sameFolderKeyString", sameFolderKeyString, true);
    row("selectedFolderKeyString", selectedFolderKeyString, QString());
    row("soundCheckerKeyString", soundCheckerKeyString, true);
    row("filterCheckerKeyString", filterCheckerKeyString, false);
    row("autoMinifyCheckerKeyString", autoMinifyCheckerKeyString, false);
    row("selectedEncodingKeyString", selectedEncodingKeyString, QStringLiteral("utf-8"));
    row("enableHTMLCheckerKeyString", enableHTMLCheckerKeyString, true);
    row("enablePHPCheckerKeyString", enablePHPCheckerKeyString, false);
    row("badgeCheckerKeyString", badgeCheckerKeyString, true);
    row("gzipCheckerKeyString", gzipCheckerKeyString, false);
    row("keepXMLSpaceCheckerKeyString", keepXMLSpaceCheckerKeyString, false);
}

void tst_SettingsKeys::defaults()
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

void tst_SettingsKeys::registersAllEighteen()
{
    QCOMPARE(registeredDefaults().size(), 18);
    std::set<QString> names;
    for (const SettingKey &setting : allSettingKeys)
        names.insert(QString(setting.key));
    QCOMPARE(names.size(), std::size_t{18});
}

void tst_SettingsKeys::findsByTheWholeName()
{
    QVERIFY(findSettingKey(u"suffixKeyStrin") == nullptr);
    QVERIFY(findSettingKey(u"suffixkeystring") == nullptr);
    QVERIFY(findSettingKey(u"") == nullptr);
    QCOMPARE(findSettingKey(u"suffixKeyString"), &allSettingKeys.front());
    QCOMPARE(findSettingKey(u"keepXMLSpaceCheckerKeyString"), &allSettingKeys.back());
}

BREVANT_TEST(tst_SettingsKeys, QCoreApplication)
#include "tst_SettingsKeys.moc"
