// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSpelling.h"

#include "engine/check/Words.h"

#include <algorithm>
#include <array>

namespace brevant::StyleSpelling {

namespace {

using namespace Qt::StringLiterals;
using TokenKind = StyleToken::Kind;

constexpr std::array mathFunctions{
    "calc"_L1, "-webkit-calc"_L1, "min"_L1,   "max"_L1,  "clamp"_L1, "round"_L1, "mod"_L1,      "rem"_L1,
    "abs"_L1,  "sign"_L1,         "hypot"_L1, "sin"_L1,  "cos"_L1,   "tan"_L1,   "asin"_L1,     "acos"_L1,
    "atan"_L1, "atan2"_L1,        "pow"_L1,   "sqrt"_L1, "log"_L1,   "exp"_L1,   "calc-size"_L1};
constexpr std::array lengths{"px"_L1, "em"_L1,   "rem"_L1,  "ex"_L1, "ch"_L1, "vw"_L1,
                             "vh"_L1, "vmin"_L1, "vmax"_L1, "cm"_L1, "mm"_L1, "in"_L1,
                             "pt"_L1, "pc"_L1,   "q"_L1,    "lh"_L1, "rlh"_L1};
constexpr std::array angles{"deg"_L1, "grad"_L1, "rad"_L1, "turn"_L1};
constexpr std::array turningFunctions{"rotate"_L1, "rotatex"_L1, "rotatey"_L1, "rotatez"_L1,    "rotate3d"_L1,
                                      "skew"_L1,   "skewx"_L1,   "skewy"_L1,   "hue-rotate"_L1, "hsl"_L1,
                                      "hsla"_L1,   "hwb"_L1,     "lch"_L1,     "oklch"_L1};
constexpr std::array percentFunctions{"color-mix"_L1, "hsl,"_L1, "hsla,"_L1,
                                      "rgb"_L1,       "rgba"_L1, "linear"_L1};
constexpr std::array percentProperties{"flex"_L1,
                                       "flex-basis"_L1,
                                       "height"_L1,
                                       "max-height"_L1,
                                       "block-size"_L1,
                                       "row-gap"_L1,
                                       "gap"_L1,
                                       "size-adjust"_L1,
                                       "font-stretch"_L1,
                                       "ascent-override"_L1,
                                       "descent-override"_L1,
                                       "line-gap-override"_L1,
                                       "text-size-adjust"_L1,
                                       "max-block-size"_L1,
                                       "-webkit-text-size-adjust"_L1,
                                       "initial-value"_L1,
                                       "font-width"_L1};
constexpr std::array boxProperties{"margin"_L1,         "padding"_L1,
                                   "border-width"_L1,   "border-style"_L1,
                                   "border-color"_L1,   "border-radius"_L1,
                                   "inset"_L1,          "scroll-margin"_L1,
                                   "scroll-padding"_L1, "gap"_L1,
                                   "border-spacing"_L1, "margin-inline"_L1,
                                   "margin-block"_L1,   "padding-inline"_L1,
                                   "padding-block"_L1,  "inset-inline"_L1,
                                   "inset-block"_L1,    "overflow"_L1,
                                   "scale"_L1,          "grid-gap"_L1,
                                   "translate"_L1,      "-webkit-border-radius"_L1};
constexpr std::array noneIsZero{"border"_L1,      "border-top"_L1, "border-right"_L1, "border-bottom"_L1,
                                "border-left"_L1, "outline"_L1,    "background"_L1};
/// Those that a compressor writes instead of their numbers.
constexpr std::array<std::pair<QLatin1StringView, QLatin1StringView>, 9> colors{{
    {"red"_L1, "#ff0000"_L1},
    {"navy"_L1, "#000080"_L1},
    {"gray"_L1, "#808080"_L1},
    {"olive"_L1, "#808000"_L1},
    {"purple"_L1, "#800080"_L1},
    {"silver"_L1, "#c0c0c0"_L1},
    {"teal"_L1, "#008080"_L1},
    {"orange"_L1, "#ffa500"_L1},
    {"maroon"_L1, "#800000"_L1},
}};

QString colorName(QStringView name)
{
    for (const auto &[color, number] : colors) {
        if (name.compare(color, Qt::CaseInsensitive) == 0)
            return number;
    }
    return name.toString();
}

QString hash(QStringView text)
{
    QString color = text.toString().toLower();
    const bool isColor = std::ranges::all_of(color.sliced(1), [](QChar digit) {
        return (digit >= u'0' && digit <= u'9') || (digit >= u'a' && digit <= u'f');
    });
    if (!isColor)
        return text.toString();
    if (color.size() == 4 || color.size() == 5) {
        QString whole(u'#');
        for (const QChar digit : QStringView(color).sliced(1))
            whole += QString(2, digit);
        return whole;
    }
    return color;
}

/// The three numbers of "rgb(1, 2, 3)" as a hash; empty if there is something else.
QString colorOfNumbers(Tokens tokens)
{
    constexpr std::size_t size = 6;
    if (tokens.size() < size || !tokens[1].isSign(u',') || !tokens[3].isSign(u',') || !tokens[5].isSign(u')'))
        return {};
    QString color(u'#');
    for (const std::size_t at : {0, 2, 4}) {
        bool isWhole = false;
        const int part = tokens[at].text.toInt(&isWhole);
        if (!isWhole || part < 0)
            return {};
        color += QString::number(std::min(part, 255), 16).rightJustified(2, u'0');
    }
    return color;
}

/// Strings and addresses are kept as they are, but for white space in Base64, which browsers drop.
QString kept(QStringView text)
{
    QString spelling = text.toString();
    if (text.contains(u"data:") && text.contains(u";base64,"))
        spelling.removeIf(isWebSpace);
    return spelling;
}

QString address(QStringView text)
{
    const qsizetype open = text.indexOf(u'(') + 1;
    const qsizetype size = text.size() - open - (text.endsWith(u')') ? 1 : 0);
    return u"url("_s + kept(text.sliced(open, size).trimmed()) + u')';
}

struct Number {
    QString digits; ///< with a "-"; "0" for all zeros
    QString unit;
};

Number numberOf(QStringView text)
{
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        text = text.sliced(1);
    const auto digitsIn = [](QStringView rest) {
        return std::ranges::find_if_not(rest, [](QChar digit) { return digit >= u'0' && digit <= u'9'; }) -
               rest.begin();
    };
    QStringView whole = text.first(digitsIn(text));
    text = text.sliced(whole.size());
    QStringView fraction;
    if (text.startsWith(u'.')) {
        fraction = text.sliced(1, digitsIn(text.sliced(1)));
        text = text.sliced(fraction.size() + 1);
    }
    while (whole.startsWith(u'0'))
        whole = whole.sliced(1);
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    if (whole.isEmpty() && fraction.isEmpty())
        return {u"0"_s, text.toString().toLower()};
    QString digits = isNegative ? u"-"_s : QString();
    digits += whole;
    if (!fraction.isEmpty())
        digits += u'.' + fraction.toString();
    return {digits, text.toString().toLower()};
}

/// Spells tokens one after the other.
class Speller final {
public:
    Speller(QStringView property, bool dropsAllUnits) : m_property(property), m_dropsAllUnits(dropsAllUnits)
    {
    }

