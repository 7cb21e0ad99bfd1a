// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultModel.h"

#include <QTableView>

namespace brevant {

/// The table of results. It is a table of its own: the preview, which follows the selections of others, is
/// not about what is selected here.
class ResultTable final : public QTableView {
    Q_OBJECT

public:
    explicit ResultTable(ResultModel &model, QWidget *parent = nullptr);

    /// Sorts the worst first, unless the user has chosen an order.
    void sortWorstFirst();

    /// Shows another run: in its own order while it goes on, the worst first afterwards, or as the user has
    /// sorted.
    void showRun(std::shared_ptr<const RunRecord> run);

    /// Shows only some of its files. The current one stays that if it is among them.
    void setFilter(ResultModel::Shown shown, const QString &text);

    /// Hides the columns in which no row has anything, and shows those that the user has not hidden.
    void updateColumns();

    /// The current file; null if it is not selected.
    [[nodiscard]] const ResultRow *currentFile() const;

    /// The rows of the selection as text: a line each, columns apart by tabs, with a line of titles.
    [[nodiscard]] QString selectionAsText() const;

    /// The rows of the selection, from the top.
    [[nodiscard]] std::vector<int> selectedRows() const;

Q_SIGNALS:
    void currentFileChanged();

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void setUpHeader();
    void selectFile(int row);
    void fitRows();
    void resizeColumns();
    void showColumnMenu(QPoint at);

    ResultModel &m_model;
    bool m_isSortedByUser = false;
    bool m_wasShown = false;
    std::vector<bool> m_isWanted; ///< by column: the user has not hidden it
};

} // namespace brevant
