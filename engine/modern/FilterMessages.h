// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <vector>

namespace brevant {

/// One thing that a compressor has said about a source.
struct CompressorMessage {
    enum class Kind { Error, Warning, Information };

    Kind kind = Kind::Error;
    QString text;
    qint64 line = 0;   ///< in the source, from 1; 0 if it is about no place
    qint64 column = 0; ///< in characters, from 1; 0 if it is about the whole line

    /// "line 3, column 5: Unexpected ";"", "line 3: declaration lost".
    [[nodiscard]] QString inWords() const;

    bool operator==(const CompressorMessage &) const = default;
};

/// More messages about one source are only counted.
constexpr std::size_t mostShownMessages = 20;

/// What it has said about one source.
struct CompressorMessages {
    std::vector<CompressorMessage> shown;
    int more = 0; ///< that were said, or left unsaid, after those

    /// The first error, or else the first message, and how many more there are; empty if there is none.
    [[nodiscard]] QString inWords() const;
};

/// `text` from its line with that number, from 1, on, as ECMA-262 divides lines; empty behind its end.
[[nodiscard]] QStringView lineOf(QStringView text, qint64 number);

/// How many lines that are, at least 1.
[[nodiscard]] qint64 lineCount(QStringView text);

/// Reads what esbuild 0.28.2 prints at --log-level=warning about UTF-8 `source`.
[[nodiscard]] CompressorMessages esbuildMessages(const QByteArray &messages, const QByteArray &source);

/// Reads what brevant-markup prints.
[[nodiscard]] CompressorMessages markupMessages(const QByteArray &messages);

} // namespace brevant
