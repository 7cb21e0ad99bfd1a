// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/preferences/FolderPanel.h"

#include <QIcon>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QCheckBox;
class QWidget;

namespace Ui {
class Preferences;
}

namespace brevant {

class SettingsStore;

/// The preferences window. It fills its controls from the store once, when the window is loaded, and writes
/// each change into the store the moment the control changes; there is nothing to apply or to cancel.
///
/// The window lives as long as its controller: closing it hides it, and showing it again shows it as it was
/// left. Nothing that the user enters is checked.
class PreferenceController final : public QObject {
    Q_OBJECT

public:
    /// The picture of the item of a chosen folder.
    using IconForPath = std::function<QIcon(const QString &path)>;

    /// As runFolderPanel().
    using FolderPanel = std::function<std::optional<QString>(QWidget *window, const QString &startFolder)>;

    /// Loads the window, without showing it. The store must outlive the controller.
    explicit PreferenceController(SettingsStore &store, IconForPath iconForPath,
                                  FolderPanel folderPanel = runFolderPanel, QObject *parent = nullptr);
    ~PreferenceController() override;

    /// The window, loaded when it is first asked for.
    [[nodiscard]] QWidget *window();

    /// Shows the window in front of the others and makes it active.
    void showWindow();

    /// The stored suffix.
    [[nodiscard]] QString suffixFieldValue() const;

    // Actions: one for each control.
    void changeSuffix();
    void suffixSwitcherClicked();
    void changeLineBreak();
    void lineBreakSwitcherClicked();
    void nomungeCheckerClicked();
    void preserveSemiCheckerClicked();
    void disableOptimizationsCheckerClicked();
    void soundCheckerClicked();
    void filterCheckerClicked();
    void autoMinifyCheckerClicked();
    void enableHTMLCheckerClicked();
    void enablePHPCheckerClicked();
    void badgeCheckerClicked();
    void gzipCheckerClicked();
    void keepXMLSpaceCheckerClicked();
    void sameFolderItemClicked();
    void chooseFolderItemClicked();
    void newItemClicked();
    void set_utf_8();
    void set_gb2312();
    void set_gbk();
    void set_gb18030();
    void set_big5();
    void set_big5_hkscs();
    void set_shift_jis();
    void set_iso_2022_jp();
    void set_iso_2022_kr();
    void set_iso_8859_1();
    void set_iso_8859_15();

    /// Ends editing in the window, so that a text being typed is finished. The window stays open.
    void close();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The rows of `suffixMatrix`.
    enum SuffixRow { addSuffixRow, sameAsSourceRow };

    /// The items of `popupButton`. `newItem`, the chosen folder, is there only once a folder has been chosen.
    enum FolderItem { sameFolderItem, separatorItem, chooseFolderItem, newItem };

    /// The items of `encodingPopupButton`, in the order of allEncodings().
    enum EncodingItem {
        enc_utf_8,
        enc_gb2312,
        enc_gbk,
        enc_gb18030,
        enc_big5,
        enc_big5_hkscs,
        enc_shift_jis,
        enc_iso_2022_jp,
        enc_iso_2022_kr,
        enc_iso_8859_1,
        enc_iso_8859_15,
    };

    void init();
    void windowDidLoad();
    void loadSuffix();
    void loadLineBreak();
    void loadOutputFolder();
    void loadEncoding();

    void setUpMenus();
    void connectActions();
    void connectCheckers();
    void connectTextFields();
    void followTextChanges(QWidget *focused);
    void folderItemChosen(int index);
    void encodingItemChosen(int index);

    void insertNewItem(const QString &path);
    void enableLineBreakField();
    void setChecker(QCheckBox *checker, QLatin1StringView key) const;
    void storeChecker(const QCheckBox *checker, QLatin1StringView key);
    void storeEncoding(EncodingItem item);

    SettingsStore &m_store;
    const IconForPath m_iconForPath;
    const FolderPanel m_folderPanel;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Ui::Preferences> m_ui; ///< the controls, under their names; owned by the window
    int m_rowBeforeClick = -1;             ///< the row of `suffixMatrix` chosen when the last click began
};

} // namespace brevant
