// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/ProjectFile.h"

#include "cli/GitIgnored.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace brevant::ProjectFile {

namespace {

constexpr qint64 longest = 1'000'000; // bytes

/// Why a file with that status is not used; empty if it is.
QString refusalOf(const struct stat &status)
{
    if (S_ISLNK(status.st_mode))
        return u"is a link, which a project file must not be"_s;
    if (!S_ISREG(status.st_mode))
        return u"is no regular file"_s;
    if (status.st_uid != ::geteuid() && status.st_uid != 0)
        return u"belongs to another user"_s;
    if ((status.st_mode & S_IWOTH) != 0)
        return u"can be written by every user; take that away with chmod o-w"_s;
    if (status.st_size > longest)
        return u"is longer than 1 MB"_s;
    return {};
}

} // namespace

QString find(const QString &folder)
{
    const auto home = statusOf(qgetenv("HOME"));
    const auto start = statusOf(RawBytes::encoded(folder));
    for (QString at = folder; !at.isEmpty(); at = PathString::folder(at).toString()) {
        const auto status = statusOf(RawBytes::encoded(at));
        if (!start || !status || status->st_dev != start->st_dev)
            break;
        // As /tmp is: anybody could put a project file there.
        if (at != folder && (status->st_mode & S_IWOTH) != 0)
            break;
        QString path = PathString::join(at, name);
        if (isThere(RawBytes::encoded(path)))
            return path;
        const bool isHome = home && home->st_dev == status->st_dev && home->st_ino == status->st_ino;
        if (isHome || isRepository(at) || at.size() == 1)
            break;
    }
    return {};
}

Content read(const QString &path)
{
    const QByteArray encoded = RawBytes::encoded(path);
    const auto refused = [&path](const QString &why) {
        return Content{{}, u"%1 %2; --no-project goes without it"_s.arg(path, why)};
    };
    if (const auto found = statusOfLink(encoded); found && !refusalOf(*found).isEmpty())
        return refused(refusalOf(*found));
    struct stat status {};
    const Descriptor file = openFile(encoded, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return refused(u"cannot be read: "_s + qt_error_string(errno));
    if (const QString why = refusalOf(status); !why.isEmpty()) // it may be another since
        return refused(why);
    const std::optional<QByteArray> bytes = FileBytes::read(file.number(), longest, 0);
    return bytes ? Content{*bytes, {}} : refused(u"cannot be read: "_s + qt_error_string(errno));
}

} // namespace brevant::ProjectFile
