// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace brevant {

class FileQueue;
class SettingsStore;
struct CommandLine;

/// Fills a queue from the paths of a command line: with what addTopLevelPath() would add, except for folders,
/// for files already there in another spelling, and for outputs of other files that are found.
class Listing final {
public:
    Listing(FileQueue &queue, const SettingsStore &settings, const CommandLine &line)
        : m_queue(queue), m_settings(settings), m_line(line)
    {
    }

    /// Adds one absolute path, a file or a folder to be walked. The path itself is never passed over as an
    /// output.
    void add(const QString &path);

    /// Says on standard error what was found but left out of the queue, or out of --list.
    void printWhatIsMissing() const;

    /// Whether every folder could be read and every file can be minified.
    [[nodiscard]] bool isComplete() const { return m_unreadable.isEmpty() && m_unnameable.isEmpty(); }

private:
    /// Whether the path is accepted. A folder is not, and is noted.
    [[nodiscard]] bool isListed(const QString &path);
    void append(const QString &file);
    [[nodiscard]] QStringList passedOver() const;

    FileQueue &m_queue;
    const SettingsStore &m_settings;
    const CommandLine &m_line;
    QSet<QString> m_taken;    ///< marks of the files in the queue
    QStringList m_outputs;    ///< files passed over as outputs of others
    QStringList m_folders;    ///< passed over because they are named like files
    QStringList m_unnameable; ///< files in the queue that cannot be minified, as their paths hold RawBytes
    QStringList m_unreadable; ///< folders, each with the reason, in words
};

} // namespace brevant
