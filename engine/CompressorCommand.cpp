// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CompressorCommand.h"

#include "engine/ArgumentList.h"
#include "engine/Tools.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

SwitchState switchState(const SettingsStore &settings, QLatin1StringView key)
{
    // Read once, as the user may turn the switch at any moment.
    const QJsonValue value = settings.objectForKey(key);
    if (!value.isBool())
        return SwitchState::Undecided;
    return value.toBool() ? SwitchState::On : SwitchState::Off;
}

bool isForYui(KindFamily family)
{
    switch (family) {
    case KindFamily::StyleSheet:
    case KindFamily::Script:
        return true;
    case KindFamily::Markup:
        return false;
    }
    Q_UNREACHABLE();
}

/// The list for style sheets and scripts: the encoding stands at the very end.
QStringList yuiArguments(const FileKind &kind, const QString &entry, const std::optional<QString> &output,
                         const CompressorOptions &options)
{
    if (options.lineBreak == SwitchState::Undecided)
        return {};
    ArgumentList arguments{u"-jar"_s, Tools::yuiCompressor()};
    if (options.lineBreak == SwitchState::On)
        arguments.add(u"--line-break"_s).add(options.lineBreakColumn);
    if (kind.family == KindFamily::Script) {
        const std::pair<SwitchState, QString> switches[] = {
            {options.nomunge, u"--nomunge"_s},
            {options.preserveSemi, u"--preserve-semi"_s},
            {options.disableOptimizations, u"--disable-optimizations"_s},
        };
        for (const auto &[state, argument] : switches) {
            if (state == SwitchState::Undecided)
                return {};
            if (state == SwitchState::On)
                arguments.add(argument);
        }
    }
    return arguments.add(entry).add(u"-o"_s).add(output).add(u"--charset"_s).add(options.encoding).values();
}

/// The list for markup: the encoding stands first, and the output ends it.
QStringList htmlArguments(const QString &entry, const std::optional<QString> &output,
                          const CompressorOptions &options)
{
    ArgumentList arguments{u"-jar"_s, Tools::htmlCompressor(), u"--charset"_s, options.encoding};
    arguments.add(u"--type"_s).add(u"html"_s).add(u"--compress-js"_s).add(u"--compress-css"_s);
    arguments.add(options.keepXMLSpace ? u"--preserve-intertag-spaces"_s : u"--remove-intertag-spaces"_s);
    return arguments.add(entry).add(u"-o"_s).add(output).values();
}

} // namespace

CompressorOptions CompressorOptions::atStartOfRun(const SettingsStore &settings)
{
    CompressorOptions options;
    options.lineBreakColumn = settings.stringForKey(lineBreakKeyString);
    options.encoding = settings.stringForKey(selectedEncodingKeyString);
    options.readSwitches(settings);
    return options;
}

void CompressorOptions::readSwitches(const SettingsStore &settings)
{
    lineBreak = switchState(settings, lineBreakSwitcherKeyString);
    nomunge = switchState(settings, nomungeSwitcherKeyString);
    preserveSemi = switchState(settings, preserveSemiSwitcherKeyString);
    disableOptimizations = switchState(settings, disableOptimizationsSwitcherKeyString);
    keepXMLSpace = settings.boolForKey(keepXMLSpaceCheckerKeyString);
}

QStringList compressorArguments(const QString &entry, const std::optional<QString> &output,
                                const CompressorOptions &options)
{
    const FileKind *const kind = kindOf(entry);
    if (!kind)
        return {};
    return isForYui(kind->family) ? yuiArguments(*kind, entry, output, options)
                                  : htmlArguments(entry, output, options);
}

bool isTakenForPattern(const QString &entry, const QString &output)
{
    const FileKind *const kind = kindOf(entry);
    return kind && isForYui(kind->family) && output.contains(u':');
}

bool isDangerousPattern(const QString &entry, const QString &output)
{
    if (!isTakenForPattern(entry, output))
        return false;
    const auto holdsAny = [](QStringView text, QStringView signs) {
        return std::ranges::any_of(text, [signs](QChar sign) { return signs.contains(sign); });
    };
    const qsizetype colon = output.indexOf(u':');
    // "." is a pattern too, but in nearly every path; the entry is kept safe in that case.
    return holdsAny(QStringView(output).first(colon), u"\\^$|?*+()[]{}") ||
           holdsAny(QStringView(output).sliced(colon), u"$\\");
}

} // namespace brevant
