// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/Signs.h"

#include "widgets/Contrast.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevant {

namespace {

using State = ResultRow::State;

constexpr int smallSign = 16;

/// Signs are drawn on a square of that size.
constexpr double grid = 16;

/// The colour that a state has where nothing is in its way: those of Breeze's icons.
QColor seedOf(State state, const QColor &text)
{
    switch (state) {
    case State::Failed:
        return QColor(0xda4453);
    case State::Warned:
        return QColor(0xf67400);
    case State::Done:
        return QColor(0x27ae60);
    case State::PutBack:
        return QColor(0x2980b9);
    case State::Skipped:
    case State::NotRun:
    case State::Running:
        break;
    }
    return text;
}

void drawFailed(QPainter &painter, const QColor &ground)
{
    painter.drawPolygon(QPolygonF({{5, 1}, {11, 1}, {15, 5}, {15, 11}, {11, 15}, {5, 15}, {1, 11}, {1, 5}}));
    painter.setPen(QPen(ground, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(5.5, 5.5), QPointF(10.5, 10.5));
    painter.drawLine(QPointF(10.5, 5.5), QPointF(5.5, 10.5));
}

void drawWarned(QPainter &painter, const QColor &ground)
{
    painter.drawPolygon(QPolygonF({{8, 1.5}, {15, 14.5}, {1, 14.5}}));
    painter.setPen(QPen(ground, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(8, 6.2), QPointF(8, 9.8));
    painter.drawPoint(QPointF(8, 12.4));
}

/// An arrow that goes up and back to where texts begin.
QPainterPath bentArrow()
{
    QPainterPath path(QPointF(5.5, 1.8));
    path.lineTo(2, 5.2);
    path.lineTo(5.5, 8.6);
    path.moveTo(2, 5.2);
    path.lineTo(10, 5.2);
    path.arcTo(QRectF(5.5, 5.2, 9, 9), 90, -180);
    path.lineTo(6.5, 14.2);
    return path;
}

/// Two angles and a stroke.
QPainterPath skip()
{
    QPainterPath path;
    for (const double x : {2.0, 7.0}) {
        path.moveTo(x, 3.5);
        path.lineTo(x + 4.5, 8);
        path.lineTo(x, 12.5);
    }
    path.moveTo(14, 3.5);
    path.lineTo(14, 12.5);
    return path;
}

QPainterPath lineOf(State state)
{
    QPainterPath path;
    switch (state) {
    case State::PutBack:
        return bentArrow();
    case State::Skipped:
        return skip();
    case State::Running:
        path.addEllipse(QPointF(8, 8), 5.2, 5.2);
        break;
    case State::NotRun:
        path.moveTo(3, 8);
        path.lineTo(13, 8);
        break;
    default:
        path.moveTo(2, 8.8);
        path.lineTo(6, 12.8);
        path.lineTo(14, 3.8);
    }
    return path;
}

template <typename Draw>
QIcon drawnIcon(int size, const QWidget &widget, const Draw &draw)
{
    const double ratio = widget.devicePixelRatioF();
    QPixmap pixmap(QSize(size, size) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter);
    painter.end();
    return QIcon(pixmap);
}

} // namespace

QColor mutedText(const QColor &ground, const QColor &text)
{
    constexpr double faded = 0.25;
    return readableOn(ground, text, mixed(text, ground, faded), readableContrast);
}

void mute(QLabel &label, QPalette::ColorRole ground)
{
    const QPalette &given = label.parentWidget()->palette();
    QPalette muted = label.palette();
    muted.setColor(QPalette::WindowText, mutedText(given.color(QPalette::Active, ground),
                                                   given.color(QPalette::Active, QPalette::WindowText)));
    label.setPalette(muted);
}

QColor selectionGround(const QPalette &palette)
{
    constexpr double tint = 0.25;
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Active, QPalette::Highlight), tint);
}

void drawSign(QPainter &painter, const QRectF &rect, State state, const QColor &ground, const QColor &text,
              Qt::LayoutDirection direction)
{
    const double size = std::min(rect.width(), rect.height());
    const QColor seed = seedOf(state, text);
    const QColor colour =
        readableOn(ground, text, seed == text ? mutedText(ground, text) : seed, readableContrast);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    // A tick and what stands in an octagon or a triangle look the same way everywhere.
    const bool isMirrored =
        direction == Qt::RightToLeft && (state == State::PutBack || state == State::Skipped);
    painter.scale(size / grid * (isMirrored ? -1 : 1), size / grid);
    painter.translate(-grid / 2, -grid / 2);
    if (state == State::Failed || state == State::Warned) {
        painter.setPen(QPen(colour, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(colour);
        state == State::Failed ? drawFailed(painter, ground) : drawWarned(painter, ground);
    } else {
        painter.setPen(
            QPen(colour, state == State::Skipped ? 1.6 : 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(lineOf(state));
    }
    painter.restore();
}

int signSize(const QFontMetrics &metrics)
{
    return static_cast<int>(std::lround(smallSign * fontScale(metrics)));
}

double fontScale(const QFontMetrics &metrics)
{
    constexpr double usualHeight = 16;
    return std::max(1.0, metrics.height() / usualHeight);
}

QIcon signIcon(State state, const QWidget &button)
{
    const int size = signSize(button.fontMetrics());
    return drawnIcon(size, button, [&](QPainter &painter) {
        const QPalette &palette = button.palette();
        drawSign(painter, QRectF(0, 0, size, size), state, palette.color(QPalette::Active, QPalette::Window),
                 palette.color(QPalette::Active, QPalette::WindowText), button.layoutDirection());
    });
}

QIcon textIcon(const QString &name, const QWidget &widget)
{
    const QIcon theme = QIcon::fromTheme(name);
    const int size = signSize(widget.fontMetrics());
    QIcon icon;
    for (const auto &[mode, group] :
         {std::pair(QIcon::Normal, QPalette::Active), std::pair(QIcon::Disabled, QPalette::Disabled)}) {
        const QColor colour = widget.palette().color(group, QPalette::WindowText);
        const QIcon drawn = drawnIcon(size, widget, [&](QPainter &painter) {
            // The small one, enlarged: at larger sizes themes have pictures instead of signs.
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawPixmap(QRect(0, 0, size, size),
                               theme.pixmap({smallSign, smallSign}, widget.devicePixelRatioF()));
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(0, 0, size, size, colour);
        });
        icon.addPixmap(drawn.pixmap(QSize(size, size), widget.devicePixelRatioF()), mode);
    }
    return icon;
}

void drawSavedBar(QPainter &painter, const QRectF &rect, double part, const QColor &ground,
                  const QPalette &palette, Qt::LayoutDirection direction)
{
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    QRectF filled = rect;
    filled.setWidth(rect.width() * std::clamp(part, 0.0, 1.0));
    if (direction == Qt::RightToLeft)
        filled.moveRight(rect.right());
    painter.fillRect(filled, readableOn(ground, text, highlight, visibleContrast));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(readableOn(ground, text, mixed(ground, text, 0.5), visibleContrast));
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace brevant
