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

/// What a source was before its compressor started: all that is needed to put it back. Paths are bytes, as
/// the system has them.
struct OriginalRecord {
    QByteArray path;     ///< the source as the queue names it
    QByteArray file;     ///< the file itself, at the end of all links
    QByteArray linkText; ///< what `path` points at where it is a symbolic link; else empty
    QByteArray hash;     ///< SHA-256 of the content
    qint64 size = 0;
    quint64 device = 0;
    quint64 inode = 0;
    quint32 mode = 0; ///< read from a disk, no more than the permissions
    quint32 owner = 0;
    quint32 group = 0;
    timespec accessed{};
    timespec modified{};
    timespec changed{};
    std::map<QByteArray, QByteArray>
        attributes; ///< extended ones, xattr(7); access control lists are among them

    /// Where and what the open source is now; nothing, with errno set, if that cannot be told. The hash is
    /// not filled in.
    [[nodiscard]] static std::optional<OriginalRecord> of(const QByteArray &path, int source);

    /// Whether `status` is that of the untouched source, by inode, size and times.
    [[nodiscard]] bool isUntouched(const struct stat &status) const;

    [[nodiscard]] bool isSameFile(const struct stat &status) const
    {
        return status.st_dev == device && status.st_ino == inode;
    }

    /// Gives an open file all of this but content and links; `times` too where the content is that of before.
    /// Only what differs is set, as who may write a file need not be allowed to set any of it. Returns what
    /// could not be set, and why, or an empty text.
    [[nodiscard]] QString restoreOn(int target, bool times) const;

    /// The record for the disk: a line with the SHA-256 of the next one, and one with a JSON object.
    [[nodiscard]] QByteArray toBytes() const;

    /// The record at the beginning of `bytes`, that of version 1.0.0 included; nothing if there is none. What
    /// follows it is not looked at.
    [[nodiscard]] static std::optional<OriginalRecord> fromBytes(QByteArrayView bytes);
};

} // namespace brevant
