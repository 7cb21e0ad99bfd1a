// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TextCodec.h"

#include <QByteArray>

#include <unicode/ucnv.h>
#include <unicode/uset.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace brevant {

namespace {

constexpr QChar byteOrderMark(QChar::ByteOrderMark);
constexpr std::size_t pieceSize = 8192; // of the output of one conversion call

struct NamedEncoding {
    QLatin1StringView choice; ///< as the setting holds it
    TextEncoding encoding;
    const char *converter; ///< its name in ICU
    QLatin1StringView name;
};

// In the order of the enumeration. Files in GBK, Big5 and Shift JIS really use the code pages 936, 950 and
// 932.
constexpr std::array<NamedEncoding, 9> encodings{{
    {QLatin1StringView("utf-8"), TextEncoding::Utf8, "UTF-8", QLatin1StringView("UTF-8")},
    {QLatin1StringView("gb2312"), TextEncoding::Gb2312, "ibm-1383_P110-1999",
     QLatin1StringView("GB 2312-80")},
    {QLatin1StringView("gbk"), TextEncoding::Gbk, "windows-936-2000", QLatin1StringView("GBK")},
    {QLatin1StringView("gb18030"), TextEncoding::Gb18030, "gb18030", QLatin1StringView("GB 18030-2000")},
    {QLatin1StringView("big5"), TextEncoding::Big5, "windows-950-2000", QLatin1StringView("Big5")},
    {QLatin1StringView("big5-hkscs"), TextEncoding::Big5Hkscs, "ibm-1375_P100-2008",
     QLatin1StringView("Big5-HKSCS")},
    {QLatin1StringView("shift-jis"), TextEncoding::ShiftJis, "ibm-943_P15A-2003",
     QLatin1StringView("Shift JIS")},
    {QLatin1StringView("iso-2022-jp"), TextEncoding::Iso2022Jp, "ISO-2022-JP",
     QLatin1StringView("ISO-2022-JP")},
    {QLatin1StringView("iso-2022-kr"), TextEncoding::Iso2022Kr, "ISO_2022,locale=ko,version=1",
     QLatin1StringView("ISO-2022-KR")},
}};

const NamedEncoding &entryOf(TextEncoding encoding)
{
    return encodings[static_cast<std::size_t>(encoding)];
}

/// Two shifts in a row carry no text and are allowed; anything else stops the converter.
void stopDecoding(const void *, UConverterToUnicodeArgs *, const char *, int32_t,
                  UConverterCallbackReason reason, UErrorCode *status)
{
    if (reason == UCNV_IRREGULAR)
        *status = U_ZERO_ERROR;
}

/// Unlike the stop callback of ICU, this one does not skip default-ignorable characters.
void stopEncoding(const void *, UConverterFromUnicodeArgs *, const char16_t *, int32_t, UChar32,
                  UConverterCallbackReason, UErrorCode *)
{
}

UConverter *openConverter(TextEncoding encoding)
{
    UErrorCode status = U_ZERO_ERROR;
    UConverter *converter = ucnv_open(entryOf(encoding).converter, &status);
    if (U_FAILURE(status))
        qFatal("The table of %s is missing: %s", entryOf(encoding).converter, u_errorName(status));
    ucnv_setToUCallBack(converter, stopDecoding, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter, stopEncoding, nullptr, nullptr, nullptr, &status);
    return converter;
}

/// What ICU's table accepts and the encoding does not have: vendor characters and stray single bytes. Texts
/// that contain them are not valid. Null if there are none.
USet *foreignCharacters(TextEncoding encoding, const UConverter *converter)
{
    using namespace std::string_view_literals;
    // Row 94 of the vendor's table of GB 2312, which ends with row 87.
    constexpr auto rowOfVendor =
        u"\u2010\u2025\u2121\u2170\u2171\u2172\u2173\u2174\u2175\u2176\u2177\u2178\u2179"
        u"\u25BC\u25BD\u3006\u3007\u3012\u309B\u309C\u309D\u309E\u30FC\u30FD\u30FE"
        u"\u3231\uFF07\uFFE2\uFFE4"sv;
    constexpr UChar32 privateUse = 0xE000;
    constexpr UChar32 privateUseEnd = 0xF8FF;

    const auto set = [](std::initializer_list<std::array<UChar32, 2>> ranges) {
        USet *characters = uset_openEmpty();
        for (const auto &range : ranges)
            uset_addRange(characters, range[0], range[1]);
        return characters;
    };
    switch (encoding) {
    case TextEncoding::Gb2312: {
        USet *characters = set({{0x80, 0x9F}, {privateUse, privateUseEnd}});
        uset_addAllCodePoints(characters, rowOfVendor.data(), static_cast<int32_t>(rowOfVendor.size()));
        return characters;
    }
    case TextEncoding::Gbk:
    case TextEncoding::Iso2022Kr:
        return set({{privateUse, privateUseEnd}});
    case TextEncoding::Big5:
        return set({{privateUse, 0xF6B0}, {0xF849, privateUseEnd}}); // between the two: C6A1 to C8FE
    case TextEncoding::Big5Hkscs:
        return set({{0xEEB8, 0xF12B}}); // 8140 to 84FE
    case TextEncoding::Iso2022Jp: {
        // Half-width kana and some kanji can be read, but not written.
        USet *characters = uset_openEmpty();
        UErrorCode status = U_ZERO_ERROR;
        ucnv_getUnicodeSet(converter, characters, UCNV_ROUNDTRIP_SET, &status);
        uset_complement(characters);
        return characters;
    }
    case TextEncoding::Utf8:
    case TextEncoding::Gb18030:
    case TextEncoding::ShiftJis:
        break;
    }
    return nullptr;
}

} // namespace

