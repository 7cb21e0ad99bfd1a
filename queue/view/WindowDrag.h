// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>

class QWidget;

namespace brevant {

/// Tells a drag of the background, which moves the window, from a click on it.
class WindowDrag final {
public:
    /// The button went down on the background, at a point of the screen.
    void press(QPoint point);

    /// The pointer moved. True once for each press: as soon as it is the platform's drag distance away.
    [[nodiscard]] bool move(QPoint point);

    /// The button went up. Whether that was a click.
    bool release();

    /// Between a press and its release.
    [[nodiscard]] bool isPressed() const { return m_state != State::Idle; }

    /// Hands the window of `widget` to the window manager to be moved. False where that cannot be done.
    static bool start(QWidget &widget);

private:
    enum class State { Idle, Pressed, Moved };
    State m_state = State::Idle;
    QPoint m_pressedAt;
};

} // namespace brevant
