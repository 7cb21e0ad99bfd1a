// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/ProjectPlaces.h"

#include "cli/OutputFiles.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace brevant {

/// A path without links, seen from the folder; nothing if it is not in that.
static std::optional<QString> pathWithin(const QByteArray &real, const QString &folder)
{
    const QByteArray top = realPath(RawBytes::encoded(folder));
    const QByteArray before = top.endsWith('/') ? top : top + '/';
    if (top.isEmpty() || (real != top && !real.startsWith(before)))
        return std::nullopt;
    return RawBytes::decoded(real.sliced(std::min(before.size(), real.size())));
}

/// Whether it leads into a folder of version control, of which a file can be a program that is run.
static bool isOfVersionControl(const QString &path)
{
    return std::ranges::any_of(path.split(u'/'), [](const QString &name) {
        return QStringList{u".git"_s, u".hg"_s, u".svn"_s}.contains(name, Qt::CaseInsensitive);
    });
}

PlaceInProject placeInProject(const QString &folder, const QString &text)
{
    if (text.isEmpty() || text.startsWith(u'/') || text.split(u'/').contains(u".."_s))
        return {{}, u"is not within the folder of the project file"_s};
    const QString path = QDir::cleanPath(PathString::join(folder, text));
    QByteArray there = RawBytes::encoded(path); // or what of it is there
    while (!isThere(there) && there.size() > 1)
        there = folderOf(there);
    const std::optional<QString> within = pathWithin(realPath(there), folder);
    if (!within)
        return {{}, u"leads out of the folder of the project file"_s};
    if (isOfVersionControl(text) || isOfVersionControl(*within))
        return {{}, u"is a place of version control, where a project file has no business"_s};
    return {path, {}};
}

/// Whether the path is spelt as one below the folder.
static bool isSpeltBelow(const QString &path, const QString &folder)
{
    return QDir::cleanPath(path).startsWith(PathString::join(folder, {}));
}

QString sourceErrorInProject(const QString &folder, const QString &source)
{
    const QByteArray real = realPath(RawBytes::encoded(source)); // empty if it is not there
    if (real.isEmpty() || !isSpeltBelow(source, folder) || pathWithin(real, folder))
        return {};
    return u"it is a link that leads out of the folder of the project file; --no-project takes it"_s;
}

QString outputErrorInProject(const QString &folder, const QString &output)
{
    if (!isSpeltBelow(output, folder))
        return {};
    for (const QString &path : withCopies(output)) {
        const QByteArray end = linkTarget(RawBytes::encoded(path));
        if (end == RawBytes::encoded(path))
            continue;
        const QByteArray real = realPath(folderOf(end)) + end.sliced(end.lastIndexOf('/'));
        const std::optional<QString> within = pathWithin(real, folder); // the file itself need not be there
        if (!within || isOfVersionControl(*within))
            return u"%1 is a link that leads out of the folder of the project file"_s.arg(path);
    }
    return {};
}

} // namespace brevant
