// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <vector>

namespace brevant {

class FileQueue;

/// The file queue as the rows of a table with one column.
///
/// The number of rows is the queue's count at the last reload(), so the table stays consistent while the
/// queue changes; what a row shows is read from the queue each time, and a row whose entry is gone is empty.
class FilesTableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// `queue` must outlive the model.
    explicit FilesTableModel(const FileQueue &queue, QObject *parent = nullptr);

    /// Brings the rows up to date with the queue. Returns, for each row before, the row that holds its entry
    /// now, or -1 if it is gone; nothing if every row before is where it was, and then only rows at the end
    /// may have been added.
    std::vector<int> reload();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;

    /// The path as it is (display), as "name, folder" (accessible text), or as a tool tip in which nothing is
    /// taken for markup.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

private:
    const FileQueue &m_queue;
    std::vector<QString> m_entries; ///< at the last reload, to follow each one to its new row
};

} // namespace brevant
