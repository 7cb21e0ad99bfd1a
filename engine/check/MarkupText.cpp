// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/MarkupText.h"

#include "engine/check/StyleTokens.h"
#include "engine/check/Words.h"

#include <algorithm>
#include <array>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

/// Elements that words do not run across, in the order of their names.
constexpr std::array blocks{
    "address"_L1, "article"_L1,  "aside"_L1,    "blockquote"_L1, "body"_L1,       "br"_L1,     "caption"_L1,
    "center"_L1,  "col"_L1,      "colgroup"_L1, "dd"_L1,         "details"_L1,    "dialog"_L1, "dir"_L1,
    "div"_L1,     "dl"_L1,       "dt"_L1,       "fieldset"_L1,   "figcaption"_L1, "figure"_L1, "footer"_L1,
    "form"_L1,    "frameset"_L1, "h1"_L1,       "h2"_L1,         "h3"_L1,         "h4"_L1,     "h5"_L1,
    "h6"_L1,      "head"_L1,     "header"_L1,   "hgroup"_L1,     "hr"_L1,         "html"_L1,   "legend"_L1,
    "li"_L1,      "link"_L1,     "listing"_L1,  "main"_L1,       "menu"_L1,       "meta"_L1,   "nav"_L1,
    "ol"_L1,      "optgroup"_L1, "option"_L1,   "p"_L1,          "plaintext"_L1,  "pre"_L1,    "search"_L1,
    "section"_L1, "select"_L1,   "summary"_L1,  "table"_L1,      "tbody"_L1,      "td"_L1,     "tfoot"_L1,
    "th"_L1,      "thead"_L1,    "title"_L1,    "tr"_L1,         "ul"_L1,         "xmp"_L1};

/// Elements whose content is no text of the page.
constexpr std::array hidden{"script"_L1,   "style"_L1,  "template"_L1, "textarea"_L1, "title"_L1,
                            "noscript"_L1, "iframe"_L1, "svg"_L1,      "math"_L1,     "audio"_L1,
                            "video"_L1,    "object"_L1, "canvas"_L1};

bool isLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

class Reader final {
public:
    Reader(QStringView page, MarkupText &text) : m_page(page), m_text(text) {}

    void read()
    {
        while (m_at < m_page.size()) {
            const QStringView rest = m_page.sliced(m_at);
            if (rest.startsWith(u"<!--")) {
                skipPast(u"-->", 4);
            } else if (rest.startsWith(u"<?") || rest.startsWith(u"<%")) {
                m_isUncertain = true;
                skipPast(rest[1] == u'?' ? u"?>" : u"%>", 2);
            } else if (rest.startsWith(u"<!")) {
                skipPast(u">", 2);
            } else if (rest.startsWith(u'<') && rest.size() > 1 && (isLetter(rest[1]) || rest[1] == u'/')) {
                readTag();
            } else {
                readCharacter();
            }
        }
    }

private:
    void skipPast(QStringView end, qsizetype from)
    {
        const qsizetype found = m_page.indexOf(end, std::min(m_at + from, m_page.size()));
        m_at = found < 0 ? m_page.size() : found + end.size();
    }

    void readCharacter()
    {
        const QChar character = m_page[m_at];
        if (isWebSpace(character)) {
            m_isApart = true;
        } else {
            m_text.letters.push_back(
                {m_page.data() + m_at, m_isInLink ? m_links : 0, m_isApart, m_isUncertain});
            m_isApart = m_isUncertain = false;
        }
        ++m_at;
    }

    void readTag()
    {
        const bool isEnd = m_page[m_at + 1] == u'/';
        const qsizetype start = m_at + (isEnd ? 2 : 1);
        qsizetype end = start;
        while (end < m_page.size() && !isWebSpace(m_page[end]) && m_page[end] != u'>' && m_page[end] != u'/')
            ++end;
        const QStringView name = m_page.sliced(start, end - start);
        m_at = end;
        skipAttributes();
        if (isOneOf(name, blocks))
            m_isApart = true;
        if (name.compare("a"_L1, Qt::CaseInsensitive) == 0) {
            m_isInLink = !isEnd;
            m_links += isEnd ? 0 : 1;
        }
        if (!isEnd && isOneOf(name, hidden))
            skipContent(name);
    }

    /// Up to the tag's end. In the values of attributes ">" is a character like others, and so it is in code.
    void skipAttributes()
    {
        QChar quote;
        for (; m_at < m_page.size(); ++m_at) {
            const QChar character = m_page[m_at];
            if (character == u'<' && m_at + 1 < m_page.size() && m_page[m_at + 1] == u'?') {
                m_isUncertain = true;
                skipPast(u"?>", 2);
                --m_at;
            } else if (!quote.isNull()) {
                quote = character == quote ? QChar() : quote;
            } else if (character == u'"' || character == u'\'') {
                // Elsewhere than after "=" it is a slip, or stands in a value without quotes.
                quote = isAfterEquals() ? character : QChar();
            } else if (character == u'>') {
                ++m_at;
                return;
            }
        }
    }

    [[nodiscard]] bool isAfterEquals() const
    {
        qsizetype before = m_at - 1;
        constexpr qsizetype farthest = 64;
        while (before > 0 && m_at - before < farthest && isWebSpace(m_page[before]))
            --before;
        return m_page[before] == u'=';
    }

    void skipContent(QStringView name)
    {
        const qsizetype start = m_at;
        qsizetype end = start;
        for (;; end += 2) {
            end = m_page.indexOf(u"</", end);
            if (end < 0 || m_page.sliced(end + 2).startsWith(name, Qt::CaseInsensitive))
                break;
        }
        m_at = end < 0 ? m_page.size() : end;
        if (name.compare("style"_L1, Qt::CaseInsensitive) == 0)
            m_text.styles.push_back(m_page.sliced(start, m_at - start));
    }

    const QStringView m_page;
    MarkupText &m_text;
    qsizetype m_at = 0;
    int m_links = 0;
    bool m_isInLink = false;
    bool m_isApart = true;
    bool m_isUncertain = false;
};

} // namespace

MarkupText::MarkupText(QStringView page)
{
    Reader(page, *this).read();
}

} // namespace brevant
