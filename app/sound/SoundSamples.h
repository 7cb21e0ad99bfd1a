// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>

namespace brevant {

/// A decoded sound: interleaved 32-bit float samples.
struct SoundSamples {
    QByteArray bytes;
    int sampleRate = 0; ///< frames in a second
    int channels = 0;

    [[nodiscard]] std::chrono::milliseconds duration() const;
};

/// Decodes a sound file of any kind that libsndfile knows. `silence` is appended. Nothing if it is no sound.
[[nodiscard]] std::optional<SoundSamples> decodedSound(const QByteArray &file,
                                                       std::chrono::milliseconds silence);

} // namespace brevant
