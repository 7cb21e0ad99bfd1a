// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Globs.h"
#include "cli/Shard.h"

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace brevant {

/// What a user of the terminal asked for.
struct CommandLine {
    enum class Action { Minify, MinifyText, List, DryRun, ShowSettings, Init, Help, Version };

    Action action = Action::Minify;
    QStringList paths;
    std::vector<std::pair<QLatin1StringView, QJsonValue>> settings; ///< in their order
    QStringList also;                                               ///< extensions of extra kinds
    QString textKind;     ///< of what standard input holds: the extension of such files; empty for no text
    QString settingsFile; ///< empty for the user's own
    QString reportFile;   ///< empty for none; "-" for standard output
    QString reportFormat = QStringLiteral("json");
    QString filesFrom;    ///< a list of paths; empty for none
    qsizetype listed = 0; ///< how many of `paths`, the last ones, are from that list
    QString outDir;       ///< with a tree of outputs; absolute, or empty for none
    GlobList exclude;
    GlobList include;        ///< empty for all
    QString profile;         ///< of the project file; empty for none
    QString projectFolder;   ///< with the project file; absolute, or empty for none
    GlobList projectExclude; ///< both count from that folder
    GlobList projectInclude;
    QStringList treeRoots; ///< count before `paths` for where files lie in outDir; absolute
    Shard shard;
    int jobs = 0;    ///< compressors at once; 0 for as many as suit them
    int timeout = 0; ///< seconds for each file; 0 for no limit
    bool failFast = false;
    bool watch = false;
    bool deleteOutputs = false; ///< of sources that go away while they are watched
    bool check = false;         ///< the results of the classic compressors
    bool all = false;           ///< take outputs of other files too, and search all folders
    bool changed = false;       ///< only files whose outputs are not up to date
    bool gitignore = false;
    bool copyRest = false;  ///< what is not minified, into outDir
    bool keepTimes = false; ///< of the sources, for their outputs
    bool sort = false;
    bool sourceMaps = false; ///< asked for by that option
    bool nulls = false;      ///< zero bytes, not line ends, end the paths in filesFrom
    bool print0 = false;     ///< and in what --list prints
    bool quiet = false;
    bool noProject = false;
    bool noUserSettings = false;
    QString error; ///< what is wrong with the arguments, in words; empty if nothing is
};

/// Parses the arguments, without the program's own name. Touches no file.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);

/// What is wrong if the paths so far are all; empty if nothing is.
[[nodiscard]] QString missingPathError(const CommandLine &line);

[[nodiscard]] QString helpText();
[[nodiscard]] QString versionText();

} // namespace brevant
