// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <QComboBox>

namespace brevant {

class ResultRuns;

/// Chooses one of the last runs, the newest first.
class RunChooser final : public QComboBox {
    Q_OBJECT

public:
    RunChooser(const ResultRuns &runs, QWidget *parent);

    /// Brings the runs up to date, and shows that one as the one chosen.
    void setRun(int run);

Q_SIGNALS:
    void chosen(int run); ///< by the user

private:
    const ResultRuns &m_runs;
};

/// "Today 14:32, 12 files", "Running, 4 of 9 files".
[[nodiscard]] QString runText(const RunRecord &run, const QDate &today);

/// "Classic compressors, sources replaced, 3.5 s".
[[nodiscard]] QString mannerText(const RunRecord &run);

} // namespace brevant
