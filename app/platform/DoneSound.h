// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SoundSamples.h"

#include <QString>

#include <memory>
#include <optional>

class QThread;

namespace brevant {

class SoundPlayer;

/// The sound at the end of a run.
///
/// Whatever the sound server does, or if there is none, no call here blocks and nothing is printed. A sound
/// that is still playing when this object goes is cut off.
class DoneSound final {
public:
    DoneSound();

    /// To be destroyed before the program leaves through exit(). If the sound server holds up the playing at
    /// that moment, the program will leave without destroying its static objects, which would wait for it.
    ~DoneSound();

    DoneSound(const DoneSound &) = delete;
    DoneSound &operator=(const DoneSound &) = delete;

    /// Reads the sound from a file or a resource. False, and no sound, if that fails.
    bool load(const QString &path = QStringLiteral(":/Done.aif"));

    /// The same from the bytes of a sound file.
    bool loadFromData(const QByteArray &file);

    /// Starts playing what was loaded. Does nothing while it is playing already.
    void play();

private:
    std::optional<SoundSamples> m_samples;
    std::unique_ptr<QThread> m_thread; ///< started when the first sound is played
    SoundPlayer *m_player = nullptr;   ///< lives and dies on the thread
};

} // namespace brevant
