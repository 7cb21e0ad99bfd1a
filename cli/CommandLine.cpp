// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/OptionTable.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"

#include <QCommandLineParser>
#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Action = CommandLine::Action;

/// The options that say what is to be done; of the first two the first one wins, all others exclude each
/// other.
constexpr std::array<std::pair<QStringView, Action>, 7> actions{{
    {u"--help", Action::Help},
    {u"--version", Action::Version},
    {u"--stdin", Action::MinifyText},
    {u"--list", Action::List},
    {u"--dry-run", Action::DryRun},
    {u"--show-settings", Action::ShowSettings},
    {u"--init", Action::Init},
}};

/// All that makes sense beside --stdin, where there are no files and one result.
constexpr std::array<QStringView, 9> besideText{
    u"--stdin", u"--compressors", u"--set",        u"--settings",         u"--timeout",
    u"--quiet", u"--profile",     u"--no-project", u"--no-user-settings",
};

/// Options that contradict each other.
constexpr std::array<std::pair<QStringView, QStringView>, 2> rivals{{
    {u"--suffix", u"--no-suffix"},
    {u"--profile", u"--no-project"},
}};

/// Its name as QCommandLineParser has it.
QString bareName(QStringView name)
{
    return name.sliced(name.startsWith(u"--") ? 2 : 1).toString();
}

void addOptions(QCommandLineParser &parser)
{
    for (const Option &option : allOptions())
        parser.addOption(
            QCommandLineOption(bareName(option.name()), QString(), option.valueName().toString()));
    parser.addOption(QCommandLineOption(u"h"_s));
}

bool isGiven(const QCommandLineParser &parser, QStringView option)
{
    return parser.isSet(bareName(option));
}

Action actionOf(const QCommandLineParser &parser)
{
    if (isGiven(parser, u"-h"))
        return Action::Help;
    for (const auto &[option, action] : actions) {
        if (isGiven(parser, option))
            return action;
    }
    return Action::Minify;
}

/// What is wrong with what is given beside --stdin; empty if nothing is.
QString contradictionToText(const QCommandLineParser &parser)
{
    for (const Option &option : allOptions()) {
        if (isGiven(parser, option.name()) &&
            std::ranges::find(besideText, option.name()) == besideText.end())
            return u"--stdin and %1 cannot be used together"_s.arg(option.name());
    }
    const QStringList paths = parser.positionalArguments();
    return paths.isEmpty() ? QString()
                           : u"--stdin reads standard input; leave out %1, or --stdin"_s.arg(paths[0]);
}

/// What makes no sense beside --watch, each with the way out.
constexpr std::array<std::pair<QStringView, QStringView>, 4> notBesideWatch{{
    {u"--report", u"write the report with a run without --watch"},
    {u"--fail-fast", u"leave it out, as the watching goes on"},
    {u"--shard", u"leave it out; name the folders of this machine instead"},
    {u"--all", u"name the folders to search, as outputs would be minified again and again"},
}};

/// What is wrong with the options beside each other; empty if nothing is.
QString contradiction(const QCommandLineParser &parser)
{
    QStringList runless;
    for (const auto &[option, action] : actions) {
        if (isGiven(parser, option))
            runless.append(option.toString());
    }
    if (runless.size() > 1)
        return u"%1 and %2 cannot be used together"_s.arg(runless[0], runless[1]);
    if (isGiven(parser, u"--stdin"))
        return contradictionToText(parser);
    if (isGiven(parser, u"--init") && parser.optionNames().size() + parser.positionalArguments().size() > 1)
        return u"--init is given alone: it writes a project file into this folder"_s;
    for (const auto &[option, other] : rivals) {
        if (isGiven(parser, option) && isGiven(parser, other))
            return u"%1 and %2 cannot be used together"_s.arg(option, other);
    }
    for (const Option &option : allOptions()) {
        if (option.needs.isEmpty() || !isGiven(parser, option.name()))
            continue;
        if (option.needs == aRun && !runless.isEmpty() && !isGiven(parser, u"--show-settings"))
            return u"%1 needs a run, which --list and --dry-run are not"_s.arg(option.name());
        if (option.needs != aRun && !isGiven(parser, option.needs))
            return u"%1 needs %2"_s.arg(option.name(), option.needs);
    }
    for (const auto &[option, wayOut] : notBesideWatch) {
        if (isGiven(parser, u"--watch") && isGiven(parser, option))
            return u"--watch and %1 cannot be used together: %2"_s.arg(option, wayOut);
    }
    return {};
}

