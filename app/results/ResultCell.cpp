// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultCell.h"

#include "app/results/ResultModel.h"
#include "app/results/Signs.h"
#include "widgets/Contrast.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int padding = ResultCell::padding;
constexpr int usualBarWidth = 44;
constexpr int usualBarHeight = 8;

void drawFrame(QPainter &painter, const QStyleOptionViewItem &option, const QColor &ground)
{
    const QColor line =
        readableOn(ground, option.palette.color(QPalette::Active, QPalette::Text),
                   option.palette.color(QPalette::Active, QPalette::Highlight), visibleContrast);
    const QRect &rect = option.rect;
    painter.fillRect(QRect(rect.topLeft(), QSize(rect.width(), 1)), line);
    painter.fillRect(QRect(rect.bottomLeft(), QSize(rect.width(), 1)), line);
}

QColor textColour(const QStyleOptionViewItem &option)
{
    return option.palette.color(QPalette::Active, QPalette::Text);
}

void drawWords(QPainter &painter, const QStyleOptionViewItem &option, const QRect &rect, const QString &text,
               Qt::Alignment alignment, const QColor &colour, Qt::TextElideMode mode = Qt::ElideRight)
{
    painter.setPen(colour);
    painter.setFont(option.font);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // a path is none that is read from the right
    painter.drawText(rect,
                     int(QStyle::visualAlignment(option.direction, alignment) | Qt::AlignAbsolute) |
                         Qt::TextSingleLine,
                     option.fontMetrics.elidedText(text, mode, rect.width()));
}

void drawState(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
               const ResultRow &row, const QColor &ground)
{
    const int size = signSize(option.fontMetrics);
    const QRect sign(inner.left() - padding / 2, inner.top() + (inner.height() - size) / 2, size, size);
    drawSign(painter, QStyle::visualRect(option.direction, inner, sign), row.state, ground,
             textColour(option), option.direction);
    const QRect words = inner.adjusted(size + padding / 2, 0, 0, 0);
    drawWords(painter, option, QStyle::visualRect(option.direction, inner, words), stateText(row.state),
              Qt::AlignLeading | Qt::AlignVCenter, textColour(option));
}

void drawSaved(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
               const ResultRow &row, const QColor &ground)
{
    const std::optional<double> part = row.savedPart();
    const int barWidth = ResultCell::barWidth(option.fontMetrics);
    const auto barHeight = static_cast<int>(usualBarHeight * fontScale(option.fontMetrics));
    const QRect words = inner.adjusted(0, 0, -barWidth - padding, 0);
    drawWords(painter, option, QStyle::visualRect(option.direction, inner, words),
              ResultModel::text(row, ResultModel::Saved),
              Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter,
              part ? textColour(option) : mutedText(ground, textColour(option)));
    const QRect bar(inner.right() - barWidth + 1, inner.top() + (inner.height() - barHeight) / 2, barWidth,
                    barHeight);
    if (part)
        drawSavedBar(painter, QStyle::visualRect(option.direction, inner, bar), *part, ground, option.palette,
                     option.direction);
}

void drawText(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
              const QModelIndex &index, const QColor &ground)
{
    const QString text = index.data().toString();
    const bool isMuted = index.column() == ResultModel::Folder || text == u"–";
    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    drawWords(painter, option, inner, text, alignment,
              isMuted ? mutedText(ground, textColour(option)) : textColour(option),
              index.column() == ResultModel::Folder ? Qt::ElideLeft : Qt::ElideRight);
}

} // namespace

int ResultCell::barWidth(const QFontMetrics &metrics)
{
    return static_cast<int>(usualBarWidth * fontScale(metrics));
}

void ResultCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QPalette &palette = option.palette;
    const QPalette::ColorRole base =
        option.features.testFlag(QStyleOptionViewItem::Alternate) ? QPalette::AlternateBase : QPalette::Base;
    const QColor ground = isSelected ? selectionGround(palette) : palette.color(QPalette::Active, base);
    painter->fillRect(option.rect, ground);
    if (isSelected || option.state.testFlag(QStyle::State_HasFocus))
        drawFrame(*painter, option, ground);
    const QRect inner = option.rect.adjusted(padding, 0, -padding, 0);
    const ResultRow &row = m_model.at(index.row());
    if (index.column() == ResultModel::State)
        drawState(*painter, option, inner, row, ground);
    else if (index.column() == ResultModel::Saved)
        drawSaved(*painter, option, inner, row, ground);
    else
        drawText(*painter, option, inner, index, ground);
}

} // namespace brevant
