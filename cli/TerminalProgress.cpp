// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalProgress.h"

#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

namespace brevant {

namespace {

constexpr int usualColumns = 80;
const QString eraseLineAbove =
    QStringLiteral("\x1b[A\r\x1b[K"); // ECMA-48: CUU, cursor up; EL, erase to the end

int terminalColumns()
{
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usualColumns;
}

/// Whether Java prints the options it found on the terminal at each start.
bool isJavaTalkative()
{
    constexpr std::array<const char *, 3> variables{"JAVA_TOOL_OPTIONS", "JDK_JAVA_OPTIONS", "_JAVA_OPTIONS"};
    return ::isatty(STDERR_FILENO) != 0 &&
           std::ranges::any_of(variables, [](const char *name) { return std::getenv(name) != nullptr; });
}

} // namespace

TerminalProgress::Style TerminalProgress::styleOfStandardOutput()
{
    const char *terminal = std::getenv("TERM");
    const bool canErase = terminal != nullptr && std::string_view(terminal) != "dumb";
    return ::isatty(STDOUT_FILENO) != 0 && canErase && !isJavaTalkative() ? Style::Live : Style::Lines;
}

void TerminalProgress::entryStarted(const EntryStart &start)
{
    m_status = start.status;
    if (m_style != Style::Live)
        return;
    // The cursor waits below the line, so that what a compressor prints begins on a line of its own.
    TerminalText::print(stdout, takeLiveLine() + liveLine(start) + u'\n');
    m_liveLineShown = true;
}

void TerminalProgress::entryEnded(const EntryResult &result)
{
    RunReport::entryEnded(result);
    // A failing compressor has just printed why below the live line, which stays as a heading for it.
    if (result.outcome != EntryResult::Outcome::Done)
        m_liveLineShown = false;
    if (m_style == Style::Lines)
        TerminalText::print(stdout, lineFor(result));
}

void TerminalProgress::runEnded(RunEnd end, const QString &status)
{
    RunReport::runEnded(end, status);
    if (m_style != Style::Quiet)
        TerminalText::print(stdout, takeLiveLine() + printable(status.isEmpty() ? m_status : status) + u'\n');
}

QString TerminalProgress::lineFor(const EntryResult &result) const
{
    const QString source = printable(result.source);
    if (result.outcome != EntryResult::Outcome::Done)
        return QStringLiteral("%1 %2: %3\n").arg(m_status, source, printable(result.reason()));
    return QStringLiteral("%1 %2 -> %3, %4 -> %5 bytes\n")
        .arg(m_status, source, printable(*result.output),
             TerminalText::grouped(result.sizeBefore.value_or(0)),
             TerminalText::grouped(result.sizeAfter.value_or(0)));
}

QString TerminalProgress::takeLiveLine()
{
    // After a stop request its message is the line above the cursor, and must stay.
    const bool isAbove = std::exchange(m_liveLineShown, false) && StopSignals::requested() == Stop::No;
    return isAbove ? eraseLineAbove : QString();
}

QString TerminalProgress::liveLine(const EntryStart &start) const
{
    const auto done = static_cast<int>(endedCount());
    TerminalText::Progress progress{done, std::max(start.count, 1), start.status,
                                    printable(PathString::lastComponent(start.path).toString()), QString()};
    if (done > 0) {
        const double passed = std::chrono::duration<double>(Clock::now() - m_start).count();
        const double left = passed / done * (progress.total - done);
        progress.left = QStringLiteral("%1 left").arg(TerminalText::duration(left));
    }
    return TerminalText::progressLine(progress, terminalColumns() - 1);
}

} // namespace brevant
