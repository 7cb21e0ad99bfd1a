// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ListedFiles.h"

#include "queue/FileQueue.h"
#include "queue/PathString.h"

#include <QFile>
#include <QList>

#include <optional>

#include <sys/stat.h>

namespace brevant {

namespace {

std::optional<QByteArray> identity(const QByteArray &path)
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return std::nullopt;
    return QByteArray::number(status.st_dev) + ' ' + QByteArray::number(status.st_ino);
}

/// What a file that is there is known by: its name in its folder, as gzip puts another file under it, and the
/// file itself, as it may have other names.
QList<QByteArray> marks(const QString &path)
{
    const std::optional<QByteArray> file = identity(QFile::encodeName(path));
    if (!file)
        return {};
    const QByteArray folder = QFile::encodeName(PathString::folder(path).toString());
    return {*file, identity(folder).value_or(folder) + '/' +
                       QFile::encodeName(PathString::lastComponent(path).toString())};
}

} // namespace

bool ListedFiles::contains(const QString &path)
{
    const QList<QByteArray> wanted = marks(path);
    if (wanted.isEmpty())
        return false;
    if (const quint64 revision = m_queue.revision(); revision != m_revision) {
        m_revision = revision;
        m_marks.clear();
        for (const QString &entry : m_queue.entries()) {
            for (const QByteArray &mark : marks(entry))
                m_marks.insert(mark);
        }
    }
    return m_marks.contains(wanted.first()) || m_marks.contains(wanted.last());
}

} // namespace brevant
