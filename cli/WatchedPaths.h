// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FolderWatch.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>

namespace brevant {

class ChangedPaths;
struct CommandLine;

/// The paths of a command line while they are watched: what changes at and below them, also when they go and
/// come back, and when more changes than the system keeps.
class WatchedPaths final {
public:
    explicit WatchedPaths(const CommandLine &line);

    /// Those in which changes are seen.
    [[nodiscard]] FolderWatch &folders() { return m_folders; }
    [[nodiscard]] const FolderWatch &folders() const { return m_folders; }

    /// Sees to it that also a change of the project file and the end of the working folder are noticed.
    void watchAround();

    using Interest = std::function<bool(const QString &file)>;

    /// Waits for changes of files that are of interest, and of folders, until there have been none for a
    /// moment. False if a stop is asked for. `interest` is called whenever there is something to be looked
    /// at, as the settings may be others by then. A project file that has changed is named on standard error.
    [[nodiscard]] bool collect(ChangedPaths &changed, const std::function<Interest()> &interest);

    /// Sees to it that those of the paths that are gone are noticed when they come back, and says so.
    void await(const ChangedPaths &changed);

    /// Since when changes may have been lost, nanoseconds since 1970; told once.
    [[nodiscard]] std::optional<qint64> takeLostSince() { return std::exchange(m_lostSince, std::nullopt); }

private:
    [[nodiscard]] bool readEvents(ChangedPaths &changed, const Interest &isOfInterest);
    [[nodiscard]] bool concerns(const FolderEvent &event) const;

    void returnToWorkingFolder() const;

    FolderWatch m_folders;
    const QString m_workingFolder;
    QStringList m_tops;                ///< the paths, absolute
    QSet<QString> m_missing;           ///< those of them that are not there
    QString m_projectFile;             ///< empty for none
    qint64 m_lastRead = 0;             ///< when all changes were known last; nanoseconds since 1970
    std::optional<qint64> m_lostSince; ///< from then on changes may have been lost
};

} // namespace brevant
