// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultTable.h"

#include "app/results/ResultCell.h"
#include "app/results/Signs.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int padding = ResultCell::padding;
constexpr int rowMargins = 8;

/// Titles begin and end where the cells do.
class ResultHeader final : public QHeaderView {
public:
    explicit ResultHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) {}

protected:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int column) const override
    {
        QHeaderView::initStyleOptionForIndex(option, column);
        option->text = u' ' + option->text + u' ';
    }
};

/// How wide a column is at first, in letters; for numbers, digits.
constexpr std::array<int, ResultModel::ColumnCount> letters{9, 23, 16, 10, 10, 8, 10, 10, 7, 26};

/// The columns in the order in which they are given up where there is no room.
constexpr std::array firstToGo{ResultModel::Brotli, ResultModel::Gzip,   ResultModel::Time,
                               ResultModel::After,  ResultModel::Before, ResultModel::Folder};

} // namespace

ResultTable::ResultTable(ResultModel &model, QWidget *parent)
    : QTableView(parent), m_model(model), m_isWanted(ResultModel::ColumnCount, true)
{
    setAccessibleName(tr("Results"));
    setHorizontalHeader(new ResultHeader(this)); // owned by this
    setModel(&model);
    setItemDelegate(new ResultCell(model, this)); // a child of this
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
    fitRows();
    resizeColumns();
}

void ResultTable::setUpHeader()
{
    QHeaderView &header = *horizontalHeader();
    header.setHighlightSections(false);
    header.setSectionsMovable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    header.setSortIndicatorClearable(true);
    header.setSectionsClickable(true);
    header.setSortIndicatorShown(true);
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QHeaderView::sectionClicked, this, [this] { m_isSortedByUser = true; });
    connect(&header, &QHeaderView::sortIndicatorChanged, &m_model, &ResultModel::sort);
    connect(&header, &QHeaderView::customContextMenuRequested, this,
            [this, &header](QPoint at) { showColumnMenu(header.viewport()->mapToGlobal(at)); });
}

void ResultTable::sortWorstFirst()
{
    if (!m_isSortedByUser)
        horizontalHeader()->setSortIndicator(ResultModel::State, Qt::AscendingOrder);
}

void ResultTable::showRun(std::shared_ptr<const RunRecord> run)
{
    if (!m_isSortedByUser)
        horizontalHeader()->setSortIndicator(run && !run->isRunning ? ResultModel::State : -1,
                                             Qt::AscendingOrder);
    m_model.setRun(std::move(run));
    updateColumns();
    if (m_model.run() && !m_model.run()->isRunning && m_model.rowCount() > 0)
        selectFile(0);
    Q_EMIT currentFileChanged();
}

void ResultTable::setFilter(ResultModel::Shown shown, const QString &text)
{
    const int record = currentFile() ? m_model.recordAt(currentIndex().row()) : -1;
    m_model.setFilter(shown, text);
    if (const int row = m_model.rowOf(record); row >= 0)
        selectFile(row);
    scrollTo(currentIndex());
    Q_EMIT currentFileChanged();
}

/// Unlike selectRow(), which asks what is at the beginning of the row, before there is a window to look at.
void ResultTable::selectFile(int row)
{
    selectionModel()->setCurrentIndex(m_model.index(row, ResultModel::Name),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

const ResultRow *ResultTable::currentFile() const
{
    const QModelIndex current = currentIndex();
    return selectionModel()->isSelected(current) ? &m_model.at(current.row()) : nullptr;
}

void ResultTable::updateColumns()
{
    for (int column = 0; column < ResultModel::ColumnCount; ++column)
        setColumnHidden(column,
                        !m_isWanted[static_cast<std::size_t>(column)] || m_model.isEmptyColumn(column));
}

std::vector<int> ResultTable::selectedRows() const
{
    std::vector<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::ranges::sort(rows);
    return rows;
}

QString ResultTable::selectionAsText() const
{
    QStringList lines;
    const auto add = [this, &lines](const auto &textOf) {
        QStringList cells;
        for (int place = 0; place < ResultModel::ColumnCount; ++place) {
            const int column = horizontalHeader()->logicalIndex(place);
            if (!isColumnHidden(column))
                cells.append(textOf(column));
        }
        lines.append(cells.join(u'\t'));
    };
    add([this](int column) {
        return m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    });
    for (const int row : selectedRows())
        add([this, row](int column) { return ResultModel::text(m_model.at(row), column); });
    return lines.join(u'\n') + u'\n';
}

void ResultTable::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT currentFileChanged();
}

void ResultTable::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setText(selectionAsText());
    else
        QTableView::keyPressEvent(event);
}

void ResultTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitRows();
}

void ResultTable::contextMenuEvent(QContextMenuEvent *event)
{
    auto *const menu = new QMenu(this); // deletes itself
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->popup(event->globalPos());
}

/// As high as a line and its margins; the style's own rows are too high for many.
void ResultTable::fitRows()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargins);
    horizontalHeader()->setFixedHeight(fontMetrics().height() + rowMargins);
}

void ResultTable::resizeColumns()
{
    for (int column = 0; column < ResultModel::ColumnCount; ++column) {
        const int extra = column == ResultModel::State   ? signSize(fontMetrics())
                          : column == ResultModel::Saved ? ResultCell::barWidth(fontMetrics()) + padding
                                                         : 0;
        const int width = letters.at(static_cast<std::size_t>(column)) * fontMetrics().averageCharWidth();
        setColumnWidth(column, width + extra + 2 * padding);
    }
    horizontalHeader()->setStretchLastSection(true); // from its least width on
}

/// As long as the window has the width that it opens with, only what it has room for.
void ResultTable::showEvent(QShowEvent *event)
{
    QTableView::showEvent(event);
    if (std::exchange(m_wasShown, true))
        return;
    int needed = 0;
    for (int column = 0; column < ResultModel::ColumnCount; ++column)
        needed += m_model.isEmptyColumn(column) ? 0 : columnWidth(column);
    for (auto column = firstToGo.begin(); column != firstToGo.end() && needed > viewport()->width();
         ++column) {
        needed -= m_model.isEmptyColumn(*column) ? 0 : columnWidth(*column);
        m_isWanted[*column] = false;
    }
    const int tooWide = std::max(0, needed - viewport()->width());
    setColumnWidth(ResultModel::Message, columnWidth(ResultModel::Message) - tooWide);
    updateColumns();
}

void ResultTable::showColumnMenu(QPoint at)
{
    auto *const menu = new QMenu(this); // deletes itself
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int column = 0; column < ResultModel::ColumnCount; ++column) {
        QAction *const item =
            menu->addAction(m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        item->setCheckable(true);
        item->setChecked(m_isWanted[static_cast<std::size_t>(column)]);
        item->setEnabled(column != ResultModel::Name);
        connect(item, &QAction::toggled, this, [this, column](bool isWanted) {
            m_isWanted[static_cast<std::size_t>(column)] = isWanted;
            updateColumns();
        });
    }
    menu->popup(at);
}

} // namespace brevant
