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

/// The character set of a stored choice, compared exactly. UTF-8 for no choice and for all other names,
/// "iso-8859-1" and "iso-8859-15" among them.
[[nodiscard]] TextEncoding textEncodingNamed(const std::optional<QString> &name);

/// The name of the character set, for messages.
[[nodiscard]] QLatin1StringView nameOf(TextEncoding encoding);

/// Where bytes stop being text.
struct TextFault {
    enum class Kind { Invalid, Truncated };

    qint64 position; ///< of the first byte of the bad sequence, counted from 0
    Kind kind;

    bool operator==(const TextFault &) const = default;
};

/// How far bytes are valid UTF-8.
struct Utf8Prefix {
    qsizetype size;  ///< of the whole, valid characters at the beginning
    bool unfinished; ///< whether all that follows is a character cut off by the end of the bytes

    bool operator==(const Utf8Prefix &) const = default;
};

/// Checks UTF-8 without converting it: no overlong form, no surrogate, nothing above U+10FFFF.
[[nodiscard]] Utf8Prefix validUtf8Prefix(QByteArrayView bytes);

/// Turns the bytes of a text into characters, up to the first byte that is not valid. A byte-order mark at
/// the start is dropped.
///
/// It needs the bytes as a whole, because ICU loses track of where a bad sequence began in an earlier piece.
class TextDecoder final {
public:
    explicit TextDecoder(TextEncoding encoding);

    /// Passes the characters on to `take`, piece by piece; returns the fault that ended the text, if any.
    [[nodiscard]] std::optional<TextFault> decode(QByteArrayView bytes,
                                                  const std::function<void(QStringView)> &take);

private:
    std::unique_ptr<UConverter, void (*)(UConverter *)> m_converter;
    /// The characters that the converter knows and the encoding does not; or null.
    std::unique_ptr<USet, void (*)(USet *)> m_foreign;
    std::vector<char16_t> m_units;
    std::vector<int32_t> m_offsets; ///< of the bytes that the units came from
};

/// Turns characters into the bytes of one text, piece by piece.
class TextEncoder final {
public:
    explicit TextEncoder(TextEncoding encoding);

    /// Appends the encoded `text` to `bytes`; `last` ends the text, with the closing shift if one is due.
    /// False if a character cannot be encoded; nothing may follow then.
    [[nodiscard]] bool encode(QStringView text, bool last, QByteArray &bytes);

private:
    std::unique_ptr<UConverter, void (*)(UConverter *)> m_converter;
};

} // namespace brevant
