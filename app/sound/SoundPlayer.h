// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/sound/SoundSamples.h"

#include <QBuffer>
#include <QDeadlineTimer>
#include <QObject>

#include <memory>

class QAudioSink;

namespace brevant {

/// Plays one sound at a time through the sound server. Lives on a thread of its own, which a server that does
/// not answer may block for as long as it likes.
class SoundPlayer final : public QObject {
    Q_OBJECT

public:
    SoundPlayer();
    ~SoundPlayer() override;

    /// Plays a sound, unless one is playing, there is no sound server, or `latest` has passed before the
    /// server could be reached.
    void play(const SoundSamples &samples, QDeadlineTimer latest);

private:
    void stop();

    QBuffer m_source;
    std::unique_ptr<QAudioSink> m_sink; ///< after the source, which it reads while it lives
};

} // namespace brevant
