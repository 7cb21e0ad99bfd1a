// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <array>
#include <utility>
#include <vector>

namespace brevant {

/// What a user of the terminal asked for.
struct CommandLine {
    enum class Action { Minify, List, DryRun, Help, Version };

    Action action = Action::Minify;
    QStringList paths;
    std::vector<std::pair<QLatin1StringView, QJsonValue>> settings; ///< --set, in their order
    QString settingsFile;                                           ///< empty for the user's own
    QString reportFile;                                             ///< empty for none
    int jobs = 1;                                                   ///< compressors at once
    bool all = false;                                               ///< take outputs of other files too
    bool quiet = false;
    QString error; ///< what is wrong with the arguments, in words; empty if nothing is
};

/// Parses the arguments, without the program's own name. Touches no file.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);

/// An option as --help shows it.
struct OptionHelp {
    QLatin1StringView usage; ///< with its value: "--jobs N"
    QLatin1StringView meaning;
};

/// In the order of the help text.
inline constexpr std::array<OptionHelp, 10> allOptions{{
    {QLatin1StringView("--set KEY=VALUE"), QLatin1StringView("a setting for this run only; repeatable")},
    {QLatin1StringView("--settings FILE"),
     QLatin1StringView("read the settings from FILE, not the user's own")},
    {QLatin1StringView("--jobs N"), QLatin1StringView("run up to N compressors at once")},
    {QLatin1StringView("--all"), QLatin1StringView("take outputs of other files in folders too")},
    {QLatin1StringView("--list"), QLatin1StringView("print each file and its output, run nothing")},
    {QLatin1StringView("--dry-run"), QLatin1StringView("print each command line, run nothing")},
    {QLatin1StringView("--report FILE"), QLatin1StringView("write a JSON report of the run to FILE")},
    {QLatin1StringView("--quiet"), QLatin1StringView("print failures only")},
    {QLatin1StringView("--version"), QLatin1StringView("print the version")},
    {QLatin1StringView("--help"), QLatin1StringView("print this help")},
}};

[[nodiscard]] QString helpText();
[[nodiscard]] QString versionText();

} // namespace brevant
