// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PrintedRun.h"

#include "cli/CommandLine.h"
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
#include <QSet>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace brevant {

QString notUtf8()
{
    return u"its path is not valid UTF-8 and cannot be handed to a compressor"_s;
}

Refusal refusalFor(std::vector<QString> sources, const EntrySettings &settings,
                   const EntriesWithOutputs &done)
{
    for (const auto &[source, output] : done)
        sources.push_back(source);
    OutputClaims claims(sources);
    for (const auto &[source, output] : done)
        static_cast<void>(claims.claim(source, output));
    return [commands = BySettings<CompressorCommand>(settings),
            claims = std::move(claims)](const QString &source, const std::optional<QString> &output) mutable {
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
    pairs.reserve(static_cast<std::size_t>(queue.count()));
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

bool printList(const PlannedRun &planned, bool forPrograms)
{
    QByteArray text;
    const auto add = [&](const QString &source, const QString &output) {
        if (forPrograms) {
            text += RawBytes::encoded(source) + '\0';
            return;
        }
        appendPrintable(text, source);
        text += '\t';
        appendPrintable(text, output);
        text += '\n';
    };
    OutputPath outputPath(planned.settings, OutputPath::Reading::Once);
    for (const QString &entry : planned.queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        if (!RawBytes::areIn(entry))
            add(entry, output.value_or(QString()));
    }
    for (const FileCopy &copy : planned.copies)
        add(copy.found, copy.target);
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

namespace {

/// A run as a shell script.
class Script final {
public:
    Script(const CommandLine &line, const Tools &tools) : m_line(line), m_tools(tools) {}

    void add(const QString &program, const QStringList &arguments)
    {
        m_text += TerminalText::commandLine(program, arguments) + u'\n';
    }

    void addNotMinified(const QString &entry, const QString &reason)
    {
        m_text += printable(u"# %1: not minified: %2"_s.arg(entry, reason)) + u'\n';
    }

    void addEntry(const QString &entry, const QString &output, const CompressorCommand &command)
    {
        const bool isModern = isModernChosen(command.settings());
        if (const QString error = isModern ? command.modernOptions(*anyKindOf(entry)).error : QString();
            !error.isEmpty()) {
            addNotMinified(entry, error);
            return;
        }
        addFolderOf(output);
        if (isModern)
            addFilter(entry, output, command);
        else
            add(m_tools.java, command.arguments(entry, output));
        QStringList outputs{output};
        if (!isModern && command.settings().boolForKey(gzipCheckerKeyString)) {
            for (const auto &[program, arguments] : gzipSteps(output))
                add(program, arguments);
            outputs.append(PathString::withExtension(output, u"gz"));
        }
        addTimes(entry, outputs);
    }

    void addCopy(const FileCopy &copy)
    {
        addFolderOf(copy.target);
        add(u"cp"_s, {copy.source, copy.target});
        addTimes(copy.source, {copy.target});
    }

    [[nodiscard]] const QString &text() const { return m_text; }

private:
    void addFilter(const QString &entry, const QString &output, const CompressorCommand &command)
    {
        const FileKind &kind = *anyKindOf(entry);
        m_text += filterLine(modernFilterFor(kind, sourceBytes(entry), command.modernOptions(kind), m_tools),
                             entry, output);
    }

    /// Each is made once.
    void addFolderOf(const QString &output)
    {
        const QString folder = PathString::folder(output).toString();
        if (m_line.outDir.isEmpty() || m_folders.contains(folder))
            return;
        m_folders.insert(folder);
        add(u"mkdir"_s, {u"-p"_s, folder});
    }

    void addTimes(const QString &source, const QStringList &files)
    {
        if (m_line.keepTimes)
            add(u"touch"_s, QStringList{u"-r"_s, source} + files);
    }

    const CommandLine &m_line;
    const Tools &m_tools;
    QSet<QString> m_folders;
    QString m_text;
};

} // namespace

bool printCommands(const PlannedRun &planned, const CommandLine &line, const Tools &tools)
{
    Script script(line, tools);
    const std::vector<QString> entries = planned.queue.entries();
    const auto stores = planned.settings.of(entries);
    if (!std::ranges::all_of(stores, [](const SettingsStore *store) { return isModernChosen(*store); }))
        script.add(u"cd"_s, {tools.folder});
    BySettings<CompressorCommand> commands(planned.settings);
    const Refusal refusal = refusalFor(entries, planned.settings, planned.done);
    for (const auto &[entry, output] : entriesWithOutputs(planned.queue, planned.settings)) {
        if (const QString reason = refusal(entry, output); !reason.isEmpty())
            script.addNotMinified(entry, reason);
        else
            script.addEntry(entry, *output, commands.of(entry));
    }
    for (const FileCopy &copy : planned.copies)
        script.addCopy(copy);
    return TerminalText::print(stdout, script.text());
}

int statusOfPrinting(bool isPrinted)
{
    if (!isPrinted)
        TerminalText::printError(u"standard output cannot be written: %1"_s.arg(qt_error_string(errno)));
    return isPrinted ? AllDone : SomeFailed;
}

} // namespace brevant
