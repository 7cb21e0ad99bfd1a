// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace brevant {

class ResultModel;

/// Paints the cells of results: signs, bars, and texts of less weight.
class ResultCell final : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int padding = 6; ///< left and right

    /// Of the bar of what was saved.
    [[nodiscard]] static int barWidth(const QFontMetrics &metrics);

    ResultCell(const ResultModel &model, QObject *parent) : QStyledItemDelegate(parent), m_model(model) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

private:
    const ResultModel &m_model;
};

} // namespace brevant
