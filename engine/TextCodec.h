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
};

/// Reads and writes texts in one character set.
class TextCodec final {
public:
    explicit TextCodec(TextEncoding encoding);

    /// Turns the bytes of a text into characters, up to the first byte that is not valid, without a
    /// byte-order mark at the start. Passes them on to `take`, piece by piece; returns the fault that ended
    /// the text, if any. The bytes are needed as a whole, because ICU loses track of where a bad sequence
    /// began in an earlier piece.
    [[nodiscard]] std::optional<TextFault> decode(QByteArrayView bytes,
                                                  const std::function<void(QStringView)> &take);

    /// Appends the encoded `text`, the next piece of one text, to `bytes`; `last` ends the text, with the
    /// closing shift if one is due. False if a character cannot be encoded; nothing may follow then.
    [[nodiscard]] bool encode(QStringView text, bool last, QByteArray &bytes);

private:
    std::unique_ptr<UConverter, void (*)(UConverter *)> m_converter;
    /// The characters that the converter knows and the encoding does not; or null.
    std::unique_ptr<USet, void (*)(USet *)> m_foreign;
    std::vector<char16_t> m_units;
    std::vector<int32_t> m_offsets; ///< of the bytes that the units came from
};

} // namespace brevant
