// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/TextCodec.h"

#include <QByteArray>

#include <unicode/ucnv.h>
#include <unicode/uset.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar byteOrderMark(QChar::ByteOrderMark);
constexpr std::size_t pieceSize = 8192; // of the output of one conversion call

struct NamedEncoding {
    QLatin1StringView choice; ///< as the setting holds it
    const char *converter;    ///< its name in ICU
    QLatin1StringView name;
    /// What ICU's table accepts and the encoding does not have, as a pattern: vendor characters and stray
    /// single bytes. Texts that contain them are not valid.
    QStringView foreign = {};
};

// In the order of the enumeration. Files in GBK, Big5 and Shift JIS really use the code pages 936, 950 and
// 932.
constexpr std::array<NamedEncoding, 9> encodings{{
    {"utf-8"_L1, "UTF-8", "UTF-8"_L1},
    // The last ones are row 94 of the vendor's table of GB 2312, which ends with row 87.
    {"gb2312"_L1, "ibm-1383_P110-1999", "GB 2312-80"_L1,
     u"[\\u0080-\\u009F\\uE000-\\uF8FF\\u2010\\u2025\\u2121\\u2170-\\u2179\\u25BC\\u25BD\\u3006\\u3007\\u3012"
     "\\u309B-\\u309E\\u30FC-\\u30FE\\u3231\\uFF07\\uFFE2\\uFFE4]"},
    {"gbk"_L1, "windows-936-2000", "GBK"_L1, u"[\\uE000-\\uF8FF]"},
    {"gb18030"_L1, "gb18030", "GB 18030-2000"_L1},
    {"big5"_L1, "windows-950-2000", "Big5"_L1, u"[\\uE000-\\uF6B0\\uF849-\\uF8FF]"}, // all but C6A1 to C8FE
    {"big5-hkscs"_L1, "ibm-1375_P100-2008", "Big5-HKSCS"_L1, u"[\\uEEB8-\\uF12B]"},  // 8140 to 84FE
    {"shift-jis"_L1, "ibm-943_P15A-2003", "Shift JIS"_L1},
    {"iso-2022-jp"_L1, "ISO-2022-JP", "ISO-2022-JP"_L1, u"[]"}, // all that cannot be written
    {"iso-2022-kr"_L1, "ISO_2022,locale=ko,version=1", "ISO-2022-KR"_L1, u"[\\uE000-\\uF8FF]"},
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

USet *foreignCharacters(TextEncoding encoding, const UConverter *converter)
{
    const QStringView pattern = entryOf(encoding).foreign;
    if (pattern.isEmpty())
        return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    USet *characters = uset_openPattern(pattern.utf16(), static_cast<int32_t>(pattern.size()), &status);
    if (encoding == TextEncoding::Iso2022Jp) {
        // Half-width kana and some kanji can be read, but not written.
        ucnv_getUnicodeSet(converter, characters, UCNV_ROUNDTRIP_SET, &status);
        uset_complement(characters);
    }
    uset_freeze(characters);
    return characters;
}

} // namespace

TextEncoding textEncodingNamed(const std::optional<QString> &name)
{
    const auto found = std::ranges::find_if(
        encodings, [&](const NamedEncoding &entry) { return name && *name == entry.choice; });
    return found == encodings.end() ? TextEncoding::Utf8
                                    : static_cast<TextEncoding>(found - encodings.begin());
}

QLatin1StringView nameOf(TextEncoding encoding)
{
    return entryOf(encoding).name;
}

TextCodec::TextCodec(TextEncoding encoding)
    : m_converter(openConverter(encoding), ucnv_close),
      m_foreign(foreignCharacters(encoding, m_converter.get()), uset_close), m_units(pieceSize),
      m_offsets(m_foreign ? pieceSize : 0)
{
}

std::optional<TextFault> TextCodec::decode(QByteArrayView bytes, const std::function<void(QStringView)> &take)
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

bool TextCodec::encode(QStringView text, bool last, QByteArray &bytes)
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
