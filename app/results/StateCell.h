// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace brevant {

/// What cells tell of themselves beyond their text.
enum StateTableRole {
    StateRole = Qt::UserRole, ///< a ResultRow::State, whose sign is before the text
    MutedRole,                ///< whether the text has less weight
    PathRole                  ///< whether the text is shortened at its start
};

/// Paints signs, and texts of less weight, on a ground on which they can be read when selected.
class StateCell : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    static constexpr int padding = 6; ///< left and right

protected:
    /// Paints what the cell shows, on `ground`, within `inner`.
    virtual void paintContents(QPainter &painter, const QStyleOptionViewItem &option, const QRect &inner,
                               const QModelIndex &index, const QColor &ground) const;

    static void drawWords(QPainter &painter, const QStyleOptionViewItem &option, const QRect &rect,
                          const QString &text, Qt::Alignment alignment, const QColor &colour,
                          Qt::TextElideMode mode = Qt::ElideRight);
    [[nodiscard]] static QColor textColour(const QStyleOptionViewItem &option);
};

} // namespace brevant
