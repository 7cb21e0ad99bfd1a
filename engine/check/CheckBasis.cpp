// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/CheckBasis.h"

#include "engine/check/ResultCheck.h"

namespace brevant {

using namespace Qt::StringLiterals;

/// In bytes. A check takes up to a second for each million.
constexpr qint64 largestSource = 20'000'000;

CheckedFile CheckBasis::check(const QString &sourcePath, const QString &outputPath) const
{
    if (source.size > largestSource)
        return {u"the source is larger than 20 MB"_s, {}};
    CheckedFile checked = checkFile(sourcePath, outputPath, encoding);
    // A change time never comes back, so this is about the time before the check and during it.
    if (FileState::of(sourcePath) != source)
        return {u"the source has changed since the run"_s, {}};
    if (FileState::of(outputPath) != output)
        return {u"the output has changed since the run"_s, {}};
    return checked;
}

} // namespace brevant
