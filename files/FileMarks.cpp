// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileMarks.h"

#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>

#include <sys/stat.h>

namespace brevant::FileMarks {

QString ofPlace(const QString &path)
{
    const QString folder = PathString::folder(path).toString();
    return PathString::join(ofFile(folder).value_or(QDir::cleanPath(folder)),
                            PathString::lastComponent(path));
}

std::optional<QString> ofFile(const QString &path)
{
    struct stat status {};
    if (::stat(RawBytes::encoded(path).constData(), &status) != 0)
        return std::nullopt;
    return ofFile(status.st_dev, status.st_ino);
}

QString ofFile(quint64 device, quint64 inode)
{
    return QString::number(device) + u' ' + QString::number(inode);
}

QStringList all(const QString &path)
{
    QStringList marks{ofPlace(path)};
    if (const QString end = ofPlace(RawBytes::decoded(linkTarget(RawBytes::encoded(path))));
        end != marks.first())
        marks.append(end);
    if (const std::optional<QString> file = ofFile(path))
        marks.append(*file);
    return marks;
}

} // namespace brevant::FileMarks
