// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

#include <sys/types.h>

/// Ranges of open files. Each function fails with errno set, and none of them moves a file position.
namespace brevant::FileBytes {

/// Writes all of `bytes` at `offset`; false on failure.
[[nodiscard]] bool writeAll(int file, QByteArrayView bytes, off_t offset);

/// Up to `size` bytes at `offset`, fewer at the end of the file; nothing on failure.
[[nodiscard]] std::optional<QByteArray> read(int file, qint64 size, off_t offset);

/// All that is in an open file; nothing on failure.
[[nodiscard]] std::optional<QByteArray> readAll(int file);

/// All that is in a regular file, which openRegularFile() opens; nothing on failure.
[[nodiscard]] std::optional<QByteArray> readAll(const QByteArray &path);

/// The SHA-256 of `size` bytes at `offset`, or of fewer at the end of the file; nothing on failure.
[[nodiscard]] std::optional<QByteArray> hash(int file, off_t offset, qint64 size);

/// Copies at most `size` bytes into `target`: shares them where the file system can (ioctl_ficlonerange(2)),
/// else the kernel copies them, else they are read and written. The number copied, or nothing on failure.
[[nodiscard]] std::optional<qint64> copy(int source, off_t sourceOffset, int target, off_t targetOffset,
                                         qint64 size);

/// Copies just `size` bytes; false, with errno set to EIO where there were fewer, on failure.
[[nodiscard]] bool copyAll(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size);

} // namespace brevant::FileBytes
