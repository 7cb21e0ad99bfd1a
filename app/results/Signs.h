// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"

#include <QIcon>
#include <QPalette>

class QFontMetrics;
class QLabel;
class QPainter;
class QRectF;

namespace brevant {

/// The colour of what is said beside, on that ground.
[[nodiscard]] QColor mutedText(const QColor &ground, const QColor &text);

/// Gives the words of a label that is on a ground of that role the same colour.
void mute(QLabel &label, QPalette::ColorRole ground);

/// The ground of selected rows: text can be read on it, unlike on the full colour of selections.
[[nodiscard]] QColor selectionGround(const QPalette &palette);

/// Draws the sign of a state, told from the others by its shape. It has the colour of the state as far as
/// that can be seen on `ground`.
void drawSign(QPainter &painter, const QRectF &rect, ResultRow::State state, const QColor &ground,
              const QColor &text, Qt::LayoutDirection direction);

/// How large a sign is beside a text, and how many times larger than usual the font is.
[[nodiscard]] int signSize(const QFontMetrics &metrics);
[[nodiscard]] double fontScale(const QFontMetrics &metrics);

/// An icon of the desktop's theme in the colour of the texts; those of a theme may be made for light windows
/// only.
[[nodiscard]] QIcon textIcon(const QString &name, const QWidget &widget);

/// The sign of a state as an icon for a button.
[[nodiscard]] QIcon signIcon(ResultRow::State state, const QWidget &button);

/// Draws an outline and the part of it that was saved, from where texts begin.
void drawSavedBar(QPainter &painter, const QRectF &rect, double part, const QColor &ground,
                  const QPalette &palette, Qt::LayoutDirection direction);

} // namespace brevant
