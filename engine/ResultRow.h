// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryResult.h"
#include "engine/check/ResultWarning.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace brevant {

/// What there is to say of a file besides sizes and time.
struct ResultRemarks {
    QString reason; ///< EntryResult::reason(), or another whole sentence
    CompressorMessages messages;
    QStringList notes;
    QStringList arguments{};              ///< EntryResult::arguments
    int status = 0;                       ///< EntryResult::status
    std::optional<CheckedFile> checked{}; ///< its result, where that was asked for
    bool isExplained = false;             ///< the compressor has been asked once more why it failed
    QString original{};                   ///< EntryResult::original, until it is put back
    QString notKept{};                    ///< EntryResult::notKept
    bool isRestored = false;              ///< the original has been put back
};

/// What became of one file of a run, as it is reported. Kept small, as a run may have 100,000 of them; most
/// of those have no remarks.
struct ResultRow {
    /// The worst first.
    enum class State : quint8 {
        Failed,
        PutBack, ///< it failed, and the source, which was lost, is as before again
        Skipped, ///< not worked on, as a file might have been lost
        NotRun,  ///< the run ended before
        Running,
        Warned, ///< minified, but not all is well
        Done,
    };
    static constexpr qint64 noSize = -1;

    State state = State::NotRun;
    QString source;
    QString output; ///< null if there is none
    qint64 sizeBefore = noSize;
    qint64 sizeAfter = noSize;
    qint64 gzipSize = noSize;
    qint64 brotliSize = noSize;
    double seconds = 0;
    std::shared_ptr<const ResultRemarks> remarks; ///< null if there are none
    std::optional<CheckBasis> basis;              ///< of a check that is still to be made

    ResultRow() = default;
    ResultRow(State itsState, const QString &itsSource) : state(itsState), source(itsSource) {}
    explicit ResultRow(const EntryResult &result);

    /// Adds what became of checking it, which is done with that.
    void setChecked(const CheckedFile &checked);

    /// Whether it has an output that counts, whatever became of its copies.
    [[nodiscard]] bool isMinified() const { return state >= State::Warned; }

    /// How much of the source was saved, up to 1, and below 0 for an output that is larger; nothing unless it
    /// is minified.
    [[nodiscard]] std::optional<double> savedPart() const;

    [[nodiscard]] QString reason() const { return remarks ? remarks->reason : QString(); }
};

/// Of the JSON report. It grows where something is left out or gets another meaning, not where something is
/// added.
inline constexpr int reportVersion = 1;

/// The report for machines; brevant-cli(1) describes its format. `reason`: why nothing could be run.
/// What rows without a source tell follows that.
[[nodiscard]] QByteArray reportAsJson(const std::vector<ResultRow> &rows, const QString &reason);

/// "2.5" percent saved from `before` to `after` bytes, negative if it grew; "0" if there was nothing.
[[nodiscard]] QString percentSaved(qint64 before, qint64 after);

} // namespace brevant
