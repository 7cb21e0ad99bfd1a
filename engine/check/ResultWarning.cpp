// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ResultWarning.h"

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using WarningKind = ResultWarning::Kind;

} // namespace

QString ResultWarning::sentence() const
{
    switch (kind) {
    case WarningKind::Declaration:
        return after.isEmpty() ? u"declaration lost"_s : u"declaration changed"_s;
    case WarningKind::Statement:
        return u"at-rule lost"_s;
    case WarningKind::NothingLeft:
        return u"nothing is left of its rules"_s;
    case WarningKind::GluedWords:
        return u"words glued together"_s;
    case WarningKind::GluedLinks:
        return u"links glued together"_s;
    case WarningKind::UseStrict:
        return u"\"use strict\" lost"_s;
    case WarningKind::NotSmaller:
        return u"not smaller than its source"_s;
    }
    Q_UNREACHABLE();
}

QString ResultWarning::withoutLine(const QString &arrow) const
{
    QString words = sentence();
    QStringList place = within;
    if (!selector.isEmpty())
        place.append(selector);
    if (!place.isEmpty())
        words += u" in "_s + place.join(u", "_s);
    if (before.isEmpty())
        return words;
    words += u": "_s;
    if (!property.isEmpty())
        words += property + u": "_s;
    words += before;
    return after.isEmpty() ? words : words + u' ' + arrow + u' ' + after;
}

QString ResultWarning::inWords() const
{
    return (line > 0 ? u"line %1: "_s.arg(line) : QString()) + withoutLine(u"->"_s);
}

bool CheckedFile::isSuspicious() const
{
    return std::ranges::any_of(warnings, [](const ResultWarning &warning) { return !warning.isNote(); });
}

QString summaryOf(const QList<ResultWarning> &warnings)
{
    const auto count = [&](WarningKind kind) {
        return std::ranges::count(warnings, kind, &ResultWarning::kind);
    };
    QStringList parts;
    if (const auto declarations = count(WarningKind::Declaration); declarations > 0)
        parts.append(declarations == 1 ? u"1 declaration damaged"_s
                                       : u"%1 declarations damaged"_s.arg(declarations));
    if (const auto statements = count(WarningKind::Statement); statements > 0)
        parts.append(statements == 1 ? u"1 at-rule lost"_s : u"%1 at-rules lost"_s.arg(statements));
    for (const WarningKind kind : {WarningKind::NothingLeft, WarningKind::GluedLinks, WarningKind::GluedWords,
                                   WarningKind::NotSmaller}) {
        if (count(kind) > 0)
            parts.append(ResultWarning{kind}.sentence());
    }
    if (parts.isEmpty() && count(WarningKind::UseStrict) > 0)
        parts.append(ResultWarning{WarningKind::UseStrict}.sentence());
    return parts.join(u", "_s);
}

} // namespace brevant
