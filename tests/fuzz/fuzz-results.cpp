// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The source of a file and what a compressor made of it, with a zero byte between them. Whatever they are, a
// text has lost nothing that is compared with itself, and warnings name lines of the source.
#include "engine/check/ResultCheck.h"
#include "engine/check/StyleSheet.h"
#include "tests/fuzz/Fuzzing.h"

using namespace brevant;
using namespace brevant::test;

namespace {

void requireSound(QStringView text, const StyleSheet &sheet)
{
    const auto isInText = [&](QStringView part) {
        return part.isEmpty() || (part.begin() >= text.begin() && part.end() <= text.end());
    };
    int number = 0;
    for (const StyleSheet::Block &block : sheet.blocks())
        require(block.parent < number++ && isInText(StyleSheet::textOf(block.prelude)),
                "blocks lie in each other");
    for (const StyleSheet::Declaration &declaration : sheet.declarations())
        require(declaration.block >= 0 && declaration.block < number && isInText(declaration.property) &&
                    isInText(StyleSheet::textOf(declaration.value)),
                "declarations lie in blocks");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView bytes = bytesOf(data, size);
    const qsizetype zero = bytes.indexOf('\0');
    const QString source = QString::fromUtf8(zero < 0 ? bytes : bytes.first(zero));
    const QString result = QString::fromUtf8(zero < 0 ? QByteArrayView() : bytes.sliced(zero + 1));
    requireSound(source, StyleSheet(source));
    for (const KindFamily family : {KindFamily::StyleSheet, KindFamily::Script, KindFamily::Markup}) {
        for (const ResultWarning &warning : checkResult(family, source, result))
            require(warning.line >= 0 && warning.line <= source.count(u'\n') + source.count(u'\r') + 1,
                    "a warning names a line");
        for (const ResultWarning &warning : checkResult(family, source, source))
            require(warning.kind == ResultWarning::Kind::NotSmaller, "nothing is lost");
    }
    return 0;
}
