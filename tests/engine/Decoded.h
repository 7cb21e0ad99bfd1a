// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"

namespace brevant::test {

/// What a whole text is.
struct Decoded {
    QString text;
    std::optional<TextFault> fault;
};

inline Decoded decoded(TextCodec &decoder, QByteArrayView bytes)
{
    Decoded result;
    result.fault = decoder.decode(bytes, [&](QStringView piece) { result.text.append(piece); });
    return result;
}

/// Empty for a text that is not valid.
inline QString decodedWhole(TextCodec &decoder, QByteArrayView bytes)
{
    const Decoded result = decoded(decoder, bytes);
    return result.fault ? QString() : result.text;
}

} // namespace brevant::test
