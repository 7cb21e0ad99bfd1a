// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/TextCodec.h"

#include <QString>

#include <functional>
#include <optional>

namespace brevant {

class EntrySettings;

/// A line of a source, or what is around a place in a long one, safe to be shown.
struct SourceLine {
    QString before; ///< up to that place
    QString after;  ///< from there on

    [[nodiscard]] QString text() const { return before + after; }
};

/// The character set of a source.
using EncodingOf = std::function<TextEncoding(const QString &source)>;
[[nodiscard]] EncodingOf encodingsBy(const EntrySettings &settings);

/// The line with a place that a compressor has named, with the columns from 1, or 0 for none. Nothing if
/// there is no such line any more, or none that says anything.
[[nodiscard]] std::optional<SourceLine> sourceLineAt(const QString &path, qint64 line, qint64 column,
                                                     TextEncoding encoding);

} // namespace brevant
