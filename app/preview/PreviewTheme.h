// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

class QsciLexer;

namespace brevant {

/// What a piece of source text is, for its colour.
enum class TextRole { Plain, Comment, Keyword, Name, String, Number, Punctuation, Special };

/// What a style of the editor's lexer for CSS, JavaScript or HTML stands for; plain text if it is unknown.
[[nodiscard]] TextRole roleOf(const QsciLexer &lexer, int style);

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
