// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/StateCell.h"

namespace brevant {

class ResultModel;
struct ResultRow;

/// Paints the cells of results: has a bar beside what was saved.
class ResultCell final : public StateCell {
    Q_OBJECT

public:
    /// Of the bar of what was saved.
    [[nodiscard]] static int barWidth(const QFontMetrics &metrics);

    ResultCell(const ResultModel &model, QObject *parent) : StateCell(parent), m_model(model) {}

protected:
    void paintContents(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                       const QModelIndex &index, const QColor &ground) const override;

private:
    static void drawSaved(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                          const ResultRow &row, const QColor &ground);

    const ResultModel &m_model;
};

} // namespace brevant
