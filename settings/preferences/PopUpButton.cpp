// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PopUpButton.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace brevant {

namespace {

constexpr int gapAfterIcon = 4; // as the styles draw it

/// Whether the key opens the list, or would choose another item of the closed one.
bool opens(int key)
{
    switch (key) {
    case Qt::Key_Space:
    case Qt::Key_F4:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

/// Whether the key types a letter, by which the list would be searched.
bool searches(const QKeyEvent &event)
{
    const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
    return plain && !event.text().isEmpty() && event.text().front().isPrint();
}

} // namespace

PopUpButton::PopUpButton(QWidget *parent) : QComboBox(parent) {}

void PopUpButton::initStyleOption(QStyleOptionComboBox *option) const
{
    QComboBox::initStyleOption(option);
    int room =
        style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this).width();
    if (!option->currentIcon.isNull())
        room -= option->iconSize.width() + gapAfterIcon;
    option->currentText = option->fontMetrics.elidedText(option->currentText, Qt::ElideMiddle, room);
}

void PopUpButton::keyPressEvent(QKeyEvent *event)
{
    if (opens(event->key())) {
        showPopup();
    } else if (searches(*event)) {
        showPopup();
        view()->keyboardSearch(event->text());
    } else {
        event->ignore();
    }
}

void PopUpButton::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace brevant
