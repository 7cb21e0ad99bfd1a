// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace brevant {

/// What is known of the content of a file, so that it need not be read again while size, inode and times stay
/// the same. Paths are bytes, as the system has them.
struct RecordedFile {
    qint64 size = 0;
    quint64 inode = 0;
    qint64 modifiedAt = 0; ///< nanoseconds since 1970; 0 where the times tell nothing
    qint64 changedAt = 0;  ///< likewise
    QByteArray hash;       ///< SHA-256 in base64url; empty where the content has not been read

    /// Its size, inode and times, without reading it; nothing if there is no such file. Links are followed.
    [[nodiscard]] static std::optional<RecordedFile> statusOf(const QByteArray &path);

    /// All of it; nothing if it is no regular file or cannot be read. A file that has just been changed gets
    /// no times, as another change within the same tick of the clock would leave them the same.
    [[nodiscard]] static std::optional<RecordedFile> of(const QByteArray &path);

    /// "SIZE INODE MODIFIED CHANGED HASH".
    [[nodiscard]] QByteArray text() const;
    [[nodiscard]] static std::optional<RecordedFile> fromText(QByteArrayView text);

    /// Whether a file looks like that of a text; much faster than fromText() and ifUnchanged().
    [[nodiscard]] static bool looksLikeText(QByteArrayView text, const QByteArray &path);

    /// The file as it is now, if it still has this content; it is read only if it looks different.
    [[nodiscard]] std::optional<RecordedFile> ifUnchanged(const QByteArray &path) const;

    /// Whether both are the same as far as that can be told without reading.
    [[nodiscard]] bool looksLike(const RecordedFile &other) const
    {
        return size == other.size && inode == other.inode && modifiedAt == other.modifiedAt &&
               changedAt == other.changedAt;
    }
};

} // namespace brevant
