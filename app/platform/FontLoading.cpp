// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FontLoading.h"

#include <fontconfig/fontconfig.h>

#include <sys/resource.h>
#include <unistd.h>

namespace brevant {

namespace {

void read()
{
    // The display server is not to wait for this. On Linux a thread has a nice value of its own: sched(7).
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
    FcInit();
}

} // namespace

FontLoading::FontLoading() : m_thread(read) {}

FontLoading::~FontLoading()
{
    wait();
}

void FontLoading::wait()
{
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace brevant
