// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

#include <sys/types.h>

/// Reading, writing, copying and hashing open files. Failures set errno; file positions are neither used nor
/// moved, but by readStream().
namespace brevant::FileBytes {

/// Writes all of `bytes` at `offset`; false on failure.
[[nodiscard]] bool writeAll(int file, QByteArrayView bytes, off_t offset);

/// Up to `size` bytes at `offset`, fewer at the end of the file; nothing on failure.
[[nodiscard]] std::optional<QByteArray> read(int file, qint64 size, off_t offset);

/// What is read at once has at most so many bytes. The memory may not hold more, of a sparse file say, and a
/// program without memory is ended with all that it has in hand.
constexpr qint64 longestText = 1'000'000'000;

/// The whole content of an open file; nothing on failure, with EFBIG if it is too long.
[[nodiscard]] std::optional<QByteArray> readAll(int file);

/// What is read from a pipe, a terminal or a file until it ends, from where it is on, up to `most` bytes;
/// nothing on failure, with EFBIG if there is more.
[[nodiscard]] std::optional<QByteArray> readStream(int file, qint64 most);

/// The whole content of the regular file `path`; nothing on failure.
[[nodiscard]] std::optional<QByteArray> readAll(const QByteArray &path);

/// The SHA-256 of `size` bytes at `offset`, or of fewer at the end of the file; nothing on failure.
[[nodiscard]] std::optional<QByteArray> hash(int file, off_t offset, qint64 size);

/// Copies up to `size` bytes: inside the kernel, which shares blocks where the file system can
/// (copy_file_range(2)), else by reading and writing. Returns the number copied, or nothing on failure.
[[nodiscard]] std::optional<qint64> copy(int source, off_t sourceOffset, int target, off_t targetOffset,
                                         qint64 size);

/// Copies exactly `size` bytes; false on failure, with EIO if there were fewer.
[[nodiscard]] bool copyAll(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size);

} // namespace brevant::FileBytes
