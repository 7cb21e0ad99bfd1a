// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "settings/preferences/PreferenceController.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QMessageBox>
#include <QPixmap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace brevant::test {

/// A preferences window on a settings store of its own.
class PreferenceBench final {
public:
    [[nodiscard]] QString filePath() const { return folder.filePath(u"settings.json"_s); }

    /// Makes the controller, on the settings as they are now.
    void load()
    {
        const auto icon = [this](const QString &path) {
            iconPaths.append(path);
            QPixmap picture(16, 16);
            picture.fill(Qt::red);
            return QIcon(picture);
        };
        const auto panel = [this](QWidget *window, const QString &startFolder) {
            panelWindow = window;
            startFolders.append(startFolder);
            return answer;
        };
        controller = std::make_unique<PreferenceController>(store, icon, panel);
    }

    /// Makes the controller and shows its window as the active one.
    [[nodiscard]] bool show()
    {
        load();
        controller->showWindow();
        return QTest::qWaitForWindowActive(controller->window());
    }

    template <typename Control>
    [[nodiscard]] Control *control(const char *name)
    {
        return controller->window()->findChild<Control *>(QString::fromLatin1(name));
    }

    [[nodiscard]] QList<QCheckBox *> checkers() { return controller->window()->findChildren<QCheckBox *>(); }

    [[nodiscard]] QList<QMessageBox *> sheets()
    {
        return controller->window()->findChildren<QMessageBox *>();
    }

    QTemporaryDir folder;
    SettingsStore store{filePath()};
    QSignalSpy writes{&store, &SettingsStore::didChange};
    QStringList iconPaths;                ///< whose icons were asked for
    std::optional<QString> answer;        ///< what the folder panel answers
    QStringList startFolders;             ///< one for each run of the folder panel
    const QWidget *panelWindow = nullptr; ///< the window the folder panel was over
    std::unique_ptr<PreferenceController> controller;

    PreferenceBench() { store.registerDefaults(registeredDefaults()); }
};

/// The key of a check box: its name and "KeyString", but for four that have always been called otherwise.
[[nodiscard]] inline QLatin1StringView keyOf(const QString &checker)
{
    QString name = checker;
    for (const char *switcher : {"lineBreak", "nomunge", "preserveSemi", "disableOptimizations"}) {
        if (checker.startsWith(QLatin1StringView(switcher)))
            name.replace("Checker"_L1, "Switcher"_L1);
    }
    const SettingKey *setting = findSettingKey(name + "KeyString"_L1);
    if (setting == nullptr)
        qFatal("no setting has the key of %s", qPrintable(checker));
    return setting->key;
}

/// One row of test data, for each check box of the window: its name and its key.
inline void addCheckerRows()
{
    PreferenceBench bench;
    bench.load();
    for (const QCheckBox *checker : bench.checkers())
        QTest::addRow("%s", qPrintable(checker->objectName())) << keyOf(checker->objectName());
}

/// Picks an item by keys alone: opens the list, goes to the item, takes it.
[[nodiscard]] inline bool pick(QComboBox *popup, int index)
{
    QTest::keyClick(popup, Qt::Key_Space);
    QAbstractItemView *list = popup->view();
    if (!QTest::qWaitFor([list] { return list->isVisible(); }))
        return false;
    QTest::keyClick(list, Qt::Key_Home);
    for (int step = 0; step < popup->count() && list->currentIndex().row() < index; ++step)
        QTest::keyClick(list, Qt::Key_Down);
    if (list->currentIndex().row() != index)
        return false;
    QTest::keyClick(list, Qt::Key_Return);
    return QTest::qWaitFor([list] { return !list->isVisible(); });
}

} // namespace brevant::test
