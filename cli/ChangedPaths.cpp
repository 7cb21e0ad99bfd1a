// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChangedPaths.h"

#include "files/PathString.h"

using namespace Qt::StringLiterals;

namespace brevant {

void ChangedPaths::removeIf(const std::function<bool(const QString &path)> &condition)
{
    m_paths.removeIf(condition);
}

bool ChangedPaths::hold(const QString &path) const
{
    for (QStringView part = path; part.size() > 1; part = PathString::folder(part)) {
        if (m_paths.contains(part.toString()))
            return true;
    }
    return m_paths.contains(u"/"_s);
}

QStringList ChangedPaths::foldersBelow(const QString &top) const
{
    if (hold(top))
        return {top};
    const QString start = PathString::join(top, {});
    QSet<QString> folders;
    for (const QString &path : m_paths) {
        if (!path.startsWith(start))
            continue;
        // As the top is spelt, which may have slashes at its end.
        const QString folder = PathString::folder(path).toString();
        folders.insert(folder.size() < start.size() ? top : folder);
    }
    folders.removeIf([this](const QString &folder) { return hold(folder); });
    return {folders.begin(), folders.end()};
}

} // namespace brevant
