// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PrintableText.h"

#include "files/RawBytes.h"

namespace brevant {

bool isPrintable(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        break;
    }
    const char16_t code = character.unicode();
    return code != 0x061c && code != 0x200e && code != 0x200f && !(code >= 0x202a && code <= 0x202e) &&
           !(code >= 0x2066 && code <= 0x206f); // the Unicode standard, "Bidi_Control" and those beside them
}

QString printable(const QString &text)
{
    QString visible;
    for (const QChar character : RawBytes::escaped(text)) {
        const char16_t code = character.unicode();
        if (isPrintable(character))
            visible += character;
        else if (code == u'\n')
            visible += QLatin1StringView("\\n");
        else if (code == u'\t')
            visible += QLatin1StringView("\\t");
        else if (code < 0x100)
            visible += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else
            visible += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
    }
    return visible;
}

} // namespace brevant
