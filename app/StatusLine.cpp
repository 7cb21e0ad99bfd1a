// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StatusLine.h"

#include <QPainter>
#include <QStyle>

namespace brevant {

void StatusLine::setStringValue(const QString &text)
{
    if (text == this->text())
        return;
    setText(text); // which tells assistive programs
    setToolTip(text);
}

void StatusLine::paintEvent([[maybe_unused]] QPaintEvent *event)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), Qt::AlignVCenter | Qt::AlignLeading, palette(),
                          isEnabled(), shown, foregroundRole());
}

} // namespace brevant
