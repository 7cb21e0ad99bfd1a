// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/Hairline.h"

#include <QPainter>

namespace brevant {

namespace {

constexpr float strength = 0.15F; // of the text's colour over the window's

} // namespace

Hairline::Hairline(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize Hairline::sizeHint() const
{
    return {0, fontMetrics().height()};
}

void Hairline::paintEvent(QPaintEvent *)
{
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(strength);
    QPainter(this).fillRect(0, height() / 2, width(), 1, colour);
}

} // namespace brevant
