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

/// What became of checking a file.
struct CheckedFile {
    QString obstacle; ///< why it could not be checked; empty if it was
    QList<ResultWarning> warnings;
};

/// Reads source and result in a character set and checks the result. An `output` that is the source itself
/// needs the bytes that the source had before.
[[nodiscard]] CheckedFile checkBytes(KindFamily family, QByteArrayView source, QByteArrayView result,
                                     TextEncoding encoding);
[[nodiscard]] CheckedFile checkFile(const QString &source, const QString &output, TextEncoding encoding);

} // namespace brevant
