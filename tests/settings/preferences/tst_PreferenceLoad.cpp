// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Encodings.h"
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(QLatin1StringView)

/// What the window shows of the settings when it is loaded.
class tst_PreferenceLoad final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstStart()
    {
        PreferenceBench bench;
        bench.load();
        QCOMPARE(bench.controller->window()->windowTitle(), u"Preferences"_s);
        QCOMPARE(bench.controller->suffixFieldValue(), u".min"_s);
        QCOMPARE(bench.control<QLineEdit>("suffixField")->text(), u".min"_s);
        QCOMPARE(bench.control<QLineEdit>("lineBreakField")->text(), u"500"_s);
        QVERIFY(bench.control<QRadioButton>("addSuffixButton")->isChecked());
        QCOMPARE(bench.control<QComboBox>("popupButton")->count(), 3);
        QCOMPARE(bench.control<QComboBox>("popupButton")->currentIndex(), 0);
        QCOMPARE(bench.control<QComboBox>("encodingPopupButton")->currentText(), u"Unicode (utf-8)"_s);
        QStringList on;
        for (const QCheckBox *checker : bench.checkers()) {
            if (checker->isChecked())
                on.append(checker->objectName());
        }
        on.sort();
        const QStringList expected{u"badgeChecker"_s, u"enableHTMLChecker"_s, u"soundChecker"_s};
        QCOMPARE(on, expected);
        QVERIFY(bench.sheets().isEmpty());
    }

    void writesNothing()
    {
        PreferenceBench bench;
        bench.load();
        bench.store.synchronize();
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(!QFile::exists(bench.filePath()));
        QVERIFY(bench.startFolders.isEmpty());

        // Nor with values that move every control.
        for (const SettingKey &setting : allSettingKeys) {
            if (setting.type == SettingType::Boolean)
                bench.store.setBool(!setting.defaultState, setting.key);
        }
        bench.store.setObject(u"gbk"_s, selectedEncodingKeyString);
        bench.writes.clear();
        bench.load();
        QVERIFY(bench.show());
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(bench.sheets().isEmpty());
    }

    void suffixRows_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("enabled");
        // A value that is no boolean changes nothing: the first row is chosen in the layout.
        QTest::newRow("true") << QJsonValue(true) << 0 << true;
        QTest::newRow("false") << QJsonValue(false) << 1 << false;
        QTest::newRow("1") << QJsonValue(1) << 0 << true;
        QTest::newRow("0") << QJsonValue(0) << 0 << true;
        QTest::newRow("text") << QJsonValue(u"false"_s) << 0 << true;
    }

    void suffixRows()
    {
        QFETCH(QJsonValue, stored);
        PreferenceBench bench;
        bench.store.setObject(stored, suffixSwitcherKeyString);
        bench.load();
        QTEST(bench.control<QButtonGroup>("suffixMatrix")->checkedId(), "row");
        QTEST(bench.control<QLineEdit>("suffixField")->isEnabled(), "enabled");
        QCOMPARE(bench.store.objectForKey(suffixSwitcherKeyString), stored);
    }

    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("no number") << u"abc &x -1 "_s;
        QTest::newRow("letters of all kinds") << QStringLiteral(u"\u00e9\u6f22\U0001f600");
    }

    void texts()
    {
        QFETCH(QString, text);
        PreferenceBench bench;
        bench.store.setObject(text, suffixKeyString);
        bench.store.setObject(text + u'2', lineBreakKeyString);
        bench.load();
        QCOMPARE(bench.controller->suffixFieldValue(), text);
        QCOMPARE(bench.control<QLineEdit>("suffixField")->text(), text);
        QCOMPARE(bench.control<QLineEdit>("lineBreakField")->text(), QString(text + u'2'));
    }

    void lineBreak_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("checked");
        QTest::addColumn<bool>("enabled");
        // A number passes the flag test and neither strict test: the field is enabled in the layout.
        QTest::newRow("true") << QJsonValue(true) << true << true;
        QTest::newRow("false") << QJsonValue(false) << false << false;
        QTest::newRow("1") << QJsonValue(1) << true << true;
        QTest::newRow("0") << QJsonValue(0) << false << true;
    }

    void lineBreak()
    {
        QFETCH(QJsonValue, stored);
        PreferenceBench bench;
        bench.store.setObject(stored, lineBreakSwitcherKeyString);
        bench.load();
        QTEST(bench.control<QCheckBox>("lineBreakChecker")->isChecked(), "checked");
        QTEST(bench.control<QLineEdit>("lineBreakField")->isEnabled(), "enabled");
    }

    void checkers_data()
    {
        QTest::addColumn<QLatin1StringView>("key");
        addCheckerRows();
    }

    void checkers()
    {
        QFETCH(QLatin1StringView, key);
        const QList<std::pair<QJsonValue, bool>> values{{true, true}, {false, false}, {1, true}, {0, false}};
        for (const auto &[stored, checked] : values) {
            PreferenceBench bench;
            for (const SettingKey &setting : allSettingKeys) {
                if (setting.type == SettingType::Boolean)
                    bench.store.setBool(!checked, setting.key);
            }
            bench.store.setObject(stored, key);
            bench.load();
            for (const QCheckBox *checker : bench.checkers()) {
                const bool own = checker->objectName() == QLatin1StringView(QTest::currentDataTag());
                QCOMPARE(checker->isChecked(), own ? checked : !checked);
            }
        }
    }

    void folder_data()
    {
        QTest::addColumn<QJsonValue>("sameFolder");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("listed");
        QTest::addColumn<QString>("title");
        const QString path = u"/home/me/out.d"_s;
        QTest::newRow("false") << QJsonValue(false) << path << true << u"out.d"_s;
        QTest::newRow("false, nothing chosen") << QJsonValue(false) << QString() << true << QString();
        QTest::newRow("false, root") << QJsonValue(false) << u"/"_s << true << u"/"_s;
        QTest::newRow("false, / at the end") << QJsonValue(false) << u"/a/b//"_s << true << u"b"_s;
        QTest::newRow("false, a bare name") << QJsonValue(false) << u"a&b"_s << true << u"a&b"_s;
        QTest::newRow("true") << QJsonValue(true) << path << false << QString();
        QTest::newRow("0") << QJsonValue(0) << path << false << QString();
        QTest::newRow("1") << QJsonValue(1) << path << false << QString();
    }

    void folder()
    {
        QFETCH(QJsonValue, sameFolder);
        QFETCH(QString, path);
        QFETCH(bool, listed);
        PreferenceBench bench;
        bench.store.setObject(sameFolder, sameFolderKeyString);
        bench.store.setObject(path, selectedFolderKeyString);
        bench.load();
        const auto *popup = bench.control<QComboBox>("popupButton");
        QCOMPARE(popup->count(), listed ? 4 : 3);
        QCOMPARE(popup->currentIndex(), listed ? 3 : 0);
        QCOMPARE(bench.iconPaths, listed ? QStringList{path} : QStringList());
        if (listed) {
            QTEST(popup->itemText(3), "title");
            QVERIFY(!popup->itemIcon(3).isNull());
            QCOMPARE(popup->itemData(3, Qt::ToolTipRole).toString(), path);
        }
    }

    void encodings_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("utf-8") << u"Unicode (utf-8)"_s;
        QTest::newRow("gb2312") << u"Chinese (gb2312)"_s;
        QTest::newRow("gbk") << u"Chinese (gbk)"_s;
        QTest::newRow("gb18030") << u"Chinese (gb18030)"_s;
        QTest::newRow("big5") << u"Chinese (big5)"_s;
        QTest::newRow("big5-hkscs") << u"Chinese (big5-hkscs)"_s;
        QTest::newRow("shift-jis") << u"Japanese (shift-jis)"_s;
        QTest::newRow("iso-2022-jp") << u"Japanese (iso-2022-jp)"_s;
        QTest::newRow("iso-2022-kr") << u"Korean (iso-2022-kr)"_s;
        // These select nothing; the layout's item stays.
        QTest::newRow("iso-8859-1") << u"Unicode (utf-8)"_s;
        QTest::newRow("iso-8859-15") << u"Unicode (utf-8)"_s;
        QTest::newRow("GBK") << u"Unicode (utf-8)"_s;
        QTest::newRow("koi8-r") << u"Unicode (utf-8)"_s;
        QTest::newRow("") << u"Unicode (utf-8)"_s;
    }

    void encodings()
    {
        const QString stored = QString::fromLatin1(QTest::currentDataTag());
        PreferenceBench bench;
        bench.store.setObject(stored, selectedEncodingKeyString);
        bench.load();
        QTEST(bench.control<QComboBox>("encodingPopupButton")->currentText(), "title");
        QCOMPARE(bench.store.stringForKey(selectedEncodingKeyString), stored);
    }

    void encodingMenu()
    {
        PreferenceBench bench;
        bench.load();
        const auto *popup = bench.control<QComboBox>("encodingPopupButton");
        QStringList titles;
        for (int index = 0; index < popup->count(); ++index)
            titles.append(popup->itemText(index));
        QCOMPARE(titles.size(), 11);
        for (std::size_t item = 0; item < allEncodings.size(); ++item)
            QCOMPARE(titles.at(static_cast<qsizetype>(item)), QString(allEncodings.at(item).title));
    }

    void filledOnlyOnce()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        bench.store.setObject(u"-other"_s, suffixKeyString);
        bench.store.setBool(true, gzipCheckerKeyString);
        bench.controller->window()->close();
        bench.controller->showWindow();
        QCOMPARE(bench.control<QLineEdit>("suffixField")->text(), u".min"_s);
        QVERIFY(!bench.control<QCheckBox>("gzipChecker")->isChecked());
        QCOMPARE(bench.controller->suffixFieldValue(), u"-other"_s);
    }
};

BREVANT_TEST(tst_PreferenceLoad, QApplication)
#include "tst_PreferenceLoad.moc"
