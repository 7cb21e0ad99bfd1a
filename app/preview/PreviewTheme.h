// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

namespace brevant {

/// What a piece of source text is, for its colour.
enum class TextRole { Plain, Comment, Keyword, Name, String, Number, Punctuation, Special };

// What the styles of the editor's lexers stand for.
[[nodiscard]] TextRole cssRole(int style);
[[nodiscard]] TextRole javaScriptRole(int style);
[[nodiscard]] TextRole htmlRole(int style); ///< PHP and JavaScript within it included

/// The colours of source text on the ground of a palette.
class PreviewTheme final {
public:
    explicit PreviewTheme(const QPalette &palette);

    [[nodiscard]] QColor paper() const { return m_paper; }

    /// Seven times lighter or darker than the paper where that is possible, else as the palette's own text.
    [[nodiscard]] QColor color(TextRole role) const;

    /// The colour of line numbers.
    [[nodiscard]] QColor quiet() const;

private:
    QColor m_paper;
    QColor m_text;
    double m_quiet; ///< the contrast of line numbers
};

} // namespace brevant
