// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/CustomProperties.h"

#include "engine/check/StyleSpelling.h"

#include <algorithm>

namespace brevant {

namespace {

/// One unit of those that need the same.
QStringView unitLike(QStringView unit)
{
    if (unit == u"%" || StyleSpelling::isZeroUnitFree(unit, {}, {}, false))
        return unit == u"%" ? u"%" : u"px";
    return StyleSpelling::isZeroUnitFree(unit, {}, u"rotate", false) ? u"deg" : u"s";
}

} // namespace

void CustomProperties::findUses()
{
    m_isRead = true;
    for (const StyleSheet::Declaration &declaration : m_sheet.declarations()) {
        StyleSpelling::OpenFunctions functions;
        const StyleToken *last = nullptr;
        for (const StyleToken &token : declaration.value) {
            if (last != nullptr && last->kind == StyleToken::Kind::Function && token.text.startsWith(u"--") &&
                StyleSpelling::functionName(*last) == u"var") {
                m_uses.insert(token.text,
                              {declaration.property, functions.innermost().toString(), functions.isInMath()});
                if (declaration.property.startsWith(u"--"))
                    m_parts.insert(declaration.property, token.text);
            }
            functions.follow(token);
            last = &token;
        }
    }
}

QSet<QStringView> CustomProperties::needing(QStringView unit) const
{
    QSet<QStringView> found;
    std::vector<QStringView> open;
    const auto add = [&](QStringView property) {
        if (const qsizetype before = found.size(); found.insert(property), found.size() > before)
            open.push_back(property);
    };
    for (auto use = m_uses.cbegin(); use != m_uses.cend(); ++use) {
        const bool isHandedOn = use->inProperty.startsWith(u"--");
        const QString property = isHandedOn ? QString() : StyleSpelling::property(use->inProperty);
        if (!StyleSpelling::isZeroUnitFree(unit, property, use->function, use->isInMath) &&
            !(isHandedOn && use->function.isEmpty()))
            add(use.key());
    }
    while (!open.empty()) {
        const QStringView property = open.back();
        open.pop_back();
        const auto [first, last] = m_parts.equal_range(property);
        std::for_each(first, last, add);
    }
    return found;
}

bool CustomProperties::needZeroUnits(const StyleSheet::Declaration &declaration)
{
    if (!m_isRead)
        findUses();
    return std::ranges::any_of(declaration.value, [&](const StyleToken &token) {
        const std::optional<QString> zero = StyleSpelling::unitOfZero(token);
        if (!zero || zero->isEmpty())
            return false;
        const QStringView unit = unitLike(*zero);
        if (!m_needing.contains(unit))
            m_needing.insert(unit, needing(unit));
        return m_needing.value(unit).contains(declaration.property);
    });
}

} // namespace brevant
