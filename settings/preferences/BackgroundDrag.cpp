// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/BackgroundDrag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace brevant {

BackgroundDrag::BackgroundDrag(QWidget *window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

bool BackgroundDrag::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<const QMouseEvent &>(*event));
    case QEvent::MouseMove:
        if (!m_grip)
            return false;
        m_window->move(static_cast<const QMouseEvent *>(event)->globalPosition().toPoint() - *m_grip);
        return true;
    case QEvent::MouseButtonRelease:
        m_grip.reset();
        return false;
    default:
        return false;
    }
}

bool BackgroundDrag::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    const QWidget *child = m_window->childAt(event.position().toPoint());
    if (child != nullptr && child->focusPolicy() != Qt::NoFocus)
        return false;
    // The window manager moves the window, with its snapping and edges, wherever it can.
    QWindow *handle = m_window->windowHandle();
    if (handle == nullptr || !handle->startSystemMove())
        m_grip = event.globalPosition().toPoint() - m_window->pos();
    return true;
}

} // namespace brevant
