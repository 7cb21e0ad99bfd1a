// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/BVTableView.h"

#include "queue/FileQueue.h"
#include "queue/view/ImageTextCell.h"
#include "widgets/BackgroundDrag.h"
#include "widgets/Contrast.h"

#include <QHeaderView>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace brevant {

namespace {

// Four tenths of it hold a line of 13 pixels with its accents and descenders.
constexpr int rowPitch = 40;

/// Where `row` is after a reload, which tells the new rows; -1 if it is gone.
int rowAfter(const std::vector<int> &newRows, int row)
{
    return row < 0 ? -1 : newRows[static_cast<std::size_t>(row)];
}

/// Where `rows` are after a reload, without those that are gone.
std::vector<int> rowsAfter(const std::vector<int> &newRows, const std::vector<int> &rows)
{
    std::vector<int> after;
    for (const int row : rows) {
        if (const int now = rowAfter(newRows, row); now >= 0)
            after.push_back(now);
    }
    return after;
}

} // namespace

BVTableView::BVTableView(QWidget *parent) : QTableView(parent)
{
    setAccessibleName(tr("Files"));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(rowPitch);
    setDragDropMode(DropOnly);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    setBackgroundColor(std::nullopt);
    letWindowBeDragged();
}

/// By the empty background, on which a click deselects.
void BVTableView::letWindowBeDragged()
{
    auto *const drag = new BackgroundDrag(viewport(), [this](QPoint at) {
        return mouseDownCanMoveWindow() && rowAt(at.y()) == -1;
    }); // owned by the viewport
    connect(drag, &BackgroundDrag::clicked, this, [this](Qt::KeyboardModifiers modifiers) {
        if (!(modifiers & (Qt::ShiftModifier | Qt::ControlModifier)))
            deselectAll();
    });
}

void BVTableView::setBackgroundColor(const std::optional<QColor> &color)
{
    m_backgroundColor = color;
    QPalette ground;
    ground.setColor(viewport()->backgroundRole(), color.value_or(QColor(Qt::transparent)));
    viewport()->setPalette(ground);
    viewport()->setAutoFillBackground(color.has_value());
    viewport()->update();
}

int BVTableView::rowCount() const
{
    return model() ? model()->rowCount() : 0;
}

void BVTableView::reloadData()
{
    auto *const files = qobject_cast<FileQueue *>(model());
    if (!files)
        return;
    const std::vector<int> selectedBefore = selectedRowIndexes();
    const int lastBefore = m_selectedRow;
    const int currentBefore = currentIndex().row();
    const int positionBefore = verticalScrollBar()->value();
    const std::vector<int> newRows = files->reload();
    viewport()->update();
    if (newRows.empty())
        return;

    const std::vector<int> selected = rowsAfter(newRows, selectedBefore);
    m_reloading = true;
    if (currentBefore >= 0) {
        // A current row that is gone leaves its place to the next one.
        const auto gone = std::count(newRows.begin(), newRows.begin() + currentBefore, -1);
        setCurrentRow(std::min(currentBefore - static_cast<int>(gone), rowCount() - 1));
    }
    selectRows(selected, false);
    m_reloading = false;
    m_selectedRow = rowAfter(newRows, lastBefore);
    if (m_selectedRow < 0 && !selected.empty())
        m_selectedRow = selected.back();
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(positionBefore);
    if (selected != selectedBefore)
        Q_EMIT selectionDidChange();
}

// Cached, as the selection model is slow to ask with tens of thousands of ranges.
const std::vector<int> &BVTableView::selectedRows() const
{
    if (m_selectedRows)
        return *m_selectedRows;
    m_selectedRows.emplace();
    const QItemSelection selection = selectionModel() ? selectionModel()->selection() : QItemSelection();
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            m_selectedRows->push_back(row);
    }
    std::ranges::sort(*m_selectedRows);
    return *m_selectedRows;
}

void BVTableView::reset()
{
    QTableView::reset();
    m_selectedRows.reset();
}

void BVTableView::selectRows(const std::vector<int> &rows, bool byExtendingSelection)
{
    QItemSelection selection;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1)
            ++end;
        selection.append(QItemSelectionRange(model()->index(rows[i], 0), model()->index(rows[end - 1], 0)));
        i = end;
    }
    selectionModel()->select(selection, byExtendingSelection ? QItemSelectionModel::Select
                                                             : QItemSelectionModel::ClearAndSelect);
}

