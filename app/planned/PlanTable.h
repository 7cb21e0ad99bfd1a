// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/planned/PlanModel.h"
#include "app/results/StateTable.h"

namespace brevant {

/// The table of planned outputs.
class PlanTable final : public StateTable {
    Q_OBJECT

public:
    explicit PlanTable(PlanModel &model, QWidget *parent = nullptr);

    /// Hands them to the model. The current file stays that, wherever it is then.
    void setFiles(int first, const std::vector<PlannedFile> &files, int count);

    /// Shows only some of the files. The current one stays that if it is among them.
    void setFilter(std::optional<PlannedFile::State> state, const QString &text);

protected:
    void showEvent(QShowEvent *event) override;

private:
    PlanModel &m_model;
    bool m_wasShown = false;
};

} // namespace brevant