TextEncoding textEncodingNamed(const std::optional<QString> &name)
{
    if (name) {
        const auto found = std::ranges::find_if(
            encodings, [&](const NamedEncoding &entry) { return *name == entry.choice; });
        if (found != encodings.end())
            return found->encoding;
    }
    return TextEncoding::Utf8;
}

QLatin1StringView nameOf(TextEncoding encoding)
{
    return entryOf(encoding).name;
}

Utf8Prefix validUtf8Prefix(QByteArrayView bytes)
{
    const auto *const data = reinterpret_cast<const std::uint8_t *>(bytes.data());
    qsizetype whole = bytes.size();
    U8_TRUNCATE_IF_INCOMPLETE(data, 0, whole);
    if (bytes.first(whole).isValidUtf8()) // much faster than going character by character
        return {whole, whole < bytes.size()};
    qsizetype good = 0;
    UChar32 character = 0;
    for (qsizetype next = 0; character >= 0 && next < whole;) {
        good = next;
        U8_NEXT(data, next, whole, character);
    }
    return {good, false};
}

TextDecoder::TextDecoder(TextEncoding encoding)
    : m_converter(openConverter(encoding), ucnv_close),
      m_foreign(foreignCharacters(encoding, m_converter.get()), uset_close), m_units(pieceSize),
      m_offsets(m_foreign ? pieceSize : 0)
{
    if (m_foreign)
        uset_freeze(m_foreign.get());
}

std::optional<TextFault> TextDecoder::decode(QByteArrayView bytes,
                                             const std::function<void(QStringView)> &take)
{
    UConverter *const converter = m_converter.get();
    ucnv_resetToUnicode(converter);
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    const char *source = bytes.data();
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        const qint64 position = source - bytes.data();
        char16_t *end = m_units.data();
        ucnv_toUnicode(converter, &end, m_units.data() + m_units.size(), &source, bytes.data() + bytes.size(),
                       m_foreign ? m_offsets.data() : nullptr, true, &status);
        const QStringView units(m_units.data(), end);
        const auto isForeign = [this](QChar unit) {
            return unit.unicode() >= 0x80 && uset_contains(m_foreign.get(), unit.unicode());
        };
        if (const auto found = m_foreign ? std::ranges::find_if(units, isForeign) : units.end();
            found != units.end())
            return TextFault{position + m_offsets[static_cast<std::size_t>(found - units.begin())],
                             TextFault::Kind::Invalid};
        take(position == 0 && units.startsWith(byteOrderMark) ? units.sliced(1) : units);
    }
    if (U_SUCCESS(status))
        return std::nullopt;
    std::array<char, 32> invalid;
    auto length = static_cast<int8_t>(invalid.size());
    UErrorCode ignored = U_ZERO_ERROR;
    ucnv_getInvalidChars(converter, invalid.data(), &length, &ignored);
    return TextFault{source - bytes.data() - length, status == U_TRUNCATED_CHAR_FOUND
                                                         ? TextFault::Kind::Truncated
                                                         : TextFault::Kind::Invalid};
}

TextEncoder::TextEncoder(TextEncoding encoding) : m_converter(openConverter(encoding), ucnv_close) {}

bool TextEncoder::encode(QStringView text, bool last, QByteArray &bytes)
{
    const char16_t *source = text.utf16();
    const char16_t *const end = source + text.size();
    std::array<char, pieceSize> buffer;
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        char *target = buffer.data();
        ucnv_fromUnicode(m_converter.get(), &target, buffer.data() + buffer.size(), &source, end, nullptr,
                         static_cast<UBool>(last), &status);
        bytes.append(buffer.data(), target - buffer.data());
    }
    return U_SUCCESS(status);
}

} // namespace brevant