    QStringList spell(Tokens tokens)
    {
        QStringList parts;
        for (std::size_t at = 0; at < tokens.size(); ++at) {
            if (tokens[at].kind == TokenKind::Function && functionName(tokens[at]) == u"rgb") {
                if (const QString color = colorOfNumbers(tokens.subspan(at + 1)); !color.isEmpty()) {
                    parts.append(color);
                    at += 6;
                    continue;
                }
            }
            parts.append(spell(tokens[at], at + 1 < tokens.size() && tokens[at + 1].isSpaceBefore));
            follow(tokens[at]);
        }
        return parts;
    }

private:
    [[nodiscard]] QString spell(const StyleToken &token, bool isSpaceAfter) const
    {
        switch (token.kind) {
        case TokenKind::Name:
            return m_isAfterMark ? token.text.toString().toLower() : colorName(token.text);
        case TokenKind::Function:
            return functionName(token) + u'(';
        case TokenKind::Hash:
            return hash(token.text);
        case TokenKind::Number:
            return number(token);
        case TokenKind::String:
            return kept(token.text);
        case TokenKind::Url:
            return address(token.text);
        case TokenKind::At:
            return token.text.toString().toLower();
        case TokenKind::Sign:
            break;
        }
        // Without a space on both sides they are no operators.
        if (token.isSign(u'+') || token.isSign(u'-'))
            return (token.isSpaceBefore ? u"_"_s : QString()) + token.text.front() +
                   (isSpaceAfter ? u"_"_s : QString());
        return token.text.toString();
    }

