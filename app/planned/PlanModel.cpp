// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanModel.h"

#include "app/planned/PlanTexts.h"
#include "app/results/RunRecord.h"
#include "app/results/StateCell.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brevant {

void PlanModel::setFiles(int first, std::vector<PlannedFile> files, int count)
{
    const auto isKnown = [this](const PlannedFile &file, std::size_t row) {
        return !file.isChecked && row < m_files.size() && m_files[row].isChecked &&
               m_files[row].source == file.source && m_files[row].output == file.output;
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (const std::size_t row = static_cast<std::size_t>(first) + i; isKnown(files[i], row))
            files[i] = m_files[row];
    }
    if (std::cmp_not_equal(m_files.size(), count)) {
        beginResetModel();
        m_files.resize(static_cast<std::size_t>(count));
        std::ranges::move(files, m_files.begin() + first);
        findShown();
        endResetModel();
        return;
    }
    std::ranges::move(files, m_files.begin() + first);
    m_isStale = m_isStale || !m_isInListOrder || m_state || !m_text.isEmpty();
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void PlanModel::setFilter(std::optional<PlannedFile::State> state, const QString &text)
{
    if (state == m_state && text == m_text && !m_isStale)
        return;
    beginResetModel();
    m_state = state;
    m_text = text;
    m_isStale = false;
    findShown();
    endResetModel();
}

void PlanModel::sort(int column, Qt::SortOrder order)
{
    m_isInListOrder = column < 0 || (column == Row && order == Qt::AscendingOrder);
    SortedRows::sort(column, order);
}

int PlanModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString PlanModel::text(int record, int column) const
{
    const PlannedFile &file = m_files[static_cast<std::size_t>(record)];
    switch (column) {
    case Row:
        return QString::number(record + 1);
    case State:
        return stateText(file.state());
    case Name:
        return printable(PathString::lastComponent(file.source).toString());
    case Folder:
        return folderText(file.source);
    case GoesTo:
        return printable(PathString::withTilde(file.output));
    case Problem:
        return problemsText(file);
    default:
        return {};
    }
}

QVariant PlanModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int record = recordAt(index.row());
    const int column = index.column();
    const PlannedFile &file = m_files[static_cast<std::size_t>(record)];
    switch (role) {
    case Qt::DisplayRole:
        return text(record, column);
    case Qt::ToolTipRole:
        return column == Name || column == Folder ? toolTipOf(printable(file.source))
               : column == GoesTo                 ? toolTipOf(printable(file.output))
                                                  : toolTipOf(text(record, column));
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignVCenter |
                        (column == Row ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeading));
    case StateRole:
        return column == State ? QVariant(static_cast<int>(signOf(file.state()))) : QVariant();
    case MutedRole:
        return column == Row || column == Folder ||
               (column == Problem && std::ranges::all_of(file.problems, &PlannedProblem::isNote));
    case PathRole:
        return column == Folder || column == GoesTo;
    default:
        return {};
    }
}

QVariant PlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter |
                        (section == Row ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeading));
    if (role != Qt::DisplayRole)
        return {};
    const std::array<QString, ColumnCount> titles{tr("Row"),    tr("State"),   tr("Name"),
                                                  tr("Folder"), tr("Goes to"), tr("Problem")};
    return titles.at(static_cast<std::size_t>(section));
}

SortedRows::Key PlanModel::keyOf(int record, int column) const
{
    switch (column) {
    case Row:
        return {.number = static_cast<double>(record)};
    case State:
        return {.number = static_cast<double>(m_files[static_cast<std::size_t>(record)].state())};
    default:
        return {.text = text(record, column).toCaseFolded()};
    }
}

bool PlanModel::isAccepted(int record) const
{
    const PlannedFile &file = m_files[static_cast<std::size_t>(record)];
    return (!m_state || file.state() == *m_state) &&
           (m_text.isEmpty() || file.source.contains(m_text, Qt::CaseInsensitive) ||
            file.output.contains(m_text, Qt::CaseInsensitive) ||
            (!file.problems.empty() && problemsText(file).contains(m_text, Qt::CaseInsensitive)));
}

} // namespace brevant
