// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/Suggestion.h"

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace brevant {

/// How many signs have to be changed, left out or put in to make one word of the other.
static qsizetype distance(QStringView one, QStringView other)
{
    std::vector<qsizetype> row(static_cast<std::size_t>(other.size()) + 1);
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = static_cast<qsizetype>(i);
    for (qsizetype i = 0; i < one.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const bool isSame = one[i] == other[static_cast<qsizetype>(j) - 1];
            const qsizetype changed = diagonal + (isSame ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, changed}));
        }
    }
    return row.back();
}

QString wayOut(QStringView name, const QStringList &names)
{
    constexpr qsizetype longestWord = 64; // it may be anything
    const QStringView word = name.first(std::min(name.size(), longestWord));
    const auto differs = [word](const QString &known) { return distance(word, known); };
    const auto nearest = std::ranges::min_element(names, {}, differs);
    if (nearest != names.end() && differs(*nearest) <= std::min<qsizetype>(3, nearest->size() / 2))
        return u"; did you mean \"%1\"?"_s.arg(*nearest);
    return u"; there are %1"_s.arg(names.join(u", "));
}

} // namespace brevant
