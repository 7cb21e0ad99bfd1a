// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/WindowDrag.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace brevant {

void WindowDrag::press(QPoint point)
{
    m_state = State::Pressed;
    m_pressedAt = point;
}

bool WindowDrag::move(QPoint point)
{
    if (m_state != State::Pressed)
        return false;
    if ((point - m_pressedAt).manhattanLength() < QApplication::startDragDistance())
        return false;
    m_state = State::Moved;
    return true;
}

bool WindowDrag::release()
{
    return std::exchange(m_state, State::Idle) == State::Pressed;
}

bool WindowDrag::start(QWidget &widget)
{
    QWindow *const window = widget.window()->windowHandle();
    return window && window->startSystemMove();
}

} // namespace brevant
