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
    QStringList also;                                               ///< extensions of extra kinds
    QString settingsFile;                                           ///< empty for the user's own
    QString reportFile;                                             ///< empty for none
    int jobs = 0;       ///< compressors at once; 0 for as many as suit them
    bool check = false; ///< the results of the classic compressors
    bool all = false;   ///< take outputs of other files too
    bool quiet = false;
    QString error; ///< what is wrong with the arguments, in words; empty if nothing is
};

/// Parses the arguments, without the program's own name. Touches no file.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);

/// An option as --help shows it.
struct OptionHelp {
    QStringView usage; ///< with its value: "--jobs N"
    QStringView meaning;
};

/// In the order of the help text.
inline constexpr std::array<OptionHelp, 12> allOptions{{
    {u"--set KEY=VALUE", u"a setting for this run only; repeatable"},
    {u"--settings FILE", u"read the settings from FILE, not the user's own"},
    {u"--jobs N", u"run up to N compressors at once"},
    {u"--also KINDS", u"take mjs, cjs, htm, svg files too; modern compressors only"},
    {u"--all", u"take outputs of other files in folders too"},
    {u"--list", u"print each file and its output, run nothing"},
    {u"--dry-run", u"print each command line, run nothing"},
    {u"--check", u"warn of what the classic compressors have damaged"},
    {u"--report FILE", u"write a JSON report of the run to FILE"},
    {u"--quiet", u"print failures only"},
    {u"--version", u"print the versions of it and of the compressors"},
    {u"--help", u"print this help"},
}};

[[nodiscard]] QString helpText();
[[nodiscard]] QString versionText();

} // namespace brevant
