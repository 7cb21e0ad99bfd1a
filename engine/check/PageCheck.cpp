// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/PageCheck.h"

#include "engine/check/MarkupText.h"
#include "engine/check/StyleSheetCheck.h"
#include "engine/check/TextLines.h"

#include <QHash>

#include <algorithm>
#include <span>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Letters = std::span<const MarkupText::Letter>;

/// How many letters both have in common at their start.
std::size_t commonLength(Letters source, Letters result)
{
    const auto isSame = [](const MarkupText::Letter &one, const MarkupText::Letter &other) {
        return *one.at == *other.at;
    };
    return static_cast<std::size_t>(std::ranges::mismatch(source, result, isSame).in1 - source.begin());
}

/// Skips what differs at the start of both; false if they go on alike nowhere near.
bool resume(Letters &source, Letters &result)
{
    constexpr std::size_t farthest = 256;
    constexpr std::size_t enough = 16;
    const auto hashAt = [](Letters letters, std::size_t at) {
        std::size_t hash = 0;
        for (const MarkupText::Letter &letter : letters.subspan(at, enough))
            hash = hash * 31 + letter.at->unicode();
        return hash;
    };
    QHash<std::size_t, std::size_t> places;
    for (std::size_t at = std::min(farthest, result.size()); at-- > 0;) {
        if (at + enough <= result.size())
            places.insert(hashAt(result, at), at);
    }
    for (std::size_t at = 0; at < farthest && at + enough <= source.size(); ++at) {
        const auto place = places.constFind(hashAt(source, at));
        if (place == places.cend() ||
            commonLength(source.subspan(at, enough), result.subspan(*place, enough)) < enough)
            continue;
        source = source.subspan(at);
        result = result.subspan(*place);
        return true;
    }
    return false;
}

/// The word that ends before `at`, or begins there.
QString word(Letters letters, std::size_t at, bool isBefore)
{
    constexpr qsizetype most = 40;
    QString word;
    while (word.size() < most) {
        if (isBefore) {
            word.prepend(*letters[--at].at);
            if (at == 0 || letters[at].isApart)
                break;
        } else {
            word.append(*letters[at++].at);
            if (at == letters.size() || letters[at].isApart)
                break;
        }
    }
    return word;
}

ResultWarning warningOf(Letters source, std::size_t at, const TextLines &lines)
{
    const int before = source[at - 1].link;
    const bool areLinks = before > 0 && source[at].link > 0 && before != source[at].link;
    ResultWarning warning{areLinks ? ResultWarning::Kind::GluedLinks : ResultWarning::Kind::GluedWords,
                          lines.of(QStringView(source[at].at, 1))};
    const QString first = word(source, at, true);
    const QString second = word(source, at, false);
    warning.before = first + u' ' + second;
    warning.after = first + second;
    return warning;
}

QList<ResultWarning> gluedWords(Letters source, Letters result, const TextLines &lines)
{
    constexpr int mostGaps = 200;
    QList<ResultWarning> warnings;
    for (int gaps = 0; gaps <= mostGaps; ++gaps) {
        const std::size_t common = commonLength(source, result);
        for (std::size_t at = 1; at < common; ++at) {
            if (source[at].isApart && !source[at].isUncertain && !result[at].isApart)
                warnings.append(warningOf(source, at, lines));
        }
        source = source.subspan(common);
        result = result.subspan(common);
        if (source.empty() || result.empty() || !resume(source, result))
            break;
    }
    return warnings;
}

QList<ResultWarning> lostStyles(const MarkupText &source, const MarkupText &result, const TextLines &lines)
{
    QList<ResultWarning> warnings;
    if (source.styles.size() != result.styles.size())
        return warnings;
    for (std::size_t i = 0; i < source.styles.size(); ++i) {
        const QStringView style = source.styles[i];
        if (!style.contains(u"<?") && !style.contains(u"<%") && !style.contains(u"{{"))
            warnings += checkStyleSheet(style, result.styles[i], lines.of(style));
    }
    return warnings;
}

} // namespace

QList<ResultWarning> checkPage(QStringView source, QStringView result)
{
    const MarkupText sourceText(source);
    const MarkupText resultText(result);
    const TextLines lines(source);
    QList<ResultWarning> warnings =
        gluedWords(sourceText.letters, resultText.letters, lines) + lostStyles(sourceText, resultText, lines);
    std::ranges::stable_sort(warnings, {}, &ResultWarning::line);
    return warnings;
}

} // namespace brevant
