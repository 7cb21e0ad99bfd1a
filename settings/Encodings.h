// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <algorithm>
#include <array>

namespace brevant {

/// One character set of source files that the user can choose.
struct Encoding {
    QLatin1StringView name;  ///< as stored, and as the compressors take it
    QLatin1StringView title; ///< of its item in the preferences
    bool selectedAtLoad;     ///< whether the preferences select its item when they open
};

/// In the order of the preferences' menu.
inline constexpr std::array<Encoding, 11> allEncodings{{
    {QLatin1StringView("utf-8"), QLatin1StringView("Unicode (utf-8)"), true},
    {QLatin1StringView("gb2312"), QLatin1StringView("Chinese (gb2312)"), true},
    {QLatin1StringView("gbk"), QLatin1StringView("Chinese (gbk)"), true},
    {QLatin1StringView("gb18030"), QLatin1StringView("Chinese (gb18030)"), true},
    {QLatin1StringView("big5"), QLatin1StringView("Chinese (big5)"), true},
    {QLatin1StringView("big5-hkscs"), QLatin1StringView("Chinese (big5-hkscs)"), true},
    {QLatin1StringView("shift-jis"), QLatin1StringView("Japanese (shift-jis)"), true},
    {QLatin1StringView("iso-2022-jp"), QLatin1StringView("Japanese (iso-2022-jp)"), true},
    {QLatin1StringView("iso-2022-kr"), QLatin1StringView("Korean (iso-2022-kr)"), true},
    {QLatin1StringView("iso-8859-1"), QLatin1StringView("Western (iso-8859-1)"), false},
    {QLatin1StringView("iso-8859-15"), QLatin1StringView("Western (iso-8859-15)"), false},
}};

/// Whether `name` is exactly one of the eleven names.
[[nodiscard]] inline bool isEncodingName(QStringView name)
{
    return std::ranges::any_of(allEncodings,
                               [name](const Encoding &encoding) { return name == encoding.name; });
}

} // namespace brevant
