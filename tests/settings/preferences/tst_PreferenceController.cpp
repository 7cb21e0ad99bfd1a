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

using Action = void (PreferenceController::*)();

Q_DECLARE_METATYPE(QLatin1StringView)
Q_DECLARE_METATYPE(Action)

/// What each control writes, driven by clicks and keys.
class tst_PreferenceController final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checkers_data()
    {
        QTest::addColumn<QLatin1StringView>("key");
        addCheckerRows();
    }

    void checkers()
    {
        QFETCH(QLatin1StringView, key);
        PreferenceBench bench;
        bench.store.setObject(familyOf(key), compressorsKeyString);
        QVERIFY(bench.show());
        auto *checker = bench.control<QCheckBox>(QTest::currentDataTag());
        QVERIFY(checker != nullptr);
        const bool before = checker->isChecked();
        for (const bool expected : {!before, before, !before}) {
            bench.writes.clear();
            QTest::mouseClick(checker, Qt::LeftButton, {}, QPoint(8, checker->height() / 2));
            QCOMPARE(checker->isChecked(), expected);
            QCOMPARE(bench.writes.count(), 1);
            QCOMPARE(bench.store.objectForKey(key), QJsonValue(expected));
            qDeleteAll(bench.sheets());
        }
        for (const SettingKey &setting : allSettingKeys) {
            if (setting.key != key && setting.type == SettingType::Boolean)
                QCOMPARE(bench.store.objectForKey(setting.key), QJsonValue(setting.defaultState));
        }
        QTest::keyClick(checker, Qt::Key_Space);
        QCOMPARE(bench.store.objectForKey(key), QJsonValue(before));
    }

    void checkersByAction_data()
    {
        QTest::addColumn<Action>("action");
        QTest::newRow("lineBreakChecker") << &PreferenceController::lineBreakSwitcherClicked;
        QTest::newRow("nomungeChecker") << &PreferenceController::nomungeCheckerClicked;
        QTest::newRow("preserveSemiChecker") << &PreferenceController::preserveSemiCheckerClicked;
        QTest::newRow("disableOptimizationsChecker")
            << &PreferenceController::disableOptimizationsCheckerClicked;
        QTest::newRow("soundChecker") << &PreferenceController::soundCheckerClicked;
        QTest::newRow("filterChecker") << &PreferenceController::filterCheckerClicked;
        QTest::newRow("autoMinifyChecker") << &PreferenceController::autoMinifyCheckerClicked;
        QTest::newRow("enableHTMLChecker") << &PreferenceController::enableHTMLCheckerClicked;
        QTest::newRow("enablePHPChecker") << &PreferenceController::enablePHPCheckerClicked;
        QTest::newRow("badgeChecker") << &PreferenceController::badgeCheckerClicked;
        QTest::newRow("gzipChecker") << &PreferenceController::gzipCheckerClicked;
        QTest::newRow("keepXMLSpaceChecker") << &PreferenceController::keepXMLSpaceCheckerClicked;
    }

    void checkersByAction()
    {
        QFETCH(Action, action);
        PreferenceBench bench;
        bench.load();
        auto *checker = bench.control<QCheckBox>(QTest::currentDataTag());
        for (int round = 0; round < 2; ++round) {
            bench.writes.clear();
            const QSignalBlocker silent(checker);
            checker->toggle();
            QCOMPARE(bench.writes.count(), 0);
            (*bench.controller.*action)();
            QCOMPARE(bench.writes.count(), 1);
            QCOMPARE(bench.store.objectForKey(keyOf(checker->objectName())),
                     QJsonValue(checker->isChecked()));
        }
    }

    void encodingsByAction()
    {
        PreferenceBench bench;
        bench.load();
        std::size_t item = 0;
        for (const Action action :
             {&PreferenceController::set_utf_8, &PreferenceController::set_gb2312,
              &PreferenceController::set_gbk, &PreferenceController::set_gb18030,
              &PreferenceController::set_big5, &PreferenceController::set_big5_hkscs,
              &PreferenceController::set_shift_jis, &PreferenceController::set_iso_2022_jp,
              &PreferenceController::set_iso_2022_kr, &PreferenceController::set_iso_8859_1,
              &PreferenceController::set_iso_8859_15}) {
            (*bench.controller.*action)();
            QCOMPARE(bench.store.stringForKey(selectedEncodingKeyString),
                     std::optional(QString(allEncodings.at(item++).name)));
        }
        QCOMPARE(item, allEncodings.size());
    }

    void checkerByAssistiveProgram()
    {
        // These toggle without a click.
        PreferenceBench bench;
        bench.load();
        bench.control<QCheckBox>("gzipChecker")->toggle();
        QVERIFY(bench.store.isTrue(gzipCheckerKeyString));
        bench.control<QRadioButton>("sameAsSourceButton")->toggle();
        QVERIFY(bench.store.isFalse(suffixSwitcherKeyString));
        QCOMPARE(bench.sheets().size(), 1);
        bench.control<QLineEdit>("lineBreakField")->setText(u"7"_s);
        QCOMPARE(bench.store.stringForKey(lineBreakKeyString), u"7"_s);
    }

    void suffixIsStoredAsTyped()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *field = bench.control<QLineEdit>("suffixField");
        QTest::mouseClick(field, Qt::LeftButton);
        field->selectAll();
        QString typed;
        for (const char letter : {'-', 'm', ' '}) {
            bench.writes.clear();
            QTest::keyClick(field, letter);
            typed.append(QLatin1Char(letter));
            QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(typed));
            QCOMPARE(bench.writes.count(), 1);
        }
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(QString()));
        QCOMPARE(bench.controller->suffixFieldValue(), QString());
    }

    void lineBreakIsStoredAsTyped()
    {
        PreferenceBench bench;
        bench.store.setBool(true, lineBreakSwitcherKeyString);
        QVERIFY(bench.show());
        auto *field = bench.control<QLineEdit>("lineBreakField");
        field->selectAll();
        QTest::keyClicks(field, u"80x"_s);
        QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(u"80x"_s));
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(QString()));
    }

    void anyTextChangeStoresTheSuffix()
    {
        PreferenceBench bench;
        bench.store.setBool(true, lineBreakSwitcherKeyString);
        QVERIFY(bench.show());
        bench.store.setObject(u"-outside"_s, suffixKeyString);
        QTest::keyClick(bench.control<QLineEdit>("lineBreakField"), '1');
        QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(u".min"_s));

        QLineEdit other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        other.setFocus();
        QVERIFY(other.hasFocus());
        bench.store.setObject(u"-outside"_s, suffixKeyString);
        other.setText(u"by the program"_s);
        QCOMPARE(bench.controller->suffixFieldValue(), u"-outside"_s);
        bench.writes.clear();
        QTest::keyClick(&other, 'x');
        QCOMPARE(bench.controller->suffixFieldValue(), u".min"_s);
        QCOMPARE(bench.writes.count(), 1);
    }

    void suffixRowsByKeys()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *first = bench.control<QRadioButton>("addSuffixButton");
        auto *second = bench.control<QRadioButton>("sameAsSourceButton");
        first->setFocus();
        QTest::keyClick(first, Qt::Key_Down);
        QVERIFY(second->isChecked());
        QVERIFY(bench.store.isFalse(suffixSwitcherKeyString));
        QCOMPARE(bench.sheets().size(), 1);
        QCOMPARE(bench.writes.count(), 1);
    }

    void noRowDoesNothing()
    {
        PreferenceBench bench;
        bench.load();
        auto *matrix = bench.control<QButtonGroup>("suffixMatrix");
        matrix->setExclusive(false);
        matrix->button(0)->setChecked(false);
        QCOMPARE(matrix->checkedId(), -1);
        bench.controller->suffixSwitcherClicked();
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(bench.control<QLineEdit>("suffixField")->isEnabled());
        QVERIFY(bench.sheets().isEmpty());
    }

    void lineBreakSwitch()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *checker = bench.control<QCheckBox>("lineBreakChecker");
        const auto *field = bench.control<QLineEdit>("lineBreakField");
        QVERIFY(!field->isEnabled());
        QTest::keyClick(checker, Qt::Key_Space);
        QVERIFY(bench.store.isTrue(lineBreakSwitcherKeyString));
        QVERIFY(field->isEnabled());
        QTest::keyClick(checker, Qt::Key_Space);
        QVERIFY(bench.store.isFalse(lineBreakSwitcherKeyString));
        QVERIFY(!field->isEnabled());
        // The value read back decides; one that is no boolean leaves the field as it is.
        bench.store.setOverride(1, lineBreakSwitcherKeyString);
        QTest::keyClick(checker, Qt::Key_Space);
        QVERIFY(checker->isChecked());
        QVERIFY(!field->isEnabled());
    }

    void encodings_data()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const char *name : {"utf-8", "gb2312", "gbk", "gb18030", "big5", "big5-hkscs", "shift-jis",
                                 "iso-2022-jp", "iso-2022-kr", "iso-8859-1", "iso-8859-15"})
            QTest::newRow(name) << index++;
    }

    void encodings()
    {
        QFETCH(int, index);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("encodingPopupButton");
        QVERIFY(pick(popup, index));
        QCOMPARE(bench.writes.count(), 1);
        QCOMPARE(bench.store.objectForKey(selectedEncodingKeyString), QJsonValue(name));
        QVERIFY(popup->currentText().contains(u'(' + name + u')'));
    }

    void encodingPickedAgain()
    {
        // The item shown is the layout's, not the stored value; picking it stores it.
        PreferenceBench bench;
        bench.store.setObject(u"iso-8859-15"_s, selectedEncodingKeyString);
        QVERIFY(bench.show());
        QVERIFY(pick(bench.control<QComboBox>("encodingPopupButton"), 0));
        QCOMPARE(bench.store.objectForKey(selectedEncodingKeyString), QJsonValue(u"utf-8"_s));
    }

    void closeEndsEditing()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *field = bench.control<QLineEdit>("suffixField");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, u"-x"_s);
        QVERIFY(field->hasFocus());
        bench.controller->close();
        QVERIFY(!field->hasFocus());
        QVERIFY(bench.controller->window()->focusWidget() == nullptr);
        QVERIFY(bench.controller->window()->isVisible());
        QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(u"-x"_s));
        bench.controller->close(); // with nothing being edited
    }

    void closingTheWindowEndsEditing()
    {
        PreferenceBench bench;
        bench.store.setBool(true, lineBreakSwitcherKeyString);
        QVERIFY(bench.show());
        auto *field = bench.control<QLineEdit>("lineBreakField");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, u"99"_s);
        bench.controller->window()->close();
        QVERIFY(bench.controller->window()->focusWidget() == nullptr);
        QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(u"99"_s));
        QVERIFY(!bench.controller->window()->isVisible());
    }
};

BREVANT_TEST(tst_PreferenceController, QApplication)
#include "tst_PreferenceController.moc"
