// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Hairline.h"

#include "widgets/Contrast.h"

#include <QPainter>

namespace brevant {

namespace {

constexpr double strength = 0.15; // of the text's colour over the window's

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
    const QColor colour = mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText),
                                isHighContrast(palette()) ? 1 : strength);
    QPainter(this).fillRect(0, height() / 2, width(), 1, colour);
}

} // namespace brevant
