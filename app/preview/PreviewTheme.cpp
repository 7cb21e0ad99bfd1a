// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewTheme.h"

#include "app/preview/QScintilla.h"
#include "widgets/Contrast.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>

namespace brevant {

namespace {

using Css = QsciLexerCSS;
using Cpp = QsciLexerCPP;
using Html = QsciLexerHTML;

struct Tint {
    QRgb onLight;
    QRgb onDark;
};

// In the order of TextRole; the first is the palette's text.
constexpr std::array<Tint, 8> tints{{
    {0xFF000000, 0xFFFFFFFF},
    {0xFF3F5A45, 0xFF9CB89F},
    {0xFF7A1F8A, 0xFFDDA6F0},
    {0xFF0B4F8A, 0xFF8CC8FF},
    {0xFF8A2A0B, 0xFFF2B48C},
    {0xFF00585C, 0xFF7FD8CE},
    {0xFF4A4A4A, 0xFFC4C4C4},
    {0xFF7A4100, 0xFFEBCB7A},
}};

/// The styles of one lexer that stand for one role.
struct RoleRow {
    std::string_view language; ///< of the lexer
    TextRole role;
    std::initializer_list<int> styles;
};

constexpr std::string_view css("CSS");
constexpr std::string_view javaScript("JavaScript");
constexpr std::string_view html("HTML"); // with the PHP and the JavaScript within it

constexpr RoleRow roleRows[]{
    {css, TextRole::Comment, {Css::Comment}},
    {css, TextRole::Keyword, {Css::Tag, Css::ClassSelector, Css::IDSelector, Css::Attribute}},
    {css,
     TextRole::Name,
     {Css::CSS1Property, Css::CSS2Property, Css::CSS3Property, Css::ExtendedCSSProperty, Css::UnknownProperty,
      Css::Variable}},
    {css, TextRole::String, {Css::Value, Css::DoubleQuotedString, Css::SingleQuotedString}},
    {css, TextRole::Special, {Css::AtRule, Css::MediaRule, Css::Important}},
    {css,
     TextRole::Number,
     {Css::PseudoClass, Css::UnknownPseudoClass, Css::PseudoElement, Css::ExtendedPseudoClass,
      Css::ExtendedPseudoElement}},
    {css, TextRole::Punctuation, {Css::Operator}},
    {javaScript,
     TextRole::Comment,
     {Cpp::Comment, Cpp::CommentLine, Cpp::CommentDoc, Cpp::CommentLineDoc, Cpp::CommentDocKeyword,
      Cpp::CommentDocKeywordError, Cpp::TaskMarker}},
    {javaScript, TextRole::Keyword, {Cpp::Keyword, Cpp::KeywordSet2}},
    {javaScript, TextRole::Name, {Cpp::GlobalClass}},
    {javaScript,
     TextRole::String,
     {Cpp::DoubleQuotedString, Cpp::SingleQuotedString, Cpp::UnclosedString, Cpp::RawString,
      Cpp::TripleQuotedVerbatimString}},
    {javaScript, TextRole::Number, {Cpp::Number}},
    {javaScript, TextRole::Special, {Cpp::Regex, Cpp::EscapeSequence, Cpp::PreProcessor}},
    {javaScript, TextRole::Punctuation, {Cpp::Operator}},
    {html,
     TextRole::Comment,
     {Html::HTMLComment, Html::ASPXCComment, Html::SGMLComment, Html::JavaScriptComment,
      Html::JavaScriptCommentLine, Html::JavaScriptCommentDoc, Html::PHPComment, Html::PHPCommentLine}},
    {html,
     TextRole::Keyword,
     {Html::Tag, Html::UnknownTag, Html::XMLTagEnd, Html::Script, Html::JavaScriptKeyword, Html::PHPKeyword}},
    {html,
     TextRole::Name,
     {Html::Attribute, Html::UnknownAttribute, Html::OtherInTag, Html::PHPVariable,
      Html::PHPDoubleQuotedVariable}},
    {html,
     TextRole::String,
     {Html::HTMLDoubleQuotedString, Html::HTMLSingleQuotedString, Html::HTMLValue,
      Html::SGMLDoubleQuotedString, Html::SGMLSingleQuotedString, Html::JavaScriptDoubleQuotedString,
      Html::JavaScriptSingleQuotedString, Html::JavaScriptUnclosedString, Html::PHPDoubleQuotedString,
      Html::PHPSingleQuotedString}},
    {html, TextRole::Number, {Html::HTMLNumber, Html::JavaScriptNumber, Html::PHPNumber}},
    {html,
     TextRole::Special,
     {Html::Entity, Html::XMLStart, Html::XMLEnd, Html::PHPStart, Html::CDATA, Html::SGMLDefault,
      Html::SGMLCommand, Html::SGMLParameter, Html::JavaScriptRegex}},
    {html, TextRole::Punctuation, {Html::JavaScriptSymbol, Html::PHPOperator}},
};

} // namespace

TextRole roleOf(const QsciLexer &lexer, int style)
{
    const auto *const row = std::ranges::find_if(roleRows, [&](const RoleRow &candidate) {
        return candidate.language == lexer.language() &&
               std::ranges::find(candidate.styles, style) != candidate.styles.end();
    });
    return row == std::end(roleRows) ? TextRole::Plain : row->role;
}

PreviewTheme::PreviewTheme(const QPalette &palette)
    : m_paper(palette.color(QPalette::Active, QPalette::Base)),
      m_text(palette.color(QPalette::Active, QPalette::Text)),
      m_quiet(isHighContrast(palette) ? highContrast : readableContrast)
{
}

QColor PreviewTheme::color(TextRole role) const
{
    if (role == TextRole::Plain)
        return m_text;
    const Tint &tint = tints[static_cast<std::size_t>(role)];
    const bool isDark = contrast(m_paper, Qt::black) < contrast(m_text, Qt::black);
    return readableOn(m_paper, m_text, QColor(isDark ? tint.onDark : tint.onLight), highContrast);
}

QColor PreviewTheme::quiet() const
{
    return readableOn(m_paper, m_text, mixed(m_paper, m_text, 0.5), m_quiet);
}

} // namespace brevant
