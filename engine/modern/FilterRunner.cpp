// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/FilterRunner.h"

#include "engine/modern/EsbuildPackets.h"

#include <QProcess>

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using End = FilterRun::End;

} // namespace

FilterRunner::FilterRunner(const std::atomic<Stop> &stop) : m_stop(stop) {}

FilterRunner::~FilterRunner()
{
    endKept();
}

FilterRun FilterRunner::run(const Filter &filter, const QByteArray &input, std::chrono::milliseconds limit)
{
    if (m_timeout.count() > 0)
        limit = std::min(limit, m_timeout);
    // A longer text takes so long that a start does not matter, and esbuild reads packets slower than texts.
    constexpr qsizetype longestText = 500'000;
    if (filter.canBeKept && input.size() <= longestText && m_stop != Stop::AtOnce && keep(filter)) {
        if (auto run = ask(filter, input, std::chrono::steady_clock::now() + limit))
            return *std::move(run);
    }
    return runFilter(filter, input, m_stop, limit);
}

/// Whether esbuild is there and waits for a text.
bool FilterRunner::keep(const Filter &filter)
{
    constexpr auto longestStart = 5s;
    if (m_kept && m_kept->waitForFinished(0)) // somebody has ended it
        endKept();
    if (m_kept || !m_canKeep)
        return m_canKeep;
    m_kept = std::make_unique<QProcess>();
    setUpFilter(*m_kept, {filter.program, EsbuildPackets::arguments(), filter.folder});
    m_kept->start();
    FilterRun run;
    const auto greeting = nextPacket(run, 0, std::chrono::steady_clock::now() + longestStart);
    m_canKeep = greeting == EsbuildPackets::greeting();
    if (!m_canKeep)
        endKept();
    return m_canKeep;
}

/// Nothing if it ended, or answered otherwise than esbuild does: who knows whether the text is to blame.
std::optional<FilterRun> FilterRunner::ask(const Filter &filter, const QByteArray &input, Deadline deadline)
{
    FilterRun run;
    m_kept->write(EsbuildPackets::requestHead(filter.arguments, input.size()));
    m_kept->write(input);
    const std::optional<QByteArray> packet = nextPacket(run, input.size(), deadline);
    const auto answer = packet ? EsbuildPackets::readAnswer(*packet) : std::nullopt;
    if (answer) {
        run.output = answer->code;
        run.status = answer->isFailure ? 1 : 0;
        return run;
    }
    endKept();
    m_canKeep = !packet;
    return packet || run.end == End::Cut ? std::nullopt : std::optional(run);
}

/// Waits for a whole packet from esbuild. Where none comes, `run` says why.
std::optional<QByteArray> FilterRunner::nextPacket(FilterRun &run, qsizetype inputSize, Deadline deadline)
{
    constexpr int lookAgain = 50; // milliseconds
    QByteArray received;
    for (;;) {
        takeMessages(*m_kept, run);
        received += m_kept->readAllStandardOutput();
        const std::optional<qint64> size = EsbuildPackets::sizeOfPacket(received);
        if (size && *size > longestOutput(inputSize)) {
            run.end = End::TooLong;
            return std::nullopt;
        }
        if (size && received.size() >= *size)
            return received;
        if (m_kept->state() == QProcess::NotRunning) {
            run.end = End::Cut;
            return std::nullopt;
        }
        if (m_stop == Stop::AtOnce || std::chrono::steady_clock::now() > deadline) {
            run.end = m_stop == Stop::AtOnce ? End::Stopped : End::TooSlow;
            return std::nullopt;
        }
        m_kept->waitForReadyRead(lookAgain);
    }
}

void FilterRunner::endKept()
{
    if (!m_kept)
        return;
    killGroup(*m_kept);
    m_kept->waitForFinished(-1); // or its destructor would complain
    m_kept.reset();
}

} // namespace brevant
