// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QStyledItemDelegate>

#include <optional>

class QRectF;

namespace brevant {

/// The ground of a selected row.
inline constexpr QRgb selectionFill = qRgb(204, 238, 255);

/// Draws one entry of the file queue: its name in the colour of its kind, and below it its folder in the
/// colour of disabled text.
class ImageTextCell final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// No colour: the table alone paints selected rows, and their text keeps its colours.
    [[nodiscard]] std::optional<QColor> highlightColorWithFrame(const QRectF &cellFrame) const;

    /// Draws the entry `path`. The name's line has its top at the top of `cellFrame`, the folder's at 4/10 of
    /// its height, both 8 to the right of its left edge, neither wrapped nor truncated. `palette` is that of
    /// the list, whose ground is light.
    void drawWithFrame(const QRectF &cellFrame, QPainter &painter, const QString &path,
                       const QPalette &palette) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace brevant
