// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "files/RawBytes.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"

#include <QCommandLineOption>
#include <QCommandLineParser>

#include <algorithm>
#include <optional>

namespace brevant {

namespace {

constexpr int mostJobs = 256;

const QString setOption = QStringLiteral("set");
const QString settingsOption = QStringLiteral("settings");
const QString jobsOption = QStringLiteral("jobs");
const QString allOption = QStringLiteral("all");
const QString listOption = QStringLiteral("list");
const QString dryRunOption = QStringLiteral("dry-run");
const QString reportOption = QStringLiteral("report");
const QString quietOption = QStringLiteral("quiet");
const QString versionOption = QStringLiteral("version");
const QString helpOption = QStringLiteral("help");

std::variant<std::pair<QLatin1StringView, QJsonValue>, UsageError> parseSetting(const QString &assignment)
{
    const qsizetype sign = assignment.indexOf(u'=');
    if (sign < 0)
        return UsageError{QStringLiteral("--set takes KEY=VALUE, not \"%1\"").arg(assignment)};
    const QString key = assignment.first(sign);
    const QString value = assignment.sliced(sign + 1);
    const SettingKey *setting = findSettingKey(key);
    if (setting == nullptr)
        return UsageError{QStringLiteral("--set: there is no setting \"%1\"").arg(key)};
    if (setting->type == SettingType::Boolean) {
        const bool isTrue = value == QLatin1StringView("true");
        if (!isTrue && value != QLatin1StringView("false"))
            return UsageError{QStringLiteral("--set: %1 takes true or false, not \"%2\"").arg(key, value)};
        return std::pair(setting->key, QJsonValue(isTrue));
    }
    if (setting->key == selectedEncodingKeyString && !isEncodingName(value)) {
        QStringList names;
        for (const Encoding &encoding : allEncodings)
            names.append(encoding.name);
        return UsageError{QStringLiteral("--set: there is no encoding \"%1\"; there are %2")
                              .arg(value, names.join(QLatin1StringView(", ")))};
    }
    return std::pair(setting->key, QJsonValue(value));
}

void addOptions(QCommandLineParser &parser)
{
    for (const QString &name : {setOption, settingsOption, jobsOption, reportOption})
        parser.addOption(QCommandLineOption(name, QString(), QStringLiteral("value")));
    for (const QString &name : {allOption, listOption, dryRunOption, quietOption, versionOption})
        parser.addOption(QCommandLineOption(name));
    parser.addOption(QCommandLineOption(QStringList{helpOption, QStringLiteral("h")}));
}

/// Only paths to be minified may hold bytes that are not UTF-8: those are reported.
std::optional<UsageError> checkValues(const QCommandLineParser &parser)
{
    for (const QString &option : {setOption, settingsOption, jobsOption, reportOption}) {
        for (const QString &value : parser.values(option)) {
            if (RawBytes::areIn(value))
                return UsageError{QStringLiteral("--%1: \"%2\" is not valid UTF-8").arg(option, value)};
        }
    }
    return std::nullopt;
}

/// The value of an option that names a file; empty if the option is not there.
std::optional<UsageError> readFileName(const QCommandLineParser &parser, const QString &option,
                                       QString &fileName)
{
    fileName = parser.value(option);
    if (parser.isSet(option) && fileName.isEmpty())
        return UsageError{QStringLiteral("--%1 needs the name of a file").arg(option)};
    return std::nullopt;
}

std::optional<UsageError> readJobs(const QCommandLineParser &parser, int &jobs)
{
    if (!parser.isSet(jobsOption))
        return std::nullopt;
    const QString value = parser.value(jobsOption);
    // Digits alone: toInt() would take blanks and a sign.
    const bool isNumber = !value.isEmpty() && std::all_of(value.begin(), value.end(), [](QChar sign) {
        return sign >= u'0' && sign <= u'9';
    });
    jobs = isNumber ? value.toInt() : 0;
    if (jobs >= 1 && jobs <= mostJobs)
        return std::nullopt;
    return UsageError{
        QStringLiteral("--jobs takes a number from 1 to %1, not \"%2\"").arg(mostJobs).arg(value)};
}

} // namespace

std::variant<CommandLine, UsageError> parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QStringList(QString()) + arguments))
        return UsageError{parser.errorText()};

    CommandLine line;
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        line.action = parser.isSet(helpOption) ? CommandLine::Action::Help : CommandLine::Action::Version;
        return line;
    }
    if (parser.isSet(listOption) && parser.isSet(dryRunOption))
        return UsageError{QStringLiteral("--list and --dry-run cannot be used together")};
    if (parser.isSet(reportOption) && (parser.isSet(listOption) || parser.isSet(dryRunOption)))
        return UsageError{QStringLiteral("--report needs a run, which --list and --dry-run are not")};
    if (parser.isSet(listOption))
        line.action = CommandLine::Action::List;
    if (parser.isSet(dryRunOption))
        line.action = CommandLine::Action::DryRun;
    line.all = parser.isSet(allOption);
    if (const auto error = checkValues(parser))
        return *error;
    line.quiet = parser.isSet(quietOption);
    if (const auto error = readFileName(parser, settingsOption, line.settingsFile))
        return *error;
    if (const auto error = readFileName(parser, reportOption, line.reportFile))
        return *error;
    if (const auto error = readJobs(parser, line.jobs))
        return *error;
    for (const QString &assignment : parser.values(setOption)) {
        const auto parsed = parseSetting(assignment);
        if (const auto *error = std::get_if<UsageError>(&parsed))
            return *error;
        line.settings.push_back(std::get<0>(parsed));
    }
    line.paths = parser.positionalArguments();
    if (line.paths.isEmpty())
        return UsageError{QStringLiteral("no file or folder is named")};
    return line;
}

const std::vector<OptionHelp> &allOptions()
{
    static const std::vector<OptionHelp> options{
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
    };
    return options;
}

QString helpText()
{
    QString text =
        QStringLiteral("Usage: brevant-cli [options] PATH...\n"
                       "Minifies CSS, JavaScript, HTML and PHP files and the files below folders.\n\n");
    for (const OptionHelp &option : allOptions())
        text += QStringLiteral("  %1 %2\n").arg(option.usage, -18).arg(option.meaning);
    text += QStringLiteral("\nSettings for --set, with their defaults:\n");
    for (const SettingKey &setting : allSettingKeys) {
        const QString value = setting.type == SettingType::Text ? QString(setting.defaultText)
                              : setting.defaultState            ? QStringLiteral("true")
                                                                : QStringLiteral("false");
        text += QStringLiteral("  %1=%2\n").arg(setting.key, value);
    }
    text += QStringLiteral(
        "\nExit status: 0 all done, 1 some failed, 2 wrong usage, 3 no Java or no compressors,\n"
        "130 ended by Ctrl+C.\n");
    return text;
}

QString versionText()
{
    return QStringLiteral("brevant-cli " BREVANT_VERSION "\n");
}

} // namespace brevant
