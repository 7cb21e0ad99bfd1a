// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/sound/SoundEngine.h"
#include "app/sound/SoundSamples.h"

#include <memory>
#include <optional>

class QThread;

namespace brevant {

class SoundPlayer;

/// Plays sounds on a thread of its own.
///
/// Whatever the sound server does, or if there is none, no call here blocks and nothing is printed. A sound
/// that is still playing when this object goes is cut off.
class SoundThread final : public SoundEngine {
public:
    SoundThread();
    ~SoundThread() override;

    bool loadFromData(const QByteArray &file) override;
    void play() override;

private:
    std::optional<SoundSamples> m_samples;
    std::unique_ptr<QThread> m_thread; ///< started when the first sound is played
    SoundPlayer *m_player = nullptr;   ///< lives and dies on the thread
};

} // namespace brevant
