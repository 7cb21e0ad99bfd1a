// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopReport.h"

#include "app/platform/DockTile.h"
#include "app/platform/Notification.h"
#include "files/RawBytes.h"

#include <QDir>
#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace brevant {

namespace {

constexpr qsizetype mostSentences = 10; // that a notification has room for

QString summaryOf(const RunOutcome &outcome)
{
    if (outcome.minified == 0)
        return QStringLiteral("Nothing was minified");
    if (outcome.minified < outcome.count)
        return QStringLiteral("Minified %1 of %2 files").arg(outcome.minified).arg(outcome.count);
    return outcome.count == 1 ? QStringLiteral("Minified 1 file")
                              : QStringLiteral("Minified %1 files").arg(outcome.count);
}

/// With "~" for the home folder.
QString withTilde(const QString &folder)
{
    const QString home = QDir::homePath();
    const bool isBelow = folder == home || folder.startsWith(home + u'/');
    return isBelow ? u'~' + folder.sliced(home.size()) : folder;
}

} // namespace

DesktopReport::DesktopReport(QWidget &window, DockTile &dockTile, Notification &ofRuns,
                             Notification &ofSources, QObject *parent)
    : QObject(parent), m_window(window), m_dockTile(dockTile), m_ofRuns(ofRuns), m_ofSources(ofSources)
{
    m_ofSources.stayUntilClosed();
    const auto forget = [this] { m_sentences.clear(); };
    connect(&m_ofSources, &Notification::dismissed, this, forget);
    connect(&m_ofSources, &Notification::clicked, this, forget);
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
    m_ofRuns.show(summaryOf(outcome), outcome.reason.isEmpty() ? withTilde(outcome.folder) : outcome.reason);
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
        body += QStringLiteral("\nand %1 more, on standard error").arg(more);
    m_ofSources.show(QStringLiteral("About your source files"), body);
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
        m_ofRuns.withdraw();
}

/// Includes the window's dialogs and panels.
bool DesktopReport::isLookedAt() const
{
    return m_window.isVisible() && !m_window.isMinimized() && QGuiApplication::focusWindow() != nullptr;
}

} // namespace brevant
