// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QAction;
class QProgressBar;
class QPushButton;
class QWidget;

namespace brevant {

class BVImageView;
class BVTableView;
class StatusLine;

/// The controls of the main window that a controller works on. They belong to the window.
struct Outlets {
    QWidget *window = nullptr;
    BVTableView *filesTable = nullptr;
    BVImageView *DropView = nullptr;
    QProgressBar *spinner = nullptr;
    StatusLine *progressTextField = nullptr;
    QPushButton *minifyButton = nullptr;
    QPushButton *clearButton = nullptr;
    QAction *minifyMenu = nullptr;
    QAction *clearMenu = nullptr;
    QAction *combineMenu = nullptr;
};

} // namespace brevant
