// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>

class QProcess;

namespace brevant {

/// A program that reads text from standard input and writes its result to standard output.
struct Filter {
    QString program; ///< by its absolute path
    QStringList arguments;
    QString folder = QStringLiteral("/"); ///< it works in; no file of the user's is near the root
    bool canBeKept = false;               ///< it is the esbuild that Brevant brings along: see FilterRunner
};

/// What became of one run of a filter.
struct FilterRun {
    enum class End {
        Exited,
        Crashed,    ///< or ended by somebody's signal
        Cut,        ///< it did not take the whole text, or the pipes failed: the result may be part of one
        NotStarted, ///< `error` says why
        TooSlow,
        TooLong, ///< the output is longer than any that makes sense
        Stopped, ///< on request
    };

    End end = End::Exited;
    int status = 0; ///< the exit status, or the signal
    QByteArray output;
    QByteArray messages; ///< what it said on standard error, without what follows the first 64 KiB
    QString error;

    [[nodiscard]] bool isSuccess() const { return end == End::Exited && status == 0; }

    /// How it ended, in words: "esbuild ended with status 1".
    [[nodiscard]] QString words(const Filter &filter) const;
};

/// How long a filter may work on a text of that size: a minute, and 6 s for each 1,000,000 bytes.
[[nodiscard]] std::chrono::milliseconds timeFor(qsizetype inputSize);

/// Runs the filter over `input` on the calling thread. Ends it, with all its children, on a stop at once or
/// when `limit` has passed.
[[nodiscard]] FilterRun runFilter(const Filter &filter, const QByteArray &input,
                                  const std::atomic<Stop> &stop, std::chrono::milliseconds limit);

/// For what else starts filters: makes a process ready to be started, ends it and its children, and takes
/// what it has said meanwhile.
void setUpFilter(QProcess &process, const Filter &filter);
void killGroup(const QProcess &process);
void takeMessages(QProcess &process, FilterRun &run);

/// Far above what escaping can make of a text, or a source map add to it.
[[nodiscard]] constexpr qsizetype longestOutput(qsizetype inputSize)
{
    return 16 * inputSize + 16'000'000;
}

} // namespace brevant
