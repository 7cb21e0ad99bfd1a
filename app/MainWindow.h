// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>

#include <memory>

class QShortcut;

namespace Ui {
class MainWindow;
}

namespace brevant {

class DockTile;
class FileQueue;
class SettingsStore;

/// The main window, as its layout file has it: the list over the drop-zone picture, the status line, the
/// buttons and the menu.
///
/// Minify and Clear, buttons and menu items alike, follow its three states. Empty: hidden and disabled.
/// Ready: shown and enabled. Running: hidden and disabled. The end of a run makes it ready whatever the queue
/// holds.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// Shows `queue`, and its count on `dockTile` if `settings` have that on.
    MainWindow(FileQueue &queue, const SettingsStore &settings, DockTile &dockTile);
    ~MainWindow() override;

    /// Loads the layout, in the empty state. To be called once, before anything else.
    void setUp();

    /// The controls, by the names that the layout gives them. They belong to the window.
    [[nodiscard]] const Ui::MainWindow &ui() const { return *m_ui; }

    /// Adds each of the paths to the queue, with the spinner shown meanwhile, and shows what the queue holds
    /// then. Holds the calling thread until the last folder has been walked. False if the queue is empty.
    bool addFiles(const QStringList &paths);

    /// Shows a queue that rows were removed from.
    void showRemaining();

    /// Shows a queue that was emptied by Clear.
    void showCleared();

    /// Shows how many files the queue holds, in the status line and, if that is on, on the dock icon.
    void showCount();

    /// Brings the dock icon up to date with changed settings.
    void updateBadge();

    /// To be called at the beginning and at the end of each run.
    void setRunning(bool isRunning);

    /// Shows a text in the status line. Those who listen to the window hear of each new text once.
    void setStatusText(const QString &text);

    /// While the preview is open it can be closed whatever is selected, with Escape too.
    void setPreviewOpen(bool isOpen);

Q_SIGNALS:
    /// The user closes the window. It is hidden then; what becomes of the program is up to the receiver.
    void closed();

    /// The window has painted itself for the first time.
    void painted();

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setUpButtons();
    void setUpMenus();
    void showEmpty();
    void showCountText();
    void showBadgeIfOn();
    void updateMinifyToolTip();
    void setControlsAvailable(bool available);
    void updateSelectionActions();

    FileQueue &m_queue;
    const SettingsStore &m_settings;
    DockTile &m_dockTile;
    std::unique_ptr<Ui::MainWindow> m_ui;
    QShortcut *m_closePreview = nullptr; ///< a child of this
    bool m_painted = false;
};

/// Tells assistive programs what Qt leaves out: that the preferences and the preview are dialogs, and that
/// the list's menu is open. To be called before the windows are looked at, once or more.
void installAccessibleWindows();

} // namespace brevant
