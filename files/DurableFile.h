// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"

#include <QByteArray>
#include <QString>

namespace brevant {

/// Replaces one file as a whole, so that a reader, a fault or a power cut ever sees the old file or the
/// complete new one.
///
/// The bytes go to a file without a name in the same folder, or one with a temporary name where the file
/// system has no such thing. It is flushed to the disk and then put into the target's place; the folder is
/// flushed too. A program that is killed meanwhile leaves no file behind, but for the moment between naming
/// it and putting it into place. A symbolic link is followed: what it points at is replaced. The
/// target keeps its mode and, where the process may set it, its owner; a new file gets the usual mode.
class DurableFile final {
public:
    explicit DurableFile(const QString &path);

    /// Drops what has been written and not committed.
    ~DurableFile();

    DurableFile(const DurableFile &) = delete;
    DurableFile &operator=(const DurableFile &) = delete;

    /// Appends `bytes` to the temporary file, which the first call makes. False on failure.
    [[nodiscard]] bool write(QByteArrayView bytes);

    /// Waits until what has been written is on the disk, which commit() then need not do. False on failure.
    [[nodiscard]] bool flush();

    /// Puts what has been written into the target's place. False on failure, and then the target is as it
    /// was.
    [[nodiscard]] bool commit();

    /// Why the last call failed, in words.
    [[nodiscard]] const QString &errorText() const { return m_errorText; }

    /// Writes a whole file in one step. Returns the reason of a failure, or an empty text.
    [[nodiscard]] static QString replace(const QString &path, QByteArrayView bytes);

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool fail();
    void discard();

    QByteArray m_target;
    QByteArray m_temporary; ///< its path; empty for a file without a name
    QString m_errorText;
    Descriptor m_file;
    qint64 m_size = 0;
    bool m_flushed = false;
};

} // namespace brevant
