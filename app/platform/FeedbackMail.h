// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace brevant {

/// Escapes what no address may hold: blanks, control characters, the characters of "<>#%{}|\^[]` and all that
/// is not ASCII, each byte of its UTF-8 as a percent sign and two hexadecimal digits. The characters with a
/// meaning in addresses, the ampersand and the comma among them, stay.
[[nodiscard]] QByteArray percentEscaped(const QString &text);

/// The address that opens a new mail to `address` with a subject that names both versions.
[[nodiscard]] QUrl feedbackMailUrl(const QString &address, const QString &version,
                                   const QString &systemVersion);

/// Name and version of the running system, and of its kernel.
[[nodiscard]] QString operatingSystemVersionString();

} // namespace brevant
