// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CompressorCommand.h"

#include "engine/ArgumentList.h"
#include "engine/Tools.h"
#include "queue/FileKind.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

namespace brevant {

namespace {

SwitchState switchState(const SettingsStore &settings, QLatin1StringView key)
{
    // Read once: a switch that the user turns between two readings would be neither on nor off.
    const QJsonValue value = settings.objectForKey(key);
    if (!value.isBool())
        return SwitchState::Undecided;
    return value.toBool() ? SwitchState::On : SwitchState::Off;
}

/// The list for CSS and JavaScript: the encoding stands at the very end.
QStringList yuiArguments(FileKind kind, const QString &entry, const std::optional<QString> &output,
                         const CompressorOptions &options)
{
    if (options.lineBreak == SwitchState::Undecided)
        return {};
    ArgumentList arguments{QStringLiteral("-jar"), Tools::yuiCompressor()};
    if (options.lineBreak == SwitchState::On)
        arguments.add(QStringLiteral("--line-break")).add(options.lineBreakColumn);
    if (kind == FileKind::Js) {
        const std::pair<SwitchState, QString> switches[] = {
            {options.nomunge, QStringLiteral("--nomunge")},
            {options.preserveSemi, QStringLiteral("--preserve-semi")},
            {options.disableOptimizations, QStringLiteral("--disable-optimizations")},
        };
        for (const auto &[state, argument] : switches) {
            if (state == SwitchState::Undecided)
                return {};
            if (state == SwitchState::On)
                arguments.add(argument);
        }
    }
    arguments.add(entry).add(QStringLiteral("-o")).add(output);
    arguments.add(QStringLiteral("--charset")).add(options.encoding);
    return arguments.values();
}

/// The list for HTML, PHTML and PHP: the encoding stands first, and the output ends it.
QStringList htmlArguments(const QString &entry, const std::optional<QString> &output,
                          const CompressorOptions &options)
{
    ArgumentList arguments{QStringLiteral("-jar"), Tools::htmlCompressor()};
    arguments.add(QStringLiteral("--charset")).add(options.encoding);
    arguments.add(QStringLiteral("--type")).add(QStringLiteral("html"));
    arguments.add(QStringLiteral("--compress-js")).add(QStringLiteral("--compress-css"));
    arguments.add(options.keepXMLSpace ? QStringLiteral("--preserve-intertag-spaces")
                                       : QStringLiteral("--remove-intertag-spaces"));
    arguments.add(entry).add(QStringLiteral("-o")).add(output);
    return arguments.values();
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
    const std::optional<FileKind> kind = kindOf(entry);
    if (!kind)
        return {};
    if (*kind == FileKind::Css || *kind == FileKind::Js)
        return yuiArguments(*kind, entry, output, options);
    return htmlArguments(entry, output, options);
}

} // namespace brevant
