// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "engine/classic/ClassicMessages.h"

#include <QStringList>

#include <atomic>
#include <chrono>

namespace brevant {

class CompressorCommand;
struct Tools;

/// Why the classic compressor failed that was started with these arguments, EntryResult::arguments: it is
/// asked once more, on the calling thread, with its output in a private temporary folder. Without messages if
/// there was no output path, or after a stop at once; what takes longer than `limit` is ended and says so.
[[nodiscard]] Explanation explainFailure(const QStringList &arguments, const Tools &tools,
                                         const std::atomic<Stop> &stop,
                                         std::chrono::milliseconds limit = std::chrono::minutes(1));

/// Whether it failed, with that exit status, because of JavaScript that the modern compressors minify. They
/// are asked, and nothing is written. False after a stop at once.
[[nodiscard]] bool isForModern(const QStringList &arguments, int status, const CompressorCommand &command,
                               const Tools &tools, const std::atomic<Stop> &stop);

} // namespace brevant
