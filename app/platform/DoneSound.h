// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

class QIODevice;

namespace brevant {

/// A decoded sound.
struct SoundSamples {
    std::vector<float> values; ///< interleaved
    int sampleRate = 0;        ///< frames in a second
    int channels = 0;
};

/// Decodes a sound file of any kind that libsndfile knows. Nothing if it is no sound.
[[nodiscard]] std::optional<SoundSamples> decodedSound(QIODevice &file);

/// The sound at the end of a run. Whatever the sound server does, or without one, no call here blocks and
/// nothing is printed. The end of the program cuts the sound off.
class DoneSound {
public:
    DoneSound() = default;
    virtual ~DoneSound() = default;
    DoneSound(const DoneSound &) = delete;
    DoneSound &operator=(const DoneSound &) = delete;

    /// Reads the sound from a file or a resource. False, and no sound, if that fails.
    virtual bool load(const QString &path = QStringLiteral(":/Done.aif"));

    /// Starts playing what was loaded. Does nothing while it is playing already.
    virtual void play();

private:
    std::shared_ptr<const SoundSamples> m_samples;
    std::shared_ptr<std::atomic_bool> m_isPlaying = std::make_shared<std::atomic_bool>();
};

} // namespace brevant
