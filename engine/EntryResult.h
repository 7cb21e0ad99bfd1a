// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/CheckBasis.h"
#include "engine/modern/FilterMessages.h"

#include <QString>
#include <QStringList>

#include <optional>

class QProcess;

namespace brevant {

/// What became of one entry. The run goes on whatever it is.
struct EntryResult {
    enum class Outcome {
        Done,
        CompressorFailed, ///< it exited with a status other than 0
        CompressorKilled, ///< a signal ended it
        NoOutput,         ///< there is none, or only one from before
        EmptyOutput,      ///< of a source that is not blank
        NoGzipCopy,       ///< minified, but the copy was not made
        NoBrotliCopy,     ///< likewise
        NotMinified,      ///< by a modern compressor; `obstacle` says why
        DiskFull,         ///< written, but the output may be cut off
        NotWritten,       ///< written over the source, but not to be flushed to the disk
        NotSafe,          ///< not worked on: no safety copy, or another run is at work on the source
        Refused,          ///< not worked on: another file might be lost
    };
    /// What became of the source.
    enum class Source {
        Safe,
        PutBack, ///< it was lost, and is as before again
        Lost,    ///< it could not be put back; the next start of the program tries again
    };

    QString source;
    std::optional<QString> output;
    Outcome outcome = Outcome::NoOutput;
    Source sourceState = Source::Safe;
    QString kept;   ///< where the content that a put-back source had is kept, as it may be newer work
    QString detail; ///< why there is no safety copy, why it was refused, or why the source is not put back
    QByteArray written;               ///< SHA-256 of the output, where that is known beforehand
    QString original;                 ///< the content that KeptOriginals keeps of a source that was replaced
    QString notKept;                  ///< why it keeps none, where that is asked for
    QStringList notes;                ///< whole sentences about other things that became of the user's files
    QString obstacle;                 ///< what was in the compressor's way; empty if nothing was in sight
    bool isUntouched = false;         ///< a modern compressor failed before its output was written into
    int status = 0;                   ///< the compressor's exit status, or the signal that ended it
    int secondsAllowed = 0;           ///< after which the compressor was ended; 0 if it was not
    double seconds = 0;               ///< for the compressor and the gzip copy
    std::optional<qint64> sizeBefore; ///< bytes of the source before; nothing if there was none
    std::optional<qint64> sizeAfter;  ///< bytes of the output afterwards
    std::optional<qint64> gzipSize;   ///< bytes of the copy, where one was asked for and made
    std::optional<qint64> brotliSize; ///< likewise
    CompressorMessages messages;      ///< of a modern compressor
    QStringList arguments;            ///< of a classic compressor that has minified nothing; else empty
    std::optional<CheckBasis> basis;  ///< of a check, if a classic compressor has minified it and it is there

    /// Whether it has an output that counts, whatever became of its copies.
    [[nodiscard]] bool isMinified() const
    {
        return outcome == Outcome::Done || outcome == Outcome::NoGzipCopy || outcome == Outcome::NoBrotliCopy;
    }

    /// The outcome in words, as the end of "FILE: …"; empty if all went well.
    [[nodiscard]] QString reason() const;
};

/// Whether a source holds nothing but comments and white space, so that nothing is left of it when it is
/// minified. Never true of JavaScript, for which the compressor fails, nor of what cannot be read.
[[nodiscard]] bool isBlankSource(const QString &source);

/// The result of an entry that no compressor of the classic family works on, or none at all: `outcome` is
/// NotSafe or Refused then.
[[nodiscard]] EntryResult resultWithoutRun(const QString &source, const std::optional<QString> &output,
                                           EntryResult::Outcome outcome, const QString &reason);

/// Finds out what becomes of one entry: made before its compressor starts, asked afterwards.
class EntryWatch final {
public:
    EntryWatch(const QString &source, const std::optional<QString> &output);

    /// To be called between the compressor and the gzip copy.
    void compressorEnded(const QProcess &compressor);

    /// The result, once everything has been done for the entry.
    [[nodiscard]] EntryResult finish(bool gzipWanted, double seconds);

    /// What the result can be checked by, once nothing more is done for the entry. Nothing if the source is
    /// not as it was before the compressor started, and no `original` of it is kept.
    [[nodiscard]] std::optional<CheckBasis> basisOfCheck(TextEncoding encoding,
                                                         const QString &original) const;

private:
    EntryResult m_result;
    const bool m_mayBeEmpty; ///< the source is blank
    const std::optional<FileState> m_sourceBefore;
    std::optional<FileState> m_outputBefore;
    std::optional<FileState> m_gzipBefore;
    qint64 m_writtenSize = 0; ///< by the compressor
};

} // namespace brevant
