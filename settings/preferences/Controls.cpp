// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/Controls.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

#include <algorithm>
#include <array>

namespace brevant {

namespace {

constexpr int gapAfterIcon = 4;       // as the styles draw it
constexpr double shareOfScreen = 0.9; // the rest is for the title bar and the frame

/// The keys that open the list, or would choose another item of the closed one.
constexpr std::array openingKeys{Qt::Key_Space,  Qt::Key_F4,       Qt::Key_Up,   Qt::Key_Down,
                                 Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};

/// Whether the key types a letter, by which the list would be searched.
bool searches(const QKeyEvent &event)
{
    const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
    return plain && !event.text().isEmpty() && event.text().front().isPrint();
}

} // namespace

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
    const bool opens = std::ranges::find(openingKeys, event->key()) != openingKeys.end();
    if (!opens && !searches(*event)) {
        event->ignore();
        return;
    }
    showPopup();
    if (!opens)
        view()->keyboardSearch(event->text());
}

void PopUpButton::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

RowLabel::RowLabel(QWidget *parent) : QLabel(parent)
{
    alignToControls();
}

void RowLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        alignToControls();
}

/// By the direction of the window. By itself a label goes by that of its text.
void RowLabel::alignToControls()
{
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    setAlignment((mirrored ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute | Qt::AlignVCenter);
}

QSize RowLabel::sizeHint() const
{
    QSize size = QLabel::sizeHint();
    for (const RowLabel *label : window()->findChildren<RowLabel *>())
        size.setWidth(std::max(size.width(), label->QLabel::sizeHint().width()));
    return size;
}

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
