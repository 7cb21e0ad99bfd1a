// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RunReport.h"

#include "cli/TerminalText.h"
#include "engine/classic/Explanation.h"
#include "engine/report/SourceLine.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QTime>

#include <algorithm>
#include <array>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

int terminalColumns()
{
    constexpr int usualColumns = 80;
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usualColumns;
}

/// Whether Java prints the options it found on the terminal at each start.
bool isJavaTalkative()
{
    constexpr std::array<const char *, 3> variables{"JAVA_TOOL_OPTIONS", "JDK_JAVA_OPTIONS", "_JAVA_OPTIONS"};
    return ::isatty(STDERR_FILENO) != 0 && std::ranges::any_of(variables, qEnvironmentVariableIsSet);
}

bool isDone(const EntryResult &result)
{
    return result.outcome == EntryResult::Outcome::Done;
}

/// 0 for a file that is not done.
qint64 savedBytes(const EntryResult &result)
{
    return isDone(result) ? result.sizeBefore.value_or(0) - result.sizeAfter.value_or(0) : 0;
}

/// As compilers name a place, with the line and a mark below it.
QString placeText(const QString &source, const CompressorMessage &message, TextEncoding encoding,
                  const Colours &colours)
{
    QString text = printable(source) + u":%1:%2: "_s.arg(message.line).arg(message.column) +
                   colours.error(u"error"_s) + u": "_s + printable(message.text) + u'\n';
    const auto line = sourceLineAt(source, message.line, message.column, encoding);
    if (!line)
        return text;
    text += u"    "_s + line->text() + u'\n';
    if (message.column > 0)
        text += QString(4 + TerminalText::width(line->before), u' ') + colours.error(u"^"_s) + u'\n';
    return text;
}

/// A change that was minified, with the time of the day. An output beside its source goes by its name.
QString changeLine(const EntryResult &result)
{
    const bool isBeside = PathString::folder(result.source) == PathString::folder(*result.output);
    const QString output = isBeside ? PathString::lastComponent(*result.output).toString() : *result.output;
    const qint64 before = result.sizeBefore.value_or(0);
    const qint64 after = result.sizeAfter.value_or(0);
    const QString said = printable(result.messages.inWords());
    return u"%1 %2 -> %3, %4 -> %5 bytes, %6 % saved%7\n"_s.arg(
        QTime::currentTime().toString(u"HH:mm:ss"), printable(result.source), printable(output),
        TerminalText::grouped(before), TerminalText::grouped(after), percentSaved(before, after),
        said.isEmpty() ? said : u"; "_s + said);
}

} // namespace

RunReport::Style RunReport::styleOfStandardOutput()
{
    const QString terminal = qEnvironmentVariable("TERM", u"dumb"_s);
    return ::isatty(STDOUT_FILENO) != 0 && terminal != u"dumb" && !isJavaTalkative() ? Style::Live
                                                                                     : Style::Lines;
}

void RunReport::entryStarted(const EntryStart &start)
{
    m_status = start.status;
    if (m_style != Style::Live)
        return;
    // The cursor waits below the line, so that what a compressor prints begins on a line of its own.
    TerminalText::print(stdout, takeLiveLine() + liveLine(start) + u'\n');
    m_liveLineShown = true;
}

void RunReport::entryEnded(const EntryResult &result)
{
    if (isOfChanges() && !isDone(result) && !FileMarks::ofFile(result.source))
        return;
    m_results.push_back(result);
    m_checked.push_back(m_check ? m_check(result) : std::nullopt);
    // A failing compressor has just printed why below the live line, which stays as a heading for it.
    if (result.outcome != EntryResult::Outcome::Done)
        m_liveLineShown = false;
    if (m_style == Style::Changes && isDone(result))
        TerminalText::print(stdout, changeLine(result));
    if (m_style == Style::Lines)
        TerminalText::print(stdout, lineFor(result));
}

