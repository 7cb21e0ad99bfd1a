// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/SortedRows.h"
#include "engine/PlannedOutputs.h"

#include <optional>

namespace brevant {

/// What a run would do with each file, as a table that can be sorted and filtered.
class PlanModel final : public SortedRows {
    Q_OBJECT

public:
    enum Column { Row, State, Name, Folder, GoesTo, Problem, ColumnCount };

    using SortedRows::SortedRows;

    /// Replaces the files from row `first` on. `count`: how many there are in all. What was known of a file
    /// is kept for as long as nothing newer is.
    void setFiles(int first, std::vector<PlannedFile> files, int count);

    [[nodiscard]] const std::vector<PlannedFile> &files() const { return m_files; }

    /// Whether what is shown is no more what the sorting and the filter ask for.
    [[nodiscard]] bool isStale() const { return m_isStale; }

    /// Shows only files in that state, all for none, and with `text` in the paths or among the problems, the
    /// case ignored.
    void setFilter(std::optional<PlannedFile::State> state, const QString &text);

    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] int recordCount() const override { return static_cast<int>(m_files.size()); }
    [[nodiscard]] Key keyOf(int record, int column) const override;
    [[nodiscard]] bool isAccepted(int record) const override;
    [[nodiscard]] QString text(int record, int column) const;

    std::vector<PlannedFile> m_files;
    std::optional<PlannedFile::State> m_state;
    QString m_text;
    bool m_isInListOrder = true;
    bool m_isStale = false;
};

} // namespace brevant
