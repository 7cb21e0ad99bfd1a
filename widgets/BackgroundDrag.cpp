// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/BackgroundDrag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace brevant {

BackgroundDrag::BackgroundDrag(QWidget *widget, std::function<bool(QPoint)> isBackground)
    : QObject(widget), m_widget(widget), m_isBackground(std::move(isBackground))
{
    widget->installEventFilter(this);
}

bool BackgroundDrag::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<const QMouseEvent &>(*event));
    case QEvent::MouseMove:
        return move(static_cast<const QMouseEvent *>(event)->globalPosition().toPoint());
    case QEvent::MouseButtonRelease:
        return release(static_cast<const QMouseEvent &>(*event));
    default:
        return false;
    }
}

bool BackgroundDrag::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    m_state = State::Idle; // no release has to come after the window manager's move
    const QPoint at = event.position().toPoint();
    const QWidget *const child = m_widget->childAt(at);
    if (m_isBackground ? !m_isBackground(at) : child && child->focusPolicy() != Qt::NoFocus)
        return false;
    m_state = State::Pressed;
    m_pressedAt = event.globalPosition().toPoint();
    m_grip = m_pressedAt - m_widget->window()->pos();
    return true;
}

bool BackgroundDrag::move(QPoint pointer)
{
    if (m_state == State::Pressed &&
        (pointer - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        // The window manager moves the window, with its snapping and edges, wherever it can.
        QWindow *const window = m_widget->window()->windowHandle();
        m_state = window && window->startSystemMove() ? State::MovedBySystem : State::MovedByUs;
    }
    if (m_state == State::MovedByUs)
        m_widget->window()->move(pointer - m_grip);
    return m_state != State::Idle;
}

bool BackgroundDrag::release(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    const State before = std::exchange(m_state, State::Idle);
    if (before == State::Pressed)
        Q_EMIT clicked(event.modifiers());
    return before != State::Idle;
}

} // namespace brevant
