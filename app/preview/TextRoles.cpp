// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/TextRoles.h"

#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"

namespace brevant {

namespace {

using Css = QsciLexerCSS;
using Cpp = QsciLexerCPP;
using Html = QsciLexerHTML;

/// The markup itself; the languages within follow below.
TextRole markupRole(int style)
{
    switch (style) {
    case Html::Tag:
    case Html::UnknownTag:
    case Html::XMLTagEnd:
    case Html::Script:
        return TextRole::Keyword;
    case Html::Attribute:
    case Html::UnknownAttribute:
    case Html::OtherInTag:
        return TextRole::Name;
    case Html::HTMLDoubleQuotedString:
    case Html::HTMLSingleQuotedString:
    case Html::HTMLValue:
    case Html::SGMLDoubleQuotedString:
    case Html::SGMLSingleQuotedString:
        return TextRole::String;
    case Html::HTMLNumber:
        return TextRole::Number;
    case Html::HTMLComment:
    case Html::ASPXCComment:
    case Html::SGMLComment:
        return TextRole::Comment;
    case Html::Entity:
    case Html::XMLStart:
    case Html::XMLEnd:
    case Html::PHPStart:
    case Html::CDATA:
    case Html::SGMLDefault:
    case Html::SGMLCommand:
    case Html::SGMLParameter:
        return TextRole::Special;
    default:
        return TextRole::Plain;
    }
}

} // namespace

TextRole cssRole(int style)
{
    switch (style) {
    case Css::Comment:
        return TextRole::Comment;
    case Css::Tag:
    case Css::ClassSelector:
    case Css::IDSelector:
    case Css::Attribute:
        return TextRole::Keyword;
    case Css::CSS1Property:
    case Css::CSS2Property:
    case Css::CSS3Property:
    case Css::ExtendedCSSProperty:
    case Css::UnknownProperty:
    case Css::Variable:
        return TextRole::Name;
    case Css::Value:
    case Css::DoubleQuotedString:
    case Css::SingleQuotedString:
        return TextRole::String;
    case Css::AtRule:
    case Css::MediaRule:
    case Css::Important:
        return TextRole::Special;
    case Css::PseudoClass:
    case Css::UnknownPseudoClass:
    case Css::PseudoElement:
    case Css::ExtendedPseudoClass:
    case Css::ExtendedPseudoElement:
        return TextRole::Number;
    case Css::Operator:
        return TextRole::Punctuation;
    default:
        return TextRole::Plain;
    }
}

TextRole javaScriptRole(int style)
{
    switch (style) {
    case Cpp::Comment:
    case Cpp::CommentLine:
    case Cpp::CommentDoc:
    case Cpp::CommentLineDoc:
    case Cpp::CommentDocKeyword:
    case Cpp::CommentDocKeywordError:
    case Cpp::TaskMarker:
        return TextRole::Comment;
    case Cpp::Keyword:
    case Cpp::KeywordSet2:
        return TextRole::Keyword;
    case Cpp::GlobalClass:
        return TextRole::Name;
    case Cpp::DoubleQuotedString:
    case Cpp::SingleQuotedString:
    case Cpp::UnclosedString:
    case Cpp::RawString:
    case Cpp::TripleQuotedVerbatimString:
        return TextRole::String;
    case Cpp::Number:
        return TextRole::Number;
    case Cpp::Regex:
    case Cpp::EscapeSequence:
    case Cpp::PreProcessor:
        return TextRole::Special;
    case Cpp::Operator:
        return TextRole::Punctuation;
    default:
        return TextRole::Plain;
    }
}

TextRole htmlRole(int style)
{
    switch (style) {
    case Html::JavaScriptComment:
    case Html::JavaScriptCommentLine:
    case Html::JavaScriptCommentDoc:
    case Html::PHPComment:
    case Html::PHPCommentLine:
        return TextRole::Comment;
    case Html::JavaScriptKeyword:
    case Html::PHPKeyword:
        return TextRole::Keyword;
    case Html::PHPVariable:
    case Html::PHPDoubleQuotedVariable:
        return TextRole::Name;
    case Html::JavaScriptDoubleQuotedString:
    case Html::JavaScriptSingleQuotedString:
    case Html::JavaScriptUnclosedString:
    case Html::PHPDoubleQuotedString:
    case Html::PHPSingleQuotedString:
        return TextRole::String;
    case Html::JavaScriptNumber:
    case Html::PHPNumber:
        return TextRole::Number;
    case Html::JavaScriptRegex:
        return TextRole::Special;
    case Html::JavaScriptSymbol:
    case Html::PHPOperator:
        return TextRole::Punctuation;
    default:
        return markupRole(style);
    }
}

} // namespace brevant
