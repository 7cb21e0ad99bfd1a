// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <utility>
#include <variant>
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
    bool all = false;                                               ///< outputs of other files too
    bool quiet = false;
};

/// One wrong use, in words that name it.
struct UsageError {
    QString text;
};

/// Reads the arguments, without the program's own name. Looks at no file.
[[nodiscard]] std::variant<CommandLine, UsageError> parseCommandLine(const QStringList &arguments);

/// One option as --help shows it.
struct OptionHelp {
    QLatin1StringView usage; ///< with what it takes: "--jobs N"
    QLatin1StringView meaning;
};

/// All options, in the order of the help text.
[[nodiscard]] const std::vector<OptionHelp> &allOptions();

[[nodiscard]] QString helpText();
[[nodiscard]] QString versionText();

} // namespace brevant
