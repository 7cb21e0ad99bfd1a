// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"

#include <QString>

#include <optional>
#include <vector>

namespace brevant {

/// What a refused combine tells the user.
struct CombineAlert {
    QString title;
    QString message;

    bool operator==(const CombineAlert &) const = default;
};

/// The kind of the selected `entries`: the extension of the first one as it is spelt there, or "NO" if the
/// others do not all have the same one, the case of A to Z ignored. It is the type that the combined file may
/// have.
[[nodiscard]] QString combineKind(const std::vector<QString> &entries);

/// Why the selected `entries`, in the order of their rows, may not be combined; nothing if they may.
[[nodiscard]] std::optional<CombineAlert> combineRefusal(const std::vector<QString> &entries);

/// How a combine ended.
struct CombineResult {
    enum class Outcome {
        Aborted,    ///< a file could not be read or was not valid; nothing may change, the queue neither
        Written,    ///< the target holds the combined text
        WriteFailed ///< the target is as it was, but the queue changes as if it had been written
    };

    Outcome outcome;
    QString errorText; ///< one line that names the file, and the byte if reading failed; else empty
};

/// Writes the texts of `paths`, each followed by one line feed, to `target`, which may be one of them; they
/// are read and written in `encoding`, and a leading "~" is expanded. The target is replaced as a whole at
/// the end, or not at all. Without paths, an existing target is kept.
[[nodiscard]] CombineResult combine(const std::vector<QString> &paths, const QString &target,
                                    TextEncoding encoding);

} // namespace brevant
