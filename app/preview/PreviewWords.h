// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

struct PreviewContent;

/// What is said instead of text: one plain sentence. Empty if there is text.
[[nodiscard]] QString previewSentence(const PreviewContent &content);

/// What must be known of the text that is shown, if anything: that it ends early, or differs from the file.
[[nodiscard]] QString previewNotice(const PreviewContent &content);

/// Size, lines, encoding and date of the file, as far as there are any.
[[nodiscard]] QString previewFooter(const PreviewContent &content);

} // namespace brevant
