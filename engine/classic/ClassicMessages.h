// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/modern/FilterMessages.h"

#include <QByteArray>
#include <QString>

namespace brevant {

/// Why a classic compressor failed, as far as it says.
struct Explanation {
    CompressorMessages messages;
    bool isAboutSyntax = false; ///< of JavaScript
};

/// Reads what YUI Compressor 2.4.8, htmlcompressor 1.5.3 or the Java runtime under them has printed about
/// `source`. Lines that count from the beginning of an inline script become lines of the page where it is
/// certain which script is meant; else the message has no place.
[[nodiscard]] Explanation readClassicMessages(const QByteArray &said, const QString &source);

} // namespace brevant
