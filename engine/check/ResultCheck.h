// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"
#include "engine/check/ResultWarning.h"
#include "queue/FileKind.h"

namespace brevant {

/// Compares the result of a classic compressor with its source and says what is lost. Those of modern ones
/// differ in more ways than are known here, and would be warned of wrongly. Takes any text, and a time that
/// grows like its length.
[[nodiscard]] QList<ResultWarning> checkResult(KindFamily family, QStringView source, QStringView result);

/// Reads the source and the output of a file in a character set and checks the result. `content`: what the
/// source held, needed where the output has replaced it.
[[nodiscard]] CheckedFile checkFile(const QString &source, const QString &output, TextEncoding encoding,
                                    const std::optional<QByteArray> &content = std::nullopt);

} // namespace brevant
