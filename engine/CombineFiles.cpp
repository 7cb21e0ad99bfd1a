// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"

#include "engine/TextFile.h"
#include "files/PathString.h"

#include <QFileInfo>

#include <algorithm>

namespace brevant {

namespace {

constexpr QLatin1StringView mixedKinds("NO");

/// The refusal of files of a kind that is never combined.
CombineAlert refusedKind(const QString &name)
{
    return {QStringLiteral("Combine %1 files?").arg(name),
            QStringLiteral("Sorry, you can only combine CSS or JS files. Combine %1 files makes no scene.")
                .arg(name)};
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
        return CombineAlert{QStringLiteral("Notice"),
                            QStringLiteral("Please select 2 or more files to combine.")};
    const QString kind = combineKind(entries);
    if (kind == mixedKinds) {
        return CombineAlert{QStringLiteral("Combine different kinds of files?"),
                            QStringLiteral("No, please select only one kind of files at a time.")};
    }
    // Only these spellings are refused: unlike elsewhere, the case counts.
    for (const QLatin1StringView refused :
         {QLatin1StringView("html"), QLatin1StringView("phtml"), QLatin1StringView("php")}) {
        if (kind == refused)
            return refusedKind(QString(refused).toUpper());
    }
    return std::nullopt;
}

CombineResult combine(const std::vector<QString> &paths, const QString &target, TextEncoding encoding)
{
    if (paths.empty() && QFileInfo::exists(target))
        return {CombineResult::Outcome::WriteFailed,
                QStringLiteral("%1: kept as it is, as no files were selected any more").arg(target)};
    TextFile file(target, encoding);
    for (const QString &path : paths) {
        if (const auto error = file.appendFile(PathString::expandTilde(path)))
            return {CombineResult::Outcome::Aborted, error->message()};
        file.append(u"\n");
    }
    const QString failure = file.commit();
    if (failure.isEmpty())
        return {CombineResult::Outcome::Written, {}};
    return {CombineResult::Outcome::WriteFailed, QStringLiteral("%1: %2").arg(target, failure)};
}

} // namespace brevant
