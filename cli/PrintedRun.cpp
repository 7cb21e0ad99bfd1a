// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PrintedRun.h"

#include "cli/MinifyRun.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/OutputClaims.h"
#include "files/FileBytes.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace brevant {

QString notUtf8()
{
    return u"its path is not valid UTF-8 and cannot be handed to a compressor"_s;
}

Refusal refusalFor(const std::vector<QString> &sources, const EntrySettings &settings)
{
    return [commands = BySettings<CompressorCommand>(settings), claims = OutputClaims(sources)](
               const QString &source, const std::optional<QString> &output) mutable {
        if (RawBytes::areIn(source))
            return notUtf8();
        if (!output)
            return u"%1 is neither true nor false"_s.arg(suffixSwitcherKeyString);
        const CompressorCommand &command = commands.of(source);
        // Which says itself what is wrong with its switches.
        const bool isModern = isModernChosen(command.settings());
        if (!isModern && !kindOf(source))
            return u"the classic compressors take no files of its kind"_s;
        if (!isModern && command.arguments(source, output).isEmpty())
            return u"a switch of its compressor is neither true nor false"_s;
        if (!isModern && isTakenForPattern(source, *output))
            return u"YUI Compressor takes an output path with a colon for a pattern"_s;
        return claims.claim(source, output);
    };
}

EntriesWithOutputs entriesWithOutputs(const FileQueue &queue, const EntrySettings &settings)
{
    OutputPath outputPath(settings, OutputPath::Reading::Once);
    EntriesWithOutputs pairs;
    for (const QString &entry : queue.entries())
        pairs.emplace_back(entry, outputPath.next(entry));
    return pairs;
}

/// Appends what printable() makes of a path, most of which are plain.
static void appendPrintable(QByteArray &text, const QString &path)
{
    unsigned outside = 0; // counted without a branch, for the compiler to take several at once
    for (const QChar character : path)
        outside |= static_cast<char16_t>(character.unicode() - u' ') > u'~' - u' ' ? 1U : 0U;
    text += outside == 0 ? path.toLatin1() : printable(path).toUtf8();
}

bool printList(const FileQueue &queue, const EntrySettings &settings, bool forPrograms)
{
    QByteArray text;
    OutputPath outputPath(settings, OutputPath::Reading::Once);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        if (RawBytes::areIn(entry))
            continue;
        if (forPrograms) {
            text += entry.toUtf8() + '\0';
            continue;
        }
        appendPrintable(text, entry);
        text += '\t';
        appendPrintable(text, output.value_or(QString()));
        text += '\n';
    }
    return TerminalText::print(stdout, text);
}

/// The output may be the source, which a shell would empty before it is read.
static QString filterLine(const Filter &filter, const QString &source, const QString &output)
{
    const QString temporary = PathString::withExtension(output, u"brevanttemp");
    return u"%1 < %2 > %3 && %4\n"_s.arg(TerminalText::commandLine(filter.program, filter.arguments),
                                         TerminalText::commandLine(source, {}),
                                         TerminalText::commandLine(temporary, {}),
                                         TerminalText::commandLine(u"mv"_s, {u"-f"_s, temporary, output}));
}

/// Nothing of one that cannot be read, which the commands then say themselves.
static QByteArray sourceBytes(const QString &source)
{
    return FileBytes::readAll(QFile::encodeName(source)).value_or(QByteArray());
}

bool printCommands(const FileQueue &queue, const EntrySettings &settings, const Tools &tools)
{
    QString text;
    const auto add = [&text](const QString &program, const QStringList &arguments) {
        text += TerminalText::commandLine(program, arguments) + u'\n';
    };
    const auto stores = settings.of(queue.entries());
    if (!std::ranges::all_of(stores, [](const SettingsStore *store) { return isModernChosen(*store); }))
        add(u"cd"_s, {tools.folder});
    BySettings<CompressorCommand> commands(settings);
    const Refusal refusal = refusalFor(queue.entries(), settings);
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        if (const QString reason = refusal(entry, output); !reason.isEmpty()) {
            text += printable(u"# %1: not minified: %2"_s.arg(entry, reason)) + u'\n';
            continue;
        }
        const CompressorCommand &command = commands.of(entry);
        if (isModernChosen(command.settings())) {
            const FileKind &kind = *anyKindOf(entry);
            const ModernOptions options = command.modernOptions(kind);
            text +=
                options.error.isEmpty()
                    ? filterLine(modernFilterFor(kind, sourceBytes(entry), options, tools), entry, *output)
                    : printable(u"# %1: not minified: %2"_s.arg(entry, options.error)) + u'\n';
            continue;
        }
        add(tools.java, command.arguments(entry, output));
        if (command.settings().boolForKey(gzipCheckerKeyString)) {
            for (const auto &[program, arguments] : gzipSteps(output))
                add(program, arguments);
        }
    }
    return TerminalText::print(stdout, text);
}

int statusOfPrinting(bool isPrinted)
{
    if (!isPrinted)
        TerminalText::printError(u"standard output cannot be written: %1"_s.arg(qt_error_string(errno)));
    return isPrinted ? AllDone : SomeFailed;
}

} // namespace brevant
