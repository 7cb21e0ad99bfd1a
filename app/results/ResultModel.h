// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <QAbstractTableModel>

#include <compare>
#include <memory>
#include <optional>
#include <vector>

namespace brevant {

class ResultRuns;

/// What became of the files of one run, as a table that can be sorted and filtered. It does both itself:
/// among 100,000 rows a proxy takes seconds to hide every other one.
class ResultModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { State, Name, Folder, Before, After, Saved, Gzip, Brotli, Time, Message, ColumnCount };

    /// Which states are shown.
    enum class Shown { All, Done, Failed, PutBack, Skipped, NotRun, Warned };

    /// `runs` tell of their changes, and must outlive the model.
    explicit ResultModel(const ResultRuns &runs, QObject *parent = nullptr);

    /// Shows that run, sorted and filtered as the one before.
    void setRun(std::shared_ptr<const RunRecord> run);
    [[nodiscard]] const std::shared_ptr<const RunRecord> &run() const { return m_run; }

    /// Shows only rows in those states, and with `text` in name, folder or message, the case ignored.
    void setFilter(Shown shown, const QString &text);

    /// By a column, or by the list's order for -1. Equal rows keep the list's order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// The file that a row shows.
    [[nodiscard]] const ResultRow &at(int row) const;

    /// The place in the run's list of the file that a row shows, and the row of a place; -1 if it is hidden.
    [[nodiscard]] int recordAt(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
    [[nodiscard]] int rowOf(int record) const;

    /// Whether no row of the run has anything to show in that column.
    [[nodiscard]] bool isEmptyColumn(int column) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What a row shows in a column; a dash where there is nothing.
    [[nodiscard]] static QString text(const ResultRow &row, int column);

    /// How far a row counts as one of those.
    [[nodiscard]] static bool isShown(Shown shown, ResultRow::State state);

private:
    /// What a row is sorted by.
    struct Key {
        double number = 0;
        QString text = {};
        std::partial_ordering operator<=>(const Key &) const = default;
    };
    [[nodiscard]] Key keyOf(int record) const;
    [[nodiscard]] bool isAccepted(const ResultRow &row) const;
    [[nodiscard]] std::vector<int> accepted() const;
    void sortRecords(std::vector<int> &records) const;
    [[nodiscard]] int placeOf(int record) const;
    void insert(int record);
    void changeRow(int record);

    std::shared_ptr<const RunRecord> m_run;
    std::vector<int> m_shown; ///< for each row, the row of the run
    Shown m_which = Shown::All;
    QString m_text;
    int m_column = -1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

} // namespace brevant
