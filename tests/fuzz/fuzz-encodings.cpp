// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The first byte chooses a character set, the others are a text in it. What can be read can be written, and
// then reads the same.
#include "engine/TextCodec.h"
#include "tests/fuzz/Fuzzing.h"

using namespace brevant;
using namespace brevant::test;

namespace {

/// The text up to its end or its first fault, which is left in `fault`.
QString decode(TextEncoding encoding, QByteArrayView bytes, std::optional<TextFault> &fault)
{
    QString text;
    fault = TextCodec(encoding).decode(bytes, [&](QStringView piece) { text.append(piece); });
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    constexpr int encodings = static_cast<int>(TextEncoding::Iso2022Kr) + 1;
    const auto encoding = static_cast<TextEncoding>(*data % encodings);
    const QByteArrayView bytes = bytesOf(data, size).sliced(1);

    std::optional<TextFault> fault;
    const QString text = decode(encoding, bytes, fault);
    require(!fault || (fault->position >= 0 && fault->position <= bytes.size()), "a fault lies in the text");
    if (encoding == TextEncoding::Utf8) {
        require(bytes.isValidUtf8() == !fault, "both checks agree");
        require(!fault || bytes.first(fault->position).isValidUtf8(), "on the place of the fault too");
    }
    if (fault)
        return 0;

    TextCodec encoder(encoding);
    QByteArray written;
    require(encoder.encode(text.left(text.size() / 2), false, written) &&
                encoder.encode(text.mid(text.size() / 2), true, written),
            "what was read can be written");
    // The first character may be the mark of the byte order once more; then it is no text any longer.
    const QString again = decode(encoding, written, fault);
    require(!fault && (again == text || text.startsWith(QChar(QChar::ByteOrderMark))), "and reads the same");
    return 0;
}
