// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/DurableFile.h"

#include "files/FileBytes.h"
#include "files/Folders.h"

#include <QCryptographicHash>
#include <QFile>

#include <cstdio>

#include <sys/file.h>
#include <sys/stat.h>

namespace brevant {

DurableFile::DurableFile(const QString &path) : m_target(linkTarget(QFile::encodeName(path))) {}

DurableFile::DurableFile(const QString &path, const struct stat &like)
    : DurableFile(QFile::encodeName(path), like)
{
}

DurableFile::DurableFile(const QByteArray &path, const struct stat &like)
    : m_target(path), m_modeOfNew(like.st_mode & 0777), m_time(like.st_mtim)
{
}

bool DurableFile::open()
{
    if (m_file.isOpen())
        return true;
    struct stat old {};
    if (m_time)
        return openNew();
    if (::stat(m_target.constData(), &old) != 0)
        return errno == ENOENT && openNew(); // a loop of links is no free name
    if (!S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return false;
    }
    if (!openTemporary(0600))
        return false;
    // Only root may change the owner; anybody else keeps the mode at least.
    [[maybe_unused]] const int owned = ::fchown(m_file.number(), old.st_uid, old.st_gid);
    return ::fchmod(m_file.number(), old.st_mode & 07777) == 0;
}

bool DurableFile::openNew()
{
    return openTemporary(0666) && // to which the umask applies
           (!m_modeOfNew || ::fchmod(m_file.number(), *m_modeOfNew) == 0);
}

bool DurableFile::openTemporary(mode_t mode)
{
    // An unnamed file leaves nothing behind when the program is killed. Naming it needs /proc.
    if (::access("/proc/self/fd", X_OK) == 0)
        m_file = openFile(folderOf(m_target), O_WRONLY | O_TMPFILE, mode);
    if (m_file.isOpen())
        return true;
    // Not every file system supports that.
    m_temporary = makeBeside(m_target, [&](const QByteArray &name) {
        m_file = openFile(name, O_WRONLY | O_CREAT | O_EXCL, mode);
        return m_file.isOpen();
    });
    return m_file.isOpen();
}

/// Gives the file the same temporary name for each writer of the target, so that the next one clears away
/// what a killed one has left. While a living one has that name, it is another.
QByteArray DurableFile::nameBeside()
{
    const auto link = [this](const QByteArray &name) { return linkOpenFile(m_file.number(), name); };
    const QByteArray hash = // the folder may have several paths
        QCryptographicHash::hash(m_target.sliced(m_target.lastIndexOf('/') + 1), QCryptographicHash::Sha1);
    QByteArray name = folderOf(m_target) + "/.brevant-" + hash.first(8).toHex() + ".tmp";
    // The lock tells that the writer lives.
    if (::flock(m_file.number(), LOCK_EX | LOCK_NB) != 0)
        return makeBeside(m_target, link);
    if (link(name))
        return name;
    const Descriptor left = openFile(name, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (left.isOpen() && ::fstat(left.number(), &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_uid == ::geteuid() && ::flock(left.number(), LOCK_EX | LOCK_NB) == 0)
        ::unlink(name.constData());
    return link(name) ? name : makeBeside(m_target, link);
}

bool DurableFile::write(QByteArrayView bytes)
{
    if (!open() || !FileBytes::writeAll(m_file.number(), bytes, m_size))
        return fail();
    m_size += bytes.size();
    m_flushed = false;
    return true;
}

bool DurableFile::flush()
{
    if (!open())
        return fail();
    if (m_time) {
        const timespec times[]{*m_time, *m_time};
        if (::futimens(m_file.number(), times) != 0)
            return fail();
    }
    if (!m_flushed && !flushFile(m_file.number()))
        return fail();
    m_flushed = true;
    return true;
}

bool DurableFile::commit()
{
    if (!flush())
        return false;
    // Named only now, and where no file is in the way by its true name at once: a program killed between
    // naming and renaming leaves the file behind.
    if (!m_temporary.isEmpty() || !linkOpenFile(m_file.number(), m_target)) {
        if (m_temporary.isEmpty())
            m_temporary = nameBeside();
        if (m_temporary.isEmpty() || ::rename(m_temporary.constData(), m_target.constData()) != 0)
            return fail();
        m_temporary.clear();
    }
    // The new file is complete and in place even if its folder cannot be flushed.
    static_cast<void>(flushFolder(folderOf(m_target)));
    discard();
    return true;
}

QString DurableFile::replace(const QString &path, QByteArrayView bytes)
{
    DurableFile file(path);
    return file.write(bytes) && file.commit() ? QString() : file.errorText();
}

bool DurableFile::fail()
{
    m_errorText = qt_error_string(errno);
    discard();
    return false;
}

void DurableFile::discard()
{
    m_file = Descriptor();
    m_size = 0;
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
    m_temporary.clear();
}

} // namespace brevant
