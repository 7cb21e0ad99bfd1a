// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultModel.h"

#include "app/results/ResultRuns.h"
#include "app/results/StateCell.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using RowState = ResultRow::State;

const QString dash = QStringLiteral("–");

bool isNumber(int column)
{
    return column >= ResultModel::Before && column <= ResultModel::Time;
}

/// Numbers are flush right in windows that are read from right to left, too.
QVariant alignment(bool isForNumber)
{
    return QVariant(Qt::AlignVCenter | (isForNumber ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeading));
}

} // namespace

ResultModel::ResultModel(const ResultRuns &runs, QObject *parent) : SortedRows(parent)
{
    connect(&runs, &ResultRuns::rowAdded, this, [this](int run, int row) {
        if (m_run && m_run->number == run)
            addRecord(row);
    });
    connect(&runs, &ResultRuns::rowChanged, this, [this](int run, int row) {
        if (m_run && m_run->number == run)
            changeRecord(row);
    });
}

void ResultModel::setRun(std::shared_ptr<const RunRecord> run)
{
    beginResetModel();
    m_run = std::move(run);
    findShown();
    endResetModel();
}

void ResultModel::setFilter(Shown shown, const QString &text)
{
    if (shown == m_which && text == m_text)
        return;
    beginResetModel();
    m_which = shown;
    m_text = text;
    findShown();
    endResetModel();
}

const ResultRow &ResultModel::at(int row) const
{
    return m_run->rows[static_cast<std::size_t>(recordAt(row))];
}

bool ResultModel::isEmptyColumn(int column) const
{
    if (column != Gzip && column != Brotli)
        return false;
    const auto size = column == Gzip ? &ResultRow::gzipSize : &ResultRow::brotliSize;
    return !m_run || std::ranges::all_of(
                         m_run->rows, [](qint64 found) { return found == ResultRow::noSize; }, size);
}

int ResultModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ResultModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const ResultRow &row = at(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::ToolTipRole:
        if (column == Name || column == Folder)
            return toolTipOf(printable(row.source));
        return column == Message ? toolTipOf(messageText(row)) : QVariant();
    case Qt::TextAlignmentRole:
        return alignment(isNumber(column));
    case StateRole:
        return column == State ? QVariant(static_cast<int>(row.state)) : QVariant();
    case MutedRole:
        return column == Folder || text(row, column) == dash;
    case PathRole:
        return column == Folder;
    default:
        return {};
    }
}

QVariant ResultModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignment(section != Saved && isNumber(section));
    if (role != Qt::DisplayRole)
        return {};
    const std::array<QString, ColumnCount> titles{tr("State"), tr("Name"),   tr("Folder"), tr("Before"),
                                                  tr("After"), tr("Saved"),  tr("gzip"),   tr("Brotli"),
                                                  tr("Time"),  tr("Message")};
    return titles.at(static_cast<std::size_t>(section));
}

QString ResultModel::text(const ResultRow &row, int column)
{
    switch (column) {
    case State:
        return stateText(row.state);
    case Name:
        return row.source.isEmpty() ? dash : printable(PathString::lastComponent(row.source).toString());
    case Folder:
        return row.source.isEmpty() ? dash : folderText(row.source);
    case Before:
        return sizeOrDash(row.sizeBefore);
    case After:
        return sizeOrDash(row.isMinified() ? row.sizeAfter : ResultRow::noSize);
    case Saved:
        return savedText(row);
    case Gzip:
        return sizeOrDash(row.gzipSize);
    case Brotli:
        return sizeOrDash(row.brotliSize);
    case Time:
        return secondsText(row.seconds);
    case Message:
        return messageText(row);
    default:
        return {};
    }
}

bool ResultModel::isShown(Shown shown, RowState state)
{
    switch (shown) {
    case Shown::All:
        return true;
    case Shown::Done:
        return state == RowState::Done || state == RowState::Warned;
    case Shown::Failed:
        return state == RowState::Failed;
    case Shown::PutBack:
        return state == RowState::PutBack;
    case Shown::Skipped:
        return state == RowState::Skipped;
    case Shown::NotRun:
        return state == RowState::NotRun;
    case Shown::Warned:
        return state == RowState::Warned;
    }
    Q_UNREACHABLE();
}

ResultModel::Key ResultModel::keyOf(int record, int column) const
{
    const ResultRow &row = m_run->rows[static_cast<std::size_t>(record)];
    switch (column) {
    case State:
        return {.number = static_cast<double>(row.state)};
    case Name:
        return {.text = PathString::lastComponent(row.source).toString().toCaseFolded()};
    case Folder:
        return {.text = PathString::folder(row.source).toString().toCaseFolded()};
    case Before:
        return {.number = static_cast<double>(row.sizeBefore)};
    case After:
        return {.number = static_cast<double>(row.isMinified() ? row.sizeAfter : ResultRow::noSize)};
    case Saved:
        return {.number = row.savedPart().value_or(-std::numeric_limits<double>::infinity())};
    case Gzip:
        return {.number = static_cast<double>(row.gzipSize)};
    case Brotli:
        return {.number = static_cast<double>(row.brotliSize)};
    case Time:
        return {.number = row.seconds};
    case Message:
        return {.text = messageText(row).toCaseFolded()};
    default:
        return {};
    }
}

int ResultModel::recordCount() const
{
    return m_run ? static_cast<int>(m_run->rows.size()) : 0;
}

bool ResultModel::isAccepted(int record) const
{
    const ResultRow &row = m_run->rows[static_cast<std::size_t>(record)];
    return isShown(m_which, row.state) &&
           (m_text.isEmpty() || row.source.contains(m_text, Qt::CaseInsensitive) ||
            (row.remarks && messageText(row).contains(m_text, Qt::CaseInsensitive)));
}

} // namespace brevant
