// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RunOrder.h"

#include "queue/PathString.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <sys/stat.h>

namespace brevant {

namespace {

/// Who has used a file so far.
struct Use {
    int writer = -1;
    std::vector<int> readers; ///< since that one wrote
};

std::optional<QString> identity(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return QStringLiteral("%1 %2").arg(status.st_dev).arg(status.st_ino);
}

/// What the file of that path is known by: its name in its folder, where capitals may not count, and, if it
/// is there, the file itself, which may have other names.
QStringList marks(const QString &path)
{
    const QString folder = PathString::folder(path).toString();
    const QString name = PathString::lastComponent(path).toString().toCaseFolded();
    QStringList list{identity(folder).value_or(QDir::cleanPath(folder).toCaseFolded()) + u'/' + name};
    if (const std::optional<QString> file = identity(path))
        list.append(*file);
    return list;
}

/// What is written for an entry. With ":" in the output's path that may be the source too.
QStringList written(const PlannedEntry &entry)
{
    if (!entry.output)
        return {};
    QStringList list = marks(*entry.output);
    if (entry.output->contains(u':'))
        list += marks(entry.source);
    return list;
}

} // namespace

RunOrder::RunOrder(const std::vector<PlannedEntry> &entries)
    : m_followers(entries.size()), m_waitsFor(entries.size(), 0)
{
    QHash<QString, Use> uses;
    for (int index = 0; index < static_cast<int>(entries.size()); ++index) {
        const PlannedEntry &entry = entries[static_cast<std::size_t>(index)];
        for (const QString &mark : marks(entry.source)) {
            Use &use = uses[mark];
            addWait(index, use.writer);
            use.readers.push_back(index);
        }
        for (const QString &mark : written(entry)) {
            Use &use = uses[mark];
            addWait(index, use.writer);
            for (const int reader : use.readers)
                addWait(index, reader);
            use = {index, {}};
        }
        if (m_waitsFor[static_cast<std::size_t>(index)] == 0)
            m_free.insert(index);
    }
}

void RunOrder::addWait(int entry, int earlier)
{
    if (earlier < 0 || earlier == entry)
        return;
    m_followers[static_cast<std::size_t>(earlier)].push_back(entry);
    ++m_waitsFor[static_cast<std::size_t>(entry)];
}

std::optional<int> RunOrder::takeNext()
{
    if (m_free.empty())
        return std::nullopt;
    ++m_taken;
    return m_free.extract(m_free.begin()).value();
}

void RunOrder::finished(int entry)
{
    for (const int follower : m_followers[static_cast<std::size_t>(entry)]) {
        if (--m_waitsFor[static_cast<std::size_t>(follower)] == 0)
            m_free.insert(follower);
    }
}

} // namespace brevant
