// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultModel.h"

#include <QMainWindow>
#include <QTimer>

class QAction;
class QLabel;
class QPushButton;

namespace brevant {

class ElidedLabel;
class FilterBar;
class KindPicture;
class MessagePane;
class ResultRuns;
class ResultTable;
class RunChooser;

/// Shows what became of every file of a run: totals, a table, and all that there is to say of one of them.
class ResultsWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// `runs` must outlive the window.
    ResultsWindow(const ResultRuns &runs, QWidget *parent);

    /// Shows a run, the last one if it is not told which.
    void showRun(int run);
    void showLastRun();

Q_SIGNALS:
    void openRequested(const QString &path);
    void revealRequested(const QString &path);
    void retryRequested(const QStringList &sources);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QWidget *makeHead();
    [[nodiscard]] QWidget *makeBottom();
    void connectAll();
    void addRun(int run);
    void endRun(int run);
    void updateHead();
    void updateFilter();
    void updateHint();
    void fitPicture();
    void updateLooks();
    [[nodiscard]] QStringList toRetry() const;

    const ResultRuns &m_runs;
    ResultModel m_model;
    QTimer m_headTimer; ///< totals follow a run that goes on not row by row
    RunChooser *m_chooser = nullptr;
    ElidedLabel *m_manner = nullptr;
    QLabel *m_totals = nullptr;
    KindPicture *m_picture = nullptr;
    FilterBar *m_filter = nullptr;
    ResultTable *m_table = nullptr;
    QLabel *m_hint = nullptr; ///< in the place of rows
    MessagePane *m_pane = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_retry = nullptr;
};

} // namespace brevant
