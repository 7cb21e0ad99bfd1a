// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/RawBytes.h"

#include <QStringDecoder>

#include <algorithm>

namespace brevant::RawBytes {

namespace {

constexpr char16_t base = 0xdc00; // where the trailing surrogates begin
constexpr qsizetype longestSequence = 4;

/// The length of the valid sequence at the beginning of `bytes`; 0 if there is none.
qsizetype validSequence(QByteArrayView bytes)
{
    for (qsizetype length = 1; length <= std::min(longestSequence, bytes.size()); ++length) {
        if (bytes.first(length).isValidUtf8())
            return length;
    }
    return 0;
}

QString textOf(QByteArrayView valid)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decoder(valid);
}

/// Where the next byte stands in `text`, or its end.
qsizetype nextByte(QStringView text, qsizetype from)
{
    for (qsizetype at = from; at < text.size(); ++at) {
        const char16_t code = text[at].unicode();
        if (text[at].isHighSurrogate())
            ++at; // and the one that belongs to it
        else if (code >= base + 0x80 && code <= base + 0xff)
            return at;
    }
    return text.size();
}

} // namespace

QString decoded(const QByteArray &name)
{
    if (name.isValidUtf8())
        return textOf(name);
    QString text;
    for (QByteArrayView rest(name); !rest.isEmpty();) {
        const qsizetype length = validSequence(rest);
        if (length == 0)
            text += QChar(static_cast<char16_t>(base + static_cast<unsigned char>(rest.front())));
        else
            text += textOf(rest.first(length));
        rest = rest.sliced(std::max<qsizetype>(length, 1));
    }
    return text;
}

QByteArray encoded(const QString &text)
{
    QByteArray name;
    for (qsizetype from = 0; from <= text.size();) {
        const qsizetype at = nextByte(text, from);
        name += QStringView(text).sliced(from, at - from).toUtf8();
        if (at < text.size())
            name += static_cast<char>(text[at].unicode() - base);
        from = at + 1;
    }
    return name;
}

bool areIn(const QString &text)
{
    return nextByte(text, 0) < text.size();
}

QString escaped(const QString &text)
{
    QString visible;
    for (qsizetype from = 0; from <= text.size();) {
        const qsizetype at = nextByte(text, from);
        visible += QStringView(text).sliced(from, at - from);
        if (at < text.size())
            visible += QStringLiteral("\\x") + QString::number(text[at].unicode() - base, 16).toUpper();
        from = at + 1;
    }
    return visible;
}

} // namespace brevant::RawBytes
