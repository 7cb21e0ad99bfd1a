// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"
#include "app/results/SortedRows.h"

#include <memory>

namespace brevant {

class ResultRuns;

/// What became of the files of one run, as a table that can be sorted and filtered.
class ResultModel final : public SortedRows {
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

    /// The file that a row shows.
    [[nodiscard]] const ResultRow &at(int row) const;

    /// Whether no row of the run has anything to show in that column.
    [[nodiscard]] bool isEmptyColumn(int column) const;

    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What a row shows in a column; a dash where there is nothing.
    [[nodiscard]] static QString text(const ResultRow &row, int column);

    /// How far a row counts as one of those.
    [[nodiscard]] static bool isShown(Shown shown, ResultRow::State state);

private:
    [[nodiscard]] int recordCount() const override;
    [[nodiscard]] Key keyOf(int record, int column) const override;
    [[nodiscard]] bool isAccepted(int record) const override;

    std::shared_ptr<const RunRecord> m_run;
    Shown m_which = Shown::All;
    QString m_text;
};

} // namespace brevant
