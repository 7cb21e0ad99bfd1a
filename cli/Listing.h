// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FileCopies.h"
#include "cli/OutTree.h"
#include "cli/PathRules.h"
#include "cli/TakenFiles.h"
#include "queue/FileKind.h"
#include "queue/FolderWalk.h"
#include "settings/EntrySettings.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

namespace brevant {

class ChangedPaths;
class FileQueue;
struct CommandLine;

/// Fills a queue from the paths of a command line: with what addTopLevelPath() would add, except for folders,
/// for files already there in another spelling, for outputs of other files that are found, and for what the
/// rules of the command line leave out.
class Listing final {
public:
    Listing(FileQueue &queue, const EntrySettings &settings, const CommandLine &line);

    /// Fills the queue. The paths themselves are never passed over as outputs. Returns why that is not
    /// possible, in words; empty if it is.
    [[nodiscard]] QString fill();

    /// What --copy-rest copies.
    [[nodiscard]] const std::vector<FileCopy> &copies() const { return m_copies; }

    /// Looks only at what has changed. Which files are taken is decided as for all.
    void lookOnlyAt(const ChangedPaths &changed) { m_changed = &changed; }

    /// Told of each folder before it is read.
    void setFolderSeen(std::function<void(const QString &folder)> seen) { m_folderSeen = std::move(seen); }

    /// Says on standard error what was found but left out of the queue, or out of --list.
    void printWhatIsMissing() const;

    /// Whether every folder could be read and every file can be minified.
    [[nodiscard]] bool isComplete() const { return m_unreadable.isEmpty() && m_unnameable.isEmpty(); }

private:
    void add(const QString &path);
    [[nodiscard]] QStringList filesBelow(const QString &top, RestOfTree &rest);
    void addCopies(const RestOfTree &rest);
    void takeShardOfCopies();
    void walk(const QString &top, const QString &folder, QStringList &found, RestOfTree &rest);
    [[nodiscard]] bool isReached(const QString &top, const QString &folder);
    [[nodiscard]] bool isChanged(const QString &path) const;

    /// Whether the path, relative to `top`, is accepted. A folder is not, and is noted.
    [[nodiscard]] bool isListed(const QString &top, const QString &relativePath, EntryType type);
    [[nodiscard]] bool isRest(const QString &top, const QString &relativePath, EntryType type);
    void append(const QString &file);
    [[nodiscard]] QStringList passedOver() const;
    [[nodiscard]] QString whyNothingIsListed() const;

    FileQueue &m_queue;
    const EntrySettings m_settings;
    const CommandLine &m_line;
    const AcceptedKinds m_kinds;
    PathRules m_rules;
    const ChangedPaths *m_changed = nullptr; ///< null for everything
    std::function<void(const QString &)> m_folderSeen;
    const OutTree m_tree;
    std::vector<FileCopy> m_copies;
    QStringList m_linksPassedOver; ///< which lead to nothing that is copied
    std::vector<QString> m_files;  ///< those found so far
    TakenFiles m_taken;            ///< the same, and what is copied
    QStringList m_outputs;         ///< files passed over as outputs of others
    QStringList m_folders;         ///< passed over because they are named like files
    QStringList m_unnameable; ///< files in the queue that cannot be minified, as their paths hold RawBytes
    QStringList m_unreadable; ///< folders, each with the reason, in words
};

} // namespace brevant
