// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// Whether a character shows itself and does nothing else: no control character, no end of a line, and none
/// that turns the direction of the text around it.
[[nodiscard]] bool isPrintable(QChar character);

/// `text` with all other characters made visible ("\n", "\x1b", "\u202e"), and its RawBytes ("\xE9"), so that
/// no file name can move the cursor, begin a line or look like another one.
[[nodiscard]] QString printable(const QString &text);

} // namespace brevant
