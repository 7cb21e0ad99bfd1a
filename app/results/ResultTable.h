// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultModel.h"
#include "app/results/StateTable.h"

namespace brevant {

/// The table of results.
class ResultTable final : public StateTable {
    Q_OBJECT

public:
    explicit ResultTable(ResultModel &model, QWidget *parent = nullptr);

    /// To be called when the run shown has ended: sorts the worst first, unless the user has chosen an order,
    /// and selects the first that was not minified, unless the user has selected another file.
    void endRun();

    /// Shows another run: in its own order while it goes on, the worst first afterwards, or as the user has
    /// sorted.
    void showRun(std::shared_ptr<const RunRecord> run);

    /// Shows only some of its files. The current one stays that if it is among them.
    void setFilter(ResultModel::Shown shown, const QString &text);

    /// Hides the columns in which no row has anything, and shows those that the user has not hidden.
    void updateColumns();

    /// The current file; null if it is not selected.
    [[nodiscard]] const ResultRow *currentFile() const;

Q_SIGNALS:
    /// By Return or a double click.
    void sourceRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void selectFirst();
    void resizeColumns();
    void showColumnMenu(QPoint at);

    ResultModel &m_model;
    bool m_isSortedByUser = false;
    bool m_wasShown = false;
    std::vector<bool> m_isWanted; ///< by column: the user has not hidden it
};

} // namespace brevant
