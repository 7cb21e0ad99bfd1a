// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"
#include "engine/originals/PutBack.h"
#include "engine/originals/RestoreSource.h"

#include <QObject>

#include <memory>
#include <vector>

namespace brevant {

/// How a run has ended.
struct RunEnding {
    int minified = 0;   ///< of the files that the run has left
    int count = 0;      ///< of the files that were to be minified
    QStringList notRun; ///< files that the run has not come to
    QString reason;     ///< why nothing could be run
    double seconds = 0;
};

/// The last ten runs of this start of the program, filled while they go on. Nothing of it is stored on the
/// disk. Lives on the main thread, and is cheap until there is a run.
class ResultRuns final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// A run begins; `manner` says in words what works and where to.
    void start(int run, const QString &manner);

    /// It is at work on `source`; `count` files are known of so far.
    void startFile(int run, const QString &source, int count);

    /// The file begun last has ended.
    void endFile(int run, const ResultRow &row);

    void end(int run, const RunEnding &ending);

    /// What the compressor of a file that failed says, asked once more.
    void explain(int run, int row, const CompressorMessages &messages);

    /// What became of checking the result of a file.
    void setChecked(int run, int row, const CheckedFile &checked);

    /// What became of putting the original of a file back.
    void restore(int run, int row, const RestoredSource &restored);

    /// A file that failed would be minified by modern compressors.
    void addForModern(int run, int row);

    /// What the start of the program has said of sources.
    void addStart(const std::vector<StartNews> &news);

    /// The oldest first.
    [[nodiscard]] std::vector<std::shared_ptr<const RunRecord>> all() const
    {
        return {m_all.begin(), m_all.end()};
    }

    /// Null if it is none of the last ten.
    [[nodiscard]] std::shared_ptr<const RunRecord> find(int run) const { return recordOf(run); }

    [[nodiscard]] bool isAnyRunning() const;

Q_SIGNALS:
    void added(int run);
    void rowAdded(int run, int row);
    void rowChanged(int run, int row);
    void ended(int run);
    void forModernChanged(int run);

private:
    [[nodiscard]] std::shared_ptr<RunRecord> recordOf(int run) const;
    void add(RunRecord record);
    void addRow(RunRecord &record, const ResultRow &row);

    std::vector<std::shared_ptr<RunRecord>> m_all;
};

} // namespace brevant
