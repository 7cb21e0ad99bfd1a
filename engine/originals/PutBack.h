// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>
#include <vector>

namespace brevant {

struct OriginalRecord;
class OriginalSlot;
enum class Stop;

/// How putting a source back went.
struct PutBackResult {
    QString error; ///< why the content is not back; empty if it is
    QString lacks; ///< what could not be restored besides the content; empty if all was
};

/// Writes the content of the copy back to the source, and restores mode, times, owner and extended attributes
/// as far as that is allowed. An existing file is written in place, so that it keeps its other names; a
/// missing one is made in one step. A file that seems to have no room for the content is left alone.
///
/// `held` is the open file that the source was, or -1. It gets its content back even if its name is gone or
/// taken by another file, and then its name too, which `replaces` allows to take from that other file.
[[nodiscard]] PutBackResult putBack(const OriginalRecord &original, OriginalSlot &copy, int held = -1,
                                    bool replaces = false);

/// Makes the source a symbolic link again if it was one and nothing is there now, or with `replacesFile`, a
/// regular file. Returns the reason of a failure, or an empty text.
[[nodiscard]] QString putBackLink(const OriginalRecord &original, bool replacesFile);

/// Gives the open file `held`, which `original` is the record of, its name back if another file has taken it:
/// by a hard link if it has a name left, else by a copy. Returns the reason of a failure, or an empty text.
[[nodiscard]] QString putFileBack(const OriginalRecord &original, int held);

/// What a start has to say of a copy that a program has left.
struct StartNews {
    enum class Kind {
        PutBack, ///< the source is as before again
        Kept,    ///< the copy is, as the source has other content
        Failed,  ///< the source is still lost, or the copy cannot be used
    };
    Kind kind = Kind::Failed;
    QString source; ///< empty if that is not known
    QString sentence;
};

/// Puts back the sources that interrupted runs have left missing or empty. To be called when a program
/// starts, before it touches any file. `originals` are the folders of the safety copies; slots in use are
/// left alone.
///
/// A source with other content keeps it, as that may be newer work; the copy then becomes a plain file in the
/// folder, which nothing touches again. Returns what is to be said of each file put back, kept or given up
/// for now.
[[nodiscard]] std::vector<StartNews> putBackAtStart(const QStringList &originals);

/// The same; only the sentences.
[[nodiscard]] QStringList putBackAfterInterruption(const QStringList &originals);

/// The same for one source; waits for another program that is putting it back, until `stop` says otherwise.
/// False if the source is lost and cannot be put back now.
[[nodiscard]] bool putBackLeftOf(const QString &source, const QStringList &originals,
                                 const std::atomic<Stop> &stop, QStringList &sentences);

} // namespace brevant
