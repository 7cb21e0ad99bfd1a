// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Lines.h"

#include "widgets/Contrast.h"

#include <QPainter>
#include <QStyle>

namespace brevant {

Hairline::Hairline(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Hairline::paintEvent(QPaintEvent *)
{
    constexpr double faint = 0.15;
    const QColor colour = mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText),
                                isHighContrast(palette()) ? 1 : faint);
    QPainter(this).fillRect(0, height() / 2, width(), 1, colour);
}

QWidget *horizontalLine(QWidget *parent)
{
    auto *const hairline = new Hairline(parent);
    hairline->setFixedHeight(1);
    return hairline;
}

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 4, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setLayoutDirection(layoutDirection()); // not the application's
    const QString elided = fontMetrics().elidedText(text(), m_mode, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(), elided,
                          foregroundRole());
}

} // namespace brevant
