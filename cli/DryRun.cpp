// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DryRun.h"

#include "cli/OutputClaims.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/GzipCopy.h"
#include "engine/Tools.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

namespace brevant {

bool printList(const FileQueue &queue, const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        if (RawBytes::areIn(entry))
            continue;
        const QString line =
            QStringLiteral("%1\t%2\n")
                .arg(TerminalText::printable(entry), TerminalText::printable(output.value_or(QString())));
        if (!TerminalText::print(stdout, line))
            return false;
    }
    return true;
}

bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
{
    const auto print = [](const QString &program, const QStringList &arguments) {
        return TerminalText::print(stdout, TerminalText::commandLine(program, arguments) + u'\n');
    };
    if (!print(QStringLiteral("cd"), {tools.folder}))
        return false;
    OutputPath outputPath(settings);
    const CompressorOptions options = CompressorOptions::atStartOfRun(settings);
    const Refusal refusal = refusalFor(queue.entries(), settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        if (const QString reason = refusal(entry, output); !reason.isEmpty()) {
            const QString comment = QStringLiteral("# %1: not minified: %2").arg(entry, reason);
            if (!TerminalText::print(stdout, TerminalText::printable(comment) + u'\n'))
                return false;
            continue;
        }
        const QStringList arguments = compressorArguments(entry, output, options);
        if (!print(tools.java, arguments))
            return false;
        if (!settings.boolForKey(gzipCheckerKeyString))
            continue;
        for (const GzipStep &step : gzipSteps(output)) {
            if (!print(step.program, step.arguments))
                return false;
        }
    }
    return true;
}

} // namespace brevant
