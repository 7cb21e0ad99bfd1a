// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/BVTableView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Whether local files are dragged; a dragged link to a web page is a list of addresses, too.
bool holdsFileNames(const QMimeData &drop)
{
    const QList<QUrl> urls = drop.urls();
    return std::ranges::any_of(urls, &QUrl::isLocalFile);
}

/// Whether the key goes to another row and selects it alone.
bool movesCursor(const QKeyEvent &event)
{
    constexpr int keys[]{Qt::Key_Up,  Qt::Key_Down,   Qt::Key_Home,
                         Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown};
    return !(event.modifiers() & ~Qt::KeypadModifier) &&
           std::ranges::find(keys, event.key()) != std::end(keys);
}

} // namespace

QMenu *BVTableView::menuForEvent(const QContextMenuEvent &event)
{
    const int row = rowAt(event.pos().y());
    if (row == -1)
        return nullptr;
    selectRowIndexes({row}, true);
    return m_menu;
}

void BVTableView::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    if (event->reason() != QContextMenuEvent::Keyboard) {
        if (QMenu *const menu = menuForEvent(*event))
            menu->popup(event->globalPos());
        return;
    }
    // The menu key is for the rows that are selected already.
    if (!m_menu || selectedRow() == -1)
        return;
    scrollRowToVisible(selectedRow());
    m_menu->popup(frameOfCellOnScreen(selectedRow()).center());
}

// The right button is the menu's alone: it must not replace the selection.
void BVTableView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::RightButton)
        QTableView::mousePressEvent(event);
}

void BVTableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::RightButton)
        QTableView::mouseReleaseEvent(event);
}

void BVTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleAction();
}

void BVTableView::keyPressEvent(QKeyEvent *event)
{
    // Qt does not treat it as the menu key.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        contextMenuEvent(&menuKey);
        return;
    }
    keyDown(event);
}

void BVTableView::keyDown(QKeyEvent *event)
{
    event->accept();
    if (selectedRow() == -1)
        return;
    if (event->key() != Qt::Key_Space)
        moveByKey(event);
    else if (!event->isAutoRepeat()) // a space bar held down must not close what it has just opened
        Q_EMIT togglePreviewPanel();
}

/// As in any table, but a key with nowhere to go, such as Up in the first row, still selects the current row
/// alone.
void BVTableView::moveByKey(QKeyEvent *event)
{
    const QModelIndex before = currentIndex();
    QTableView::keyPressEvent(event);
    if (before.isValid() && currentIndex() == before && movesCursor(*event))
        selectRowIndexes({before.row()}, false);
}

/// Home and End are about the rows, not about the one column.
QModelIndex BVTableView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    if (cursorAction == MoveHome)
        return model()->index(0, 0);
    if (cursorAction == MoveEnd)
        return model()->index(rowCount() - 1, 0);
    return QTableView::moveCursor(cursorAction, modifiers);
}

void BVTableView::keyboardSearch(const QString &search)
{
    if (!m_sinceSearch.isValid() || m_sinceSearch.hasExpired(QApplication::keyboardInputInterval()))
        m_searched.clear();
    m_sinceSearch.start();
    // The same letter again goes on to the next match; a longer beginning may stay where it is.
    const bool goesOn = m_searched.isEmpty() || m_searched == search;
    if (m_searched != search)
        m_searched += search;
    const int start = std::max(currentIndex().row(), 0) + (goesOn ? 1 : 0);
    // The accessible text begins with the name of the file.
    const QModelIndexList found =
        model()->match(model()->index(start < rowCount() ? start : 0, 0), Qt::AccessibleTextRole, m_searched,
                       1, Qt::MatchStartsWith | Qt::MatchWrap);
    if (!found.isEmpty())
        setCurrentIndex(found.first());
}

void BVTableView::focusInEvent(QFocusEvent *event)
{
    m_keyboardFocus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                      event->reason() == Qt::ShortcutFocusReason;
    QTableView::focusInEvent(event);
    // Without a selection no key would do anything.
    if (m_keyboardFocus && selectedRow() == -1 && currentIndex().isValid())
        selectRowIndexes({currentIndex().row()}, false);
    viewport()->update();
}

void BVTableView::focusOutEvent(QFocusEvent *event)
{
    m_keyboardFocus = false;
    QTableView::focusOutEvent(event);
    viewport()->update();
}

void BVTableView::setDragIsOver(bool isOver)
{
    m_dragIsOver = isOver;
    viewport()->update();
}

/// Takes the drag as a copy or not at all: no source may believe that its files were moved.
void BVTableView::validateDrag(QDragMoveEvent *event)
{
    event->ignore();
    if (!m_dropTarget || !m_dragHoldsFiles || !(event->possibleActions() & Qt::CopyAction))
        return;
    if (m_dropTarget->tableViewValidateDrop(*event->mimeData()) != Qt::CopyAction)
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (!m_dragIsOver)
        setDragIsOver(true);
}

void BVTableView::dragEnterEvent(QDragEnterEvent *event)
{
    // Asked once: the list can be long, and comes from the other program each time.
    m_dragHoldsFiles = holdsFileNames(*event->mimeData());
    validateDrag(event);
}

void BVTableView::draggingExited(QDragLeaveEvent *event)
{
    if (DropView)
        DropView->setImageNamed(u"dropN.png"_s);
    setDragIsOver(false);
    QTableView::dragLeaveEvent(event);
}

void BVTableView::dropEvent(QDropEvent *event)
{
    event->ignore();
    if (m_dropTarget && holdsFileNames(*event->mimeData()) && (event->possibleActions() & Qt::CopyAction)) {
        event->setDropAction(Qt::CopyAction);
        event->setAccepted(m_dropTarget->tableViewAcceptDrop(*event->mimeData()));
    }
    concludeDragOperation();
}

} // namespace brevant
