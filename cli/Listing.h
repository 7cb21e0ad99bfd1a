// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Brings the paths of a command line into a queue: what addTopLevelPath() would add, but folders, a file
/// that is there in another spelling, and what other files that are found are minified into.
class Listing final {
public:
    /// With `all`, outputs of other files are taken too.
    Listing(FileQueue &queue, const SettingsStore &settings, bool all)
        : m_queue(queue), m_settings(settings), m_all(all)
    {
    }

    /// Adds one absolute path, a file or a folder to be walked. What is named here itself is not passed over
    /// as an output.
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
    /// Whether that is accepted and no folder, which is noted.
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
