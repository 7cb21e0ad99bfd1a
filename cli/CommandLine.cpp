// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "files/RawBytes.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"

#include <QCommandLineParser>

#include <algorithm>

namespace brevant {

namespace {

constexpr int mostJobs = 256;

const QString listOption = QStringLiteral("list");
const QString dryRunOption = QStringLiteral("dry-run");
const QString reportOption = QStringLiteral("report");
const QString settingsOption = QStringLiteral("settings");

void addOptions(QCommandLineParser &parser)
{
    for (const OptionHelp &option : allOptions) {
        const QStringList words = QString(option.usage).sliced(2).split(u' ');
        parser.addOption(QCommandLineOption(words.first(), QString(), words.value(1)));
    }
    parser.addOption(QCommandLineOption(QStringLiteral("h")));
}

QString combinationError(const QCommandLineParser &parser)
{
    const bool isList = parser.isSet(listOption);
    const bool isDryRun = parser.isSet(dryRunOption);
    if (isList && isDryRun)
        return QStringLiteral("--list and --dry-run cannot be used together");
    if (parser.isSet(reportOption) && (isList || isDryRun))
        return QStringLiteral("--report needs a run, which --list and --dry-run are not");
    return {};
}

/// Only the paths to minify may hold bytes that are not UTF-8; they are listed and reported as failures.
QString encodingError(const QCommandLineParser &parser)
{
    for (const QString &option : parser.optionNames()) {
        for (const QString &value : parser.values(option)) {
            if (RawBytes::areIn(value))
                return QStringLiteral("--%1: \"%2\" is not valid UTF-8").arg(option, value);
        }
    }
    return {};
}

QString fileNameError(const QCommandLineParser &parser)
{
    for (const QString &option : {settingsOption, reportOption}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return QStringLiteral("--%1 needs the name of a file").arg(option);
    }
    return {};
}

QString readJobs(const QCommandLineParser &parser, int &jobs)
{
    const QString option = QStringLiteral("jobs");
    if (!parser.isSet(option))
        return {};
    const QString value = parser.value(option);
    // toInt() alone would accept blanks and a sign.
    const bool isNumber = std::ranges::all_of(value, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
    jobs = isNumber ? value.toInt() : 0;
    if (jobs >= 1 && jobs <= mostJobs)
        return {};
    return QStringLiteral("--jobs takes a number from 1 to %1, not \"%2\"").arg(mostJobs).arg(value);
}

/// Why a setting cannot have that value; empty if it can.
QString valueError(const SettingKey &setting, const QString &value)
{
    if (setting.type == SettingType::Boolean && value != u"true" && value != u"false")
        return QStringLiteral("--set: %1 takes true or false, not \"%2\"").arg(setting.key, value);
    if (setting.key != selectedEncodingKeyString || isEncodingName(value))
        return {};
    QStringList names;
    for (const Encoding &encoding : allEncodings)
        names.append(encoding.name);
    return QStringLiteral("--set: there is no encoding \"%1\"; there are %2")
        .arg(value, names.join(QLatin1StringView(", ")));
}

QString readSettings(const QCommandLineParser &parser, CommandLine &line)
{
    for (const QString &assignment : parser.values(QStringLiteral("set"))) {
        const qsizetype sign = assignment.indexOf(u'=');
        if (sign < 0)
            return QStringLiteral("--set takes KEY=VALUE, not \"%1\"").arg(assignment);
        const QString key = assignment.first(sign);
        const QString value = assignment.sliced(sign + 1);
        const SettingKey *setting = findSettingKey(key);
        if (setting == nullptr)
            return QStringLiteral("--set: there is no setting \"%1\"").arg(key);
        if (QString error = valueError(*setting, value); !error.isEmpty())
            return error;
        const bool isBoolean = setting->type == SettingType::Boolean;
        line.settings.emplace_back(setting->key,
                                   isBoolean ? QJsonValue(value == u"true") : QJsonValue(value));
    }
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    using Action = CommandLine::Action;
    CommandLine line;
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QStringList(QString()) + arguments)) {
        line.error = parser.errorText();
        return line;
    }
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("h")))
        line.action = Action::Help;
    else if (parser.isSet(QStringLiteral("version")))
        line.action = Action::Version;
    if (line.action != Action::Minify)
        return line;

    if (parser.isSet(listOption))
        line.action = Action::List;
    if (parser.isSet(dryRunOption))
        line.action = Action::DryRun;
    line.all = parser.isSet(QStringLiteral("all"));
    line.quiet = parser.isSet(QStringLiteral("quiet"));
    line.settingsFile = parser.value(settingsOption);
    line.reportFile = parser.value(reportOption);
    line.paths = parser.positionalArguments();
    for (const QString &error :
         {combinationError(parser), encodingError(parser), fileNameError(parser), readJobs(parser, line.jobs),
          readSettings(parser, line),
          line.paths.isEmpty() ? QStringLiteral("no file or folder is named") : QString()}) {
        if (line.error.isEmpty())
            line.error = error;
    }
    return line;
}

QString helpText()
{
    QString text =
        QStringLiteral("Usage: brevant-cli [options] PATH...\n"
                       "Minifies CSS, JavaScript, HTML and PHP files and the files below folders.\n\n");
    for (const OptionHelp &option : allOptions)
        text += QStringLiteral("  %1 %2\n").arg(option.usage, -18).arg(option.meaning);
    text += QStringLiteral("\nSettings for --set, with their defaults:\n");
    for (const SettingKey &setting : allSettingKeys) {
        const QString value = setting.type == SettingType::Text ? QString(setting.defaultText)
                              : setting.defaultState            ? QStringLiteral("true")
                                                                : QStringLiteral("false");
        text += QStringLiteral("  %1=%2\n").arg(setting.key, value);
    }
    return text + QStringLiteral("\nExit status: 0 all done, 1 some failed, 2 wrong usage, 3 no Java or no "
                                 "compressors,\n130 ended by Ctrl+C.\n");
}

QString versionText()
{
    return QStringLiteral("brevant-cli " BREVANT_VERSION "\n");
}

} // namespace brevant
