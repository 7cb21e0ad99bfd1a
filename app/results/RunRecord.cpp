// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/RunRecord.h"

#include "files/PathString.h"
#include "files/RawBytes.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Kind = CompressorMessage::Kind;

} // namespace

ShortResult shortResult(const RunRecord &run)
{
    const RunTotals totals = run.totals();
    const int lacking = run.count - run.minified;
    const QStringList details = totals.lackTexts();
    ShortResult result{.isAllWell = lacking <= 0 && details.isEmpty(),
                       .text = totals.all.savedText(true),
                       .details = details.isEmpty() ? QString() : details.join(u", ") + u'.'};
    if (lacking > 0)
        result.text = (lacking == totals.count(ResultRow::State::Failed) ? u"%1 of %2 failed"_s
                                                                         : u"%1 of %2 not minified"_s)
                          .arg(lacking)
                          .arg(run.count);
    return result;
}

std::vector<CompressorMessage> messagesAbout(const ResultRow &row)
{
    if (!row.remarks)
        return {};
    std::vector<CompressorMessage> messages = row.remarks->messages.shown;
    for (const ResultWarning &warning : row.remarks->checked.value_or(CheckedFile()).warnings)
        messages.push_back({warning.isNote() ? Kind::Information : Kind::Warning, warning.withoutLine(u"→"_s),
                            warning.line, 0});
    return messages;
}

CompressorMessage firstPlaceIn(const ResultRow &row)
{
    const std::vector<CompressorMessage> messages = messagesAbout(row);
    const auto placed =
        std::ranges::find_if(messages, [](const CompressorMessage &message) { return message.line > 0; });
    if (placed != messages.end())
        return *placed;
    return row.isMinified() && !messages.empty() ? messages.front()
                                                 : CompressorMessage{Kind::Error, row.reason(), 0, 0};
}

QString folderText(const QString &path)
{
    return printable(PathString::withTilde(PathString::folder(path).toString()));
}

} // namespace brevant
