// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/StyleSheets.h"

#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"
#include "app/preview/TextRoles.h"

#include <algorithm>
#include <cctype>

namespace brevant {

namespace {

constexpr unsigned long firstIndicator = 8; // those before it are the lexers'
constexpr int roleCount = int(TextRole::Special) + 1;

bool sameLetter(char one, char other)
{
    return std::tolower(static_cast<unsigned char>(one)) == std::tolower(static_cast<unsigned char>(other));
}

/// The place of `word` in `text` from `from` on, capitals or not; the end of the text if it is not there.
qsizetype find(QByteArrayView text, QByteArrayView word, qsizetype from)
{
    return std::search(text.begin() + from, text.end(), word.begin(), word.end(), sameLetter) - text.begin();
}

int styleAt(const QsciScintilla &editor, qsizetype position)
{
    return static_cast<int>(
        editor.SendScintilla(QsciScintilla::SCI_GETSTYLEAT, static_cast<unsigned long>(position)));
}

} // namespace

StyleSheets::StyleSheets(QsciScintilla &page) : m_page(page)
{
    for (unsigned long role = 0; role < roleCount; ++role)
        m_page.SendScintilla(QsciScintilla::SCI_INDICSETSTYLE, firstIndicator + role,
                             static_cast<long>(QsciScintilla::INDIC_TEXTFORE));
}

StyleSheets::~StyleSheets() = default;

void StyleSheets::setTheme(const PreviewTheme &theme)
{
    for (int role = 0; role < roleCount; ++role)
        m_page.SendScintilla(QsciScintilla::SCI_INDICSETFORE,
                             firstIndicator + static_cast<unsigned long>(role), theme.color(TextRole(role)));
}

void StyleSheets::colour(QByteArrayView text)
{
    constexpr QByteArrayView tag("<style");
    qsizetype begin = find(text, tag, 0);
    if (begin == text.size())
        return;
    m_page.SendScintilla(QsciScintilla::SCI_COLOURISE, 0UL, -1L);
    while (begin < text.size()) {
        const qsizetype sheet = std::min(find(text, ">", begin) + 1, text.size());
        // Not one in a comment or in a script, nor a tag with a longer name.
        if (styleAt(m_page, begin) != QsciLexerHTML::Tag ||
            styleAt(m_page, begin + tag.size() - 1) != QsciLexerHTML::Tag) {
            begin = find(text, tag, begin + 1);
            continue;
        }
        const qsizetype end = find(text, "</style", sheet);
        colourSheet(text, sheet, end);
        begin = find(text, tag, end);
    }
}

void StyleSheets::colourSheet(QByteArrayView text, qsizetype begin, qsizetype end)
{
    if (!m_sheet) {
        m_sheet = std::make_unique<QsciScintilla>();
        m_sheet->setUtf8(true);
        m_sheet->setLexer(new QsciLexerCSS(m_sheet.get())); // a child of the sheet
    }
    m_sheet->SendScintilla(QsciScintilla::SCI_CLEARALL);
    m_sheet->SendScintilla(QsciScintilla::SCI_APPENDTEXT, static_cast<unsigned long>(end - begin),
                           text.data() + begin);
    m_sheet->SendScintilla(QsciScintilla::SCI_COLOURISE, 0UL, -1L);
    for (qsizetype at = begin; at < end;) {
        const int style = styleAt(*m_sheet, at - begin);
        const int pageStyle = styleAt(m_page, at);
        qsizetype next = at + 1;
        while (next < end && styleAt(*m_sheet, next - begin) == style && styleAt(m_page, next) == pageStyle)
            ++next;
        // What is not plain to the lexer of the page is PHP.
        if (pageStyle == QsciLexerHTML::Default) {
            m_page.SendScintilla(QsciScintilla::SCI_SETINDICATORCURRENT,
                                 firstIndicator + static_cast<unsigned long>(cssRole(style)));
            m_page.SendScintilla(QsciScintilla::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(at),
                                 static_cast<long>(next - at));
        }
        at = next;
    }
}

} // namespace brevant
