// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <compare>
#include <vector>

namespace brevant {

/// The rows of a table that are shown, in the order that was asked for; the records that they show are those
/// of a model made from this. It sorts and filters itself: among 100,000 rows a proxy takes seconds to hide
/// every other one.
class SortedRows : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// By a column, or by the records' own order for -1. Equal rows keep that order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// The record that a row shows, and the row of a record; -1 if it is hidden.
    [[nodiscard]] int recordAt(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
    [[nodiscard]] int rowOf(int record) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;

protected:
    /// What a row is sorted by.
    struct Key {
        double number = 0;
        QString text = {};
        // NOLINTNEXTLINE(modernize-use-nullptr): it takes the 0 in the generated code for a pointer
        std::partial_ordering operator<=>(const Key &) const = default;
    };
    [[nodiscard]] virtual int recordCount() const = 0;
    [[nodiscard]] virtual Key keyOf(int record, int column) const = 0;
    [[nodiscard]] virtual bool isAccepted(int record) const = 0;

    /// Looks through all records anew. Between begin- and endResetModel().
    void findShown();

    /// To be called when one record has been added at the end, or changed.
    void addRecord(int record);
    void changeRecord(int record);

private:
    void sortRecords(std::vector<int> &records) const;
    [[nodiscard]] int placeOf(int record) const;
    void moveRow(int row);

    std::vector<int> m_shown; ///< for each row, its record
    int m_column = -1;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};

} // namespace brevant
