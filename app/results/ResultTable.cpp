// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultTable.h"

#include "app/results/ResultCell.h"
#include "app/results/Signs.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// How wide a column is at first, in letters; for numbers, digits.
constexpr std::array<int, ResultModel::ColumnCount> letters{9, 23, 16, 10, 10, 8, 10, 10, 7, 26};

/// The columns in the order in which they are given up where there is no room.
constexpr std::array firstToGo{ResultModel::Brotli, ResultModel::Gzip,   ResultModel::Time,
                               ResultModel::After,  ResultModel::Before, ResultModel::Folder};

} // namespace

ResultTable::ResultTable(ResultModel &model, QWidget *parent)
    : StateTable(model, parent), m_model(model), m_isWanted(ResultModel::ColumnCount, true)
{
    setAccessibleName(tr("Results"));
    setItemDelegate(new ResultCell(model, this)); // a child of this
    connect(this, &QTableView::doubleClicked, this, &ResultTable::sourceRequested);
    QHeaderView &header = *horizontalHeader();
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QHeaderView::sectionClicked, this, [this] { m_isSortedByUser = true; });
    connect(&header, &QHeaderView::customContextMenuRequested, this,
            [this, &header](QPoint at) { showColumnMenu(header.viewport()->mapToGlobal(at)); });
    resizeColumns();
}

void ResultTable::endRun()
{
    if (!m_isSortedByUser)
        horizontalHeader()->setSortIndicator(ResultModel::State, Qt::AscendingOrder);
    if (!selectionModel()->hasSelection())
        selectFirst();
}

/// The first file that was not minified or, if all were, the first of all.
void ResultTable::selectFirst()
{
    int row = 0;
    while (row < m_model.rowCount() && m_model.at(row).isMinified())
        ++row;
    if (m_model.rowCount() > 0)
        selectFile(row < m_model.rowCount() ? row : 0);
}

void ResultTable::showRun(std::shared_ptr<const RunRecord> run)
{
    if (!m_isSortedByUser)
        horizontalHeader()->setSortIndicator(run && !run->isRunning ? ResultModel::State : -1,
                                             Qt::AscendingOrder);
    m_model.setRun(std::move(run));
    updateColumns();
    if (m_model.run() && !m_model.run()->isRunning)
        selectFirst();
    Q_EMIT currentFileChanged();
}

void ResultTable::setFilter(ResultModel::Shown shown, const QString &text)
{
    const int record = currentRecord();
    m_model.setFilter(shown, text);
    if (const int row = m_model.rowOf(record); row >= 0)
        selectFile(row);
    scrollTo(currentIndex());
    Q_EMIT currentFileChanged();
}

const ResultRow *ResultTable::currentFile() const
{
    return currentRecord() < 0 ? nullptr : &m_model.at(currentIndex().row());
}

void ResultTable::updateColumns()
{
    for (int column = 0; column < ResultModel::ColumnCount; ++column)
        setColumnHidden(column,
                        !m_isWanted[static_cast<std::size_t>(column)] || m_model.isEmptyColumn(column));
}

void ResultTable::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        Q_EMIT sourceRequested();
    else
        StateTable::keyPressEvent(event);
}

void ResultTable::resizeColumns()
{
    for (int column = 0; column < ResultModel::ColumnCount; ++column) {
        const int extra = column == ResultModel::State ? signSize(fontMetrics())
                          : column == ResultModel::Saved
                              ? ResultCell::barWidth(fontMetrics()) + StateCell::padding
                              : 0;
        setColumnLetters(column, letters.at(static_cast<std::size_t>(column)), extra);
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
