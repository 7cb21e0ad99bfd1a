// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

using namespace brevant;
using namespace brevant::test;

Q_DECLARE_METATYPE(QLatin1StringView)

/// What each control writes, driven by clicks and keys.
class tst_PreferenceController final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checkers_data();
    void checkers();
    void checkerByAssistiveProgram();
    void suffixIsStoredAsTyped();
    void lineBreakIsStoredAsTyped();
    void anyTextChangeStoresTheSuffix();
    void suffixRowsByKeys();
    void noRowDoesNothing();
    void lineBreakSwitch();
    void encodings_data();
    void encodings();
    void encodingPickedAgain();
    void closeEndsEditing();
    void closingTheWindowEndsEditing();
};

void tst_PreferenceController::checkers_data()
{
    QTest::addColumn<QLatin1StringView>("key");
    QTest::newRow("lineBreakChecker") << lineBreakSwitcherKeyString;
    QTest::newRow("nomungeChecker") << nomungeSwitcherKeyString;
    QTest::newRow("preserveSemiChecker") << preserveSemiSwitcherKeyString;
    QTest::newRow("disableOptimizationsChecker") << disableOptimizationsSwitcherKeyString;
    QTest::newRow("soundChecker") << soundCheckerKeyString;
    QTest::newRow("filterChecker") << filterCheckerKeyString;
    QTest::newRow("autoMinifyChecker") << autoMinifyCheckerKeyString;
    QTest::newRow("enableHTMLChecker") << enableHTMLCheckerKeyString;
    QTest::newRow("enablePHPChecker") << enablePHPCheckerKeyString;
    QTest::newRow("badgeChecker") << badgeCheckerKeyString;
    QTest::newRow("gzipChecker") << gzipCheckerKeyString;
    QTest::newRow("keepXMLSpaceChecker") << keepXMLSpaceCheckerKeyString;
}

void tst_PreferenceController::checkers()
{
    QFETCH(QLatin1StringView, key);
    PreferenceBench bench;
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

void tst_PreferenceController::checkerByAssistiveProgram()
{
    // These toggle without a click.
    PreferenceBench bench;
    bench.load();
    bench.control<QCheckBox>("gzipChecker")->toggle();
    QVERIFY(bench.store.isTrue(gzipCheckerKeyString));
    bench.control<QRadioButton>("sameAsSourceButton")->toggle();
    QVERIFY(bench.store.isFalse(suffixSwitcherKeyString));
    QCOMPARE(bench.sheets().size(), 1);
    bench.control<QLineEdit>("lineBreakField")->setText(QStringLiteral("7"));
    QCOMPARE(bench.store.stringForKey(lineBreakKeyString), QStringLiteral("7"));
}

void tst_PreferenceController::suffixIsStoredAsTyped()
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

void tst_PreferenceController::lineBreakIsStoredAsTyped()
{
    PreferenceBench bench;
    bench.store.setBool(true, lineBreakSwitcherKeyString);
    QVERIFY(bench.show());
    auto *field = bench.control<QLineEdit>("lineBreakField");
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("80x"));
    QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(QStringLiteral("80x")));
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(QString()));
}

void tst_PreferenceController::anyTextChangeStoresTheSuffix()
{
    PreferenceBench bench;
    bench.store.setBool(true, lineBreakSwitcherKeyString);
    QVERIFY(bench.show());
    bench.store.setObject(QStringLiteral("-outside"), suffixKeyString);
    QTest::keyClick(bench.control<QLineEdit>("lineBreakField"), '1');
    QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(QStringLiteral(".min")));

    QLineEdit other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    other.setFocus();
    QVERIFY(other.hasFocus());
    bench.store.setObject(QStringLiteral("-outside"), suffixKeyString);
    other.setText(QStringLiteral("by the program"));
    QCOMPARE(bench.controller->suffixFieldValue(), QStringLiteral("-outside"));
    bench.writes.clear();
    QTest::keyClick(&other, 'x');
    QCOMPARE(bench.controller->suffixFieldValue(), QStringLiteral(".min"));
    QCOMPARE(bench.writes.count(), 1);
}

void tst_PreferenceController::suffixRowsByKeys()
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

void tst_PreferenceController::noRowDoesNothing()
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

void tst_PreferenceController::lineBreakSwitch()
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

void tst_PreferenceController::encodings_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const char *name : {"utf-8", "gb2312", "gbk", "gb18030", "big5", "big5-hkscs", "shift-jis",
                             "iso-2022-jp", "iso-2022-kr", "iso-8859-1", "iso-8859-15"})
        QTest::newRow(name) << index++;
}

void tst_PreferenceController::encodings()
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

void tst_PreferenceController::encodingPickedAgain()
{
    // The item shown is the layout's, not the stored value; picking it stores it.
    PreferenceBench bench;
    bench.store.setObject(QStringLiteral("iso-8859-15"), selectedEncodingKeyString);
    QVERIFY(bench.show());
    QVERIFY(pick(bench.control<QComboBox>("encodingPopupButton"), 0));
    QCOMPARE(bench.store.objectForKey(selectedEncodingKeyString), QJsonValue(QStringLiteral("utf-8")));
}

void tst_PreferenceController::closeEndsEditing()
{
    PreferenceBench bench;
    QVERIFY(bench.show());
    auto *field = bench.control<QLineEdit>("suffixField");
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("-x"));
    QVERIFY(field->hasFocus());
    bench.controller->close();
    QVERIFY(!field->hasFocus());
    QVERIFY(bench.controller->window()->focusWidget() == nullptr);
    QVERIFY(bench.controller->window()->isVisible());
    QCOMPARE(bench.store.objectForKey(suffixKeyString), QJsonValue(QStringLiteral("-x")));
    bench.controller->close(); // with nothing being edited
}

void tst_PreferenceController::closingTheWindowEndsEditing()
{
    PreferenceBench bench;
    bench.store.setBool(true, lineBreakSwitcherKeyString);
    QVERIFY(bench.show());
    auto *field = bench.control<QLineEdit>("lineBreakField");
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("99"));
    bench.controller->window()->close();
    QVERIFY(bench.controller->window()->focusWidget() == nullptr);
    QCOMPARE(bench.store.objectForKey(lineBreakKeyString), QJsonValue(QStringLiteral("99")));
    QVERIFY(!bench.controller->window()->isVisible());
}

BREVANT_TEST(tst_PreferenceController, QApplication)
#include "tst_PreferenceController.moc"
