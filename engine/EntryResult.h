// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ChildProcess.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <cstdint>
#include <optional>

namespace brevant {

/// What became of one entry. The run itself never looks at it: its end does not depend on what becomes of the
/// entries.
struct EntryResult {
    enum class Outcome {
        Done,
        CompressorFailed, ///< it ended with another status than 0
        CompressorKilled, ///< a signal ended it
        NoOutput,         ///< it left no output, or only the one from before
        EmptyOutput,      ///< it left an empty output of a source that gives none
        NoGzipCopy,       ///< minified, but the copy was not made
        DiskFull,         ///< written, and no room is left on the disk, so it may be cut
        NotWritten,       ///< written over the source, and then the disk refused it
        NotSafe,          ///< not worked on: the source is lost or might be, or another run is at work on it
        Refused,          ///< not worked on, as another file might be lost
    };
    /// What became of a source that might have been lost.
    enum class Source {
        Safe,
        PutBack, ///< it was lost, and is as before again
        Lost,    ///< it could not be put back; the next start of the program tries again
    };

    QString source;
    std::optional<QString> output;
    Outcome outcome = Outcome::NoOutput;
    Source sourceState = Source::Safe;
    QString kept;      ///< the file with what was in a source before it was put back, which may be newer work
    QString detail;    ///< why there is no safety copy, why it was refused, or why the source is not put back
    QStringList notes; ///< whole sentences: what else became of files of the user's
    QString obstacle;  ///< what was in the way before the compressor started; empty if nothing was seen
    int status = 0;    ///< the compressor's exit status, or the signal that ended it
    double seconds = 0;               ///< for the compressor and the gzip copy
    std::optional<qint64> sizeBefore; ///< bytes of the source before; nothing if there was none
    std::optional<qint64> sizeAfter;  ///< bytes of the output afterwards
    std::optional<qint64> gzipSize;   ///< bytes of the copy, where one was asked for and made

    /// The outcome in words, as the end of "FILE: …"; empty if all went well.
    [[nodiscard]] QString reason() const;
};

/// Watches one entry being worked on: made before its compressor starts, asked after.
class EntryWatch final {
public:
    EntryWatch(const QString &source, const std::optional<QString> &output);

    /// To be called between the compressor and the gzip copy.
    void compressorEnded(const ChildExit &exit);

    /// The result of an entry that is not worked on: `outcome` is NotSafe or Refused.
    [[nodiscard]] EntryResult notRun(EntryResult::Outcome outcome, const QString &reason);

    /// The result, when everything is done for this entry.
    [[nodiscard]] EntryResult finish(bool gzipWanted, double seconds);

private:
    /// One state of a file; its change time tells a file written again from the one before.
    struct State {
        ino_t inode = 0;
        qint64 size = 0;
        std::int64_t changedAt = 0;
        bool operator==(const State &) const = default;
    };
    [[nodiscard]] static std::optional<State> stateOf(const QString &path);

    EntryResult m_result;
    const bool m_mayBeEmpty; ///< nothing is left of such a source when it is minified
    std::optional<State> m_outputBefore;
    std::optional<State> m_gzipBefore;
    qint64 m_writtenSize = 0; ///< by the compressor
};

} // namespace brevant
