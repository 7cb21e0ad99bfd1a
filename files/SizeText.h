// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// The size of a file in words: "1 byte", "12.3 kB", "1 MB". A kB has 1000 bytes.
[[nodiscard]] QString sizeText(qint64 bytes);

} // namespace brevant
