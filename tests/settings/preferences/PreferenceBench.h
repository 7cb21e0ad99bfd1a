// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "settings/preferences/PreferenceController.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFile>
#include <QMessageBox>
#include <QPixmap>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

namespace brevant::test {

/// A preferences window on a settings store of its own.
class PreferenceBench final {
public:
    [[nodiscard]] QString filePath() const { return folder.filePath(QStringLiteral("settings.json")); }

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