void BVTableView::selectRowIndexes(const std::vector<int> &rows, bool byExtendingSelection)
{
    if (!selectionModel())
        return;
    std::vector<int> present;
    std::ranges::copy_if(rows, std::back_inserter(present),
                         [count = rowCount()](int row) { return row >= 0 && row < count; });
    const int last = present.empty() ? -1 : present.back();
    std::ranges::sort(present);
    present.erase(std::unique(present.begin(), present.end()), present.end());
    if (last >= 0)
        setCurrentRow(last);
    selectRows(present, byExtendingSelection);
    if (last >= 0)
        m_selectedRow = last;
}

void BVTableView::setCurrentRow(int row)
{
    // Without this the view would scroll to it.
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::NoUpdate);
    setAutoScroll(scrolls);
}

void BVTableView::scrollRowToVisible(int row)
{
    if (model())
        scrollTo(model()->index(row, 0));
}

void BVTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    m_selectedRows.reset();
    if (m_reloading || (selected.isEmpty() && deselected.isEmpty()))
        return;
    if (selected.contains(currentIndex()))
        m_selectedRow = currentIndex().row();
    else if (!selected.isEmpty())
        m_selectedRow = std::ranges::max(selected, {}, &QItemSelectionRange::bottom).bottom();
    else if (!std::ranges::binary_search(selectedRows(), m_selectedRow))
        m_selectedRow = selectedRows().empty() ? -1 : selectedRows().back();
    Q_EMIT selectionDidChange();
}

QRect BVTableView::frameOfCell(int row) const
{
    return model() ? visualRect(model()->index(row, 0)) : QRect();
}

QRect BVTableView::frameOfCellOnScreen(int row) const
{
    const QRect frame = frameOfCell(row);
    return frame.isValid() ? QRect(viewport()->mapToGlobal(frame.topLeft()), frame.size()) : QRect();
}

void BVTableView::highlightSelectionInClipRect(QPainter &painter, const QRect &clipRect) const
{
    const int atBottom = rowAt(clipRect.bottom());
    const int limit = atBottom >= 0 ? atBottom + 1 : (rowAt(clipRect.top()) >= 0 ? rowCount() : 0);
    // Every selected row from 0 on is due; those above the view are left out, however many they are.
    const std::vector<int> &rows = selectedRows();
    for (auto row = std::ranges::lower_bound(rows, rowAt(0)); row != rows.end() && *row < limit; ++row)
        painter.fillRect(frameOfCell(*row).adjusted(2, 1, -2, -1), QColor(selectionFill));
}

void BVTableView::initViewItemOption(QStyleOptionViewItem *option) const
{
    QTableView::initViewItemOption(option);
    QPalette &own = option->palette;
    const QColor ground(selectionFill); // the darker of the two
    const double least = isHighContrast(own) ? highContrast : readableContrast;
    const auto opaque = [&own](QPalette::ColorGroup group) {
        const QColor colour = own.color(group, QPalette::Text);
        return mixed(QColor(Qt::white), colour, colour.alphaF());
    };
    const QColor text = opaque(QPalette::Active);
    const QColor disabled = readableOn(ground, Qt::black, opaque(QPalette::Disabled), least);
    own.setColor(QPalette::Base, Qt::white);
    own.setColor(QPalette::Text, contrast(text, ground) >= least ? text : QColor(Qt::black));
    own.setColor(QPalette::Disabled, QPalette::Text, disabled);
}

void BVTableView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    highlightSelectionInClipRect(painter, event->rect());
    paintRows(painter, event->rect());
    paintRing(painter);
}

void BVTableView::paintRows(QPainter &painter, const QRect &clipRect)
{
    const int first = rowAt(clipRect.top());
    if (first < 0)
        return;
    const int atBottom = rowAt(clipRect.bottom());
    const int last = atBottom >= 0 ? atBottom : rowCount() - 1;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = model()->index(row, 0);
        option.rect = frameOfCell(row);
        itemDelegateForIndex(index)->paint(&painter, option, index);
    }
}

/// Round the whole table: while a drag is over its rows, and when the keyboard has brought the focus here.
void BVTableView::paintRing(QPainter &painter) const
{
    const bool isDropRing = m_dragIsOver && m_backgroundColor.has_value();
    if (!isDropRing && !m_keyboardFocus)
        return;
    const int width = isDropRing ? 3 : 2;
    painter.setPen(
        QPen(palette().color(QPalette::Highlight), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    const qreal half = width / 2.0;
    painter.drawRect(QRectF(viewport()->rect()).adjusted(half, half, -half, -half));
}

} // namespace brevant
