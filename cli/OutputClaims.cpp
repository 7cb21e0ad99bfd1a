// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputClaims.h"

#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Whether the file system of that folder ignores case. The only sure way to tell is to try.
bool ignoresCapitals(const QString &folder)
{
    QTemporaryFile probe(PathString::join(folder, u".brevant-XXXXXX.tmp"));
    return probe.open() && QFileInfo::exists(PathString::join(
                               folder, PathString::lastComponent(probe.fileName()).toString().toUpper()));
}

/// Whether one of the files still has that mark. Of one that another run has replaced, a new file may have
/// it.
bool isHeld(const QHash<QString, QString> &files, const QString &mark)
{
    const auto file = files.constFind(mark);
    return file != files.constEnd() && FileMarks::all(*file).contains(mark);
}

} // namespace

OutputClaims::OutputClaims(const std::vector<QString> &sources)
{
    for (const QString &source : sources) {
        for (const QString &mark : FileMarks::all(source))
            m_sources.insert(mark, source);
    }
}

QString OutputClaims::claim(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return {};
    const QStringList marks = FileMarks::all(*output);
    const QStringList own = FileMarks::all(source);
    const bool isSource = std::ranges::any_of(
        marks, [&](const QString &mark) { return !own.contains(mark) && isHeld(m_sources, mark); });
    if (isSource)
        return u"its output %1 is the source of another file in the list"_s.arg(*output);
    if (isTaken(*output, marks))
        return u"its output %1 is that of another file in the list"_s.arg(*output);
    for (const QString &mark : marks)
        m_outputs.insert(mark, *output);
    m_outputsInAnyCase.insert(marks.front().toCaseFolded());
    return {};
}

bool OutputClaims::isTaken(const QString &output, const QStringList &marks) const
{
    return std::ranges::any_of(marks, [this](const QString &mark) { return isHeld(m_outputs, mark); }) ||
           (m_outputsInAnyCase.contains(marks.front().toCaseFolded()) &&
            ignoresCapitals(PathString::folder(output).toString()));
}

QString notUtf8()
{
    return u"its path is not valid UTF-8 and cannot be handed to a compressor"_s;
}

Refusal refusalFor(const std::vector<QString> &sources, const SettingsStore &settings)
{
    return [&settings, command = CompressorCommand(settings), claims = OutputClaims(sources)](
               const QString &source, const std::optional<QString> &output) mutable {
        if (RawBytes::areIn(source))
            return notUtf8();
        if (!output)
            return u"%1 is neither true nor false"_s.arg(suffixSwitcherKeyString);
        const bool isModern = isModernChosen(settings); // which says itself what is wrong with its switches
        if (!isModern && command.arguments(source, output).isEmpty())
            return u"a switch of its compressor is neither true nor false"_s;
        if (!isModern && isTakenForPattern(source, *output))
            return u"YUI Compressor takes an output path with a colon for a pattern"_s;
        return claims.claim(source, output);
    };
}

EntriesWithOutputs entriesWithOutputs(const FileQueue &queue, const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    EntriesWithOutputs pairs;
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

/// The output may be the source, which a shell would empty before it is read.
static QString filterLine(const Filter &filter, const QString &source, const QString &output)
{
    const QString temporary = PathString::withExtension(output, u"brevanttemp");
    return u"%1 < %2 > %3 && %4\n"_s.arg(TerminalText::commandLine(filter.program, filter.arguments),
                                         TerminalText::commandLine(source, {}),
                                         TerminalText::commandLine(temporary, {}),
                                         TerminalText::commandLine(u"mv"_s, {u"-f"_s, temporary, output}));
}

bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
{
    QString text;
    const auto add = [&text](const QString &program, const QStringList &arguments) {
        text += TerminalText::commandLine(program, arguments) + u'\n';
    };
    const bool isModern = isModernChosen(settings);
    if (!isModern)
        add(u"cd"_s, {tools.folder});
    const CompressorCommand command(settings);
    const Refusal refusal = refusalFor(queue.entries(), settings);
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        if (const QString reason = refusal(entry, output); !reason.isEmpty()) {
            text += printable(u"# %1: not minified: %2"_s.arg(entry, reason)) + u'\n';
            continue;
        }
        if (isModern) {
            const FileKind &kind = *anyKindOf(entry);
            const ModernOptions options = command.modernOptions(kind);
            text += options.error.isEmpty()
                        ? filterLine(modernFilter(kind, options, tools), entry, *output)
                        : printable(u"# %1: not minified: %2"_s.arg(entry, options.error)) + u'\n';
            continue;
        }
        add(tools.java, command.arguments(entry, output));
        if (settings.boolForKey(gzipCheckerKeyString)) {
            for (const auto &[program, arguments] : gzipSteps(output))
                add(program, arguments);
        }
    }
    return TerminalText::print(stdout, text);
}

} // namespace brevant
