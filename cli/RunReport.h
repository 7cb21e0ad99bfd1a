// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Colours.h"
#include "engine/MinifyJob.h"
#include "engine/report/Report.h"

#include <QStringList>

#include <vector>

namespace brevant {

/// A run of the terminal program: printed as it goes on, and its outcome afterwards.
class RunReport final : public RunObserver {
public:
    enum class Style {
        Live,         ///< a line with a bar that is erased for the next one
        Lines,        ///< one line for each file
        Quiet,        ///< nothing
        Changes,      ///< one line for each file that was minified, and nothing else
        QuietChanges, ///< nothing
    };

    /// Live on a terminal that can erase a line, unless Java prints on it at each start.
    [[nodiscard]] static Style styleOfStandardOutput();

    /// `entries`: the queue of the run, which does not change meanwhile. `stop`: what the run heeds.
    explicit RunReport(std::vector<QString> entries, Style style = Style::Quiet,
                       const std::atomic<Stop> *stop = nullptr)
        : m_entries(std::move(entries)), m_style(style), m_stop(stop)
    {
    }

    /// Has each result checked as its file ends; nothing for one that is not to be.
    using Check = std::function<std::optional<CheckedFile>(const EntryResult &)>;
    void setCheck(Check check) { m_check = std::move(check); }

    /// What else the summary is to count, in words.
    void setCopied(const QString &words) { m_copied = words; }

    void entryStarted(const EntryStart &start) override;
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override;

    /// Of all files of the run.
    [[nodiscard]] qsizetype count() const { return static_cast<qsizetype>(m_entries.size()); }
    [[nodiscard]] qsizetype doneCount() const;
    [[nodiscard]] bool isAllDone() const { return m_end == RunEnd::Completed && doneCount() == endedCount(); }

    /// Whether these are files that have changed while they were watched. One that is gone by now has not
    /// failed.
    [[nodiscard]] bool isOfChanges() const
    {
        return m_style == Style::Changes || m_style == Style::QuietChanges;
    }

    /// Why nothing could be run; empty if that is not so.
    [[nodiscard]] const QString &failure() const { return m_failure; }

    /// The closing lines for a reader: files, bytes, what was saved, where it stopped; the copies, where some
    /// were made, and of runs of several files what took longest and what saved most.
    [[nodiscard]] QString summary(const Colours &colours = {}) const;

    /// Where in their sources files failed, as far as is known, with the line; of the first `mostPlaces`.
    [[nodiscard]] QString failurePlaces(const EncodingOf &encodingOf, const Colours &colours = {}) const;
    static constexpr qsizetype mostPlaces = 10;

    /// One line for each file that was not minified.
    [[nodiscard]] QString failures(const Colours &colours = {}) const;

    /// The notes of all results, one line each.
    [[nodiscard]] QString notes() const;

    /// Whether a check has found more than notes.
    [[nodiscard]] bool hasWarnings() const;

    /// What the checks have found, one line each; notes too, unless the run is quiet.
    [[nodiscard]] QString warnings(const Colours &colours = {}) const;

    /// Asks the classic compressors once more why they failed, at most so many times. Ends on a stop.
    void explainFailures(const Tools &tools, qsizetype most);

    /// All of it for a report, without the folder and the character set of the sources.
    [[nodiscard]] Report toReport() const;

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] qsizetype endedCount() const { return static_cast<qsizetype>(m_results.size()); }
    [[nodiscard]] QString takeLiveLine();
    [[nodiscard]] QString liveLine(const EntryStart &start) const;
    [[nodiscard]] QString lineFor(const EntryResult &result) const;
    [[nodiscard]] QString remarkable() const;

    const std::vector<QString> m_entries;
    const Style m_style;
    const std::atomic<Stop> *const m_stop;
    const Clock::time_point m_start = Clock::now();
    const QDateTime m_started = QDateTime::currentDateTime();
    QString m_status;
    bool m_liveLineShown = false; ///< on the line above the cursor
    std::vector<EntryResult> m_results;
    Check m_check;
    std::vector<std::optional<CheckedFile>> m_checked; ///< of each result
    QStringList m_notRun;
    QString m_failure;
    QString m_copied;
    RunEnd m_end = RunEnd::Completed;
    double m_seconds = 0;
};

} // namespace brevant
