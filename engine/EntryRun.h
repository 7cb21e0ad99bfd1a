// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CompressorCommand.h"
#include "engine/EntryResult.h"
#include "engine/Tools.h"
#include "engine/modern/FilterRunner.h"
#include "engine/originals/SafetyCopy.h"

#include <QProcess>
#include <QSet>

#include <chrono>
#include <memory>

namespace brevant {

class FileQueue;
class SettingsStore;

/// The work to be done for an entry, by the settings at its turn.
struct EntryTask {
    QString entry;
    std::optional<QString> output;
    std::optional<QString> outputAtStart;       ///< by the settings at the start of the run
    QString refusal;                            ///< why it must not be run; empty if it may be
    const CompressorCommand *command = nullptr; ///< by the settings of the entry
};

/// Runs the gzip steps one after the other, even if some fail; a stop at once ends the sequence.
void makeGzipCopy(const std::optional<QString> &output, const std::atomic<Stop> &stop);

/// The work on one entry after another: safety copy, compressor, gzip copy.
class EntryRun final {
public:
    /// `queue`: where the entries are from. A stop at once ends the child that works on the entry. In `kept`
    /// go the sources that outputs replace, if the settings ask for it.
    EntryRun(const FileQueue &queue, const Tools &tools, const std::atomic<Stop> &stop,
             KeptOriginals::Use *kept = nullptr);

    /// From here on a compressor that works longer on a file is ended, with all its children; 0 for no limit
    /// but those of filters.
    void setTimeout(std::chrono::seconds timeout);

    /// Does everything for one entry, on the calling thread. Nothing is returned if the Java runtime could
    /// not be started.
    [[nodiscard]] std::optional<EntryResult> run(const EntryTask &task);

    /// Why the Java runtime could not be started, in words.
    [[nodiscard]] QString startFailure() const;

private:
    [[nodiscard]] QString seenByCompressor(const QString &path) const;
    [[nodiscard]] QString keepSafe(const QString &source, const std::optional<QString> &target,
                                   const std::optional<QString> &outputAtStart);

    [[nodiscard]] QString keepSafeFromModern(const EntryTask &task, bool isInto);
    [[nodiscard]] Danger dangerOf(const QString &source, const QString &target,
                                  const std::optional<QString> &outputAtStart);
    [[nodiscard]] bool isListed(const QString &path);
    [[nodiscard]] KeptOriginals::Use *wantedKeeper(const EntryTask &task) const;
    [[nodiscard]] EntryResult runModern(const EntryTask &task, const FileKind &kind);

    const FileQueue &m_queue;
    const Tools m_tools;
    const std::atomic<Stop> &m_stop;
    KeptOriginals::Use *const m_kept; ///< may be null
    SafetyCopy m_safetyCopy;
    std::chrono::seconds m_timeout{};
    FilterRunner m_filters;
    QSet<QString> m_listed;         ///< marks of the files in the queue
    quint64 m_listedRevision = 0;   ///< of the queue, when they were taken
    std::unique_ptr<QProcess> java; ///< of the file being worked on; the last one stays
};

} // namespace brevant
