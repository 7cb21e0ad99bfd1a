// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace brevant {

/// Files and folders, absolute, at which something has changed. A folder stands for all that is below it too.
class ChangedPaths final {
public:
    void add(const QString &path) { m_paths.insert(path); }

    /// Takes back paths that were added.
    void removeIf(const std::function<bool(const QString &path)> &condition);

    [[nodiscard]] bool isEmpty() const { return m_paths.isEmpty(); }
    [[nodiscard]] const QSet<QString> &paths() const { return m_paths; }

    /// Whether the path, or a folder above it, is among them.
    [[nodiscard]] bool hold(const QString &path) const;

    /// The folders at or below `top` that hold some of them, but for those below a folder that is among them
    /// itself. If `top` is, it is the only one.
    [[nodiscard]] QStringList foldersBelow(const QString &top) const;

private:
    QSet<QString> m_paths;
};

} // namespace brevant
