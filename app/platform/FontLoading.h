// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <thread>

namespace brevant {

/// Reads the system's font configuration on a thread of its own, so that it goes on beside the connecting to
/// the display, which waits most of its time. Qt reads it as soon as a text is measured, and a text measured
/// before this has ended reads it a second time: wait() first.
class FontLoading final {
public:
    FontLoading();
    ~FontLoading();

    FontLoading(const FontLoading &) = delete;
    FontLoading &operator=(const FontLoading &) = delete;

    /// Returns when all has been read.
    void wait();

private:
    std::thread m_thread;
};

} // namespace brevant
