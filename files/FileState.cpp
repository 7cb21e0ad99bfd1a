// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileState.h"

#include <QFile>

#include <sys/stat.h>

namespace brevant {

std::optional<FileState> FileState::of(const QString &path)
{
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return FileState{status.st_ino, status.st_size,
                     status.st_ctim.tv_sec * nanosecondsPerSecond + status.st_ctim.tv_nsec};
}

} // namespace brevant
