// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace brevant {

/// Puts back the sources that programs which ended amid a run have left missing or empty; to be called when a
/// program starts, before it touches any file. `originals` is the folder of the safety copies; what a living
/// process has in use there is left alone.
///
/// A source with other content keeps it, as that may be newer work: the copy then stays in the folder, as a
/// plain file that nothing looks at again. Returns a sentence for each file put back, kept or given up for
/// now.
[[nodiscard]] QStringList putBackAfterInterruption(const QString &originals);

} // namespace brevant
