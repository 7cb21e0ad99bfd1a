// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLineEdit>
#include <QPointer>
#include <QRadioButton>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The two choices that warn.
class tst_PreferenceWarnings final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sameAsSourceWarns_data()
    {
        QTest::addColumn<bool>("sameFolder");
        QTest::newRow("beside the source") << true;
        QTest::newRow("into a chosen folder") << false;
    }

    void sameAsSourceWarns()
    {
        QFETCH(bool, sameFolder);
        PreferenceBench bench;
        bench.store.setBool(sameFolder, sameFolderKeyString);
        QVERIFY(bench.show());
        bench.writes.clear();
        QTest::mouseClick(bench.control<QRadioButton>("sameAsSourceButton"), Qt::LeftButton, {},
                          QPoint(8, 8));
        // Nothing waits for the sheet.
        QVERIFY(bench.store.isFalse(suffixSwitcherKeyString));
        QCOMPARE(bench.writes.count(), 1);
        QVERIFY(!bench.control<QLineEdit>("suffixField")->isEnabled());

        QCOMPARE(bench.sheets().size(), 1);
        const QPointer<QMessageBox> sheet = bench.sheets().constFirst();
        QVERIFY(sheet->isVisible());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(sheet->parentWidget(), bench.controller->window());
        QCOMPARE(sheet->icon(), QMessageBox::Warning);
        QCOMPARE(sheet->text(), u"Be careful with this option"_s);
        QCOMPARE(sheet->informativeText(),
                 u"If you enable output filename 'the same as source' and choose save minified files to "
                 "'the same folder as source', the minified file will be saved as the same name of the "
                 "source file under the same directory, your source file will be lost."_s);
        QCOMPARE(sheet->buttons().size(), 1);
        QCOMPARE(sheet->buttons().constFirst()->text(), u"OK"_s);

        bench.writes.clear();
        QTest::mouseClick(sheet->buttons().constFirst(), Qt::LeftButton);
        QTRY_VERIFY(sheet.isNull());
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(bench.control<QRadioButton>("sameAsSourceButton")->isChecked());
    }

    void sameAsSourceWarnsEachTime()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *row = bench.control<QRadioButton>("sameAsSourceButton");
        for (int time = 0; time < 3; ++time) {
            bench.writes.clear();
            QTest::mouseClick(row, Qt::LeftButton, {}, QPoint(8, 8));
            QCOMPARE(bench.sheets().size(), 1);
            QCOMPARE(bench.writes.count(), 1);
            const QPointer<QMessageBox> sheet = bench.sheets().constFirst();
            QTest::keyClick(sheet, Qt::Key_Escape);
            QTRY_VERIFY(sheet.isNull());
        }
    }

    void addSuffixDoesNotWarn_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::newRow("the other row is chosen") << QJsonValue(false);
        QTest::newRow("it is chosen already, by the layout alone") << QJsonValue(1);
    }

    void addSuffixDoesNotWarn()
    {
        QFETCH(QJsonValue, stored);
        PreferenceBench bench;
        bench.store.setObject(stored, suffixSwitcherKeyString);
        QVERIFY(bench.show());
        QTest::mouseClick(bench.control<QRadioButton>("addSuffixButton"), Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(bench.store.isTrue(suffixSwitcherKeyString));
        QVERIFY(bench.control<QLineEdit>("suffixField")->isEnabled());
        QVERIFY(bench.sheets().isEmpty());
    }

    void phpOnWarns()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        QTest::mouseClick(bench.control<QCheckBox>("enablePHPChecker"), Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(bench.store.isTrue(enablePHPCheckerKeyString));
        QCOMPARE(bench.writes.count(), 1);

        QCOMPARE(bench.sheets().size(), 1);
        const QPointer<QMessageBox> sheet = bench.sheets().constFirst();
        QVERIFY(sheet->isVisible());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(sheet->icon(), QMessageBox::Warning);
        QCOMPARE(sheet->text(), u"PHP compression is an experiment feature"_s);
        QCOMPARE(sheet->informativeText(),
                 u"Please aware that PHP compression is an experiment feature. Currently it doesn't "
                 "support // comments.\n\nIf you want to compress a PHP file, you need to delete all "
                 "the // comments before that. Brevant can remove whitespace characters for you."_s);
        QCOMPARE(sheet->buttons().size(), 1);
        QCOMPARE(sheet->buttons().constFirst()->text(), u"OK, I got it."_s);
        sheet->buttons().constFirst()->click();
        QTRY_VERIFY(sheet.isNull());
        QCOMPARE(bench.writes.count(), 1);
    }

    void phpOffDoesNotWarn()
    {
        PreferenceBench bench;
        bench.store.setBool(true, enablePHPCheckerKeyString);
        QVERIFY(bench.show());
        QTest::mouseClick(bench.control<QCheckBox>("enablePHPChecker"), Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(bench.store.isFalse(enablePHPCheckerKeyString));
        QVERIFY(bench.sheets().isEmpty());
    }

    void phpWarnsByTheStoredValue_data()
    {
        QTest::addColumn<bool>("atLoad");
        QTest::addColumn<QJsonValue>("before");
        QTest::addColumn<bool>("warns");
        QTest::newRow("switched on, stored true meanwhile") << false << QJsonValue(true) << false;
        QTest::newRow("switched on, stored 1 meanwhile") << false << QJsonValue(1) << false;
        QTest::newRow("switched off, stored false meanwhile") << true << QJsonValue(false) << true;
        QTest::newRow("switched off, stored 0 meanwhile") << true << QJsonValue(0) << true;
    }

    void phpWarnsByTheStoredValue()
    {
        QFETCH(bool, atLoad);
        QFETCH(QJsonValue, before);
        PreferenceBench bench;
        bench.store.setBool(atLoad, enablePHPCheckerKeyString);
        QVERIFY(bench.show());
        bench.store.setObject(before, enablePHPCheckerKeyString);
        QTest::mouseClick(bench.control<QCheckBox>("enablePHPChecker"), Qt::LeftButton, {}, QPoint(8, 8));
        QTEST(!bench.sheets().isEmpty(), "warns");
        QCOMPARE(bench.store.objectForKey(enablePHPCheckerKeyString), QJsonValue(!atLoad));
    }

    void destroyedWithAWarningOpen()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        bench.control<QCheckBox>("enablePHPChecker")->click();
        const QPointer<QMessageBox> sheet = bench.sheets().constFirst();
        bench.control<QLineEdit>("suffixField")->setFocus();
        bench.controller.reset();
        QVERIFY(sheet.isNull());
    }
};

BREVANT_TEST(tst_PreferenceWarnings, QApplication)
#include "tst_PreferenceWarnings.moc"
