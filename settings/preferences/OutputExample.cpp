// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/OutputExample.h"

#include "files/PathString.h"

#include <QCoreApplication>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("OutputExample", text);
}

/// Kept together from left to right (U+2066 and U+2069 of the Unicode Bidirectional Algorithm).
QString isolated(const QString &path)
{
    return QChar(0x2066) + path + QChar(0x2069);
}

} // namespace

QString exampleText(const QString &source, const std::optional<QString> &output,
                    Qt::LayoutDirection direction)
{
    const QString arrow(direction == Qt::RightToLeft ? QChar(0x2190) : QChar(0x2192));
    if (!output)
        return tr("%1 %2 no output").arg(isolated(source), arrow);
    const QString text = *output == source ? tr("%1 %2 %3, replaces the source") : u"%1 %2 %3"_s;
    return text.arg(isolated(source), arrow, isolated(PathString::withTilde(*output)));
}

} // namespace brevant
