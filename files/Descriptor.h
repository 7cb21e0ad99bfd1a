// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QScopeGuard>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brevant {

/// Repeats a system call for as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Restores errno at the end of its scope, so that cleaning up after a failure does not hide its reason.
[[nodiscard]] inline auto keepErrno()
{
    return qScopeGuard([error = errno] { errno = error; });
}

/// Owns an open file.
class Descriptor final {
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int number() const { return m_number; }

private:
    int m_number;
};

/// Opens a file that child processes do not inherit. A relative path counts from the open `folder`. Never
/// blocks, not even on a pipe. Closed, with errno set, on failure.
[[nodiscard]] Descriptor openFile(const QByteArray &path, int flags, mode_t mode = 0600,
                                  int folder = AT_FDCWD);

/// Opens a regular file, and nothing else, as opening a device may have effects. Closed, with errno set, on
/// failure; EINVAL stands for a file that is not regular.
[[nodiscard]] Descriptor openRegularFile(const QByteArray &path, int flags = O_RDONLY);

/// Waits until content and attributes of an open file are on the disk; false, with errno set, on failure.
[[nodiscard]] bool flushFile(int file);

/// Opens /dev/null for each of standard input, output and error that is closed. To be called before anything
/// else: the next file opened would take the free number, and the output of child processes end up in it.
void openClosedStandardStreams();

} // namespace brevant
