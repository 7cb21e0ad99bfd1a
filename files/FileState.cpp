// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileState.h"

#include "files/Folders.h"

#include <QFile>

namespace brevant {

std::optional<FileState> FileState::of(const QString &path)
{
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    const auto status = statusOf(QFile::encodeName(path));
    if (!status)
        return std::nullopt;
    return FileState{status->st_ino, status->st_size,
                     status->st_ctim.tv_sec * nanosecondsPerSecond + status->st_ctim.tv_nsec};
}

} // namespace brevant