void RunReport::runEnded(RunEnd end, const QString &status)
{
    m_end = end;
    m_seconds = std::chrono::duration<double>(Clock::now() - m_start).count();
    if (end == RunEnd::JavaNotStarted)
        m_failure = status;
    // The results are in the queue's order, and no entry is there twice.
    auto next = m_results.begin();
    for (const QString &entry : m_entries) {
        if (next != m_results.end() && next->source == entry)
            ++next;
        else
            m_notRun.append(entry);
    }
    if (m_style == Style::Live || m_style == Style::Lines)
        TerminalText::print(stdout, takeLiveLine() + printable(status.isEmpty() ? m_status : status) + u'\n');
}

QString RunReport::lineFor(const EntryResult &result) const
{
    const QString source = printable(result.source);
    if (result.outcome != EntryResult::Outcome::Done)
        return u"%1 %2: %3\n"_s.arg(m_status, source, printable(result.reason()));
    const QString said = printable(result.messages.inWords());
    return u"%1 %2 -> %3, %4 -> %5 bytes%6\n"_s.arg(
        m_status, source, printable(*result.output), TerminalText::grouped(result.sizeBefore.value_or(0)),
        TerminalText::grouped(result.sizeAfter.value_or(0)), said.isEmpty() ? said : u"; "_s + said);
}

/// The control characters that erase the live line; empty if there is none.
QString RunReport::takeLiveLine()
{
    // ECMA-48: CUU, cursor up; EL, erase to the end
    const QString eraseLineAbove = u"\x1b[A\r\x1b[K"_s;
    // After a stop request its message is the line above the cursor, and must stay.
    const bool isStopping = m_stop != nullptr && *m_stop != Stop::No;
    return std::exchange(m_liveLineShown, false) && !isStopping ? eraseLineAbove : QString();
}

QString RunReport::liveLine(const EntryStart &start) const
{
    const auto done = static_cast<int>(endedCount());
    TerminalText::Progress progress{done, std::max(start.count, 1), start.status,
                                    printable(PathString::lastComponent(start.path).toString()), QString()};
    if (done > 0) {
        const double passed = std::chrono::duration<double>(Clock::now() - m_start).count();
        progress.left = u"%1 left"_s.arg(TerminalText::duration(passed / done * (progress.total - done)));
    }
    return TerminalText::progressLine(progress, terminalColumns() - 1);
}

qsizetype RunReport::doneCount() const
{
    return std::ranges::count(m_results, EntryResult::Outcome::Done, &EntryResult::outcome);
}

QString RunReport::summary(const Colours &colours) const
{
    if (count() == 0 && !m_copied.isEmpty())
        return m_copied + u".\n"_s;
    qint64 before = 0;
    qint64 after = 0;
    for (const EntryResult &result : m_results) {
        if (result.outcome == EntryResult::Outcome::Done) {
            before += result.sizeBefore.value_or(0);
            after += result.sizeAfter.value_or(0);
        }
    }
    QString text = u"%1: %2 -> %3 bytes, %4"_s.arg(
        TerminalText::countedFiles(doneCount()), TerminalText::grouped(before), TerminalText::grouped(after),
        colours.success(u"%1 % saved"_s.arg(percentSaved(before, after))));
    if (const qsizetype failed = endedCount() - doneCount(); failed > 0)
        text += u"; %1 failed"_s.arg(TerminalText::grouped(failed));
    if (!m_copied.isEmpty())
        text += u"; "_s + m_copied;
    text += u".\n"_s + remarkable();
    if (!m_notRun.isEmpty())
        text += u"Stopped before %1; %2 not minified.\n"_s.arg(printable(m_notRun.first()),
                                                               TerminalText::countedFiles(m_notRun.size()));
    return text;
}

