// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace brevant {

/// Plays one sound. Its maker lies in a module of its own, loaded when the first sound is due: the libraries
/// that sound needs would cost the start of the program a third of its time.
class SoundEngine {
public:
    SoundEngine() = default;
    SoundEngine(const SoundEngine &) = delete;
    SoundEngine &operator=(const SoundEngine &) = delete;

    /// To be destroyed before the program leaves through exit(). If the sound server holds up the playing at
    /// that moment, the program will leave without destroying its static objects, which would wait for it.
    virtual ~SoundEngine() = default;

    /// Takes the bytes of a sound file. False, and no sound, if they are none.
    virtual bool loadFromData(const QByteArray &file) = 0;

    /// Starts playing what was loaded. Does nothing while it is playing already.
    virtual void play() = 0;
};

/// What the module exports, as "brevantMakeSoundEngine". The caller owns the engine.
using MakeSoundEngine = SoundEngine *(*)();

} // namespace brevant
