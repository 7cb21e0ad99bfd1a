// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/Inquiry.h"
#include "app/results/Restoring.h"
#include "app/results/ResultRuns.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace brevant {

class ResultMark;
class ResultsWindow;

/// What is known of the runs, and where it is shown: the mark in the main window and the window Results, each
/// made when it is first needed.
class Results final : public QObject {
    Q_OBJECT

public:
    /// Results belongs to `mainWindow`, and stays in front of it. Compressors are asked why they failed with
    /// these settings and tools, which must outlive this.
    Results(QWidget &mainWindow, const SettingsStore &settings, const Tools &tools);
    ~Results() override;

    /// Where the mark takes its place: behind `status`, in `bar`.
    void setMarkPlace(QLabel &status, QHBoxLayout &bar);

    /// Opens the window, or brings it to the front.
    void show();

    /// The same, but leaves the keyboard to the main window.
    void showBeside();
    void close();

    /// Takes the mark away, until the next run has ended.
    void hideMark();

    /// Takes a step in `runs`, at once or within a second with all others that come meanwhile, so that what
    /// shows them is laid out and drawn once for many files.
    void gather(std::function<void()> step);

    /// Takes all steps gathered.
    void catchUp();

    /// What became of originals that were to be put back.
    void endRestoring(const std::vector<RestoreWish> &wishes, const std::vector<RestoredSource> &done);

    ResultRuns runs;

Q_SIGNALS:
    void openRequested(const QString &path);
    void revealRequested(const QString &path);
    void retryRequested(const QStringList &sources);
    void modernRequested(const QStringList &sources, bool isForAlways);
    void restoreRequested(const std::vector<RestoreWish> &wishes, bool isBeside);

private:
    void showMark(int run);
    void updateMark(int run);
    ResultsWindow &shownWindow();

    QWidget &m_mainWindow;
    const SettingsStore &m_settings;
    Inquiry m_inquiry;
    std::vector<std::function<void()>> m_steps; ///< gathered
    QTimer m_nextSteps;
    QLabel *m_status = nullptr;
    QHBoxLayout *m_bar = nullptr;
    ResultMark *m_mark = nullptr; ///< a child of the bar
    int m_markedRun = -1;
    std::unique_ptr<ResultsWindow> m_window;
};

} // namespace brevant
