// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

#include <memory>

class QsciScintilla;

namespace brevant {

class PreviewTheme;

/// Colours the style sheets within a page as CSS, which the lexer of the page takes for plain text.
class StyleSheets final {
public:
    /// `page` is the editor that shows the page; it must outlive this.
    explicit StyleSheets(QsciScintilla &page);
    ~StyleSheets();

    /// `text` is what the editor shows now.
    void colour(QByteArrayView text);

    void setTheme(const PreviewTheme &theme);

private:
    void colourSheet(QByteArrayView text, qsizetype begin, qsizetype end);

    QsciScintilla &m_page;
    std::unique_ptr<QsciScintilla>
        m_sheet; ///< never shown: it tells what is what; null until there is a sheet
};

} // namespace brevant
