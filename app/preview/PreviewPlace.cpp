// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPlace.h"

#include "app/platform/Workspace.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <array>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr QSize firstSize{660, 480};
constexpr int zoomMilliseconds = 150;
constexpr int gap = 12;                ///< between the panel and the window beside it
constexpr int rowGap = 4;              ///< between the panel and the row that it must not cover
constexpr QSize leastBeside{400, 260}; ///< smaller, a text is better read over the window
constexpr QSize leastOver{320, 240};

bool holds(const QSize &room, const QSize &size)
{
    return room.width() >= size.width() && room.height() >= size.height();
}

qint64 areaOf(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

/// `frame`, no larger than `area` and within it.
QRect keptWithin(QRect frame, const QRect &area)
{
    frame.setSize(frame.size().boundedTo(area.size()));
    frame.moveLeft(std::clamp(frame.left(), area.left(), area.right() + 1 - frame.width()));
    frame.moveTop(std::clamp(frame.top(), area.top(), area.bottom() + 1 - frame.height()));
    return frame;
}

/// A frame of `size` in `room`, as near to the centre of `window` as it can be.
QRect nearTo(const QRect &window, const QSize &size, const QRect &room)
{
    QRect frame(QPoint(), size);
    frame.moveCenter(window.center());
    return keptWithin(frame, room);
}

/// Whether a window may be animated: the platform lets programs place windows, and the user wants motion.
bool mayMove(const QWidget &window)
{
    return !QGuiApplication::platformName().startsWith("wayland"_L1) &&
           window.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &window) > 0 &&
           !isMotionReduced();
}

} // namespace

QRect previewPlace(const QRect &window, const QRect &row, const QSize &size, const QRect &area)
{
    const auto above = [&area](int y) { return area.adjusted(0, 0, 0, y - 1 - area.bottom()); };
    const auto below = [&area](int y) { return area.adjusted(0, y - area.top(), 0, 0); };
    const std::array<QRect, 4> rooms{
        area.adjusted(window.right() + 1 + gap - area.left(), 0, 0, 0),
        area.adjusted(0, 0, window.left() - 1 - gap - area.right(), 0),
        below(window.bottom() + 1 + gap),
        above(window.top() - gap),
    };
    const auto fits =
        std::ranges::find_if(rooms, [&size](const QRect &room) { return holds(room.size(), size); });
    if (fits != rooms.end())
        return nearTo(window, size, *fits);
    const auto offers = [&size](const QRect &room) { return areaOf(size.boundedTo(room.size())); };
    const QRect largest = *std::ranges::max_element(rooms, {}, [&offers](const QRect &room) {
        return holds(room.size(), leastBeside) ? offers(room) : 0;
    });
    if (holds(largest.size(), leastBeside))
        return nearTo(window, size.boundedTo(largest.size()), largest);
    if (!row.isEmpty()) {
        const QRect under = below(row.bottom() + 1 + rowGap);
        const QRect over = above(row.top() - rowGap);
        const QRect room = under.height() >= std::min(size.height(), over.height()) ? under : over;
        if (holds(room.size(), leastOver))
            return nearTo(window, size.boundedTo(room.size()), room);
    }
    return nearTo(area, size, area);
}

void placeOnScreen(QWidget &panel, const QRect &row)
{
    if (panel.testAttribute(Qt::WA_Moved)) {
        const QScreen *const found = QGuiApplication::screenAt(panel.frameGeometry().center());
        const QRect area = (found ? found : panel.screen())->availableGeometry();
        const QRect frame = keptWithin(panel.frameGeometry(), area);
        if (frame != panel.frameGeometry()) {
            panel.resize(panel.size() - (panel.frameGeometry().size() - frame.size()));
            panel.move(frame.topLeft());
        }
        return;
    }
    const QWidget *const window = panel.parentWidget() ? panel.parentWidget()->window() : nullptr;
    const QRect area = (window ? window : &panel)->screen()->availableGeometry();
    const QRect beside = window && window->isVisible() ? window->frameGeometry() : area;
    // The panel's own frame is not known before it has been shown, but is most likely its neighbour's.
    const QSize edges = window ? window->frameGeometry().size() - window->size() : QSize(0, 0);
    const QRect frame = previewPlace(beside, row, firstSize + edges, area);
    panel.resize(frame.size() - edges);
    panel.move(frame.topLeft());
}

QRect restingPlace(const QWidget &panel)
{
    if (panel.frameGeometry() != panel.geometry() || !panel.parentWidget())
        return panel.geometry();
    const QWidget *const neighbour = panel.parentWidget()->window();
    return panel.geometry().translated(neighbour->geometry().topLeft() -
                                       neighbour->frameGeometry().topLeft());
}

ZoomWindow::ZoomWindow(QWidget *parent)
    // On top is what such a window is anyway. Without saying so, Qt makes its X11 window a second time, and
    // the second one takes input.
    : QWidget(parent, Qt::ToolTip | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint |
                          Qt::BypassWindowManagerHint | Qt::WindowTransparentForInput |
                          Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint),
      m_animation(this, "geometry")
{
    setObjectName(u"previewZoom"_s);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_animation.setDuration(zoomMilliseconds);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QVariantAnimation::finished, this, &ZoomWindow::finished);
}

bool ZoomWindow::zoom(QWidget &window, const QRect &from, const QRect &to)
{
    if (from.isEmpty() || to.isEmpty() || !mayMove(window))
        return false;
    const QRect start = isZooming() ? geometry() : from;
    m_animation.stop();
    m_picture = window.grab();
    m_animation.setStartValue(start);
    m_animation.setEndValue(to);
    setGeometry(start);
    show();
    m_animation.start();
    return true;
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
