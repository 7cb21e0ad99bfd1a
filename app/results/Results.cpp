// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/Results.h"

#include "app/results/ResultMark.h"
#include "app/results/ResultsWindow.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <chrono>
#include <utility>

namespace brevant {

/// Drawing Results takes 4 ms of the processor, which a file needs about 170 ms of.
static constexpr std::chrono::seconds betweenSteps(1);

Results::Results(QWidget &mainWindow, const SettingsStore &settings, const Tools &tools)
    : m_mainWindow(mainWindow), m_settings(settings), m_inquiry(runs, settings, tools)
{
    m_nextSteps.setSingleShot(true);
    connect(&m_nextSteps, &QTimer::timeout, this, &Results::catchUp);
    connect(&runs, &ResultRuns::added, this, &Results::hideMark);
    connect(&runs, &ResultRuns::ended, this, &Results::showMark);
    connect(&m_inquiry, &Inquiry::checked, this, &Results::updateMark);
}

Results::~Results() = default;

void Results::setMarkPlace(QLabel &status, QHBoxLayout &bar)
{
    m_status = &status;
    m_bar = &bar;
}

void Results::show()
{
    shownWindow().activateWindow();
}

void Results::showBeside()
{
    shownWindow();
}

/// On the screen, in front of the main window.
ResultsWindow &Results::shownWindow()
{
    if (!m_window) {
        m_window = std::make_unique<ResultsWindow>(
            runs, m_inquiry,
            [this] { return m_settings.stringForKey(selectedEncodingKeyString).value_or(QString()); },
            &m_mainWindow);
        m_window->setAttribute(Qt::WA_ShowWithoutActivating);
        connect(m_window.get(), &ResultsWindow::openRequested, this, &Results::openRequested);
        connect(m_window.get(), &ResultsWindow::revealRequested, this, &Results::revealRequested);
        connect(m_window.get(), &ResultsWindow::retryRequested, this, &Results::retryRequested);
        connect(m_window.get(), &ResultsWindow::modernRequested, this, &Results::modernRequested);
        connect(&m_window->restoring(), &Restoring::requested, this, &Results::restoreRequested);
    }
    if (!m_window->isVisible()) {
        catchUp();
        m_window->showLastRun();
    }
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    return *m_window;
}

void Results::close()
{
    if (m_window)
        m_window->close();
}

void Results::gather(std::function<void()> step)
{
    m_steps.push_back(std::move(step));
    if (!m_nextSteps.isActive())
        catchUp();
}

void Results::catchUp()
{
    if (m_steps.empty())
        return;
    m_nextSteps.start(betweenSteps);
    for (const std::function<void()> &step : std::exchange(m_steps, {}))
        step();
}

void Results::endRestoring(const std::vector<RestoreWish> &wishes, const std::vector<RestoredSource> &done)
{
    for (std::size_t i = 0; i < done.size(); ++i)
        runs.restore(wishes[i].run, wishes[i].row, done[i]);
    m_window->restoring().take(wishes, done);
    m_window->restoring().follow(runs.isAnyRunning());
}

void Results::hideMark()
{
    if (m_mark)
        m_mark->hideResult();
}

void Results::showMark(int run)
{
    const std::shared_ptr<const RunRecord> record = runs.find(run);
    if (!record || record->rows.empty() || runs.isAnyRunning())
        return;
    if (!m_mark) {
        m_mark = new ResultMark(*m_status, *m_bar);
        connect(m_mark, &ResultMark::clicked, this, &Results::show);
    }
    m_mark->showResult(shortResult(*record));
    m_markedRun = run;
}

/// The results of that run have been checked.
void Results::updateMark(int run)
{
    if (m_mark && !m_mark->isHidden() && run == m_markedRun)
        showMark(run);
}

} // namespace brevant
