// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QHash>

#include <mutex>
#include <optional>
#include <vector>

namespace brevant {

class SettingsStore;

/// The ordered list of the files to minify; row N of the window's list is entry N.
///
/// An entry is a path exactly as it was delivered. No two entries have the same text. Each operation on
/// entries is safe from any thread by itself; what is true between two of them, only the caller can know.
///
/// As a model it belongs to the thread of the window. The number of rows is that of the entries at the last
/// reload(), so that a view stays consistent while the entries change; what a row shows is looked up each
/// time, and a row whose entry is gone is empty.
class FileQueue final : public QAbstractListModel {
    Q_OBJECT

public:
    [[nodiscard]] int count() const;
    [[nodiscard]] bool isEmpty() const { return count() == 0; }

    /// The entry at `index`, or nothing if there is none (any more).
    [[nodiscard]] std::optional<QString> entryAt(int index) const;

    /// The index of the entry equal to `path`, or -1. Constant time.
    [[nodiscard]] int indexOf(const QString &path) const;

    /// All entries as they stand.
    [[nodiscard]] std::vector<QString> entries() const;

    /// Another number after every change.
    [[nodiscard]] quint64 revision() const;

    /// Appends `path` at the end unless an equal entry is there; returns whether it did. Constant time.
    bool append(const QString &path);

    /// Removes the entries at `indexes`, in any order, in one operation; indexes out of range are passed
    /// over.
    void removeAt(const std::vector<int> &indexes);

    void clear();

    /// Brings the rows up to date with the entries. Returns, for each row before, the row that holds its
    /// entry now, or -1 if it is gone; nothing if every row before is where it was, and then only rows at the
    /// end may have been added.
    std::vector<int> reload();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;

    /// The path as it is (display), as "name, folder" (accessible text), or as a tool tip in which nothing is
    /// taken for markup.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

private:
    [[nodiscard]] quint32 keyOf(const QString &path) const;

    mutable std::mutex m_mutex; ///< of all but m_rows
    std::vector<QString> m_entries;
    QHash<quint32, int> m_indexes; ///< by 32 bits of the hash of the entry, or the next number that was free
    quint64 m_revision = 1;
    std::vector<QString> m_rows; ///< the entries at the last reload, to follow each one to its new row
};

/// A text as a tool tip in which nothing is taken for markup.
[[nodiscard]] QString toolTipOf(const QString &text);

/// Adds one path that was dropped, chosen, opened or typed.
///
/// If it is a folder, every accepted entry below it, at any depth, hidden ones included, in the order the
/// file system gives; folders are tested by their names like files, and symbolic links to folders are tested
/// and not followed. Then the path itself, if it is accepted. What cannot be read or vanishes is passed over.
void addTopLevelPath(const QString &path, FileQueue &queue, const SettingsStore &settings);

} // namespace brevant
