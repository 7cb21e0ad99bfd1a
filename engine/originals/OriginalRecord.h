// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <map>
#include <optional>

#include <sys/stat.h>

namespace brevant {

/// What a source was before its compressor started: all that is needed to put it back.
struct OriginalRecord {
    QByteArray path;     ///< the source as the queue names it
    QByteArray file;     ///< the file itself, at the end of all links
    QByteArray linkText; ///< the target of `path` if that is a symbolic link; else empty
    QByteArray hash;     ///< SHA-256 of the content
    QByteArray written;  ///< likewise of the output that has replaced it, where that is known; else empty
    qint64 size = 0;
    quint64 device = 0;
    quint64 inode = 0;
    quint32 mode = 0; ///< when read from the disk, only the permissions
    quint32 owner = 0;
    quint32 group = 0;
    timespec accessed{};
    timespec modified{};
    timespec changed{};
    std::map<QByteArray, QByteArray> attributes; ///< extended ones, with access control lists; xattr(7)

    /// The record of an open source, without the hash; nothing, with errno set, on failure.
    [[nodiscard]] static std::optional<OriginalRecord> of(const QByteArray &path, int source);

    /// Whether the source has not been touched since, by inode, size and times.
    [[nodiscard]] bool isUntouched(const struct stat &status) const;

    [[nodiscard]] bool isSameFile(const struct stat &status) const
    {
        return status.st_dev == device && status.st_ino == inode;
    }

    /// Gives an open file the owner, mode and extended attributes of before, and with `times` the times. Only
    /// what differs is set, as a user who may write a file need not be allowed to set any of it. Returns what
    /// could not be set, and why, or an empty text.
    [[nodiscard]] QString restoreOn(int target, bool times) const;

    /// Two lines: the SHA-256 of the second, and a JSON object.
    [[nodiscard]] QByteArray toBytes() const;

    /// The record at the beginning of `bytes`, which may be of version 1.0.0; nothing if there is none.
    [[nodiscard]] static std::optional<OriginalRecord> fromBytes(QByteArrayView bytes);
};

} // namespace brevant
