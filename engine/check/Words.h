// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <algorithm>
#include <span>

namespace brevant {

/// Whether a word is one of a list, which is in lower case; the case of A to Z is ignored.
[[nodiscard]] inline bool isOneOf(QStringView word, std::span<const QLatin1StringView> words)
{
    return std::ranges::any_of(
        words, [word](QLatin1StringView one) { return word.compare(one, Qt::CaseInsensitive) == 0; });
}

/// Whether a word begins with one of a list, likewise.
[[nodiscard]] inline bool startsWithOneOf(QStringView word, std::span<const QLatin1StringView> starts)
{
    return std::ranges::any_of(
        starts, [word](QLatin1StringView start) { return word.startsWith(start, Qt::CaseInsensitive); });
}

} // namespace brevant
