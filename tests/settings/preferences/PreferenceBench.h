// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "settings/preferences/PreferenceController.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPixmap>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <optional>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace brevant::test {

/// Turns to the page on which a control stands, as a user has to.
inline void turnToPageOf(QWidget *control)
{
    for (QWidget *page = control; page != nullptr; page = page->parentWidget()) {
        auto *pages = page->parentWidget() == nullptr
                          ? nullptr
                          : qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget());
        if (pages != nullptr && pages->indexOf(page) >= 0)
            pages->setCurrentWidget(page);
    }
}

/// A preferences window on a settings store of its own.
class PreferenceBench final {
public:
    [[nodiscard]] QString filePath() const { return folder.filePath(u"settings.json"_s); }

    /// Makes the controller, on the settings as they are now.
    void load()
    {
        PreferenceController::Questions questions;
        questions.iconForPath = [this](const QString &path) {
            iconPaths.append(path);
            QPixmap picture(16, 16);
            picture.fill(Qt::red);
            return QIcon(picture);
        };
        questions.outputOf = [this](const QString &source) {
            sources.append(source);
            return output;
        };
        questions.hasBrotli = [this] { return hasBrotli; };
        questions.folderPanel = [this](QWidget *window, const QString &startFolder) {
            panelWindow = window;
            startFolders.append(startFolder);
            return answer;
        };
        controller = std::make_unique<PreferenceController>(store, questions);
    }

    /// Makes the controller and shows its window as the active one.
    [[nodiscard]] bool show()
    {
        load();
        controller->showWindow();
        return QTest::qWaitForWindowActive(controller->window());
    }

    /// The control of that name, with its page to the front.
    template <typename Control>
    [[nodiscard]] Control *control(const char *name)
    {
        auto *control = controller->window()->findChild<Control *>(QString::fromLatin1(name));
        if constexpr (std::is_base_of_v<QWidget, Control>)
            turnToPageOf(control);
        return control;
    }

    [[nodiscard]] QTabWidget *pages() { return controller->window()->findChild<QTabWidget *>(); }

    [[nodiscard]] QList<QCheckBox *> checkers() { return controller->window()->findChildren<QCheckBox *>(); }

    [[nodiscard]] QList<QMessageBox *> sheets()
    {
        return controller->window()->findChildren<QMessageBox *>();
    }

    QTemporaryDir folder;
    SettingsStore store{filePath()};
    QSignalSpy writes{&store, &SettingsStore::didChange};
    QStringList iconPaths;         ///< whose icons were asked for
    std::optional<QString> answer; ///< what the folder panel answers
    QStringList sources;           ///< whose outputs were asked for
    std::optional<QString> output; ///< where they go
    bool hasBrotli = true;
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

/// The compressors for which the check box of that key is not greyed.
[[nodiscard]] inline QString familyOf(QLatin1StringView key)
{
    return key == sourceMapCheckerKeyString || key == keepCommentsCheckerKeyString ? u"modern"_s
                                                                                   : u"classic"_s;
}

/// One row of test data, for each check box of the window: its name and its key.
inline void addCheckerRows()
{
    PreferenceBench bench;
    bench.load();
    for (const QCheckBox *checker : bench.checkers())
        QTest::addRow("%s", qPrintable(checker->objectName())) << keyOf(checker->objectName());
}

/// Without the buttons that are parts of other controls.
[[nodiscard]] inline QList<QAbstractButton *> buttonsOn(const QWidget &page)
{
    QList<QAbstractButton *> buttons = page.findChildren<QAbstractButton *>();
    buttons.removeIf([](const QAbstractButton *button) { return qobject_cast<const QToolButton *>(button); });
    return buttons;
}

/// Picks an item by keys alone: opens the list, goes to the item, takes it.
[[nodiscard]] inline bool pick(QComboBox *popup, int index)
{
    turnToPageOf(popup);
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
