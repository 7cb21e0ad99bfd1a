// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ChildProcess.h"
#include "engine/CompressorCommand.h"
#include "engine/EntryResult.h"
#include "engine/ListedFiles.h"
#include "engine/Tools.h"
#include "engine/originals/SafetyCopy.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace brevant {

class FileQueue;
class SettingsStore;

/// Says why an entry must not be run, given the output it has; empty if it may be.
using Refusal = std::function<QString(const QString &entry, const std::optional<QString> &output)>;

/// The work on one entry after another: safety copy, compressor, gzip copy.
class EntryRun final {
public:
    /// `queue`: where the entries are from. `stop` must outlive this; a stop at once ends the child that
    /// works on the entry.
    EntryRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
             CompressorOptions options, const std::atomic<Stop> &stop);

    /// Does everything for one entry, on the calling thread, unless there is a `refusal`, which is the reason
    /// for its failure then. The switches are read here; nothing is returned if the Java runtime could not be
    /// started. `outputAtStart`: the output by the settings as they were when the run began.
    [[nodiscard]] std::optional<EntryResult> run(const QString &entry, const std::optional<QString> &output,
                                                 const std::optional<QString> &outputAtStart,
                                                 const QString &refusal = QString());

    /// Why the Java runtime could not be started, in words.
    [[nodiscard]] QString startFailure() const;

private:
    [[nodiscard]] QString seenByCompressor(const QString &path) const;
    [[nodiscard]] QString keepSafe(const QString &entry, const std::optional<QString> &output,
                                   const std::optional<QString> &outputAtStart);

    const SettingsStore &m_settings;
    const Tools m_tools;
    CompressorOptions m_options;
    const std::atomic<Stop> &m_stop;
    ListedFiles m_listed;
    SafetyCopy m_safetyCopy;
    std::unique_ptr<ChildProcess> java; ///< of the file being worked on; the last one stays
};

} // namespace brevant
