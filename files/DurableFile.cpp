// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/DurableFile.h"

#include "files/Folders.h"

#include <QFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevant {

namespace {

constexpr QByteArrayView ownDescriptors("/proc/self/fd"); // the way to name an open file, open(2)

} // namespace

DurableFile::DurableFile(const QString &path) : m_target(linkTarget(QFile::encodeName(path))) {}

DurableFile::~DurableFile()
{
    discard();
}

bool DurableFile::open()
{
    struct stat old {};
    const bool exists = ::stat(m_target.constData(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return fail();
    }
    if (!exists && errno != ENOENT) // links in a circle, for one: not to be mistaken for a name that is free
        return fail();
    // A new file gets 0666 less the umask, a replaced one its own mode below.
    const mode_t mode = exists ? 0600 : 0666;
    // A file without a name leaves nothing behind when the program is killed; it gets one by way of /proc.
    if (::access(ownDescriptors.constData(), X_OK) == 0)
        m_file = Descriptor(uninterrupted(
            [&] { return ::open(folderOf(m_target).constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode); }));
    // Not every file system can do that.
    if (!m_file.isOpen()) {
        m_file = Descriptor(underFreeName([mode](const char *name) {
            return ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        }));
    }
    if (!m_file.isOpen())
        return fail();
    if (exists) {
        // Another owner can be given by root only; anybody else keeps the mode at least.
        [[maybe_unused]] const int owned = ::fchown(m_file.number(), old.st_uid, old.st_gid);
        if (::fchmod(m_file.number(), old.st_mode & 07777) != 0)
            return fail();
    }
    return true;
}

int DurableFile::underFreeName(const std::function<int(const char *)> &make)
{
    int result = -1;
    do {
        m_temporary = freeNameBeside(m_target);
        result = uninterrupted([&] { return make(m_temporary.constData()); });
    } while (result < 0 && errno == EEXIST);
    if (result < 0)
        m_temporary.clear();
    return result;
}

bool DurableFile::giveName()
{
    const QByteArray file = ownDescriptors.toByteArray() + '/' + QByteArray::number(m_file.number());
    return underFreeName([&file](const char *name) {
               return ::linkat(AT_FDCWD, file.constData(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
           }) == 0;
}

bool DurableFile::write(QByteArrayView bytes)
{
    if (!m_file.isOpen() && !open())
        return false;
    m_flushed = false;
    while (!bytes.isEmpty()) {
        const ssize_t written = uninterrupted(
            [&] { return ::write(m_file.number(), bytes.data(), static_cast<std::size_t>(bytes.size())); });
        if (written < 0)
            return fail();
        bytes = bytes.sliced(written);
    }
    return true;
}

bool DurableFile::flush()
{
    if (!m_file.isOpen() && !open())
        return false;
    if (!m_flushed && uninterrupted([&] { return ::fsync(m_file.number()); }) != 0)
        return fail();
    m_flushed = true;
    return true;
}

bool DurableFile::commit()
{
    if (!flush())
        return false;
    if (m_temporary.isEmpty() && !giveName())
        return fail();
    // At once after it has its name, so that hardly a moment is left in which a killed program leaves it
    // behind.
    if (::rename(m_temporary.constData(), m_target.constData()) != 0)
        return fail();
    m_temporary.clear();
    // The new file is complete and in its place; that the folder could not be flushed changes nothing of it.
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
    if (!m_temporary.isEmpty())
        ::unlink(m_temporary.constData());
    m_temporary.clear();
}

} // namespace brevant
