// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundPlayer.h"

#include "app/sound/SoundMessages.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>
#include <QThread>

namespace brevant {

SoundPlayer::SoundPlayer() = default;

SoundPlayer::~SoundPlayer() = default;

void SoundPlayer::play(const SoundSamples &samples, QDeadlineTimer latest)
{
    if (m_sink || latest.hasExpired())
        return;
    SoundMessages::hideThoseOfThisThread();
    const QAudioDevice device = QMediaDevices::defaultAudioOutput();
    QAudioFormat format;
    format.setSampleRate(samples.sampleRate);
    format.setChannelCount(samples.channels);
    format.setSampleFormat(QAudioFormat::Float);
    if (device.isNull() || !device.isFormatSupported(format) || latest.hasExpired() ||
        thread()->isInterruptionRequested())
        return;

    m_source.setData(samples.bytes);
    m_source.open(QIODevice::ReadOnly);
    m_sink = std::make_unique<QAudioSink>(device, format);
    connect(
        m_sink.get(), &QAudioSink::stateChanged, this,
        [this](QAudio::State state) {
            if (state == QAudio::IdleState || state == QAudio::StoppedState)
                stop();
        },
        Qt::QueuedConnection); // the sink is not deleted below its own signal
    m_sink->start(&m_source);
}

void SoundPlayer::stop()
{
    m_sink.reset();
    m_source.close();
}

} // namespace brevant
