// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultModel.h"
#include "app/results/StateWindow.h"

#include <QTimer>

#include <functional>

namespace brevant {

class Inquiry;
class KindPicture;
class MessagePane;
class OfferBar;
class Restoring;
class ResultRuns;
class ResultTable;
class RunChooser;
class SourceViewer;

/// Shows what became of every file of a run: totals, a table, and all that there is to say of one of them.
class ResultsWindow final : public StateWindow {
    Q_OBJECT

public:
    /// `runs` and `inquiry` must outlive the window. A source is shown in the encoding of that name.
    ResultsWindow(const ResultRuns &runs, Inquiry &inquiry, std::function<QString()> encodingName,
                  QWidget *parent);

    /// Shows a run, the last one if it is not told which.
    void showRun(int run);
    void showLastRun();

    [[nodiscard]] Restoring &restoring() { return *m_restoring; }

Q_SIGNALS:
    void openRequested(const QString &path);
    void revealRequested(const QString &path);
    void retryRequested(const QStringList &sources);
    void modernRequested(const QStringList &sources, bool isForAlways);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] QWidget *makeHead();
    void connectAll();
    void addRun(int run);
    void endRun(int run);
    void updateHead();
    void updatePane();
    void updateOffer();
    void showFirstPlace();
    void showSource(const CompressorMessage &about);
    void updateFilter();
    void updateHint();
    void fitPicture();
    [[nodiscard]] QStringList toRetry() const;

    const ResultRuns &m_runs;
    Inquiry &m_inquiry;
    const std::function<QString()> m_encodingName;
    ResultModel m_model;
    QTimer m_headTimer; ///< totals follow a run that goes on not row by row
    RunChooser *m_chooser = nullptr;
    KindPicture *m_picture = nullptr;
    FilterBar *m_filter = nullptr;
    ResultTable *m_table = nullptr;
    MessagePane *m_pane = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_retry = nullptr;
    OfferBar *m_offer = nullptr;
    Restoring *m_restoring = nullptr;
    SourceViewer *m_viewer = nullptr; ///< from the first request on
};

} // namespace brevant
