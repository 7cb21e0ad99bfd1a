// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"

#include <QByteArray>
#include <QString>

#include <optional>

#include <sys/stat.h>

namespace brevant {

/// Replaces a file as a whole: readers, and whoever looks after a crash or a power cut, find either the old
/// file or the complete new one.
///
/// The bytes go to an unnamed file in the same folder (or to one with a temporary name where the file system
/// has no O_TMPFILE), which is flushed and then renamed over the target; the folder is flushed too. A program
/// that is killed leaves nothing behind, except between naming and renaming, where a file is to be replaced;
/// the next to replace it clears that away. Symbolic links are followed. The
/// target keeps its mode and, if the process may set it, its owner.
class DurableFile final {
public:
    explicit DurableFile(const QString &path);

    /// Makes the target anew, with the mode and the times of `like`: a link there is replaced, and nothing of
    /// an older file remains.
    DurableFile(const QString &path, const struct stat &like);
    DurableFile(const QByteArray &path, const struct stat &like);

    /// Drops what has not been committed.
    ~DurableFile() { discard(); }

    DurableFile(const DurableFile &) = delete;
    DurableFile &operator=(const DurableFile &) = delete;

    /// The mode of a target that does not exist; without this, what the umask leaves of 0666.
    void setModeOfNew(mode_t mode) { m_modeOfNew = mode; }

    /// The open temporary file, for what else is to be given to it; -1 before write().
    [[nodiscard]] int number() const { return m_file.number(); }

    /// Appends `bytes` to the temporary file, which the first call makes. False on failure.
    [[nodiscard]] bool write(QByteArrayView bytes);

    /// Flushes what has been written to the disk ahead of commit(). False on failure.
    [[nodiscard]] bool flush();

    /// Replaces the target. False on failure, which leaves the target as it was.
    [[nodiscard]] bool commit();

    /// Why the last call failed, in words.
    [[nodiscard]] const QString &errorText() const { return m_errorText; }

    /// Replaces a file in one call. Returns the reason of a failure, or an empty text.
    [[nodiscard]] static QString replace(const QString &path, QByteArrayView bytes);

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool openNew();
    [[nodiscard]] bool openTemporary(mode_t mode);
    [[nodiscard]] QByteArray nameBeside();
    [[nodiscard]] bool fail();
    void discard();

    QByteArray m_target;
    QByteArray m_temporary; ///< its path; empty for a file without a name
    QString m_errorText;
    std::optional<mode_t> m_modeOfNew;
    std::optional<timespec> m_time; ///< of the last change and access
    Descriptor m_file;
    qint64 m_size = 0;
    bool m_flushed = false;
};

} // namespace brevant
