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

/// A folder held open, for files that decide what is written elsewhere: only what belongs to this user and is
/// closed to all others counts in it.
class PrivateFolder final {
public:
    /// Opens the folder if it is there, and with `make`, makes it first where it is missing, durably, with
    /// those above it. Nothing, with the reason in `error`, on failure; without a reason if it is not there.
    [[nodiscard]] static std::optional<PrivateFolder> open(const QString &path, QString &error,
                                                           bool make = false);

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QByteArray &name) const
    {
        return PathString::join(m_path, PathString::decoded(name));
    }

    /// Makes a file that is open for reading and writing; closed, with errno set, on failure.
    [[nodiscard]] Descriptor makeFile(const QByteArray &name) const;

    /// Opens a file that is there, for reading at least; closed, with errno set (EPERM where it might be
    /// somebody else's), on failure.
    [[nodiscard]] Descriptor openFile(const QByteArray &name) const;

    /// False, with errno set, on failure.
    [[nodiscard]] bool removeFile(const QByteArray &name) const
    {
        return ::unlinkat(m_folder.number(), name.constData(), 0) == 0;
    }
    [[nodiscard]] bool renameFile(const QByteArray &from, const QByteArray &to) const
    {
        return ::renameat(m_folder.number(), from.constData(), m_folder.number(), to.constData()) == 0;
    }

    /// Waits until the names in the folder are on the disk; false, with errno set, on failure.
    [[nodiscard]] bool flush() const { return flushOpenFolder(m_folder.number()); }

    /// The names that end so, in order.
    [[nodiscard]] std::vector<QByteArray> namesEndingIn(const QByteArray &suffix) const;

    /// Copies `size` bytes of an open file, from `offset` on, to a new file that stays for the user; its name
    /// ends with that in `path`, as far as it fits. Its path, or nothing, with errno set, on failure.
    [[nodiscard]] std::optional<QString> keep(int file, off_t offset, qint64 size,
                                              const QByteArray &path) const;

    enum class Lock {
        Held,
        InUse,   ///< somebody else holds it
        Refused, ///< no locks are to be had here
    };

    /// Locks a name of no file, for as long as this object lives, or a child that has inherited it. Each
    /// object opened on the folder has locks of its own.
    [[nodiscard]] Lock tryLock(QByteArrayView name);
    void unlock(QByteArrayView name);

    /// Whether children started from now on hold the locks too.
    void setInherited(bool inherited) const;

private:
    PrivateFolder(QString path, Descriptor folder);

    [[nodiscard]] Descriptor openEntry(const QByteArray &name, int flags) const;

    QString m_path;
    Descriptor m_folder;
    Descriptor m_locks;
};

} // namespace brevant
