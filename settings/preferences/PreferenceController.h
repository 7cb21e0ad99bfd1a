// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QIcon>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace Ui {
class Preferences;
}

namespace brevant {

class FamilyControls;

/// Asks the user for a folder in a modal panel over `window`, beginning in `startFolder` if it exists.
/// The absolute path of the folder, or nothing if the user did not confirm.
[[nodiscard]] std::optional<QString> runFolderPanel(QWidget *window, const QString &startFolder);

/// The preferences window. It fills its controls from the store once, when the window is loaded, and writes
/// each change into the store the moment the control changes; there is nothing to apply or to cancel.
///
/// The window lives as long as its controller: closing it hides it, and showing it again shows it as it was
/// left. Nothing that the user enters is checked.
class PreferenceController final : public QObject {
    Q_OBJECT

public:
    /// What the window asks of rooms that it does not know.
    struct Questions {
        /// The picture of the item of a chosen folder.
        std::function<QIcon(const QString &path)> iconForPath;

        /// Where the output of a source would go by the settings as they are; nothing if nowhere.
        std::function<std::optional<QString>(const QString &source)> outputOf;

        /// Whether Brotli copies can be made.
        std::function<bool()> hasBrotli;

        std::function<std::optional<QString>(QWidget *window, const QString &startFolder)> folderPanel =
            runFolderPanel;
    };

    /// Loads the window, without showing it. The store must outlive the controller.
    explicit PreferenceController(SettingsStore &store, Questions questions, QObject *parent = nullptr);
    ~PreferenceController() override;

    [[nodiscard]] QWidget *window() const { return m_window.get(); }

    /// Shows the window in front of the others and makes it active.
    void showWindow();

    /// The stored suffix.
    [[nodiscard]] QString suffixFieldValue() const
    {
        return m_store.stringForKey(suffixKeyString).value_or(QString());
    }

    // The actions of the controls.
    void changeSuffix();
    void suffixSwitcherClicked();
    void changeLineBreak();
    void lineBreakSwitcherClicked();
    void enablePHPCheckerClicked();
    void sameFolderItemClicked() { m_store.setBool(true, sameFolderKeyString); }
    void chooseFolderItemClicked();
    void newItemClicked() { m_store.setBool(false, sameFolderKeyString); }

    // Those of the other check boxes: each stores its state.
    void nomungeCheckerClicked() { storeChecker(nomungeSwitcherKeyString); }
    void preserveSemiCheckerClicked() { storeChecker(preserveSemiSwitcherKeyString); }
    void disableOptimizationsCheckerClicked() { storeChecker(disableOptimizationsSwitcherKeyString); }
    void soundCheckerClicked() { storeChecker(soundCheckerKeyString); }
    void filterCheckerClicked() { storeChecker(filterCheckerKeyString); }
    void autoMinifyCheckerClicked() { storeChecker(autoMinifyCheckerKeyString); }
    void enableHTMLCheckerClicked() { storeChecker(enableHTMLCheckerKeyString); }
    void badgeCheckerClicked() { storeChecker(badgeCheckerKeyString); }
    void gzipCheckerClicked() { storeChecker(gzipCheckerKeyString); }
    void keepXMLSpaceCheckerClicked() { storeChecker(keepXMLSpaceCheckerKeyString); }

    // Those of the encodings' items: each stores its name.
    void set_utf_8() { storeEncoding(QLatin1StringView("utf-8")); }
    void set_gb2312() { storeEncoding(QLatin1StringView("gb2312")); }
    void set_gbk() { storeEncoding(QLatin1StringView("gbk")); }
    void set_gb18030() { storeEncoding(QLatin1StringView("gb18030")); }
    void set_big5() { storeEncoding(QLatin1StringView("big5")); }
    void set_big5_hkscs() { storeEncoding(QLatin1StringView("big5-hkscs")); }
    void set_shift_jis() { storeEncoding(QLatin1StringView("shift-jis")); }
    void set_iso_2022_jp() { storeEncoding(QLatin1StringView("iso-2022-jp")); }
    void set_iso_2022_kr() { storeEncoding(QLatin1StringView("iso-2022-kr")); }
    void set_iso_8859_1() { storeEncoding(QLatin1StringView("iso-8859-1")); }
    void set_iso_8859_15() { storeEncoding(QLatin1StringView("iso-8859-15")); }

    /// Ends editing in the window, so that a text being typed is finished. The window stays open.
    void close();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The rows of `suffixMatrix`.
    enum SuffixRow { addSuffixRow, sameAsSourceRow };

    /// The items of `popupButton`. `newItem`, the chosen folder, is there only once a folder has been chosen.
    enum FolderItem { sameFolderItem, separatorItem, chooseFolderItem, newItem };

    void init();
    void windowDidLoad();
    void loadSuffix();
    void loadEncoding();
    void showExample();

    void setUpMenus();
    void connectActions();
    void connectSuffixMatrix();
    void followTextChanges(QWidget *focused);
    void folderItemChosen(int index);

    void insertNewItem(const QString &path);
    void enableLineBreakField();
    void storeChecker(QLatin1StringView key);
    void storeEncoding(QLatin1StringView name) { m_store.setObject(name, selectedEncodingKeyString); }

    SettingsStore &m_store;
    const Questions m_ask;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Ui::Preferences> m_ui; ///< the controls, under their names; owned by the window
    std::unique_ptr<FamilyControls> m_family;
    int m_rowBeforeClick = -1; ///< the row of `suffixMatrix` chosen when the last click began
};

} // namespace brevant
