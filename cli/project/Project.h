// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Globs.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace brevant {

/// What a project file says, or one of its profiles, where it says something. Paths are absolute.
struct ProjectValues {
    struct Patterns {
        GlobList globs;
        QStringList texts; ///< of the same
    };

    /// Settings for the files that match.
    struct Override {
        Patterns files;
        QJsonObject settings;
        QString name; ///< "overrides, 2" or "profile release, overrides, 1"
    };

    std::optional<QStringList> paths;
    std::optional<Patterns> exclude;
    std::optional<Patterns> include;
    std::optional<QStringList> also; ///< extensions of extra kinds
    std::optional<QString> outDir;
    std::optional<bool> gitignore;
    std::optional<bool> sort;
    std::optional<bool> copyRest;
    std::optional<bool> keepTimes;
    QJsonObject settings;
    std::vector<Override> overrides; ///< later ones win
};

/// A project file, read.
struct Project {
    QString file;   ///< empty for none
    QString folder; ///< it is in; all paths and patterns count from there
    ProjectValues values;
    std::map<QString, ProjectValues> profiles;
    QString error; ///< why it cannot be used, in words; empty if it can
};

/// Reads the text of a project file. `file` is its path, in the folder to which it is bound: the disk is
/// asked where folders and files that it names lie.
[[nodiscard]] Project readProject(const QString &file, const QByteArray &bytes);

} // namespace brevant
