// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>

#include <initializer_list>

class QLabel;
class QPushButton;

namespace brevant {

class ElidedLabel;
class FilterBar;
class StateTable;

/// A window around a table of files: what they come to, a filter, and what is to be said of the current one.
/// Escape empties the filter, then closes the window. It can be made as small as all of it can be seen in.
class StateWindow : public QMainWindow {
    Q_OBJECT

protected:
    /// From the top. All belong to the window.
    struct Parts {
        QWidget *head = nullptr;
        QWidget *offer = nullptr; ///< may be missing
        FilterBar *filter = nullptr;
        StateTable *table = nullptr;
        QWidget *pane = nullptr;
        QWidget *bottom = nullptr;
    };

    StateWindow(const QString &title, QWidget *parent);

    /// To be called once, with the size that the window opens with where the screen has room.
    void setUp(const Parts &parts, QSize size);

    /// The bar below all: `first`, if there is one, and buttons at its end, which Return presses.
    [[nodiscard]] QWidget *makeBottom(QWidget *first, std::initializer_list<QPushButton *> buttons);

    /// Says why the table has no rows, if it has none.
    void showHint(const QString &text);

    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

    /// Gives the labels what the style does not give them by itself.
    virtual void updateLooks();

    QLabel *const m_totals;      ///< what the files come to, for the head
    ElidedLabel *const m_manner; ///< what works and where to, likewise

private:
    void fitLeastSize();

    Parts m_parts;
    QLabel *const m_hint; ///< in the place of rows
};

} // namespace brevant
