// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

namespace brevant {

/// What git ignores, by its own word. All paths are absolute; functions that ask git return why it cannot
/// tell, in words, or nothing.
class GitIgnored final {
public:
    /// Asks about a folder and all that is below it, but for repositories of their own.
    [[nodiscard]] QString askBelow(const QString &folder);

    /// Asks about paths all at once, from within `folder`.
    [[nodiscard]] QString ask(const QString &folder, const QStringList &paths);

    /// Whether git ignores a path that it was asked about, not looking at the folders above it.
    [[nodiscard]] bool contains(const QString &path) const { return m_paths.contains(path); }

private:
    QSet<QString> m_paths;
};

/// Whether a folder is the top of a repository.
[[nodiscard]] bool isRepository(const QString &folder);

} // namespace brevant
