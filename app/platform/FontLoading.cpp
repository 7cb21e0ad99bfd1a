// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FontLoading.h"

#include <fontconfig/fontconfig.h>

namespace brevant {

FontLoading::FontLoading() : m_thread([] { FcInit(); }) {}

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
