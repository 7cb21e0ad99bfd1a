// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace brevant {

/// One state of a file. Its change time tells a file written again from the one before.
struct FileState {
    quint64 inode = 0;
    qint64 size = 0;
    qint64 changedAt = 0; ///< nanoseconds since 1970

    /// That at the end of links; nothing if there is no such file.
    [[nodiscard]] static std::optional<FileState> of(const QString &path);

    bool operator==(const FileState &) const = default;
};

} // namespace brevant
