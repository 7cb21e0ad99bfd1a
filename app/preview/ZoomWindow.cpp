// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/ZoomWindow.h"

#include "app/platform/Workspace.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace brevant {

namespace {

constexpr int milliseconds = 150;

} // namespace

ZoomWindow::ZoomWindow(QWidget *parent)
    // On top is what such a window is anyway. Without saying so, Qt makes its X11 window a second time, and
    // the second one takes input.
    : QWidget(parent, Qt::ToolTip | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint |
                          Qt::BypassWindowManagerHint | Qt::WindowTransparentForInput |
                          Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint)
{
    setObjectName(QStringLiteral("previewZoom"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_animation.setDuration(milliseconds);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { setGeometry(value.toRect()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &ZoomWindow::finished);
}

bool ZoomWindow::isAllowed(const QWidget &window)
{
    if (QGuiApplication::platformName().startsWith(QLatin1StringView("wayland")))
        return false;
    return window.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &window) > 0 &&
           !isMotionReduced();
}

void ZoomWindow::zoom(const QPixmap &picture, const QRect &from, const QRect &to)
{
    const QRect start = isZooming() ? geometry() : from;
    m_animation.stop();
    m_picture = picture;
    m_animation.setStartValue(start);
    m_animation.setEndValue(to);
    setGeometry(start);
    show();
    m_animation.start();
}

void ZoomWindow::setPicture(const QPixmap &picture)
{
    m_picture = picture;
    update();
}

bool ZoomWindow::isZooming() const
{
    return m_animation.state() == QAbstractAnimation::Running;
}

void ZoomWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), m_picture);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace brevant
