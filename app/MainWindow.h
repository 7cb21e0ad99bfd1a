// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"

#include <QMainWindow>

#include <memory>

class QAction;
class QMenu;
class QShortcut;

namespace Ui {
class MainWindow;
}

namespace brevant {

/// The main window, as its layout file has it: the list over the drop-zone picture, the status line, the
/// buttons and the menu. It decides nothing; the controllers do.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Loads the layout. To be called once, before anything else.
    void setUp();

    /// The controls that the controllers work on.
    [[nodiscard]] Outlets outlets();

    /// The layout's own names: the actions of the menu.
    [[nodiscard]] const Ui::MainWindow &ui() const { return *m_ui; }

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
    void setUpContextMenu();
    void updateSelectionActions();

    std::unique_ptr<Ui::MainWindow> m_ui;
    QShortcut *m_closePreview = nullptr; ///< a child of this
    bool m_painted = false;
};

} // namespace brevant
