// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/OriginalsFolder.h"

#include "queue/PathString.h"
#include "settings/Descriptor.h"
#include "settings/DurableFile.h"

#include <QDir>
#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant::OriginalsFolder {

namespace {

constexpr mode_t ownerOnly = 0700;

/// False, with errno set, on failure. The XDG Base Directory Specification wants what is made on the way to
/// be private too.
bool makeFolders(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), ownerOnly) != 0) {
        if (errno == EEXIST)
            return true;
        if (errno != ENOENT || path.size() < 2)
            return false;
        if (!makeFolders(PathString::folder(path).toString()))
            return false;
        if (::mkdir(name.constData(), ownerOnly) != 0 && errno != EEXIST)
            return false;
    }
    return flushFolder(QFile::encodeName(PathString::folder(path).toString()));
}

} // namespace

QString standardPath()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!state.startsWith(u'/'))
        state = PathString::join(QDir::homePath(), u".local/state");
    return PathString::join(state, u"brevant/originals");
}

QString make(const QString &path)
{
    if (!makeFolders(path))
        return qt_error_string(errno);
    const Descriptor folder(uninterrupted([&] {
        return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }));
    struct stat status {};
    if (!folder.isOpen() || ::fstat(folder.number(), &status) != 0)
        return qt_error_string(errno);
    // Made by somebody else, or with looser rights.
    if ((status.st_mode & 07777) != ownerOnly && ::fchmod(folder.number(), ownerOnly) != 0)
        return qt_error_string(errno);
    return {};
}

QByteArray keptPath(const QByteArray &folder, const QByteArray &id, const QByteArray &name)
{
    constexpr qsizetype longest = 200;
    return folder + "/kept-" + id + '-' + name.last(std::min(longest, name.size()));
}

} // namespace brevant::OriginalsFolder
