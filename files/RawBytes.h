// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// Lossless texts of names that are not valid UTF-8: each invalid byte becomes a lone surrogate from U+DC80
/// to U+DCFF, which no valid text contains. Qt does not know this convention, and would open another file.
namespace brevant::RawBytes {

/// The text of a name or path from the system.
[[nodiscard]] QString decoded(const QByteArray &name);

/// The name of such a text.
[[nodiscard]] QByteArray encoded(const QString &text);

/// Whether a text contains such bytes.
[[nodiscard]] bool areIn(const QString &text);

/// The text with such bytes written as "\xE9", for display only.
[[nodiscard]] QString escaped(const QString &text);

} // namespace brevant::RawBytes

namespace brevant {

/// Whether a character is safe to show: no control character, no line end, nothing that changes the direction
/// of the text around it.
[[nodiscard]] bool isPrintable(QChar character);

/// `text` with all other characters ("\n", "\x1b", "\u202e") and its RawBytes ("\xE9") escaped, so that no
/// file name can move the cursor, begin a line or look like another one.
[[nodiscard]] QString printable(const QString &text);

} // namespace brevant
