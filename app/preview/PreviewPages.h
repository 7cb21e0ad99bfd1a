// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preview/PreviewReader.h"

namespace brevant {

/// Reads the output of `path` if it is wanted and there is one, else the file itself, or what it was before,
/// in `original`; tells the size of the other too. The content goes by the path of the file. `output` and
/// `original` may be empty.
[[nodiscard]] std::optional<PreviewContent> readPreviewPage(const QString &path, const QString &original,
                                                            const QString &output, bool isOutputWanted,
                                                            const QString &encoding,
                                                            const std::function<bool()> &cancelled);

/// The size of what was read, and what it is compared with the other page if there is one: "3.2 kB, minified
/// 2.0 kB (37.9 % saved)".
[[nodiscard]] QString sizesText(const PreviewContent &content);

} // namespace brevant
