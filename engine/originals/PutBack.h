// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>

namespace brevant {

struct OriginalRecord;
class OriginalSlot;
class PrivateFolder;
enum class Stop;

/// What came of putting a source back.
struct PutBackResult {
    QString error; ///< why the content is not back; empty if it is
    QString lacks; ///< what else is not as it was, although the content is; empty if all is
};

/// Writes the content of the copy back to the source, with mode, times, owner and extended attributes as far
/// as that is allowed. A file that is there is written to, so that it keeps its other names; a missing one is
/// made in one step. Where the file cannot take the content, as it seems beforehand, it stays as it is.
///
/// `held`: the file that the source was, if it is still open, else -1. It gets its content back even where
/// its name is gone or another file's, and then its name too, which `replaces` lets it take from that other
/// file.
[[nodiscard]] PutBackResult putBack(const OriginalRecord &original, OriginalSlot &copy, int held = -1,
                                    bool replaces = false);

/// Makes the source the symbolic link again that it was, where nothing is there now; or a file, if one may be
/// replaced. Returns the reason of a failure, or an empty text.
[[nodiscard]] QString putBackLink(const OriginalRecord &original, bool replacesFile);

/// Gives the file that is there now, be it one that gzip has put into the place of a link, what `original`
/// had besides content and times. Returns what could not be given, or an empty text.
[[nodiscard]] QString restoreAttributes(const OriginalRecord &original);

/// Gives its name back to the open file `held` that `original` tells of, if another has taken it: by a new
/// link where it has a name left, else by a copy. Returns the reason of a failure, or an empty text.
[[nodiscard]] QString putFileBack(const OriginalRecord &original, int held);

/// Copies what is in the source now to a file that stays for the user. Its path, or nothing, with errno set,
/// on failure.
[[nodiscard]] std::optional<QString> keepContent(const OriginalRecord &original, const PrivateFolder &folder);

/// Puts back the sources that programs which ended amid a run have left missing or empty; to be called when a
/// program starts, before it touches any file. `originals` are the folders of the safety copies; what a
/// living process has in use there is left alone.
///
/// A source with other content keeps it, as that may be newer work: the copy then stays in the folder, as a
/// plain file that nothing looks at again. Returns a sentence for each file put back, kept or given up for
/// now.
[[nodiscard]] QStringList putBackAfterInterruption(const QStringList &originals);

/// The same for what is left of one source; a program that is putting it back is waited for until `stop` says
/// otherwise. False if the source is lost and cannot be put back now.
[[nodiscard]] bool putBackLeftOf(const QString &source, const QStringList &originals,
                                 const std::atomic<Stop> &stop, QStringList &sentences);

} // namespace brevant
