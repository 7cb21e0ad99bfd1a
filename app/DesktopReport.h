// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/Notification.h"
#include "engine/MinifyJob.h"

#include <QObject>
#include <QStringList>

#include <map>
#include <optional>

class QWidget;

namespace brevant {

class DockTile;

/// What a run came to.
struct RunOutcome {
    RunEnd end = RunEnd::Completed;
    int minified = 0; ///< of the files that the run has left
    int count = 0;    ///< of the files that were to be minified
    QString folder;   ///< where all the outputs are; empty if they are in several
    QString reason;   ///< why Java could not be started
};

/// Tells the desktop of the runs: on the dock icon how far they are, by a notification that one has ended
/// while nobody looked at the window, and by another what became of sources that might have been lost. Lives
/// on the main thread.
class DesktopReport final : public QObject {
    Q_OBJECT

public:
    DesktopReport(QWidget &window, DockTile &dockTile, const QDBusConnection &bus);

    /// How many files the run with this number has worked on. Numbers are unique.
    void setProgress(int run, int done, int count);

    void runEnded(int run, const RunOutcome &outcome);

    /// Shows these sentences about sources in a notification that stays until the user closes it, even while
    /// the window has the focus, as the window does not show them. Prints them on standard error too.
    void tell(const QStringList &sentences);

    /// Takes the notification of ended runs away. The other stays: what became of sources is said nowhere
    /// else.
    void withdraw() { m_ofRuns.withdraw(); }

    /// Whether there is a notification that can be clicked.
    [[nodiscard]] bool isShown() const { return m_ofRuns.isShown() || m_ofSources.isShown(); }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The user has clicked a notification; see there.
    void clicked(const QString &token);

    /// The user has closed one.
    void dismissed();

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
    Notification m_ofRuns;
    Notification m_ofSources;
    QStringList m_sentences;        ///< that the user has not closed
    std::map<int, Progress> m_runs; ///< since there last was none under way
    std::optional<int> m_percent;   ///< as it is shown
};

} // namespace brevant
