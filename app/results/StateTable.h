// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>

namespace brevant {

class SortedRows;

/// A table of files and what is to be said of each, sorted by a click on a title. It is a table of its own:
/// the preview, which follows the selections of others, is not about what is selected here.
class StateTable : public QTableView {
    Q_OBJECT

public:
    explicit StateTable(SortedRows &rows, QWidget *parent = nullptr);

    /// The record of the current row; -1 if it is not selected.
    [[nodiscard]] int currentRecord() const;

    /// The rows of the selection as text: a line each, columns apart by tabs, with a line of titles.
    [[nodiscard]] QString selectionAsText() const;

    /// The rows of the selection, from the top.
    [[nodiscard]] std::vector<int> selectedRows() const;

Q_SIGNALS:
    void currentFileChanged();

protected:
    /// Unlike selectRow(), which asks what is at the beginning of the row, before there is a window to look
    /// at.
    void selectFile(int row);

    /// Gives a column room for that many letters, and for `extra` pixels.
    void setColumnLetters(int column, int letters, int extra = 0);

    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void setUpHeader();
    void keepPlace();
    void fitRows();

    SortedRows &m_rows;
    QPersistentModelIndex m_top; ///< once the user has scrolled
};

} // namespace brevant
