// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace brevant {

/// What to do about a name that is not among `names`, to follow the words that say so: the most similar one,
/// or else all.
[[nodiscard]] QString wayOut(QStringView name, const QStringList &names);

} // namespace brevant
