// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewTheme.h"

#include "app/preview/QScintilla.h"
#include "widgets/Contrast.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

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

/// The styles of a lexer that stand for one role.
struct RoleRow {
    TextRole role;
    std::vector<int> styles;
};

/// A style in no row is plain text.
TextRole roleIn(std::span<const RoleRow> rows, int style)
{
    const auto row = std::ranges::find_if(rows, [style](const RoleRow &candidate) {
        return std::ranges::find(candidate.styles, style) != candidate.styles.end();
    });
    return row == rows.end() ? TextRole::Plain : row->role;
}

} // namespace

TextRole cssRole(int style)
{
    static const std::array rows{
        RoleRow{TextRole::Comment, {Css::Comment}},
        RoleRow{TextRole::Keyword, {Css::Tag, Css::ClassSelector, Css::IDSelector, Css::Attribute}},
        RoleRow{TextRole::Name,
                {Css::CSS1Property, Css::CSS2Property, Css::CSS3Property, Css::ExtendedCSSProperty,
                 Css::UnknownProperty, Css::Variable}},
        RoleRow{TextRole::String, {Css::Value, Css::DoubleQuotedString, Css::SingleQuotedString}},
        RoleRow{TextRole::Special, {Css::AtRule, Css::MediaRule, Css::Important}},
        RoleRow{TextRole::Number,
                {Css::PseudoClass, Css::UnknownPseudoClass, Css::PseudoElement, Css::ExtendedPseudoClass,
                 Css::ExtendedPseudoElement}},
        RoleRow{TextRole::Punctuation, {Css::Operator}},
    };
    return roleIn(rows, style);
}

TextRole javaScriptRole(int style)
{
    static const std::array rows{
        RoleRow{TextRole::Comment,
                {Cpp::Comment, Cpp::CommentLine, Cpp::CommentDoc, Cpp::CommentLineDoc, Cpp::CommentDocKeyword,
                 Cpp::CommentDocKeywordError, Cpp::TaskMarker}},
        RoleRow{TextRole::Keyword, {Cpp::Keyword, Cpp::KeywordSet2}},
        RoleRow{TextRole::Name, {Cpp::GlobalClass}},
        RoleRow{TextRole::String,
                {Cpp::DoubleQuotedString, Cpp::SingleQuotedString, Cpp::UnclosedString, Cpp::RawString,
                 Cpp::TripleQuotedVerbatimString}},
        RoleRow{TextRole::Number, {Cpp::Number}},
        RoleRow{TextRole::Special, {Cpp::Regex, Cpp::EscapeSequence, Cpp::PreProcessor}},
        RoleRow{TextRole::Punctuation, {Cpp::Operator}},
    };
    return roleIn(rows, style);
}

TextRole htmlRole(int style)
{
    static const std::array rows{
        RoleRow{TextRole::Comment,
                {Html::HTMLComment, Html::ASPXCComment, Html::SGMLComment, Html::JavaScriptComment,
                 Html::JavaScriptCommentLine, Html::JavaScriptCommentDoc, Html::PHPComment,
                 Html::PHPCommentLine}},
        RoleRow{TextRole::Keyword,
                {Html::Tag, Html::UnknownTag, Html::XMLTagEnd, Html::Script, Html::JavaScriptKeyword,
                 Html::PHPKeyword}},
        RoleRow{TextRole::Name,
                {Html::Attribute, Html::UnknownAttribute, Html::OtherInTag, Html::PHPVariable,
                 Html::PHPDoubleQuotedVariable}},
        RoleRow{TextRole::String,
                {Html::HTMLDoubleQuotedString, Html::HTMLSingleQuotedString, Html::HTMLValue,
                 Html::SGMLDoubleQuotedString, Html::SGMLSingleQuotedString,
                 Html::JavaScriptDoubleQuotedString, Html::JavaScriptSingleQuotedString,
                 Html::JavaScriptUnclosedString, Html::PHPDoubleQuotedString, Html::PHPSingleQuotedString}},
        RoleRow{TextRole::Number, {Html::HTMLNumber, Html::JavaScriptNumber, Html::PHPNumber}},
        RoleRow{TextRole::Special,
                {Html::Entity, Html::XMLStart, Html::XMLEnd, Html::PHPStart, Html::CDATA, Html::SGMLDefault,
                 Html::SGMLCommand, Html::SGMLParameter, Html::JavaScriptRegex}},
        RoleRow{TextRole::Punctuation, {Html::JavaScriptSymbol, Html::PHPOperator}},
    };
    return roleIn(rows, style);
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
