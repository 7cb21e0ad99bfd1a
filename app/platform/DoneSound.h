// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

namespace brevant {

class SoundEngine;

/// The sound at the end of a run. Whatever the sound server does, or if there is none, no call here blocks
/// and nothing is printed; without the sound module the program is silent.
class DoneSound final {
public:
    DoneSound();

    /// Cuts off a sound that is still playing. See SoundEngine for when it is to be destroyed.
    ~DoneSound();

    DoneSound(const DoneSound &) = delete;
    DoneSound &operator=(const DoneSound &) = delete;

    /// Reads the sound from a file or a resource. False, and no sound, if that fails.
    bool load(const QString &path = QStringLiteral(":/Done.aif"));

    /// Starts playing what was loaded. Does nothing while it is playing already.
    void play();

private:
    std::unique_ptr<SoundEngine> m_engine; ///< from the first load on
};

} // namespace brevant
