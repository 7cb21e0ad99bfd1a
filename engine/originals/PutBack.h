// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevant {

struct OriginalRecord;
class OriginalSlot;
class PrivateFolder;

/// What has become of a source since its record was made.
enum class SourceState {
    Same,      ///< the same content
    Missing,   ///< no file there
    Empty,     ///< no content, and there was some
    Beginning, ///< less than before, and all of that from the beginning of what was there
    Changed,   ///< other content in the same file
    Replaced,  ///< other content in another file of the same name
    Unknown,   ///< cannot be looked at, or is no regular file
};

/// The state as far as it shows without reading: never Beginning, and Changed or Replaced where only the file
/// was touched.
[[nodiscard]] SourceState glanceAtSource(const OriginalRecord &original);

/// The state by content.
[[nodiscard]] SourceState stateOfSource(const OriginalRecord &original, const OriginalSlot &copy);

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

/// Gives the file of that path what `original` had besides content and times. Returns what could not be
/// given, or an empty text.
[[nodiscard]] QString restoreAttributes(const QByteArray &path, const OriginalRecord &original);

/// Gives its name back to the open file `held` that `original` tells of, if another has taken it: by a new
/// link where it has a name left, else by a copy. Returns the reason of a failure, or an empty text.
[[nodiscard]] QString putFileBack(const OriginalRecord &original, int held);

/// Copies what is in the source now to a file that stays for the user. Its path, or nothing, with errno set,
/// on failure.
[[nodiscard]] std::optional<QByteArray> keepContent(const OriginalRecord &original,
                                                    const PrivateFolder &folder);

} // namespace brevant
