// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "queue/FolderWalk.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <utility>
#include <vector>

namespace brevant {

class Colours;
class Descriptor;
class DurableFile;
class OutTree;

/// A file that is copied as it is.
struct FileCopy {
    QString found;  ///< as it is named
    QString source; ///< what it leads to, where it is a symbolic link; else the same
    QString target;
};

/// Collects what --copy-rest copies of one path of the command line. A symbolic link is copied as the file
/// that it leads to, if that is another file of the same tree that is copied or minified.
class RestOfTree final {
public:
    explicit RestOfTree(const QString &top) : m_top(top) {}

    /// Takes a file that is to be minified, relative to the top.
    void addMinified(const QString &relativePath) { m_taken.insert(relativePath); }

    /// Takes anything else. An empty path is the top itself.
    void add(const QString &relativePath, EntryType type);

    /// What is to be copied, with no target yet.
    [[nodiscard]] std::vector<FileCopy> copies() const;

    /// The symbolic links that are passed over.
    [[nodiscard]] QStringList passedOver() const;

private:
    [[nodiscard]] QString pathOf(const QString &relativePath) const;
    [[nodiscard]] QString sourceOfLink(const QString &relativePath) const;

    const QString m_top;
    QSet<QString> m_taken; ///< all files, whether minified or copied
    QStringList m_files;
    QStringList m_links;
};

/// Copies files into --out-dir, each in one durable step, with the permissions of the source. A file that is
/// there with the same content is left as it is.
class FileCopying final {
public:
    /// With `keepsTimes`, a copy has the time of its source.
    FileCopying(const OutTree &tree, bool keepsTimes) : m_tree(tree), m_keepsTimes(keepsTimes) {}

    /// Goes through all of them, or until a stop is asked for. Several at once wait less for the disk.
    void run(const std::vector<FileCopy> &copies, int atOnce, const std::atomic<Stop> &stop);

    [[nodiscard]] bool isAllDone() const { return m_failures.empty() && !m_isStopped; }
    [[nodiscard]] bool isStopped() const { return m_isStopped; }

    /// What has been done, in words: "3 copied, 12 unchanged".
    [[nodiscard]] QString inWords() const;

    /// One line for each file that could not be copied.
    [[nodiscard]] QString failures(const Colours &colours) const;

private:
    [[nodiscard]] QString makeCopy(const FileCopy &copy, const std::atomic<Stop> &stop);
    [[nodiscard]] QString fill(DurableFile &file, const Descriptor &source, const std::atomic<Stop> &stop);

    const OutTree &m_tree;
    const bool m_keepsTimes;
    std::atomic<int> m_copied = 0;
    std::atomic<int> m_unchanged = 0;
    std::atomic<bool> m_isStopped = false;
    std::vector<std::pair<QString, QString>> m_failures; ///< files, and why
};

} // namespace brevant
