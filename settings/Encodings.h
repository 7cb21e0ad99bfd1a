// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>

namespace brevant {

/// One character set of source files that the user can choose.
struct Encoding {
    QLatin1StringView name;  ///< as stored, and as the compressors take it
    QLatin1StringView title; ///< of its item in the preferences
    bool selectedAtLoad;     ///< whether the preferences select its item when they open
};

/// The eleven encodings, in the order of the preferences' menu.
[[nodiscard]] const std::array<Encoding, 11> &allEncodings();

/// Whether `name` is exactly one of the eleven names.
[[nodiscard]] bool isEncodingName(QStringView name);

} // namespace brevant
