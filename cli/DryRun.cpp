// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DryRun.h"

#include "cli/OutputClaims.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

namespace brevant {

std::vector<std::pair<QString, std::optional<QString>>> entriesWithOutputs(const FileQueue &queue,
                                                                           const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    std::vector<std::pair<QString, std::optional<QString>>> pairs;
    for (const QString &entry : queue.entries())
        pairs.emplace_back(entry, outputPath.next(entry));
    return pairs;
}

bool printList(const FileQueue &queue, const SettingsStore &settings)
{
    QString text;
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        if (!RawBytes::areIn(entry))
            text += printable(entry) + u'\t' + printable(output.value_or(QString())) + u'\n';
    }
    return TerminalText::print(stdout, text);
}

bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
{
    QString text;
    const auto add = [&text](const QString &program, const QStringList &arguments) {
        text += TerminalText::commandLine(program, arguments) + u'\n';
    };
    add(QStringLiteral("cd"), {tools.folder});
    const CompressorCommand command(settings);
    const Refusal refusal = refusalFor(queue.entries(), settings);
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        if (const QString reason = refusal(entry, output); !reason.isEmpty()) {
            text += printable(QStringLiteral("# %1: not minified: %2").arg(entry, reason)) + u'\n';
            continue;
        }
        add(tools.java, command.arguments(entry, output));
        if (settings.boolForKey(gzipCheckerKeyString)) {
            for (const GzipStep &step : gzipSteps(output))
                add(step.program, step.arguments);
        }
    }
    return TerminalText::print(stdout, text);
}

} // namespace brevant
