// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/Descriptor.h"

#include <sys/stat.h>

namespace brevant {

Descriptor openFile(const QByteArray &path, int flags, mode_t mode, int folder)
{
    return Descriptor(uninterrupted(
        [&] { return ::openat(folder, path.constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode); }));
}

Descriptor openRegularFile(const QByteArray &path, int flags)
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return Descriptor();
    if (S_ISREG(status.st_mode)) {
        // It may have been replaced since.
        Descriptor file = openFile(path, flags);
        if (!file.isOpen() || (::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode)))
            return file;
    }
    errno = EINVAL;
    return Descriptor();
}

bool flushFile(int file)
{
    return uninterrupted([file] { return ::fsync(file); }) == 0;
}

void openClosedStandardStreams()
{
    // open(2) takes the lowest free number. Reading finds nothing; writing fails, as it must not seem done.
    int opened = STDIN_FILENO;
    while (opened >= 0 && opened <= STDERR_FILENO)
        opened = uninterrupted([] { return ::open("/dev/null", O_RDONLY); });
    if (opened >= 0)
        ::close(opened);
}

} // namespace brevant
