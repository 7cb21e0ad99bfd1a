// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/StateTable.h"

#include "app/results/SortedRows.h"
#include "app/results/StateCell.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int rowMargins = 8;
constexpr int leastRows = 2;

/// Titles begin and end where the cells do.
class StateHeader final : public QHeaderView {
public:
    explicit StateHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {}

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override
    {
        QHeaderView::initStyleOptionForIndex(option, column);
        option->text = u' ' + option->text + u' ';
    }
};

} // namespace

StateTable::StateTable(SortedRows &rows, QWidget *parent) : QTableView(parent), m_rows(rows)
{
    setHorizontalHeader(new StateHeader(this)); // owned by this
    setModel(&rows);
    setItemDelegate(new StateCell(this)); // a child of this
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    setUpHeader();
    keepPlace();
    fitRows();
}

void StateTable::setUpHeader()
{
    QHeaderView &header = *horizontalHeader();
    header.setHighlightSections(false);
    header.setSectionsMovable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    header.setSortIndicatorClearable(true);
    header.setSectionsClickable(true);
    header.setSortIndicatorShown(true);
    connect(&header, &QHeaderView::sortIndicatorChanged, this, [this](int column, Qt::SortOrder order) {
        m_rows.sort(column, order);
        if (currentRecord() >= 0)
            scrollTo(currentIndex());
    });
}

/// Rows that come above those in sight, as those of a run that goes on do in an order of the user's, do not
/// push these away.
void StateTable::keepPlace()
{
    QScrollBar *const bar = verticalScrollBar();
    const auto note = [this, bar] { m_top = bar->value() > 0 ? m_rows.index(rowAt(0), 0) : QModelIndex(); };
    const auto keep = [this, bar] {
        const int rows = m_top.isValid() ? m_top.row() - rowAt(0) : 0;
        if (rows == 0)
            return;
        updateGeometries();
        bar->setValue(bar->value() + rows * (verticalScrollMode() == ScrollPerItem ? 1 : rowHeight(0)));
    };
    connect(bar, &QScrollBar::valueChanged, this, note);
    connect(&m_rows, &SortedRows::layoutChanged, this, note);
    connect(&m_rows, &SortedRows::rowsInserted, this, keep);
    connect(&m_rows, &SortedRows::rowsMoved, this, keep);
    connect(&m_rows, &SortedRows::rowsRemoved, this, keep);
}

int StateTable::currentRecord() const
{
    const QModelIndex current = currentIndex();
    return selectionModel()->isSelected(current) ? m_rows.recordAt(current.row()) : -1;
}

void StateTable::selectFile(int row)
{
    selectionModel()->setCurrentIndex(m_rows.index(row, 1),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

std::vector<int> StateTable::selectedRows() const
{
    std::vector<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::ranges::sort(rows);
    return rows;
}

QString StateTable::selectionAsText() const
{
    QStringList lines;
    const auto add = [this, &lines](const auto &textOf) {
        QStringList cells;
        for (int place = 0; place < m_rows.columnCount(); ++place) {
            const int column = horizontalHeader()->logicalIndex(place);
            if (!isColumnHidden(column))
                cells.append(textOf(column));
        }
        lines.append(cells.join(u'\t'));
    };
    add([this](int column) { return m_rows.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
    for (const int row : selectedRows())
        add([this, row](int column) { return m_rows.index(row, column).data().toString(); });
    return lines.join(u'\n') + u'\n';
}

void StateTable::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT currentFileChanged();
}

void StateTable::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setText(selectionAsText());
    else
        QTableView::keyPressEvent(event);
}

void StateTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitRows();
}

void StateTable::contextMenuEvent(QContextMenuEvent *event)
{
    auto *const menu = new QMenu(this); // deletes itself
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->popup(event->globalPos());
}

/// As high as a line and its margins; the style's own rows are too high for many.
void StateTable::fitRows()
{
    const int height = fontMetrics().height() + rowMargins;
    verticalHeader()->setDefaultSectionSize(height);
    horizontalHeader()->setFixedHeight(height);
    setMinimumHeight((1 + leastRows) * height + horizontalScrollBar()->sizeHint().height());
}

void StateTable::setColumnLetters(int column, int letters, int extra)
{
    setColumnWidth(column, letters * fontMetrics().averageCharWidth() + extra + 2 * StateCell::padding);
}

} // namespace brevant