    [[nodiscard]] QString number(const StyleToken &token) const
    {
        if (m_property == u"unicode-range")
            return token.text.toString().toLower();
        const Number number = numberOf(token.text);
        const bool isFree =
            number.digits == u"0" &&
            (m_dropsAllUnits || number.unit.isEmpty() ||
             isZeroUnitFree(number.unit, m_property, m_functions.innermost(), m_functions.isInMath()) ||
             (m_property == u"flex" && m_functions.isEmpty() && m_count == 2 &&
              isOneOf(number.unit, lengths)));
        return isFree ? u"0"_s : number.digits + number.unit;
    }

    void follow(const StyleToken &token)
    {
        if (m_functions.isEmpty())
            ++m_count;
        m_isAfterMark = token.isSign(u'!');
        m_functions.follow(token);
    }

    const QStringView m_property;
    const bool m_dropsAllUnits;
    OpenFunctions m_functions;
    int m_count = 0; ///< tokens outside of brackets so far
    bool m_isAfterMark = false;
};

QString spelled(QStringView property, Tokens tokens, bool dropsAllUnits)
{
    QStringList parts = Speller(property, dropsAllUnits).spell(tokens);
    const bool isImportant =
        parts.size() >= 2 && parts.last() == u"important" && parts.at(parts.size() - 2) == u"!";
    if (isImportant)
        parts.resize(parts.size() - 2);
    const bool isSame =
        std::ranges::all_of(parts, [&](const QString &part) { return part == parts.first(); });
    if (isSame && parts.size() > 1 && parts.size() <= 4 && isOneOf(property, boxProperties))
        parts.resize(1);
    if (parts.size() == 3 && parts.last() == u"0" && property.endsWith(u"transform-origin"))
        parts.removeLast();
    if (parts.size() == 1 && parts.first() == u"none" && isOneOf(property, noneIsZero))
        parts.first() = u"0"_s;
    return parts.join(u' ') + (isImportant ? u" !important"_s : QString());
}

} // namespace

QString property(QStringView name)
{
    return name.startsWith(u"--") ? name.toString() : name.toString().toLower();
}

QString value(QStringView property, Tokens tokens)
{
    return spelled(property, tokens, false);
}

QString valueWithoutZeroUnits(QStringView property, Tokens tokens)
{
    return spelled(property, tokens, true);
}

bool isZeroUnitFree(QStringView unit, QStringView property, QStringView function, bool isInMath)
{
    if (isInMath || property.startsWith(u"--"))
        return false;
    if (unit == u"%")
        return !isOneOf(property, percentProperties) && !property.startsWith(u"grid") &&
               !isOneOf(function, percentFunctions);
    if (isOneOf(unit, angles))
        return isOneOf(function, turningFunctions) || function.endsWith(u"-gradient");
    return isOneOf(unit, lengths) && property != u"flex";
}

void OpenFunctions::follow(const StyleToken &token)
{
    if (token.kind == TokenKind::Function) {
        const QString name = functionName(token);
        const bool isStandIn = name == u"var" || name == u"env";
        m_open.push_back(
            {isStandIn ? innermost().toString() : name, isInMath() || isOneOf(name, mathFunctions)});
    } else if (token.isSign(u'(')) {
        m_open.push_back({innermost().toString(), isInMath()});
    } else if (token.isSign(u')') && !m_open.empty()) {
        m_open.pop_back();
    } else if (token.isSign(u',') && !m_open.empty() && m_open.back().function.startsWith(u"hsl")) {
        QString &function = m_open.back().function;
        if (!function.endsWith(u','))
            function += u',';
    }
}

QStringView OpenFunctions::innermost() const
{
    return m_open.empty() ? QStringView() : QStringView(m_open.back().function);
}

QString functionName(const StyleToken &token)
{
    return token.text.chopped(1).toString().toLower();
}

std::optional<QString> unitOfZero(const StyleToken &token)
{
    if (token.kind != TokenKind::Number)
        return std::nullopt;
    const Number number = numberOf(token.text);
    return number.digits == u"0" ? std::optional(number.unit) : std::nullopt;
}

QString atRule(Tokens tokens)
{
    return Speller({}, false).spell(tokens).join(u' ');
}

} // namespace brevant::StyleSpelling
