// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "queue/view/BVImageView.h"

#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>
#include <QTableView>

#include <optional>
#include <vector>

namespace brevant {

/// What becomes of drags over the file table. Implemented by the controller; the table asks it about drags of
/// file names only, refuses all others by itself, and takes every drop as a whole, between no two rows.
class DropTarget {
public:
    virtual ~DropTarget() = default;

    /// A drag moves over the table. Returns the operation to offer; Qt::IgnoreAction refuses the drag.
    virtual Qt::DropAction tableViewValidateDrop(const QMimeData &drop) = 0;

    /// The user has dropped. Returns whether the drop is taken.
    virtual bool tableViewAcceptDrop(const QMimeData &drop) = 0;
};

/// The list of queued files: one column as wide as the view, over the drop-zone picture.
///
/// It paints its selection by itself and has no ground of its own until it is given a colour. Rows are
/// numbered as in the model; frames are in the coordinates of viewport().
class BVTableView : public QTableView {
    Q_OBJECT

public:
    explicit BVTableView(QWidget *parent = nullptr);

    /// The picture behind the table.
    void setDropView(BVImageView *dropView) { DropView = dropView; }
    [[nodiscard]] BVImageView *dropView() const { return DropView; }

    /// Who is asked about drags and drops; none are taken without one. Must outlive the table.
    void setDropTarget(DropTarget *target) { m_dropTarget = target; }

    /// The menu that menuForEvent() answers with. The table does not take it over.
    void setMenu(QMenu *menu) { m_menu = menu; }

    /// The colour behind the rows; without one the picture shows through.
    void setBackgroundColor(const std::optional<QColor> &color);
    [[nodiscard]] const std::optional<QColor> &backgroundColor() const { return m_backgroundColor; }

    /// Brings its rows up to date with the FileQueue. An entry that is still there stays selected,
    /// wherever its row is now; the selection never passes to another entry.
    void reloadData();

    [[nodiscard]] std::vector<int> selectedRowIndexes() const { return selectedRows(); } ///< ascending
    /// The one selected, or added to the selection, last; -1 if none.
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }
    /// Passes over rows that are not there.
    void selectRowIndexes(const std::vector<int> &rows, bool byExtendingSelection);
    void selectAllRows() { selectAll(); }
    void deselectAll() { clearSelection(); }
    void scrollRowToVisible(int row);

    /// The row, which is where its cell is drawn; empty if there is no such row.
    [[nodiscard]] QRect frameOfCell(int row) const;
    [[nodiscard]] QRect frameOfCellOnScreen(int row) const;

    /// Fills the rectangles of the selected rows, from row 0 to the last one that `clipRect` touches.
    void highlightSelectionInClipRect(QPainter &painter, const QRect &clipRect) const;

    /// How cells are drawn, with the colours of texts made readable on white and on the selection.
    void initViewItemOption(QStyleOptionViewItem *option) const override;

    /// The menu of a right click: adds the row under it to the selection. No row, no menu.
    [[nodiscard]] QMenu *menuForEvent(const QContextMenuEvent &event);

    /// Yes: a drag that starts on the empty background moves the window.
    [[nodiscard]] bool mouseDownCanMoveWindow() const { return true; }

    /// Handles a key, which may come from the preview panel: Space asks for the preview, all others do what
    /// they do in any table. Without a selected row no key does anything.
    void keyDown(QKeyEvent *event);

    /// Goes to the next file whose name begins with what was typed; Qt would not go on at the same letter.
    void keyboardSearch(const QString &search) override;

Q_SIGNALS:
    void selectionDidChange(); ///< by the user, by a call or by a reload
    void doubleAction();       ///< a double click, on a row or not
    void togglePreviewPanel(); ///< the space bar

protected:
    void draggingExited(QDragLeaveEvent *event);
    void concludeDragOperation() { setDragIsOver(false); }

    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void reset() override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override { validateDrag(event); }
    void dragLeaveEvent(QDragLeaveEvent *event) override { draggingExited(event); }
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    [[nodiscard]] int rowCount() const;
    [[nodiscard]] const std::vector<int> &selectedRows() const;
    void selectRows(const std::vector<int> &rows, bool byExtendingSelection);
    void setCurrentRow(int row);
    void letWindowBeDragged();
    void moveByKey(QKeyEvent *event);
    void paintRows(QPainter &painter, const QRect &clipRect);
    void paintRing(QPainter &painter) const;
    void setDragIsOver(bool isOver);
    void validateDrag(QDragMoveEvent *event);

    QPointer<BVImageView> DropView;
    DropTarget *m_dropTarget = nullptr;
    QPointer<QMenu> m_menu;
    std::optional<QColor> m_backgroundColor;
    mutable std::optional<std::vector<int>> m_selectedRows; ///< ascending; none: to be asked for again
    int m_selectedRow = -1;
    bool m_reloading = false;
    bool m_dragHoldsFiles = false; ///< the latest drag
    bool m_dragIsOver = false;
    bool m_keyboardFocus = false; ///< the focus came by a key
    QString m_searched;
    QElapsedTimer m_sinceSearch;
};

} // namespace brevant
