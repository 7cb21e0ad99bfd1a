// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundSamples.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace brevant {

namespace {

/// The bytes libsndfile reads from, as if they were a file.
struct MemoryFile {
    const QByteArray &bytes;
    sf_count_t position = 0;
};

sf_count_t size(void *file)
{
    return static_cast<MemoryFile *>(file)->bytes.size();
}

sf_count_t seek(sf_count_t offset, int whence, void *file)
{
    auto *const memory = static_cast<MemoryFile *>(file);
    const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? memory->position : size(file);
    memory->position = std::clamp<sf_count_t>(base + offset, 0, size(file));
    return memory->position;
}

sf_count_t read(void *target, sf_count_t count, void *file)
{
    auto *const memory = static_cast<MemoryFile *>(file);
    const sf_count_t length = std::clamp<sf_count_t>(count, 0, size(file) - memory->position);
    std::memcpy(target, memory->bytes.constData() + memory->position, static_cast<std::size_t>(length));
    memory->position += length;
    return length;
}

sf_count_t write(const void * /*source*/, sf_count_t /*count*/, void * /*file*/)
{
    return 0;
}

sf_count_t tell(void *file)
{
    return static_cast<MemoryFile *>(file)->position;
}

} // namespace

std::chrono::milliseconds SoundSamples::duration() const
{
    const auto frames = bytes.size() / static_cast<qsizetype>(sizeof(float)) / std::max(channels, 1);
    return std::chrono::milliseconds(frames * 1000 / std::max(sampleRate, 1));
}

std::optional<SoundSamples> decodedSound(const QByteArray &file, std::chrono::milliseconds silence)
{
    MemoryFile memory{file};
    SF_VIRTUAL_IO calls{size, seek, read, write, tell};
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> sound(
        sf_open_virtual(&calls, SFM_READ, &info, &memory), &sf_close);
    if (!sound || info.samplerate <= 0 || info.channels <= 0)
        return std::nullopt;

    SoundSamples samples{{}, info.samplerate, info.channels};
    const qsizetype frameSize = info.channels * static_cast<qsizetype>(sizeof(float));
    // The header's count of frames is not trusted with memory: we read until the end.
    std::array<float, 4096> block{};
    const sf_count_t blockFrames = static_cast<sf_count_t>(block.size()) / info.channels;
    for (sf_count_t frames = -1; frames != 0 && blockFrames > 0;) {
        frames = std::max<sf_count_t>(sf_readf_float(sound.get(), block.data(), blockFrames), 0);
        samples.bytes.append(reinterpret_cast<const char *>(block.data()), frames * frameSize);
    }
    if (samples.bytes.isEmpty())
        return std::nullopt;
    samples.bytes.append(info.samplerate * silence.count() / 1000 * frameSize, '\0');
    return samples;
}

} // namespace brevant
