// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QObject>
#include <QString>

#include <map>
#include <optional>

class QWidget;

namespace brevant {

class DockTile;
class Notification;

/// What a run came to.
struct RunOutcome {
    MinifyJob::End end = MinifyJob::End::Completed;
    int minified = 0;
    int count = 0;  ///< of the files that were to be minified
    QString folder; ///< where all the outputs are; empty if they are in several
    QString reason; ///< why Java could not be started
};

/// Tells the desktop of the runs: on the dock icon how far they are, and by a notification that one has ended
/// while nobody looked at the window. Lives on the main thread.
class RunNews final : public QObject {
    Q_OBJECT

public:
    RunNews(QWidget &window, DockTile &dockTile, Notification &notification, QObject *parent = nullptr);

    /// The run with this number, which no other has while runs are under way, has worked on so many files.
    void setProgress(int run, int done, int count);

    void runEnded(int run, const RunOutcome &outcome);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Progress {
        int done = 0;
        int count = 0;
        bool ended = false;
    };

    void showProgress();
    void notify(const RunOutcome &outcome);
    void withdrawIfLookedAt();
    [[nodiscard]] bool isLookedAt() const;

    QWidget &m_window;
    DockTile &m_dockTile;
    Notification &m_notification;
    std::map<int, Progress> m_runs; ///< since there last was none under way
    std::optional<int> m_percent;   ///< as it is shown
};

} // namespace brevant
