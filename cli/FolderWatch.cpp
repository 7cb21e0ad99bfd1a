// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FolderWatch.h"

#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <sys/inotify.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr std::uint32_t wanted = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                 IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

/// Beside what is wanted of the same folder already.
constexpr std::uint32_t endsAlone = IN_DELETE | IN_MOVED_FROM | IN_ONLYDIR | IN_MASK_ADD;

/// A limit of inotify's, with the command that raises it.
QString limitError(const QString &what, const QString &limit, int least)
{
    const QByteArray now = FileBytes::readAll("/proc/sys/fs/inotify/" + limit.toUtf8()).value_or("");
    return u"--watch: %1: raise the limit with: sudo sysctl fs.inotify.%2=%3"_s.arg(what, limit)
        .arg(std::max<qint64>(least, 2 * now.trimmed().toLongLong()));
}

/// Whether a name that has just come needs no writing: it is another name of a file, or a link.
bool isComplete(const QString &path)
{
    const auto status = statusOfLink(RawBytes::encoded(path));
    return status && (status->st_nlink > 1 || S_ISLNK(status->st_mode));
}

} // namespace

void FolderWatch::start()
{
    m_folders.clear();
    m_forNames.clear();
    m_queue = Descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (m_queue.isOpen())
        return;
    m_error = errno == EMFILE
                  ? limitError(u"too many programs watch folders"_s, u"max_user_instances"_s, 1024)
                  : u"--watch: folders cannot be watched: %1"_s.arg(qt_error_string(errno));
}

void FolderWatch::add(const QString &folder)
{
    m_forNames.remove(watch(folder, wanted));
}

void FolderWatch::addForNames(const QString &folder)
{
    addForNames(folder, wanted);
}

void FolderWatch::addForEnds(const QString &folder)
{
    addForNames(folder, endsAlone);
}

void FolderWatch::addForNames(const QString &folder, std::uint32_t events)
{
    const qsizetype before = m_folders.size();
    if (const int added = watch(folder, events); m_folders.size() > before)
        m_forNames.insert(added);
}

/// Its watch descriptor; -1 if it is not watched.
int FolderWatch::watch(const QString &folder, std::uint32_t events)
{
    if (!m_error.isEmpty())
        return -1;
    const int watch = ::inotify_add_watch(m_queue.number(), RawBytes::encoded(folder).constData(), events);
    if (watch >= 0 && !m_folders.contains(watch))
        m_folders.insert(watch, folder);
    if (watch >= 0 || errno == ENOENT || errno == EACCES)
        return watch;
    if (errno == ENOTDIR)
        return this->watch(PathString::folder(folder).toString(), events);
    m_error = errno == ENOSPC
                  ? limitError(u"there are too many folders to watch"_s, u"max_user_watches"_s, 524'288)
                  : u"--watch: %1 cannot be watched: %2"_s.arg(folder, qt_error_string(errno));
    return -1;
}

bool FolderWatch::watches(const QString &folder) const
{
    const auto mark = FileMarks::ofFile(folder);
    const auto isIt = [&](const auto &watched) {
        return !m_forNames.contains(watched.first) && FileMarks::ofFile(watched.second) == mark;
    };
    return mark && std::ranges::any_of(m_folders.asKeyValueRange(), isIt);
}

bool FolderWatch::read(const std::function<void(const FolderEvent &)> &tell)
{
    alignas(inotify_event) std::array<char, 65536> buffer; // NOLINT(*-member-init): filled by the system
    for (;;) {
        const ssize_t size = ::read(m_queue.number(), buffer.data(), buffer.size());
        if (size <= 0)
            return true;
        for (ssize_t at = 0; at < size;) {
            const auto &event = *reinterpret_cast<const inotify_event *>(buffer.data() + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
            if ((event.mask & IN_Q_OVERFLOW) != 0) {
                start(); // what has been moved meanwhile would be known by its old name
                return false;
            }
            take(event, tell);
        }
    }
}

void FolderWatch::take(const inotify_event &event, const std::function<void(const FolderEvent &)> &tell)
{
    const auto folder = m_folders.constFind(event.wd);
    if (folder == m_folders.constEnd())
        return;
    if ((event.mask & IN_IGNORED) != 0) {
        m_folders.erase(folder);
        return;
    }
    const bool isItself = (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0;
    const QString path = isItself ? *folder : PathString::join(*folder, RawBytes::decoded(event.name));
    const bool isFolder = isItself || (event.mask & IN_ISDIR) != 0;
    if (isFolder && (event.mask & (IN_MOVED_FROM | IN_MOVE_SELF)) != 0)
        removeBelow(path);
    // A new file is told of when it has been written.
    if (isFolder || (event.mask & IN_CREATE) == 0 || isComplete(path))
        tell({path, isFolder});
}

/// Forgets a folder and those below it, as they may have other names by now.
void FolderWatch::removeBelow(const QString &folder)
{
    const QString start = PathString::join(folder, {});
    m_folders.removeIf([&](const auto &watched) {
        const bool isBelow = watched.value() == folder || watched.value().startsWith(start);
        if (isBelow)
            ::inotify_rm_watch(m_queue.number(), watched.key());
        return isBelow;
    });
}

} // namespace brevant
