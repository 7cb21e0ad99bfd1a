// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"
#include "engine/check/ResultWarning.h"
#include "files/FileState.h"

namespace brevant {

/// What the result of a classic compressor can be checked by once its run has ended.
struct CheckBasis {
    TextEncoding encoding = TextEncoding::Utf8; ///< that of the run
    FileState source;                           ///< as the compressor found it, or as `original` is
    FileState output;                           ///< as the run left it
    QString original = {}; ///< where the source is kept that the output has replaced; empty if none is

    /// Checks the result as checkFile() does, unless either file has changed since or is too large to be
    /// checked without being asked.
    [[nodiscard]] CheckedFile check(const QString &sourcePath, const QString &outputPath) const;

private:
    [[nodiscard]] CheckedFile checkNow(const QString &sourcePath, const QString &outputPath) const;
    [[nodiscard]] QString change(const QString &sourcePath, const QString &outputPath) const;
};

} // namespace brevant
