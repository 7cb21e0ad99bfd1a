// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PreferenceController.h"
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

#include <functional>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The output-folder pop-up and the folder panel behind it.
namespace {

constexpr int sameFolder = 0;
constexpr int choose = 2;
constexpr int chosen = 3;

/// A bench that has chosen "/out/first".
[[nodiscard]] bool chooseFirst(PreferenceBench &bench)
{
    bench.answer = u"/out/first"_s;
    return bench.show() && pick(bench.control<QComboBox>("popupButton"), choose);
}

} // namespace

class tst_PreferenceFolder final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void items()
    {
        PreferenceBench bench;
        bench.load();
        const auto *popup = bench.control<QComboBox>("popupButton");
        QCOMPARE(popup->count(), 3);
        QCOMPARE(popup->itemText(0), u"The same folder as source"_s);
        QCOMPARE(popup->itemData(1, Qt::AccessibleDescriptionRole).toString(), u"separator"_s);
        QVERIFY(!popup->model()->flags(popup->model()->index(1, 0)).testFlag(Qt::ItemIsSelectable));
        QCOMPARE(popup->itemText(2), QStringLiteral(u"Choose a Folder\u2026"));
    }

    void chooseAFolder()
    {
        PreferenceBench bench;
        QVERIFY(chooseFirst(bench));
        const auto *popup = bench.control<QComboBox>("popupButton");
        QCOMPARE(bench.startFolders, QStringList{QString()});
        QCOMPARE(bench.panelWindow, bench.controller->window());
        QCOMPARE(popup->count(), 4);
        QCOMPARE(popup->currentIndex(), chosen);
        QCOMPARE(popup->itemText(chosen), u"first"_s);
        QVERIFY(!popup->itemIcon(chosen).isNull());
        QCOMPARE(bench.iconPaths, QStringList{u"/out/first"_s});
        QCOMPARE(bench.store.objectForKey(selectedFolderKeyString), QJsonValue(u"/out/first"_s));
        QVERIFY(bench.store.isFalse(sameFolderKeyString));
    }

    void firstTheFolderThenTheSwitch()
    {
        PreferenceBench bench;
        QStringList seen;
        connect(&bench.store, &SettingsStore::didChange, this, [&bench, &seen] {
            const QString path = bench.store.stringForKey(selectedFolderKeyString).value_or(QString());
            seen.append(bench.store.isFalse(sameFolderKeyString) ? path + u" used"_s : path);
        });
        QVERIFY(chooseFirst(bench));
        const QStringList expected{u"/out/first"_s, u"/out/first used"_s};
        QCOMPARE(seen, expected);
    }

    void secondFolderReplacesTheFirst()
    {
        PreferenceBench bench;
        QVERIFY(chooseFirst(bench));
        auto *popup = bench.control<QComboBox>("popupButton");
        for (const QString &name : {u"second"_s, u"third"_s, u"third"_s}) {
            bench.answer = u"/out/"_s + name;
            QVERIFY(pick(popup, choose));
            QCOMPARE(popup->count(), 4);
            QCOMPARE(popup->currentIndex(), chosen);
            QCOMPARE(popup->itemText(chosen), name);
            QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), u"/out/"_s + name);
        }
        // The panel begins where the last choice was.
        QCOMPARE(bench.startFolders.at(1), u"/out/first"_s);
    }

    void cancelGoesBackToTheSameFolder()
    {
        PreferenceBench bench;
        QVERIFY(chooseFirst(bench));
        auto *popup = bench.control<QComboBox>("popupButton");
        bench.answer.reset();
        bench.writes.clear();
        QVERIFY(pick(popup, choose));
        QCOMPARE(bench.writes.count(), 1);
        QCOMPARE(popup->currentIndex(), sameFolder);
        QVERIFY(bench.store.isTrue(sameFolderKeyString));
        // The old folder is still listed and still stored, and can be picked again.
        QCOMPARE(popup->count(), 4);
        QCOMPARE(popup->itemText(chosen), u"first"_s);
        QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), u"/out/first"_s);
        QVERIFY(pick(popup, chosen));
        QVERIFY(bench.store.isFalse(sameFolderKeyString));
        QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), u"/out/first"_s);

        PreferenceBench fresh;
        QVERIFY(fresh.show());
        QVERIFY(pick(fresh.control<QComboBox>("popupButton"), choose));
        QCOMPARE(fresh.control<QComboBox>("popupButton")->count(), 3);
        QCOMPARE(fresh.control<QComboBox>("popupButton")->currentIndex(), sameFolder);
        QVERIFY(fresh.store.isTrue(sameFolderKeyString));
    }

    void newItemPickedAgain()
    {
        PreferenceBench bench;
        bench.store.setBool(false, sameFolderKeyString);
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("popupButton");
        bench.store.setBool(true, sameFolderKeyString); // from outside
        bench.writes.clear();
        QVERIFY(pick(popup, chosen));
        QCOMPARE(bench.writes.count(), 1);
        QVERIFY(bench.store.isFalse(sameFolderKeyString));
        QCOMPARE(bench.store.objectForKey(selectedFolderKeyString), QJsonValue(QString()));
    }

    void sameFolderPicked()
    {
        PreferenceBench bench;
        QVERIFY(chooseFirst(bench));
        auto *popup = bench.control<QComboBox>("popupButton");
        bench.writes.clear();
        QVERIFY(pick(popup, sameFolder));
        QCOMPARE(bench.writes.count(), 1);
        QVERIFY(bench.store.isTrue(sameFolderKeyString));
        QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), u"/out/first"_s);
        QCOMPARE(popup->count(), 4);
        // Picked once more it acts once more.
        QVERIFY(pick(popup, sameFolder));
        QCOMPARE(bench.writes.count(), 2);
    }

    void chooseAgainFromTheItemItself()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("popupButton");
        popup->setCurrentIndex(choose);
        QVERIFY(pick(popup, choose));
        QCOMPARE(bench.startFolders.size(), 1);
    }

    void missingFolderIsStored()
    {
        PreferenceBench bench;
        bench.answer = bench.folder.filePath(u"gone"_s);
        QVERIFY(bench.show());
        QVERIFY(pick(bench.control<QComboBox>("popupButton"), choose));
        QCOMPARE(bench.control<QComboBox>("popupButton")->currentText(), u"gone"_s);
        QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), bench.answer);
    }

    void byMouse()
    {
        PreferenceBench bench;
        bench.answer = u"/out/first"_s;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("popupButton");
        QTest::mouseClick(popup, Qt::LeftButton);
        QAbstractItemView *list = popup->view();
        QTRY_VERIFY(list->isVisible());
        const QPoint item = list->visualRect(popup->model()->index(choose, 0)).center();
        QTest::mouseMove(list->viewport(), item);
        QTRY_COMPARE(list->currentIndex().row(), choose);
        // A click as part of the one that opened the list is ignored, so click until it takes.
        QVERIFY(QTest::qWaitFor([&] {
            if (list->isVisible())
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item);
            return !bench.startFolders.isEmpty();
        }));
        QCOMPARE(popup->currentText(), u"first"_s);
    }

    void panel_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("confirm");
        QTest::newRow("confirmed") << "out" << true;
        QTest::newRow("cancelled") << "out" << false;
        QTest::newRow("a link, which stays one") << "link" << true;
    }

    void panel()
    {
        QFETCH(QString, name);
        QFETCH(bool, confirm);
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"out"_s));
        QVERIFY(QFile::link(u"out"_s, folder.filePath(u"link"_s)));
        const QString out = folder.filePath(name);
        PreferenceBench bench;
        bench.store.setBool(false, sameFolderKeyString); // as it is after an earlier choice
        bench.store.setObject(folder.path(), selectedFolderKeyString);
        PreferenceController::Questions questions;
        questions.iconForPath = [](const QString &) { return QIcon(); };
        questions.outputOf = [](const QString &source) { return source; };
        questions.hasBrotli = [] { return true; };
        PreferenceController controller(bench.store, questions);
        controller.showWindow();
        QVERIFY(QTest::qWaitForWindowActive(controller.window()));

        bool seen = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            timer.stop();
            seen =
                dialog->windowTitle() == u"Choose a Folder"_s &&
                dialog->fileMode() == QFileDialog::Directory &&
                dialog->testOption(QFileDialog::ShowDirsOnly) && !dialog->testOption(QFileDialog::ReadOnly) &&
                dialog->parentWidget() == controller.window() && dialog->directory() == QDir(folder.path());
            auto *edit = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
            edit->setText(out);
            QTest::keyClick(edit, confirm ? Qt::Key_Return : Qt::Key_Escape);
        });
        timer.start(20);
        QVERIFY(pick(controller.window()->findChild<QComboBox *>(u"popupButton"_s), choose));
        QVERIFY(seen);
        QCOMPARE(bench.store.objectForKey(sameFolderKeyString), QJsonValue(!confirm));
        QCOMPARE(bench.store.stringForKey(selectedFolderKeyString), confirm ? out : folder.path());
    }
};

BREVANT_TEST(tst_PreferenceFolder, QApplication)
#include "tst_PreferenceFolder.moc"
