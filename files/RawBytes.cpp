// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/RawBytes.h"

#include "files/PathString.h"

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr char16_t base = 0xdc00; // the first low surrogate
constexpr qsizetype longestSequence = 4;

/// Passes the valid parts of a text and its raw bytes on, in order.
template <typename OnText, typename OnByte>
void split(QStringView text, OnText onText, OnByte onByte)
{
    qsizetype from = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t code = text[at].unicode();
        if (text[at].isHighSurrogate()) {
            ++at; // a pair
        } else if (code >= base + 0x80 && code <= base + 0xff) {
            onText(text.sliced(from, at - from));
            onByte(static_cast<unsigned char>(code - base));
            from = at + 1;
        }
    }
    onText(text.sliced(from));
}

} // namespace

QString RawBytes::decoded(const QByteArray &name)
{
    if (name.isValidUtf8())
        return PathString::decoded(name);
    QString text;
    for (QByteArrayView rest(name); !rest.isEmpty();) {
        qsizetype length = std::min(longestSequence, rest.size());
        while (length > 0 && !rest.first(length).isValidUtf8())
            --length;
        if (length == 0)
            text += QChar(static_cast<char16_t>(base + static_cast<unsigned char>(rest.front())));
        else
            text += PathString::decoded(rest.first(length).toByteArray());
        rest = rest.sliced(std::max<qsizetype>(length, 1));
    }
    return text;
}

QByteArray RawBytes::encoded(const QString &text)
{
    if (!areIn(text))
        return text.toUtf8();
    QByteArray name;
    split(
        text, [&](QStringView valid) { name += valid.toUtf8(); },
        [&](unsigned char byte) { name += static_cast<char>(byte); });
    return name;
}

bool RawBytes::areIn(const QString &text)
{
    char16_t bits = 0; // of all characters: most texts are known for plain by these
    for (const QChar character : text)
        bits |= character.unicode();
    bool found = false;
    if (bits >= base)
        split(
            text, [](QStringView) {}, [&found](unsigned char) { found = true; });
    return found;
}

QString RawBytes::escaped(const QString &text)
{
    QString visible;
    split(
        text, [&](QStringView valid) { visible += valid; },
        [&](unsigned char byte) { visible += u"\\x"_s + QString::number(byte, 16).toUpper(); });
    return visible;
}

bool isPrintable(QChar character)
{
    const QChar::Category category = character.category();
    const char16_t code = character.unicode();
    return category != QChar::Other_Control && category != QChar::Separator_Line &&
           category != QChar::Separator_Paragraph && code != 0x061c && code != 0x200e && code != 0x200f &&
           !(code >= 0x202a && code <= 0x202e) &&
           !(code >= 0x2066 && code <= 0x206f); // Bidi_Control and their neighbours
}

QString printable(const QString &text)
{
    QString visible;
    for (const QChar character : RawBytes::escaped(text)) {
        const char16_t code = character.unicode();
        if (isPrintable(character))
            visible += character;
        else if (code == u'\n')
            visible += R"(\n)"_L1;
        else if (code == u'\t')
            visible += R"(\t)"_L1;
        else if (code < 0x100)
            visible += u"\\x%1"_s.arg(code, 2, 16, '0'_L1);
        else
            visible += u"\\u%1"_s.arg(code, 4, 16, '0'_L1);
    }
    return visible;
}

} // namespace brevant
