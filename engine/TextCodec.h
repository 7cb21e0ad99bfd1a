// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct UConverter;
struct USet;

namespace brevant {

/// A character set in which texts are read and written.
enum class TextEncoding { Utf8, Gb2312, Gbk, Gb18030, Big5, Big5Hkscs, ShiftJis, Iso2022Jp, Iso2022Kr };

/// The character set that a stored choice stands for, by exact equality. UTF-8 for no choice and for every
/// name that has no character set here, "iso-8859-1" and "iso-8859-15" among them.
[[nodiscard]] TextEncoding textEncodingNamed(const std::optional<QString> &name);

/// The name of the character set, for messages.
[[nodiscard]] QLatin1StringView nameOf(TextEncoding encoding);

/// Where bytes stop being text.
struct TextFault {
    enum class Kind { Invalid, Truncated };

    qint64 position; ///< of the first byte of the bad sequence, counted from 0 at the start of the text
    Kind kind;

    bool operator==(const TextFault &) const = default;
};

/// How far UTF-8 bytes are good.
struct Utf8Prefix {
    qsizetype size;  ///< of the longest beginning that is whole valid characters
    bool unfinished; ///< whether what follows is the beginning of a character that the end of the bytes cuts
                     ///< off

    bool operator==(const Utf8Prefix &) const = default;
};

/// Checks UTF-8 without converting it: no overlong form, no surrogate, nothing above U+10FFFF.
[[nodiscard]] Utf8Prefix validUtf8Prefix(QByteArrayView bytes);

/// Turns the bytes of a text into characters, up to the first byte that is not valid. A byte-order mark at
/// the start is dropped.
///
/// The bytes are taken as a whole: cut into pieces, ICU loses count of where a bad sequence began.
class TextDecoder final {
public:
    explicit TextDecoder(TextEncoding encoding);
    ~TextDecoder();

    TextDecoder(const TextDecoder &) = delete;
    TextDecoder &operator=(const TextDecoder &) = delete;

    /// Gives `take` the characters piece by piece, up to the first byte that is not valid; what is wrong with
    /// that, if there is one.
    [[nodiscard]] std::optional<TextFault> decode(QByteArrayView bytes,
                                                  const std::function<void(QStringView)> &take);

private:
    std::unique_ptr<UConverter, void (*)(UConverter *)> m_converter;
    /// What the converter takes and the encoding has not; or null.
    std::unique_ptr<USet, void (*)(USet *)> m_foreign;
    std::vector<char16_t> m_units;
    std::vector<int32_t> m_offsets; ///< of the bytes that the units came from
};

/// Turns characters into the bytes of one text, piece by piece.
class TextEncoder final {
public:
    explicit TextEncoder(TextEncoding encoding);
    ~TextEncoder();

    TextEncoder(const TextEncoder &) = delete;
    TextEncoder &operator=(const TextEncoder &) = delete;

    /// Appends the bytes of `text` to `bytes`; `last` ends the text and writes the closing shift, if one is
    /// due. False if the encoding cannot hold one of the characters, and then nothing may follow.
    [[nodiscard]] bool encode(QStringView text, bool last, QByteArray &bytes);

private:
    std::unique_ptr<UConverter, void (*)(UConverter *)> m_converter;
};

} // namespace brevant
