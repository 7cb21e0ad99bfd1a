// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OptionTable.h"

#include "cli/CommandLine.h"
#include "cli/ReportOutput.h"
#include "cli/SettingValues.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

template <bool CommandLine::*member>
QString readFlag(CommandLine &line, const GivenOption &)
{
    line.*member = true;
    return {};
}

template <QString CommandLine::*member>
QString readFileName(CommandLine &line, const GivenOption &given)
{
    line.*member = given.value;
    return given.value.isEmpty() ? u"%1 needs the name of a file"_s.arg(given.name) : QString();
}

template <int CommandLine::*member, int most>
QString readNumber(CommandLine &line, const GivenOption &given)
{
    // toInt() alone would accept blanks and a sign.
    const bool isNumber =
        std::ranges::all_of(given.value, [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
    line.*member = isNumber ? given.value.toInt() : 0;
    if (line.*member >= 1 && line.*member <= most)
        return {};
    return u"%1 takes a number from 1 to %2, not \"%3\""_s.arg(given.name).arg(most).arg(given.value);
}

template <GlobList CommandLine::*member>
QString readGlob(CommandLine &line, const GivenOption &given)
{
    const QString error = (line.*member).add(RawBytes::encoded(given.value));
    return error.isEmpty() ? QString() : u"%1: \"%2\" %3"_s.arg(given.name, given.value, error);
}

QString readFilesFrom(CommandLine &line, const GivenOption &given)
{
    if (!line.filesFrom.isEmpty())
        return u"%1 can be given once; join the lists and give - for standard input"_s.arg(given.name);
    return readFileName<&CommandLine::filesFrom>(line, given);
}

QString readShardOption(CommandLine &line, const GivenOption &given)
{
    if (readShard(given.value, line.shard))
        return {};
    return u"%1 takes K/N with K from 1 to N, as in 1/2, not \"%2\""_s.arg(given.name, given.value);
}

/// Reads a list of extensions of extra kinds: mjs,svg.
QString readAlso(CommandLine &line, const GivenOption &given)
{
    const QStringList extras = extraKinds();
    for (const QString &extension : given.value.split(u',')) {
        if (!extras.contains(extension))
            return u"%1 takes some of %2, not \"%3\""_s.arg(given.name, extras.join(u','), extension);
        line.also.append(extension);
    }
    return {};
}

QString readTextKind(CommandLine &line, const GivenOption &given)
{
    line.textKind = given.value;
    QStringList known;
    for (const FileKind &kind : allFileKinds())
        known.append(kind.extension.toString());
    return known.contains(given.value)
               ? QString()
               : u"%1 takes one of %2, not \"%3\""_s.arg(given.name, known.join(u", "), given.value);
}

QString readSetting(CommandLine &line, const GivenOption &given)
{
    const qsizetype sign = given.value.indexOf(u'=');
    if (sign < 0)
        return u"--set takes KEY=VALUE, not \"%1\""_s.arg(given.value);
    const QString key = given.value.first(sign);
    const QString value = given.value.sliced(sign + 1);
    const SettingKey *setting = findSettingKey(key);
    if (setting == nullptr)
        return u"--set: there is no setting \"%1\""_s.arg(key);
    const bool isBoolean = setting->type == SettingType::Boolean;
    line.settings.emplace_back(setting->key, isBoolean ? QJsonValue(value == u"true") : QJsonValue(value));
    const QString error = settingValueError(*setting, value);
    return error.isEmpty() ? QString() : u"--set: "_s + error;
}

template <const QLatin1StringView &key>
QString readSwitchedOn(CommandLine &line, const GivenOption &)
{
    line.settings.emplace_back(key, true);
    return {};
}

QString readSuffix(CommandLine &line, const GivenOption &given)
{
    line.settings.emplace_back(suffixSwitcherKeyString, true);
    line.settings.emplace_back(suffixKeyString, given.value);
    return given.value.isEmpty() ? u"%1 needs a text; --no-suffix is for none"_s.arg(given.name) : QString();
}

QString readNoSuffix(CommandLine &line, const GivenOption &)
{
    line.settings.emplace_back(suffixSwitcherKeyString, false);
    return {};
}

QString readOutDir(CommandLine &line, const GivenOption &given)
{
    line.outDir = PathString::absolute(given.value);
    return given.value.isEmpty() ? u"%1 needs the name of a folder"_s.arg(given.name) : QString();
}

QString readCompressors(CommandLine &line, const GivenOption &given)
{
    line.settings.emplace_back(compressorsKeyString, given.value);
    return given.value == u"classic" || given.value == u"modern"
               ? QString()
               : u"%1 takes classic or modern, not \"%2\""_s.arg(given.name, given.value);
}

QString readSourceMaps(CommandLine &line, const GivenOption &given)
{
    line.sourceMaps = true;
    return readSwitchedOn<sourceMapCheckerKeyString>(line, given);
}

QString readProfile(CommandLine &line, const GivenOption &given)
{
    line.profile = given.value;
    return given.value.isEmpty() ? u"%1 needs the name of a profile"_s.arg(given.name) : QString();
}

QString readReportFormat(CommandLine &line, const GivenOption &given)
{
    line.reportFormat = given.value;
    const QStringList formats = reportFormats();
    return formats.contains(given.value)
               ? QString()
               : u"%1 takes one of %2, not \"%3\""_s.arg(given.name, formats.join(u", "), given.value);
}

using enum OptionGroup;

constexpr bool rawBytes = true;

constexpr Option options[]{
    {Files,
     u"--exclude GLOB",
     u"leave out what matches, as in a .gitignore; repeatable",
     readGlob<&CommandLine::exclude>,
     {},
     rawBytes},
    {Files,
     u"--include GLOB",
     u"take only files that match; repeatable",
     readGlob<&CommandLine::include>,
     {},
     rawBytes},
    {Files, u"--gitignore", u"leave out what git ignores", readFlag<&CommandLine::gitignore>},
    {Files,
     u"--files-from FILE",
     u"take the paths in FILE too, one a line; - is standard input",
     readFilesFrom,
     {},
     rawBytes},
    {Files, u"-0", u"paths in FILE end with zero bytes, not with lines", readFlag<&CommandLine::nulls>,
     u"--files-from"},
    {Files, u"--sort", u"order the files by path", readFlag<&CommandLine::sort>},
    {Files, u"--shard K/N", u"take the K-th of N parts of about the same size", readShardOption},
    {Files, u"--changed", u"take only files whose outputs are missing or out of date",
     readFlag<&CommandLine::changed>},
    {Files, u"--also KINDS", u"take mjs, cjs, htm, svg files too; modern compressors only", readAlso},
    {Files, u"--all", u"search all folders, and take outputs of other files too",
     readFlag<&CommandLine::all>},
    {Files, u"--list", u"print each file and its output, run nothing"},
    {Files, u"--print0", u"print the files alone, with zero bytes between", readFlag<&CommandLine::print0>,
     u"--list"},
    {Outputs, u"--out-dir DIR", u"write into DIR, where the tree below each PATH is mirrored", readOutDir},
    {Outputs, u"--copy-rest", u"copy what is not minified there too", readFlag<&CommandLine::copyRest>},
    {Outputs, u"--keep-times", u"give each output the modification time of its source",
     readFlag<&CommandLine::keepTimes>},
    {Outputs, u"--suffix TEXT", u"put TEXT before the extension, and not .min", readSuffix},
    {Outputs, u"--no-suffix", u"put nothing before the extension", readNoSuffix},
    {Outputs, u"--gzip", u"make gzip copies too", readSwitchedOn<gzipCheckerKeyString>},
    {Outputs, u"--brotli", u"make Brotli copies too", readSwitchedOn<brotliCheckerKeyString>},
    {Outputs, u"--source-maps", u"make source maps too; modern compressors only", readSourceMaps},
    {Outputs, u"--stdin KIND", u"minify standard input, as a css file say, to standard output", readTextKind},
    {Run, u"--compressors FAMILY", u"use the classic or the modern compressors", readCompressors},
    {Run, u"--dry-run", u"print each command line, run nothing"},
    {Run, u"--set KEY=VALUE", u"a setting for this run only; repeatable", readSetting},
    {Run, u"--settings FILE", u"read the settings from FILE, not the user's own",
     readFileName<&CommandLine::settingsFile>},
    {Run, u"--no-user-settings", u"do not read the user's own", readFlag<&CommandLine::noUserSettings>},
    {Run, u"--profile NAME", u"lay that profile of brevant.json over the rest of it", readProfile},
    {Run, u"--no-project", u"do not look for a brevant.json", readFlag<&CommandLine::noProject>},
    {Run, u"--show-settings", u"print each setting and where it comes from, run nothing"},
    {Run, u"--init", u"write a brevant.json into this folder, run nothing"},
    {Run, u"--jobs N", u"run up to N compressors at once", readNumber<&CommandLine::jobs, 256>},
    {Run, u"--timeout SECONDS", u"end a compressor that works longer on a file, which fails",
     readNumber<&CommandLine::timeout, 86'400>, aRun},
    {Run, u"--fail-fast", u"begin no other file after one has failed", readFlag<&CommandLine::failFast>,
     aRun},
    {Run, u"--watch", u"then wait, and minify what changes, until Ctrl+C", readFlag<&CommandLine::watch>,
     aRun},
    {Run, u"--delete", u"delete outputs made while watching when their sources go",
     readFlag<&CommandLine::deleteOutputs>, u"--watch"},
    {Reports, u"--check", u"warn of what the classic compressors have damaged", readFlag<&CommandLine::check>,
     aRun},
    {Reports, u"--report FILE", u"write a report of the run to FILE; - is standard output",
     readFileName<&CommandLine::reportFile>, aRun},
    {Reports, u"--report-format FORMAT", u"write it as json (default), junit, github or markdown",
     readReportFormat, u"--report"},
    {Reports, u"--quiet", u"print failures only", readFlag<&CommandLine::quiet>},
    {Reports, u"--version", u"print the versions of it and of the compressors"},
    {Reports, u"--help", u"print this help"},
};

} // namespace

std::span<const Option> allOptions()
{
    return options;
}

} // namespace brevant
