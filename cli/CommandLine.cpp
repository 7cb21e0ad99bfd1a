// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"

#include <QCommandLineParser>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

void addOptions(QCommandLineParser &parser)
{
    for (const OptionHelp &option : allOptions) {
        const QStringList words = option.usage.sliced(2).toString().split(u' ');
        parser.addOption(QCommandLineOption(words.first(), QString(), words.value(1)));
    }
    parser.addOption(QCommandLineOption(u"h"_s));
}

CommandLine::Action actionOf(const QCommandLineParser &parser)
{
    using enum CommandLine::Action;
    if (parser.isSet(u"help"_s) || parser.isSet(u"h"_s))
        return Help;
    if (parser.isSet(u"version"_s))
        return Version;
    if (parser.isSet(u"list"_s))
        return List;
    return parser.isSet(u"dry-run"_s) ? DryRun : Minify;
}

/// What is wrong with the options; empty if nothing is.
QString optionsError(const QCommandLineParser &parser)
{
    const bool isList = parser.isSet(u"list"_s);
    const bool isDryRun = parser.isSet(u"dry-run"_s);
    if (isList && isDryRun)
        return u"--list and --dry-run cannot be used together"_s;
    for (const QString &option : {u"report"_s, u"check"_s}) {
        if (parser.isSet(option) && (isList || isDryRun))
            return u"--%1 needs a run, which --list and --dry-run are not"_s.arg(option);
    }
    // Only the paths to minify may hold bytes that are not UTF-8; they are listed and reported as failures.
    for (const QString &option : parser.optionNames()) {
        for (const QString &value : parser.values(option)) {
            if (RawBytes::areIn(value))
                return u"--%1: \"%2\" is not valid UTF-8"_s.arg(option, value);
        }
    }
    for (const QString &option : {u"settings"_s, u"report"_s}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return u"--%1 needs the name of a file"_s.arg(option);
    }
    return {};
}

QString readJobs(const QCommandLineParser &parser, int &jobs)
{
    constexpr int mostJobs = 256;
    if (!parser.isSet(u"jobs"_s))
        return {};
    const QString value = parser.value(u"jobs"_s);
    // toInt() alone would accept blanks and a sign.
    const bool isNumber = std::ranges::all_of(value, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
    jobs = isNumber ? value.toInt() : 0;
    if (jobs >= 1 && jobs <= mostJobs)
        return {};
    return u"--jobs takes a number from 1 to %1, not \"%2\""_s.arg(mostJobs).arg(value);
}

/// Reads lists of extensions of extra kinds: mjs,svg.
QString readAlso(const QCommandLineParser &parser, QStringList &also)
{
    QStringList extras;
    for (const FileKind &kind : allFileKinds()) {
        if (kind.isExtra)
            extras.append(kind.extension.toString());
    }
    const QStringList values = parser.values(u"also"_s);
    if (values.isEmpty())
        return {};
    also = values.join(u',').split(u',');
    for (const QString &extension : std::as_const(also)) {
        if (!extras.contains(extension))
            return u"--also takes some of %1, not \"%2\""_s.arg(extras.join(u','), extension);
    }
    return {};
}

/// Why a setting cannot have that value; empty if it can.
QString valueError(const SettingKey &setting, const QString &value)
{
    if (setting.type == SettingType::Boolean && value != u"true" && value != u"false")
        return u"--set: %1 takes true or false, not \"%2\""_s.arg(setting.key, value);
    if (setting.key == compressorsKeyString && value != u"classic" && value != u"modern")
        return u"--set: %1 takes classic or modern, not \"%2\""_s.arg(setting.key, value);
    if (setting.key != selectedEncodingKeyString || isEncodingName(value))
        return {};
    QStringList names;
    for (const Encoding &encoding : allEncodings)
        names.append(encoding.name);
    return u"--set: there is no encoding \"%1\"; there are %2"_s.arg(value, names.join(u", "_s));
}

QString readSettings(const QCommandLineParser &parser, CommandLine &line)
{
    for (const QString &assignment : parser.values(u"set"_s)) {
        const qsizetype sign = assignment.indexOf(u'=');
        if (sign < 0)
            return u"--set takes KEY=VALUE, not \"%1\""_s.arg(assignment);
        const QString key = assignment.first(sign);
        const QString value = assignment.sliced(sign + 1);
        const SettingKey *setting = findSettingKey(key);
        if (setting == nullptr)
            return u"--set: there is no setting \"%1\""_s.arg(key);
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
    CommandLine line;
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QStringList(QString()) + arguments)) {
        line.error = parser.errorText();
        return line;
    }
    line.action = actionOf(parser);
    if (line.action == CommandLine::Action::Help || line.action == CommandLine::Action::Version)
        return line;
    line.all = parser.isSet(u"all"_s);
    line.check = parser.isSet(u"check"_s);
    line.quiet = parser.isSet(u"quiet"_s);
    line.settingsFile = parser.value(u"settings"_s);
    line.reportFile = parser.value(u"report"_s);
    line.paths = parser.positionalArguments();
    line.error = optionsError(parser);
    if (line.error.isEmpty())
        line.error = readJobs(parser, line.jobs);
    if (line.error.isEmpty())
        line.error = readAlso(parser, line.also);
    if (line.error.isEmpty())
        line.error = readSettings(parser, line);
    if (line.error.isEmpty() && line.paths.isEmpty())
        line.error = u"no file or folder is named"_s;
    return line;
}

QString helpText()
{
    QString text = u"Usage: brevant-cli [options] PATH...\n"
                   "Minifies CSS, JavaScript, HTML and PHP files and the files below folders.\n\n"_s;
    for (const OptionHelp &option : allOptions)
        text += u"  %1 %2\n"_s.arg(option.usage, -18).arg(option.meaning);
    text += u"\nSettings for --set, with their defaults:\n"_s;
    for (const SettingKey &setting : allSettingKeys) {
        const QString value = registeredDefaults().value(setting.key).toVariant().toString();
        text += u"  %1=%2\n"_s.arg(setting.key, value);
    }
    return text +
           u"\nExit status: 0 all done, 1 some failed or were warned of, 2 wrong usage, 3 Java (classic),\n"
           "a compressor or brotli is missing, 130 ended by Ctrl+C.\n"_s;
}

QString versionText()
{
    return QStringLiteral("brevant-cli " BREVANT_VERSION "\n");
}

} // namespace brevant
