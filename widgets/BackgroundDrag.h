// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPoint>

#include <functional>

class QMouseEvent;
class QWidget;

namespace brevant {

/// Lets the user move a window by dragging the background of a widget, as by the title bar.
class BackgroundDrag final : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of `widget`. Without `isBackground`, which is asked about points of the widget, labels
    /// and lines are background; controls are not, not even disabled ones.
    explicit BackgroundDrag(QWidget *widget, std::function<bool(QPoint)> isBackground = {});

Q_SIGNALS:
    void clicked(Qt::KeyboardModifiers modifiers); ///< on the background, without a drag

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class State { Idle, Pressed, MovedBySystem, MovedByUs };

    bool press(const QMouseEvent &event);
    bool move(QPoint pointer);
    bool release(const QMouseEvent &event);

    QWidget *const m_widget;
    const std::function<bool(QPoint)> m_isBackground;
    State m_state = State::Idle;
    QPoint m_pressedAt; ///< on the screen
    QPoint m_grip;      ///< from the window's corner to there
};

} // namespace brevant
