// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryResult.h"
#include "engine/Stop.h"
#include "engine/modern/ModernCompressor.h"

#include <atomic>

namespace brevant {

/// Whether an existing output must be written into, as another file in its place would lose one of its names,
/// its owner or its access control list, or cannot be made in its folder.
[[nodiscard]] bool isWrittenInto(const QString &output);

/// Minifies a source by a modern compressor and writes its output and source map in one durable step each;
/// with `isInto`, into the output. Completes `result`, which names source and output. Returns the output,
/// where there is one.
std::optional<QByteArray> runModernEntry(const FileKind &kind, const ModernOptions &options,
                                         const Tools &tools, FilterRunner &filters, bool isInto,
                                         EntryResult &result);

/// Makes the compressed copies of an output that the settings ask for, each in one durable step, with the
/// mode and the time of the output, which is read where it is not known. Completes `result`.
void makeCompressedCopies(bool isGzipWanted, bool isBrotliWanted, std::optional<QByteArray> output,
                          const std::atomic<Stop> &stop, EntryResult &result);

} // namespace brevant
