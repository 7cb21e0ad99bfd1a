// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"
#include "files/Folders.h"
#include "files/PathString.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdio>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace brevant {

/// A folder, held open, whose files decide what is written elsewhere: only files that belong to this user and
/// are closed to all others are used.
class PrivateFolder final {
public:
    /// Opens the folder; with `make`, a missing one is made first, durably, with its parents. Nothing on
    /// failure, with the reason in `error`, which stays empty if the folder does not exist.
    [[nodiscard]] static std::optional<PrivateFolder> open(const QString &path, QString &error,
                                                           bool make = false);

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QByteArray &name) const
    {
        return PathString::join(m_path, PathString::decoded(name));
    }

    /// Makes a file, open for reading and writing; closed, with errno set, on failure.
    [[nodiscard]] Descriptor makeFile(const QByteArray &name) const
    {
        return openEntry(name, O_RDWR | O_CREAT | O_EXCL);
    }

    /// Opens an existing file, for reading at least; closed, with errno set, on failure, which is EPERM for a
    /// file that might be somebody else's.
    [[nodiscard]] Descriptor openFile(const QByteArray &name) const
    {
        Descriptor file = openOurs(name, O_RDWR);
        return !file.isOpen() && errno == EROFS ? openOurs(name, O_RDONLY) : std::move(file);
    }

    /// False, with errno set, on failure.
    [[nodiscard]] bool removeFile(const QByteArray &name) const
    {
        return ::unlinkat(m_folder.number(), name.constData(), 0) == 0;
    }
    [[nodiscard]] bool renameFile(const QByteArray &from, const QByteArray &to) const
    {
        return ::renameat(m_folder.number(), from.constData(), m_folder.number(), to.constData()) == 0;
    }

    /// Flushes the names in the folder to the disk; false, with errno set, on failure.
    [[nodiscard]] bool flush() const { return flushOpenFolder(m_folder.number()); }

    /// The names with that ending, sorted.
    [[nodiscard]] std::vector<QByteArray> namesEndingIn(const QByteArray &suffix) const;

    /// Copies `size` bytes of an open file, from `offset` on, to a new file for the user, named after the
    /// file at `path`. Returns its path, or nothing, with errno set, on failure.
    [[nodiscard]] std::optional<QString> keep(int file, off_t offset, qint64 size,
                                              const QByteArray &path) const;

    enum class Lock {
        Held,
        InUse,   ///< held by somebody else
        Refused, ///< the file system offers no locks
    };

    /// Locks a name, which need not be that of a file, for as long as this object or a child that inherited
    /// the locks lives. Each object has locks of its own, even on the same folder.
    [[nodiscard]] Lock tryLock(QByteArrayView name);
    void unlock(QByteArrayView name);

    /// Whether children started from now on hold the locks too.
    void setInherited(bool inherited) const
    {
        ::fcntl(m_locks.number(), F_SETFD, inherited ? 0 : FD_CLOEXEC);
    }

private:
    PrivateFolder(QString path, Descriptor folder);
    [[nodiscard]] Descriptor openOurs(const QByteArray &name, int flags) const;

    [[nodiscard]] Descriptor openEntry(const QByteArray &name, int flags) const
    {
        return brevant::openFile(name, flags | O_NOFOLLOW, 0600, m_folder.number());
    }

    QString m_path;
    Descriptor m_folder;
    Descriptor m_locks;
};

} // namespace brevant
