// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/GitIgnored.h"
#include "cli/Globs.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace brevant {

class SettingsStore;
struct CommandLine;

/// Which files and folders are left out, by their paths alone: by --exclude, --include and --gitignore, and,
/// without --all, folders that hold no sources of one's own.
///
/// Patterns count from the working folder, those of a project file from its folder, and for what is not below
/// that from the path of the command line.
class PathRules final {
public:
    PathRules(const CommandLine &line, const SettingsStore &settings);

    /// Asks git about the paths of the command line, which are absolute, if that is wanted. Returns why it
    /// cannot tell, in words; empty if it can.
    [[nodiscard]] QString askGit(const QStringList &paths);

    /// Turns to one of these paths: all others count from it from here on. False if it is left out itself.
    [[nodiscard]] bool turnTo(const QString &top);

    /// Whether a file is taken; an empty path is the top itself.
    [[nodiscard]] bool takesFile(const QString &relativePath);

    /// Whether a folder below the top is walked.
    [[nodiscard]] bool takesFolder(const QString &relativePath);

    /// What git could not tell about a repository that was found on the way; empty if nothing.
    [[nodiscard]] const QString &error() const { return m_error; }

    /// The options and folders that have left something out, each in words.
    [[nodiscard]] QStringList reasons() const;

private:
    /// Patterns, and paths as they see them.
    struct Patterns {
        const GlobList &exclude;
        const GlobList &include;
        QString folder; ///< they count from there; with "/" at its end
        QString top{};
        QByteArray topPattern{}; ///< the top as they see it; empty for where they count from

        void turnTo(const QString &newTop);
        [[nodiscard]] bool excludesTop() const;
        [[nodiscard]] bool excludes(const QString &relativePath, bool isFolder) const;
        [[nodiscard]] bool includes(const QString &relativePath) const;
        [[nodiscard]] QByteArray pathOf(const QString &relativePath) const;
    };

    [[nodiscard]] bool isLeftOutByDefault(const QString &relativePath) const;
    [[nodiscard]] bool isExcluded(const QString &relativePath, bool isFolder) const;
    [[nodiscard]] QString absolutePath(const QString &relativePath) const;

    const CommandLine &m_line;
    std::vector<Patterns> m_patterns; ///< of the command line, and of a project file
    const QByteArray m_outputFolder;  ///< without links; empty for none
    GitIgnored m_ignored;
    QString m_top;
    QString m_outputFolderBelow; ///< relative to the top; empty if it is not below it
    QString m_error;
    bool m_hasExcluded = false;
    bool m_hasLeftOutFolders = false;
};

} // namespace brevant
