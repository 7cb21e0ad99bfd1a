// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/DeclarationFate.h"

#include "engine/check/StyleSpelling.h"
#include "engine/check/Words.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

bool isImportant(const DeclarationFate &fate)
{
    const StyleSheet::Tokens value = fate.declaration->value;
    return value.size() >= 2 && value[value.size() - 2].isSign(u'!') &&
           value.back().text.compare("important"_L1, Qt::CaseInsensitive) == 0;
}

/// Whether the shorthand sets that property too.
bool sets(QStringView shorthand, QStringView property)
{
    constexpr std::array apart{"border-radius"_L1, "border-collapse"_L1, "border-spacing"_L1,
                               "background-blend-mode"_L1};
    return property.startsWith(shorthand) && property.sliced(shorthand.size()).startsWith(u'-') &&
           !isOneOf(property, apart);
}

/// Whether one of `properties`, or a shorthand among them, sets that property.
bool isSetBy(const QSet<QString> &properties, const QString &property)
{
    constexpr std::array shorthands{
        "margin"_L1,      "padding"_L1,      "border"_L1,          "border-top"_L1,   "border-right"_L1,
        "border-left"_L1, "border-width"_L1, "border-style"_L1,    "border-color"_L1, "border-bottom"_L1,
        "background"_L1,  "font"_L1,         "list-style"_L1,      "transition"_L1,   "animation"_L1,
        "outline"_L1,     "inset"_L1,        "text-decoration"_L1, "column-rule"_L1};
    if (properties.contains(property))
        return true;
    return !property.startsWith(u'-') && std::ranges::any_of(shorthands, [&](QLatin1StringView shorthand) {
        return sets(QString(shorthand), property) && properties.contains(shorthand);
    });
}

/// A delay of zero after its shorthand, which has set it already.
bool isNeedlessDelay(const DeclarationFate &fate, const QSet<QString> &kept)
{
    constexpr QLatin1StringView delay("-delay");
    const StyleSheet::Tokens value = fate.declaration->value;
    return fate.property.endsWith(delay) && kept.contains(fate.property.chopped(delay.size())) &&
           std::ranges::all_of(value, [](const StyleToken &token) {
               return token.isSign(u',') || StyleSpelling::unitOfZero(token).has_value();
           });
}

} // namespace

void forgive(std::vector<DeclarationFate> &fates)
{
    QSet<QString> earlier;
    for (DeclarationFate &fate : fates) {
        fate.isKept = fate.isKept || isNeedlessDelay(fate, earlier);
        if (fate.isKept && !fate.isDead)
            earlier.insert(fate.property);
    }
    QSet<QString> anyImportant;
    for (const DeclarationFate &fate : fates) {
        if (fate.isKept && !fate.isDead && isImportant(fate))
            anyImportant.insert(fate.property);
    }
    QSet<QString> later;
    QSet<QString> laterImportant;
    std::for_each(fates.rbegin(), fates.rend(), [&](DeclarationFate &fate) {
        const bool important = isImportant(fate);
        if (fate.isKept && !fate.isDead)
            (important ? laterImportant : later).insert(fate.property);
        else if (important)
            fate.isKept = isSetBy(laterImportant, fate.property);
        else
            fate.isKept = isSetBy(anyImportant, fate.property) || isSetBy(later, fate.property);
    });
}

} // namespace brevant
