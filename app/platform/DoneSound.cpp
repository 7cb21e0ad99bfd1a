// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DoneSound.h"

#include "files/Descriptor.h"
#include "files/FileBytes.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLibrary>

#include <pulse/simple.h>
#include <sndfile.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/mman.h>

namespace brevant {

namespace {

/// A function of a library that is loaded with the first sound: linking the two libraries and their
/// dependencies would delay the first painting by 8 %. Null if the library is missing.
struct LateFunction {
    const char *library;
    int version;
    const char *name;

    template <typename Function>
    operator Function *() const
    {
        return reinterpret_cast<Function *>(QLibrary::resolve(QString::fromLatin1(library), version, name));
    }
};

/// A sound that starts later than this is pointless.
constexpr std::chrono::seconds latestStart(5);

/// Waits for the sound server however long it takes.
void playToEnd(const SoundSamples &sound)
{
    const decltype(&pa_simple_new) openStream = LateFunction{"pulse-simple", 0, "pa_simple_new"};
    const decltype(&pa_simple_write) writeStream = LateFunction{"pulse-simple", 0, "pa_simple_write"};
    const decltype(&pa_simple_drain) drainStream = LateFunction{"pulse-simple", 0, "pa_simple_drain"};
    const decltype(&pa_simple_free) closeStream = LateFunction{"pulse-simple", 0, "pa_simple_free"};
    if (!openStream || !writeStream || !drainStream || !closeStream)
        return;
    const QDeadlineTimer latest(latestStart);
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, static_cast<uint32_t>(sound.sampleRate),
                                static_cast<uint8_t>(sound.channels)};
    const std::unique_ptr<pa_simple, decltype(closeStream)> stream(
        openStream(nullptr, "Brevant", PA_STREAM_PLAYBACK, nullptr, "Done", &format, nullptr, nullptr,
                   nullptr),
        closeStream);
    if (stream && !latest.hasExpired() &&
        writeStream(stream.get(), sound.values.data(), sound.values.size() * sizeof(float), nullptr) == 0)
        drainStream(stream.get(), nullptr);
}

} // namespace

std::optional<SoundSamples> decodedSound(QIODevice &file)
{
    const decltype(&sf_open_fd) openSound = LateFunction{"sndfile", 1, "sf_open_fd"};
    const decltype(&sf_readf_float) readFrames = LateFunction{"sndfile", 1, "sf_readf_float"};
    const decltype(&sf_close) closeSound = LateFunction{"sndfile", 1, "sf_close"};
    if (!openSound || !readFrames || !closeSound)
        return std::nullopt;
    // libsndfile reads no resources, only files.
    const Descriptor copy(::memfd_create("sound", MFD_CLOEXEC));
    if (!copy.isOpen() || !FileBytes::writeAll(copy.number(), file.readAll(), 0))
        return std::nullopt;
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(closeSound)> sound(
        openSound(copy.number(), SFM_READ, &info, SF_FALSE), closeSound);
    if (!sound || info.samplerate <= 0 || info.channels <= 0 || info.channels > int(PA_CHANNELS_MAX))
        return std::nullopt;

    SoundSamples samples{{}, info.samplerate, info.channels};
    // The header's count of frames is not trusted for allocating memory.
    std::array<float, 4096> block{};
    const auto blockFrames = static_cast<sf_count_t>(block.size()) / info.channels;
    while (const auto frames = std::max<sf_count_t>(readFrames(sound.get(), block.data(), blockFrames), 0))
        samples.values.insert(samples.values.end(), block.data(), block.data() + frames * info.channels);
    if (samples.values.empty())
        return std::nullopt;
    return samples;
}

bool DoneSound::load(const QString &path)
{
    QFile file(path);
    auto samples = file.open(QIODevice::ReadOnly) ? decodedSound(file) : std::nullopt;
    m_samples = samples ? std::make_shared<const SoundSamples>(*std::move(samples)) : nullptr;
    return m_samples != nullptr;
}

void DoneSound::play()
{
    if (!m_samples || m_isPlaying->exchange(true))
        return;
    try {
        // Nobody waits for the thread, so it shares ownership of what it uses.
        std::thread([samples = m_samples, isPlaying = m_isPlaying] {
            playToEnd(*samples);
            *isPlaying = false;
        }).detach();
    } catch (const std::system_error &) { // no thread to be had
        *m_isPlaying = false;
    }
}

} // namespace brevant
