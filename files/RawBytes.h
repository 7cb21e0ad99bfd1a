// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// Names that are not valid UTF-8, as texts that lose nothing of them: each byte that is none stands as a
/// code unit of its own from U+DC80 to U+DCFF, which no valid text has. Qt itself knows nothing of this, and
/// would take such a text for another name.
namespace brevant::RawBytes {

/// The text of a name, or a path, that the system gave.
[[nodiscard]] QString decoded(const QByteArray &name);

/// The name again.
[[nodiscard]] QByteArray encoded(const QString &text);

/// Whether a text has such bytes.
[[nodiscard]] bool areIn(const QString &text);

/// The text with such bytes made visible, as "\xE9"; it is no name any more then.
[[nodiscard]] QString escaped(const QString &text);

} // namespace brevant::RawBytes

namespace brevant {

/// Whether a character shows itself and does nothing else: no control character, no end of a line, and none
/// that turns the direction of the text around it.
[[nodiscard]] bool isPrintable(QChar character);

/// `text` with all other characters made visible ("\n", "\x1b", "\u202e"), and its RawBytes ("\xE9"), so that
/// no file name can move the cursor, begin a line or look like another one.
[[nodiscard]] QString printable(const QString &text);

} // namespace brevant
