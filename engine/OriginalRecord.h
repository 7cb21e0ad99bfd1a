// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

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
    quint32 mode = 0;
    quint32 owner = 0;
    quint32 group = 0;
    timespec accessed{};
    timespec modified{};
    timespec changed{};

    /// Where and what the source is now; nothing, with errno set, if that cannot be told. The hash is not
    /// filled in.
    [[nodiscard]] static std::optional<OriginalRecord> of(const QByteArray &path, const struct stat &status);

    /// Whether `status` is that of the untouched source, by inode, size and times.
    [[nodiscard]] bool isUntouched(const struct stat &status) const;

    [[nodiscard]] bool isSameFile(const struct stat &status) const
    {
        return status.st_dev == device && status.st_ino == inode;
    }

    /// The record for the disk, and back: nothing if the bytes are not exactly one record. What follows it is
    /// not looked at.
    [[nodiscard]] QByteArray toBytes() const;
    [[nodiscard]] static std::optional<OriginalRecord> fromBytes(QByteArrayView bytes);
};

} // namespace brevant
