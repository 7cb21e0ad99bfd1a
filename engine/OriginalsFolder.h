// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The folder that safety copies of sources are in while a compressor may destroy them.
namespace brevant::OriginalsFolder {

/// `$XDG_STATE_HOME/brevant/originals`. ~/.local/state stands in for a variable that is not set or whose path
/// does not begin at the root (XDG Base Directory Specification 0.8).
[[nodiscard]] QString standardPath();

/// Makes the folder, with those above it, where it is missing, durably and for its owner alone. Returns the
/// reason of a failure, or an empty text.
[[nodiscard]] QString make(const QString &path);

/// Where a file is kept for its user: the name ends with that of the source, as far as that fits.
[[nodiscard]] QByteArray keptPath(const QByteArray &folder, const QByteArray &id, const QByteArray &name);

} // namespace brevant::OriginalsFolder
