// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace brevant {

class JobRunner;
class MainWindow;

/// Decides when the program ends. Closing the window ends it, but not before the run under way; quitting ends
/// it after the file being worked on. The window opened again meanwhile takes a close back.
class Lifetime final : public QObject {
    Q_OBJECT

public:
    Lifetime(MainWindow &window, JobRunner &jobs, QObject *parent = nullptr);

    /// Connects the menu item. To be called once the layout is loaded.
    void awakeFromNib();

    /// SIGINT and SIGTERM quit as the menu item does; a second one ends the compressors too, and a third one
    /// the program as it stands.
    void catchSignals();

    /// Ends the program as soon as no file is being worked on.
    void quit();

    /// Ends the program if its window is hidden and no run is under way.
    void quitIfUnseen();

Q_SIGNALS:
    /// The program ends because the user has asked for it.
    void quitting();

    /// The program is going to end, for whatever reason, and nothing takes that back.
    void ending();

private:
    void signalled(int number);
    void windowClosed();
    void runsEnded();

    MainWindow &m_window;
    JobRunner &m_jobs;
    bool m_quitting = false;
    int m_signals = 0;
    int m_exitStatus = 0;
};

} // namespace brevant
