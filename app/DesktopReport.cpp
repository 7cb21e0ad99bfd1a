// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopReport.h"

#include "app/platform/DockTile.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr qsizetype mostSentences = 10; // that a notification has room for

QString summaryOf(const RunOutcome &outcome)
{
    if (outcome.minified == 0)
        return u"Nothing was minified"_s;
    if (outcome.minified < outcome.count)
        return u"Minified %1 of %2 files"_s.arg(outcome.minified).arg(outcome.count);
    return outcome.count == 1 ? u"Minified 1 file"_s : u"Minified %1 files"_s.arg(outcome.count);
}

} // namespace

DesktopReport::DesktopReport(QWidget &window, DockTile &dockTile, const QDBusConnection &bus)
    : m_window(window), m_dockTile(dockTile), m_ofRuns(bus), m_ofSources(bus)
{
    m_ofSources.stayUntilClosed();
    const auto forget = [this] { m_sentences.clear(); };
    connect(&m_ofSources, &Notification::dismissed, this, forget);
    connect(&m_ofSources, &Notification::clicked, this, forget);
    for (const Notification *const notification : {&m_ofRuns, &m_ofSources}) {
        connect(notification, &Notification::clicked, this, &DesktopReport::clicked);
        connect(notification, &Notification::dismissed, this, &DesktopReport::dismissed);
    }
    // A window may get the focus before it hears that it is no longer minimised.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &DesktopReport::withdrawIfLookedAt);
    m_window.installEventFilter(this);
}

void DesktopReport::setProgress(int run, int done, int count)
{
    m_runs[run] = {.done = done, .count = std::max(count, done)};
    showProgress();
}

void DesktopReport::runEnded(int run, const RunOutcome &outcome)
{
    if (const auto ended = m_runs.find(run); ended != m_runs.end()) {
        ended->second.done = ended->second.count;
        ended->second.ended = true;
        showProgress();
    }
    notify(outcome);
}

/// Ended runs count until all have ended, or the progress would go back.
void DesktopReport::showProgress()
{
    if (std::ranges::all_of(m_runs, [](const auto &run) { return run.second.ended; })) {
        m_runs.clear();
        m_percent.reset();
        m_dockTile.setProgress({});
        return;
    }
    qint64 done = 0;
    qint64 count = 0;
    for (const auto &[number, run] : m_runs) {
        done += run.done;
        count += run.count;
    }
    // Smaller steps cannot be seen on an icon.
    const int percent = count == 0 ? 0 : static_cast<int>(100 * done / count);
    if (std::exchange(m_percent, percent) != percent)
        m_dockTile.setProgress(static_cast<double>(done) / static_cast<double>(std::max<qint64>(count, 1)));
}

void DesktopReport::notify(const RunOutcome &outcome)
{
    if (outcome.end == RunEnd::Stopped || outcome.count == 0 || isLookedAt())
        return;
    m_ofRuns.show(summaryOf(outcome),
                  outcome.reason.isEmpty() ? PathString::withTilde(outcome.folder) : outcome.reason);
}

void DesktopReport::tell(const QStringList &sentences)
{
    for (const QString &sentence : sentences) {
        m_sentences.append(printable(sentence));
        std::fprintf(stderr, "brevant: %s\n", qUtf8Printable(m_sentences.constLast()));
    }
    if (m_sentences.isEmpty())
        return;
    QString body = m_sentences.first(std::min(m_sentences.size(), mostSentences)).join(u'\n');
    if (const qsizetype more = m_sentences.size() - mostSentences; more > 0)
        body += u"\nand %1 more, on standard error"_s.arg(more);
    m_ofSources.show(u"About your source files"_s, body);
}

bool DesktopReport::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowStateChange)
        withdrawIfLookedAt();
    return QObject::eventFilter(watched, event);
}

void DesktopReport::withdrawIfLookedAt()
{
    if (isLookedAt())
        withdraw();
}

/// Includes the window's dialogs and panels.
bool DesktopReport::isLookedAt() const
{
    return m_window.isVisible() && !m_window.isMinimized() && QGuiApplication::focusWindow() != nullptr;
}

} // namespace brevant