/// Reads the options in the order in which they are given. What is wrong with one, or empty.
QString readOptions(const QCommandLineParser &parser, CommandLine &line)
{
    QHash<QString, qsizetype> timesRead;
    for (const QString &name : parser.optionNames()) {
        const auto option =
            std::ranges::find(allOptions(), name, [](const Option &row) { return bareName(row.name()); });
        const QString value = parser.values(name).value(timesRead[name]++);
        if (!option->mayHoldRawBytes && RawBytes::areIn(value))
            return u"%1: \"%2\" is not valid UTF-8"_s.arg(option->name(), value);
        if (option->read == nullptr)
            continue;
        if (QString error = option->read(line, {option->name(), value}); !error.isEmpty())
            return error;
    }
    return {};
}

/// Of two options that name the folder of the outputs.
QString folderContradiction(const CommandLine &line)
{
    for (const auto &[key, value] : line.settings) {
        if (!line.outDir.isEmpty() && (key == sameFolderKeyString || key == selectedFolderKeyString))
            return u"--out-dir and --set %1 cannot be used together"_s.arg(key);
    }
    return {};
}

QString groupTitle(OptionGroup group)
{
    switch (group) {
    case OptionGroup::Files:
        return u"Which files:\n"_s;
    case OptionGroup::Outputs:
        return u"Where to:\n"_s;
    case OptionGroup::Run:
        return u"How:\n"_s;
    case OptionGroup::Reports:
        return u"Reports:\n"_s;
    }
    return {};
}

/// All options, one line each, with a title above each group.
QString optionsHelp()
{
    const qsizetype width = std::ranges::max(allOptions(), {}, [](const Option &option) {
                                return option.usage.size();
                            }).usage.size();
    QString text;
    std::optional<OptionGroup> group;
    for (const Option &option : allOptions()) {
        if (group != option.group)
            text += groupTitle(option.group).prepend(group ? u"\n"_s : QString());
        group = option.group;
        text += u"  %1  %2\n"_s.arg(option.usage, -static_cast<int>(width)).arg(option.meaning);
    }
    return text;
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
    if (line.action == Action::Help || line.action == Action::Version)
        return line;
    line.paths = parser.positionalArguments();
    line.error = contradiction(parser);
    if (line.error.isEmpty())
        line.error = readOptions(parser, line);
    if (line.error.isEmpty())
        line.error = folderContradiction(line);
    return line;
}

QString missingPathError(const CommandLine &line)
{
    const bool isNeeded =
        line.action == Action::Minify || line.action == Action::List || line.action == Action::DryRun;
    if (!isNeeded || !line.paths.isEmpty() || !line.filesFrom.isEmpty())
        return {};
    return line.projectFolder.isEmpty()
               ? u"no file or folder is named"_s
               : u"no file or folder is named; name one, or add \"paths\" to brevant.json"_s;
}

QString helpText()
{
    QString text = u"Usage: brevant-cli [options] PATH...\n"
                   "Minifies CSS, JavaScript, HTML and PHP files and the files below folders.\n\n"_s +
                   optionsHelp() + u"\nSettings for --set, with their defaults:\n"_s;
    for (const SettingKey &setting : allSettingKeys) {
        if (setting.key == keepOriginalsCheckerKeyString)
            continue; // for Results, which the window has
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
