// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"

#include "engine/TextFile.h"
#include "files/PathString.h"

#include <QFileInfo>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView mixedKinds("NO");

/// The refusal of files of a kind that is never combined.
CombineAlert refusedKind(const QString &name)
{
    return {u"Combine %1 files?"_s.arg(name),
            u"Sorry, you can only combine CSS or JS files. Combine %1 files makes no scene."_s.arg(name)};
}

} // namespace

QString combineKind(const std::vector<QString> &entries)
{
    if (entries.empty())
        return mixedKinds;
    const QStringView first = PathString::extension(entries.front());
    const bool same = std::ranges::all_of(
        entries, [first](const QString &entry) { return PathString::hasExtension(entry, first); });
    return same ? first.toString() : QString(mixedKinds);
}

std::optional<CombineAlert> combineRefusal(const std::vector<QString> &entries)
{
    if (entries.size() < 2)
        return CombineAlert{u"Notice"_s, u"Please select 2 or more files to combine."_s};
    const QString kind = combineKind(entries);
    if (kind == mixedKinds) {
        return CombineAlert{u"Combine different kinds of files?"_s,
                            u"No, please select only one kind of files at a time."_s};
    }
    // Only these spellings are refused: unlike elsewhere, the case counts.
    for (const QLatin1StringView refused : {"html"_L1, "phtml"_L1, "php"_L1}) {
        if (kind == refused)
            return refusedKind(QString(refused).toUpper());
    }
    return std::nullopt;
}

CombineResult combine(const std::vector<QString> &paths, const QString &target, TextEncoding encoding)
{
    if (paths.empty() && QFileInfo::exists(target))
        return {CombineResult::Outcome::WriteFailed,
                u"%1: kept as it is, as no files were selected any more"_s.arg(target)};
    TextFile file(target, encoding);
    for (const QString &path : paths) {
        if (const auto error = file.appendFile(PathString::expandTilde(path)))
            return {CombineResult::Outcome::Aborted, error->message()};
        file.append(u"\n");
    }
    const QString failure = file.commit();
    if (failure.isEmpty())
        return {CombineResult::Outcome::Written, {}};
    return {CombineResult::Outcome::WriteFailed, u"%1: %2"_s.arg(target, failure)};
}

} // namespace brevant