/// What else there is to say of what was minified, in two columns; empty for nothing.
QString RunReport::remarkable() const
{
    constexpr qsizetype leastFiles = 5; // of fewer the lines above tell as much
    QString text;
    const auto add = [&text](const QString &title, const QString &value) {
        text += u"  %1%2\n"_s.arg(title, -16).arg(value);
    };
    for (const auto &[title, size] :
         {std::pair(u"gzip"_s, &EntryResult::gzipSize), std::pair(u"Brotli"_s, &EntryResult::brotliSize)}) {
        qint64 sum = 0;
        for (const EntryResult &result : m_results)
            sum += (result.*size).value_or(0);
        if (sum > 0)
            add(title, TerminalText::grouped(sum) + u" bytes"_s);
    }
    if (doneCount() < leastFiles)
        return text;
    const auto secondsOf = [](const EntryResult &result) { return isDone(result) ? result.seconds : -1; };
    const EntryResult &slowest = *std::ranges::max_element(m_results, {}, secondsOf);
    add(u"slowest"_s, u"%1 s  "_s.arg(slowest.seconds, 0, 'f', 2) + printable(slowest.source));
    const EntryResult &best = *std::ranges::max_element(m_results, {}, savedBytes);
    if (savedBytes(best) > 0)
        add(u"biggest saving"_s,
            u"%1 bytes  "_s.arg(TerminalText::grouped(savedBytes(best))) + printable(best.source));
    return text;
}

QString RunReport::failurePlaces(const EncodingOf &encodingOf, const Colours &colours) const
{
    QString text;
    qsizetype left = mostPlaces;
    for (const EntryResult &result : m_results) {
        const auto &messages = result.messages.shown;
        const auto place = std::ranges::find_if(messages, [](const CompressorMessage &message) {
            return message.kind == CompressorMessage::Kind::Error && message.line > 0;
        });
        if (!result.isMinified() && place != messages.end() && left-- > 0)
            text += placeText(result.source, *place, encodingOf(result.source), colours);
    }
    return text;
}

QString RunReport::failures(const Colours &colours) const
{
    QString text;
    for (const EntryResult &result : m_results) {
        if (result.outcome != EntryResult::Outcome::Done)
            text += colours.error(u"Failed:"_s) +
                    u" %1: %2\n"_s.arg(printable(result.source), printable(result.reason()));
    }
    return text;
}

QString RunReport::notes() const
{
    QStringList notes;
    for (const EntryResult &result : m_results)
        notes += result.notes;
    notes.removeDuplicates(); // every worker says where its copies are
    QString text;
    for (const QString &note : notes)
        text += u"brevant-cli: %1\n"_s.arg(printable(note));
    return text;
}

bool RunReport::hasWarnings() const
{
    return std::ranges::any_of(m_checked,
                               [](const auto &checked) { return checked && checked->isSuspicious(); });
}

QString RunReport::warnings(const Colours &colours) const
{
    const bool isQuiet = m_style == Style::Quiet || m_style == Style::QuietChanges;
    QString text;
    for (std::size_t i = 0; i < m_checked.size(); ++i) {
        const QString source = printable(m_results[i].source);
        const CheckedFile checked = m_checked[i].value_or(CheckedFile());
        if (!checked.obstacle.isEmpty())
            text += u"Not checked: %1: %2\n"_s.arg(source, printable(checked.obstacle));
        for (const ResultWarning &warning : checked.warnings) {
            if (!warning.isNote() || !isQuiet)
                text += (warning.isNote() ? u"Note:"_s : colours.warning(u"Warning:"_s)) +
                        u" %1: %2\n"_s.arg(source, printable(warning.inWords()));
        }
    }
    return text;
}

void RunReport::explainFailures(const Tools &tools, qsizetype most)
{
    const auto isStopped = [this] { return m_stop == nullptr || *m_stop != Stop::No; };
    for (EntryResult &result : m_results) {
        const bool isSilent = !result.arguments.isEmpty() && result.messages.shown.empty();
        if (!isSilent || result.outcome == EntryResult::Outcome::CompressorKilled)
            continue;
        if (isStopped() || most-- <= 0)
            return;
        result.messages = explainFailure(result.arguments, tools, *m_stop).messages;
    }
}

Report RunReport::toReport() const
{
    Report report{{m_results.begin(), m_results.end()}, m_failure, m_started, m_seconds};
    for (std::size_t i = 0; i < m_checked.size(); ++i) {
        if (m_checked[i])
            report.rows[i].setChecked(*m_checked[i]);
    }
    for (const QString &entry : m_notRun)
        report.rows.emplace_back(ResultRow::State::NotRun, entry);
    return report;
}

} // namespace brevant
