// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PageArea.h"

#include <QScreen>
#include <QScrollBar>

namespace brevant {

namespace {

constexpr double shareOfScreen = 0.9; // the rest is for the title bar and the frame

} // namespace

PageArea::PageArea(QWidget *parent) : QScrollArea(parent)
{
    setFocusPolicy(Qt::NoFocus); // the controls on the page take it
}

QSize PageArea::sizeHint() const
{
    if (widget() == nullptr)
        return QScrollArea::sizeHint();
    const QSize page = widget()->sizeHint();
    const QSize room = screen()->availableSize() * shareOfScreen;
    QSize hint = page;
    if (page.height() > room.height())
        hint.rwidth() += verticalScrollBar()->sizeHint().width();
    if (page.width() > room.width())
        hint.rheight() += horizontalScrollBar()->sizeHint().height();
    return hint.boundedTo(room);
}

} // namespace brevant
