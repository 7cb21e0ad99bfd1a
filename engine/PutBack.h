// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace brevant {

struct OriginalRecord;
class OriginalSlot;

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

/// Writes the content of the copy back to the source, with mode, times and, where allowed, owner. A file that
/// is there is written to, so that it keeps its other names; a missing one is made in one step. Where the
/// file cannot take the content, as it seems beforehand, it stays as it is. Returns the reason of a failure,
/// or an empty text.
[[nodiscard]] QString putBack(const OriginalRecord &original, OriginalSlot &copy);

/// Copies what is in the source now to a file in `folder`, which must be there, and waits until it is on the
/// disk. The path of that file, or nothing, with errno set, on failure.
[[nodiscard]] std::optional<QByteArray> keepContent(const OriginalRecord &original, const QByteArray &folder);

/// Makes the source the symbolic link again that it was, where nothing is there now; or a file, if one may be
/// replaced. Returns as above.
[[nodiscard]] QString putBackLink(const OriginalRecord &original, bool replacesFile);

} // namespace brevant
