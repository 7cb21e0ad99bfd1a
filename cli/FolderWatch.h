// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <cstdint>
#include <functional>

struct inotify_event;

namespace brevant {

/// What has happened at a path in a watched folder, or to such a folder itself.
struct FolderEvent {
    QString path;
    bool isFolder = false;
};

/// Tells what changes in folders, by inotify(7), each watched without those below it: files that have been
/// written and closed, and names that have come or gone. Paths may hold RawBytes.
class FolderWatch final {
public:
    FolderWatch() { start(); }

    /// Watches a folder, by the path that it is given first; for a file, that which it is in. One that is
    /// gone or cannot be read is passed over, as is any once there is an error.
    void add(const QString &folder);

    /// The same for what comes and goes there alone: it does not count for watches().
    void addForNames(const QString &folder);

    /// The same for what goes there alone.
    void addForEnds(const QString &folder);

    /// To be waited for with poll(2): readable when something has changed.
    [[nodiscard]] int descriptor() const { return m_queue.number(); }

    /// Tells what has changed since the last call. Does not wait. Folders that are gone or have been moved
    /// away are not watched any more. False if there was more than the system keeps: everything may have
    /// changed, and nothing is watched any more.
    [[nodiscard]] bool read(const std::function<void(const FolderEvent &)> &tell);

    [[nodiscard]] qsizetype count() const { return m_folders.size(); }

    /// Whether the files of that folder are watched, by whatever path.
    [[nodiscard]] bool watches(const QString &folder) const;

    /// Why folders cannot be watched, in words, with the way out; empty if they can.
    [[nodiscard]] const QString &error() const { return m_error; }

private:
    void start();
    void addForNames(const QString &folder, std::uint32_t events);
    [[nodiscard]] int watch(const QString &folder, std::uint32_t events);
    void removeBelow(const QString &folder);
    void take(const inotify_event &event, const std::function<void(const FolderEvent &)> &tell);

    Descriptor m_queue;
    QHash<int, QString> m_folders; ///< by their watch descriptors
    QSet<int> m_forNames;
    QString m_error;
};

} // namespace brevant
