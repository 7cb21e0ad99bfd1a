// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/StyleTokens.h"

#include <QStringList>

#include <optional>
#include <span>

/// One spelling for all that means the same to a browser, as far as the classic compressors know several.
namespace brevant::StyleSpelling {

using Tokens = std::span<const StyleToken>;

/// A property in lower case, unless it is a custom one.
[[nodiscard]] QString property(QStringView name);

/// The value of a property, by its name as property() spells it.
[[nodiscard]] QString value(QStringView property, Tokens tokens);

/// The same without the units of all zeros, needed or not.
[[nodiscard]] QString valueWithoutZeroUnits(QStringView property, Tokens tokens);

/// Whether a zero may lose that unit in a property, within functions of which the innermost is `function`
/// (empty for none; with `isInMath`, one of them calculates). A unit is in lower case.
[[nodiscard]] bool isZeroUnitFree(QStringView unit, QStringView property, QStringView function,
                                  bool isInMath);

/// The functions in which a token stands, found by going over a value.
class OpenFunctions final {
public:
    /// To be called with each token, after it was looked at.
    void follow(const StyleToken &token);

    /// The name of the innermost function in lower case; empty for none. What var() and env() hold stands for
    /// themselves, and so is in the function around them. After a comma, hsl() and hsla() are named with one,
    /// as they have a syntax of their own then.
    [[nodiscard]] QStringView innermost() const;

    /// Whether values are calculated here, so that zeros need their units.
    [[nodiscard]] bool isInMath() const { return !m_open.empty() && m_open.back().isInMath; }
    [[nodiscard]] bool isEmpty() const { return m_open.empty(); }

private:
    struct Open {
        QString function;
        bool isInMath;
    };
    std::vector<Open> m_open;
};

/// The name of a function in lower case, without the "(".
[[nodiscard]] QString functionName(const StyleToken &token);

/// The unit of a number in lower case, if its value is zero.
[[nodiscard]] std::optional<QString> unitOfZero(const StyleToken &token);

/// An at-rule up to its block or its end.
[[nodiscard]] QString atRule(Tokens tokens);

/// The selectors of a list.
[[nodiscard]] QStringList selectors(Tokens list);

/// The selectors of a block within @keyframes; nothing if one is none, as the block is void then.
[[nodiscard]] std::optional<QStringList> keyframes(Tokens list);

/// A list cut at its commas, except for those in brackets.
[[nodiscard]] std::vector<Tokens> cutAtCommas(Tokens list);

} // namespace brevant::StyleSpelling
