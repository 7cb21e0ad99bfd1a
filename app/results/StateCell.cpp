// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/StateCell.h"

#include "app/results/Signs.h"
#include "widgets/Contrast.h"

#include <QPainter>

namespace brevant {

namespace {

void drawFrame(QPainter &painter, const QStyleOptionViewItem &option, const QColor &ground)
{
    const QColor line =
        readableOn(ground, option.palette.color(QPalette::Active, QPalette::Text),
                   option.palette.color(QPalette::Active, QPalette::Highlight), visibleContrast);
    const QRect &rect = option.rect;
    painter.fillRect(QRect(rect.topLeft(), QSize(rect.width(), 1)), line);
    painter.fillRect(QRect(rect.bottomLeft(), QSize(rect.width(), 1)), line);
}

} // namespace

QColor StateCell::textColour(const QStyleOptionViewItem &option)
{
    return option.palette.color(QPalette::Active, QPalette::Text);
}

void StateCell::drawWords(QPainter &painter, const QStyleOptionViewItem &option, const QRect &rect,
                          const QString &text, Qt::Alignment alignment, const QColor &colour,
                          Qt::TextElideMode mode)
{
    painter.setPen(colour);
    painter.setFont(option.font);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // a path is none that is read from the right
    painter.drawText(rect,
                     int(QStyle::visualAlignment(option.direction, alignment) | Qt::AlignAbsolute) |
                         Qt::TextSingleLine,
                     option.fontMetrics.elidedText(text, mode, rect.width()));
}

void StateCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QPalette &palette = option.palette;
    const QPalette::ColorRole base =
        option.features.testFlag(QStyleOptionViewItem::Alternate) ? QPalette::AlternateBase : QPalette::Base;
    const QColor ground = isSelected ? selectionGround(palette) : palette.color(QPalette::Active, base);
    painter->fillRect(option.rect, ground);
    if (isSelected || option.state.testFlag(QStyle::State_HasFocus))
        drawFrame(*painter, option, ground);
    paintContents(*painter, option, option.rect.adjusted(padding, 0, -padding, 0), index, ground);
}

void StateCell::paintContents(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                              const QModelIndex &index, const QColor &ground) const
{
    QRect words = inner;
    if (const QVariant state = index.data(StateRole); state.isValid()) {
        const int size = signSize(option.fontMetrics);
        const QRect sign(inner.left() - padding / 2, inner.top() + (inner.height() - size) / 2, size, size);
        drawSign(painter, QStyle::visualRect(option.direction, inner, sign),
                 static_cast<ResultRow::State>(state.toInt()), ground, textColour(option), option.direction);
        words = QStyle::visualRect(option.direction, inner, inner.adjusted(size + padding / 2, 0, 0, 0));
    }
    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    drawWords(painter, option, words, index.data().toString(), alignment,
              index.data(MutedRole).toBool() ? mutedText(ground, textColour(option)) : textColour(option),
              index.data(PathRole).toBool() ? Qt::ElideLeft : Qt::ElideRight);
}

} // namespace brevant
