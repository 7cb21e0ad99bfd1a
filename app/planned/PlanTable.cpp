// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanTable.h"

#include "app/results/Signs.h"

#include <QHeaderView>

#include <algorithm>
#include <array>
#include <utility>

namespace brevant {

/// How wide a column is at first, in letters.
constexpr std::array<int, PlanModel::ColumnCount> columnLetters{6, 12, 24, 14, 33, 22};

PlanTable::PlanTable(PlanModel &model, QWidget *parent) : StateTable(model, parent), m_model(model)
{
    setAccessibleName(tr("Planned Outputs"));
    for (int column = 0; column < PlanModel::ColumnCount; ++column)
        setColumnLetters(column, columnLetters.at(static_cast<std::size_t>(column)),
                         column == PlanModel::State ? signSize(fontMetrics()) : 0);
    horizontalHeader()->setStretchLastSection(true); // from its least width on
    horizontalHeader()->setSortIndicator(PlanModel::Row, Qt::AscendingOrder);
}

/// Where there is no room for all, problems come before places.
void PlanTable::showEvent(QShowEvent *event)
{
    StateTable::showEvent(event);
    if (std::exchange(m_wasShown, true) || horizontalHeader()->length() <= viewport()->width())
        return;
    horizontalHeader()->moveSection(PlanModel::Problem, PlanModel::Folder);
}

void PlanTable::setFiles(int first, const std::vector<PlannedFile> &files, int count)
{
    const int before = currentRecord();
    const QString source = before < 0 ? QString() : m_model.files()[static_cast<std::size_t>(before)].source;
    m_model.setFiles(first, files, count);
    if (before < 0 || currentRecord() == before)
        return;
    const auto found = std::ranges::find(m_model.files(), source, &PlannedFile::source);
    if (found == m_model.files().end())
        return;
    if (const int row = m_model.rowOf(static_cast<int>(found - m_model.files().begin())); row >= 0)
        selectFile(row);
}

void PlanTable::setFilter(std::optional<PlannedFile::State> state, const QString &text)
{
    const int record = currentRecord();
    m_model.setFilter(state, text);
    if (const int row = m_model.rowOf(record); row >= 0 && currentRecord() != record)
        selectFile(row);
    scrollTo(currentIndex());
    Q_EMIT currentFileChanged();
}

} // namespace brevant
