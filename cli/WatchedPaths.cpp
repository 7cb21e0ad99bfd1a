// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/WatchedPaths.h"

#include "cli/ChangedPaths.h"
#include "cli/CommandLine.h"
#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "cli/project/ProjectFile.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>

#include <algorithm>
#include <array>
#include <chrono>

#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

using TerminalText::printError;

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto settleTime = 100ms;
constexpr auto longestUnrest = 2s; ///< what changes all the time is minified all the same

bool isBelow(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(PathString::join(folder, {}));
}

/// The path itself, or the nearest folder above it that is there.
QString nearest(QString path)
{
    while (path.size() > 1 && !isThere(RawBytes::encoded(path)))
        path = PathString::folder(path).toString();
    return path;
}

qint64 nowInNanoseconds()
{
    return std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace

WatchedPaths::WatchedPaths(const CommandLine &line)
    : m_workingFolder(QDir::currentPath()), m_lastRead(nowInNanoseconds())
{
    for (const QString &path : line.paths)
        m_tops.append(PathString::absolute(path));
    if (!line.projectFolder.isEmpty())
        m_projectFile = PathString::join(line.projectFolder, ProjectFile::name);
}

void WatchedPaths::watchAround()
{
    if (!m_projectFile.isEmpty())
        m_folders.addForNames(PathString::folder(m_projectFile).toString());
    // The end of a folder that is somebody's working folder is told of there alone.
    m_folders.addForEnds(PathString::folder(m_workingFolder).toString());
}

/// Where it was deleted or moved away, another one may be in its place by now.
void WatchedPaths::returnToWorkingFolder() const
{
    if (QDir::currentPath() != m_workingFolder) [[maybe_unused]]
        const int entered = ::chdir(RawBytes::encoded(m_workingFolder).constData());
}

bool WatchedPaths::collect(ChangedPaths &changed, const std::function<Interest()> &interest)
{
    std::optional<Clock::time_point> end;
    std::optional<Clock::time_point> latestEnd;
    while (!end || Clock::now() < *end) {
        const auto left = end ? std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now()) : -1ms;
        std::array files{pollfd{m_folders.descriptor(), POLLIN, 0}, pollfd{stopDescriptor(), POLLIN, 0}};
        const int ready = ::poll(files.data(), files.size(), static_cast<int>(left.count()));
        if (stopRequested != Stop::No) {
            if (::isatty(STDERR_FILENO) != 0)
                TerminalText::print(stderr, u"\n"_s); // behind what the terminal shows for Ctrl+C
            return false;
        }
        if (ready > 0 && readEvents(changed, interest())) {
            const auto now = Clock::now();
            latestEnd = latestEnd.value_or(now + longestUnrest);
            end = std::min(now + settleTime, *latestEnd);
        }
    }
    returnToWorkingFolder();
    return true;
}

/// Takes what the system has to tell; whether something of it matters.
bool WatchedPaths::readEvents(ChangedPaths &changed, const Interest &isOfInterest)
{
    bool isConcerned = false;
    const bool isWhole = m_folders.read([&](const FolderEvent &event) {
        if (event.path == m_projectFile)
            printError(u"%1 has changed; start again to use it"_s.arg(event.path));
        if (!concerns(event) || (!event.isFolder && !isOfInterest(event.path)))
            return;
        changed.add(event.path);
        isConcerned = true;
    });
    constexpr qint64 clockSlack = 1'000'000'000; // the clock of a file system may be behind
    if (isWhole) {
        m_lastRead = nowInNanoseconds();
        return isConcerned;
    }
    m_lostSince = m_lostSince.value_or(m_lastRead - clockSlack);
    for (const QString &top : m_tops)
        changed.add(top);
    return true;
}

bool WatchedPaths::concerns(const FolderEvent &event) const
{
    return std::ranges::any_of(m_tops, [&](const QString &top) {
        return isBelow(event.path, top) || (event.isFolder && isBelow(top, event.path));
    });
}

void WatchedPaths::await(const ChangedPaths &changed)
{
    for (const QString &top : m_tops) {
        if (!changed.hold(top))
            continue;
        if (isThere(RawBytes::encoded(top))) {
            m_missing.remove(top);
            continue;
        }
        if (!m_missing.contains(top))
            printError(u"%1 is gone; it is watched again when it is back"_s.arg(top));
        m_missing.insert(top);
        QString place = top;
        for (QString last; place != last;) { // until none of them comes while its folder is not watched yet
            last = std::exchange(place, nearest(top));
            m_folders.addForNames(place);
        }
    }
}

} // namespace brevant
