// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Fills a queue from the paths of a command line: with what addTopLevelPath() would add, except for folders,
/// for files already there in another spelling, and for outputs of other files that are found.
class Listing final {
public:
    /// With `all`, outputs of other files are taken too.
    Listing(FileQueue &queue, const SettingsStore &settings, bool all)
        : m_queue(queue), m_settings(settings), m_all(all)
    {
    }

    /// Adds one absolute path, a file or a folder to be walked. The path itself is never passed over as an
    /// output.
    void add(const QString &path);

    /// The files passed over as outputs of others.
    [[nodiscard]] QStringList outputs() const;

    /// The folders passed over because they are named like files.
    [[nodiscard]] const QStringList &folders() const { return m_folders; }

    /// The files in the queue whose paths hold RawBytes, so that they cannot be minified.
    [[nodiscard]] const QStringList &unnameable() const { return m_unnameable; }

    /// The folders that could not be read, each with the reason.
    [[nodiscard]] const QStringList &unreadable() const { return m_unreadable; }

private:
    /// Whether the path is accepted. A folder is not, and is noted.
    [[nodiscard]] bool isListed(const QString &path);
    void append(const QString &file);

    FileQueue &m_queue;
    const SettingsStore &m_settings;
    const bool m_all;
    QSet<QString> m_taken; ///< marks of the files in the queue
    QStringList m_outputs;
    QStringList m_folders;
    QStringList m_unnameable;
    QStringList m_unreadable;
};

} // namespace brevant
