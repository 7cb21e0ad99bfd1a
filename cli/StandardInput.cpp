// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StandardInput.h"

#include "cli/CommandLine.h"
#include "cli/MinifyRun.h"
#include "cli/PrintedRun.h"
#include "cli/RunReport.h"
#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr qint64 longestInput = 100'000'000; // it may never end

/// What became of the text.
struct MinifiedText {
    int status = SomeFailed;
    QByteArray output;   ///< if all went well
    QByteArray messages; ///< for standard error
};

MinifiedText failed(const QString &why)
{
    return {SomeFailed, {}, printable(u"brevant-cli: "_s + why).toUtf8() + '\n'};
}

/// Leads standard output and error into a file for as long as this lives, for child processes too.
class StreamsAside final {
public:
    explicit StreamsAside(const QString &path)
        : m_file(openFile(QFile::encodeName(path), O_RDWR | O_CREAT | O_APPEND))
    {
        for (std::size_t i = 0; i < streams.size(); ++i) {
            m_kept[i] = Descriptor(::fcntl(streams[i], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
            ::dup2(m_file.isOpen() ? m_file.number() : STDERR_FILENO, streams[i]);
        }
    }
    ~StreamsAside()
    {
        for (std::size_t i = 0; i < streams.size(); ++i)
            ::dup2(m_kept[i].number(), streams[i]);
    }
    Q_DISABLE_COPY_MOVE(StreamsAside)

private:
    static constexpr std::array streams{STDOUT_FILENO, STDERR_FILENO};
    Descriptor m_file;
    std::array<Descriptor, streams.size()> m_kept;
};

/// What a compressor says of a text that it has minified all the same.
QString warnings(const RunReport &report)
{
    const std::vector<ResultRow> rows = report.toReport().rows;
    if (rows.empty() || rows[0].remarks == nullptr || !rows[0].isMinified())
        return {};
    const CompressorMessages &messages = rows[0].remarks->messages;
    const bool isWarned = std::ranges::any_of(messages.shown, [](const CompressorMessage &message) {
        return message.kind == CompressorMessage::Kind::Warning;
    });
    return isWarned ? u"%1: %2\n"_s.arg(rows[0].source, printable(messages.inWords())) : QString();
}

/// What is to be said of the run. The compressor's own words are among it unless they were understood.
QString messagesOf(const RunReport &report, const CommandLine &line, const SettingsStore &settings,
                   const QByteArray &said)
{
    const Colours colours = Colours::of(STDERR_FILENO);
    const QString places = report.failurePlaces(encodingsBy(settings), colours);
    const QString failure =
        report.failure().isEmpty() ? QString() : u"brevant-cli: %1\n"_s.arg(report.failure());
    return report.notes() + (places.isEmpty() ? QString::fromUtf8(said) : places) + report.failures(colours) +
           (line.quiet ? QString() : warnings(report)) + failure;
}

/// The run over the only file in that folder.
MinifiedText run(const CommandLine &line, const Tools &tools, const SettingsStore &settings,
                 const QTemporaryDir &folder)
{
    const QString source = folder.filePath(u"text."_s + line.textKind);
    const QString messages = folder.filePath(u"messages"_s);
    FileQueue queue;
    queue.append(source);
    RunReport report(queue.entries(), RunReport::Style::Quiet, &stopRequested);
    RunEnd end = RunEnd::Completed;
    {
        const StreamsAside aside(messages);
        end = MinifyJob(queue, settings, tools, report, stopRequested, refusalFor(queue.entries(), settings))
                  .run(1, {false, std::chrono::seconds(line.timeout)});
    }
    report.explainFailures(tools, 1);
    const QByteArray said = FileBytes::readAll(QFile::encodeName(messages)).value_or(QByteArray());
    MinifiedText text;
    text.messages =
        messagesOf(report, line, settings, said).replace(printable(source), u"<stdin>"_s).toUtf8();
    if (end == RunEnd::JavaNotStarted)
        text.status = NoTools;
    const auto output = FileBytes::readAll(
        QFile::encodeName(OutputPath(settings, OutputPath::Reading::Once).next(source).value_or(QString())));
    if (!report.isAllDone() || !output)
        return text;
    return {AllDone, *output, text.messages};
}

MinifiedText minified(const CommandLine &line, const Tools &tools, const SettingsStore &settings)
{
    const std::optional<QByteArray> bytes = FileBytes::readStream(STDIN_FILENO, longestInput);
    if (!bytes)
        return failed(errno == EFBIG ? u"standard input is longer than 100 MB"_s
                                     : u"standard input cannot be read: %1"_s.arg(qt_error_string(errno)));
    const StopSignalsEndWork stopSignals; // until the folder is gone
    const QTemporaryDir folder(temporaryFolderForOutputs());
    QFile file(folder.filePath(u"text."_s + line.textKind));
    if (!folder.isValid())
        return failed(u"a temporary folder cannot be made: %1"_s.arg(folder.errorString()));
    if (!file.open(QIODevice::WriteOnly) || file.write(*bytes) != bytes->size() || !file.flush())
        return failed(u"a temporary file cannot be written: %1"_s.arg(file.errorString()));
    file.close();
    return run(line, tools, settings, folder);
}

} // namespace

void overrideForText(SettingsStore &settings)
{
    for (const QLatin1StringView key : {sameFolderKeyString, suffixSwitcherKeyString})
        settings.setOverride(true, key);
    for (const QLatin1StringView key :
         {gzipCheckerKeyString, brotliCheckerKeyString, sourceMapCheckerKeyString})
        settings.setOverride(false, key);
    settings.setOverride(u".min"_s, suffixKeyString);
}

int minifyStandardInput(const CommandLine &line, const Tools &tools, const SettingsStore &settings)
{
    if (const QString missing = tools.missing(settings); !missing.isEmpty()) {
        TerminalText::printError(missing);
        return NoTools;
    }
    const MinifiedText text = minified(line, tools, settings);
    if (stopSignal != 0)
        return statusOfSignal(stopSignal);
    TerminalText::print(stderr, text.messages);
    return text.status == AllDone ? statusOfPrinting(TerminalText::print(stdout, text.output)) : text.status;
}

} // namespace brevant
