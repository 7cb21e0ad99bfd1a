// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// Whether a source holds nothing but comments and white space, as its kind has them, so that nothing is left
/// of it when it is minified. Never so for JavaScript, of which the compressor makes an error, nor for what
/// is no file or cannot be read.
[[nodiscard]] bool isBlankSource(const QString &source);

} // namespace brevant
