// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultCell.h"

#include "app/results/ResultModel.h"
#include "app/results/Signs.h"

#include <QPainter>

namespace brevant {

constexpr int savedBarWidth = 44;
constexpr int savedBarHeight = 8;

int ResultCell::barWidth(const QFontMetrics &metrics)
{
    return static_cast<int>(savedBarWidth * fontScale(metrics));
}

void ResultCell::paintContents(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                               const QModelIndex &index, const QColor &ground) const
{
    if (index.column() == ResultModel::Saved)
        drawSaved(painter, option, inner, m_model.at(index.row()), ground);
    else
        StateCell::paintContents(painter, option, inner, index, ground);
}

void ResultCell::drawSaved(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                           const ResultRow &row, const QColor &ground)
{
    const std::optional<double> part = row.savedPart();
    const int width = barWidth(option.fontMetrics);
    const auto height = static_cast<int>(savedBarHeight * fontScale(option.fontMetrics));
    const QRect words = inner.adjusted(0, 0, -width - padding, 0);
    drawWords(painter, option, QStyle::visualRect(option.direction, inner, words),
              ResultModel::text(row, ResultModel::Saved),
              Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter,
              part ? textColour(option) : mutedText(ground, textColour(option)));
    const QRect bar(inner.right() - width + 1, inner.top() + (inner.height() - height) / 2, width, height);
    if (part)
        drawSavedBar(painter, QStyle::visualRect(option.direction, inner, bar), *part, ground, option.palette,
                     option.direction);
}

} // namespace brevant
