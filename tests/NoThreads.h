// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include <pthread.h>

namespace brevant::test {

/// While it lives, no thread can be started: none finds room for its stack.
class NoThreads final {
public:
    NoThreads()
    {
        ::pthread_getattr_default_np(&m_before);
        pthread_attr_t attributes = m_before;
        constexpr std::size_t moreThanThereIs = std::size_t{1} << 47;
        ::pthread_attr_setstacksize(&attributes, moreThanThereIs);
        ::pthread_setattr_default_np(&attributes);
    }
    ~NoThreads() { ::pthread_setattr_default_np(&m_before); }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_before{};
};

} // namespace brevant::test
