// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/SourceText.h"

#include "app/preview/PreviewReader.h"
#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"
#include "queue/FileKind.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QVBoxLayout>

#include <algorithm>

namespace brevant {

namespace {

constexpr int styleCount = 128;

using Css = QsciLexerCSS;
using Cpp = QsciLexerCPP;
using Html = QsciLexerHTML;

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

QFont codeFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const QString &family : {QStringLiteral("Menlo"), QStringLiteral("DejaVu Sans Mono")}) {
        if (QFontDatabase::hasFamily(family)) {
            font.setFamily(family);
            break;
        }
    }
    font.setPointSizeF(QFontInfo(QApplication::font()).pointSizeF());
    return font;
}

} // namespace

SourceText::SourceText(QWidget *parent)
    : QWidget(parent), m_editor(new QsciScintilla(this)), m_css(new QsciLexerCSS(this)),
      m_javaScript(new QsciLexerJavaScript(this)), m_html(new QsciLexerHTML(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_editor);
    setUpEditor();
    applyTheme();
}

void SourceText::setUpEditor()
{
    m_editor->setUtf8(true);
    m_editor->setReadOnly(true);
    m_editor->setFrameStyle(QFrame::NoFrame);
    m_editor->setFocusPolicy(Qt::ClickFocus);
    m_editor->setAcceptDrops(false);
    m_editor->setContextMenuPolicy(Qt::NoContextMenu);
    m_editor->setCaretWidth(0);
    m_editor->setTabWidth(4);
    m_editor->setMarginType(0, QsciScintilla::NumberMargin);
    m_editor->setMarginWidth(1, 0);
    m_editor->setExtraAscent(1);
    m_editor->setExtraDescent(1);
    m_editor->SendScintilla(QsciScintilla::SCI_SETUNDOCOLLECTION, 0UL);
    m_editor->SendScintilla(QsciScintilla::SCI_SETSCROLLWIDTHTRACKING, 1UL);
    m_editor->SendScintilla(QsciScintilla::SCI_SETPOSITIONCACHE, 16384UL);
    m_editor->SendScintilla(QsciScintilla::SCI_SETMARGINLEFT, 0UL, 4L);
    m_editor->SendScintilla(QsciScintilla::SCI_SETLAYOUTCACHE,
                            static_cast<unsigned long>(QsciScintilla::SC_CACHE_PAGE));
    setFocusProxy(m_editor);
}

QsciLexer *SourceText::lexerFor(QStringView path) const
{
    // Text without a lexer is painted ten times more slowly, so there is always one.
    switch (kindOf(path).value_or(FileKind::Html)) {
    case FileKind::Css:
        return m_css;
    case FileKind::Js:
        return m_javaScript;
    case FileKind::Html:
    case FileKind::Phtml:
    case FileKind::Php:
        break;
    }
    return m_html;
}

void SourceText::setContent(const PreviewContent &content)
{
    if (content.text == m_text && content.path == m_path)
        return;
    m_text = content.text;
    m_folds = content.folds;
    m_path = content.path;
    m_editor->setReadOnly(false);
    m_editor->SendScintilla(QsciScintilla::SCI_CLEARALL);
    // Between the two texts, so that neither is coloured by the lexer of the other.
    if (QsciLexer *lexer = lexerFor(m_path); lexer != m_editor->lexer()) {
        m_editor->setLexer(lexer);
        applyThemeToEditor();
    }
    m_editor->SendScintilla(QsciScintilla::SCI_SETSCROLLWIDTH, 1UL);
    m_editor->SendScintilla(QsciScintilla::SCI_APPENDTEXT, static_cast<unsigned long>(m_text.size()),
                            m_text.constData());
    m_editor->setReadOnly(true);
    fitMargin();
}

void SourceText::fitMargin()
{
    if (!m_folds.empty()) {
        // The numbers would not be those of the file.
        m_editor->setMarginWidth(0, 0);
        return;
    }
    const int digits = std::max(2, static_cast<int>(QString::number(m_editor->lines()).size()));
    m_editor->setMarginWidth(0, QString(digits + 1, QLatin1Char('0')));
}

void SourceText::applyTheme()
{
    applyThemeTo(*m_css, cssRole);
    applyThemeTo(*m_javaScript, javaScriptRole);
    applyThemeTo(*m_html, htmlRole);
    applyThemeToEditor();
}

void SourceText::applyThemeTo(QsciLexer &lexer, TextRole (*roleOf)(int)) const
{
    const PreviewTheme theme(palette());
    lexer.setDefaultColor(theme.color(TextRole::Plain));
    lexer.setDefaultPaper(theme.paper());
    lexer.setFont(codeFont(), -1);
    lexer.setPaper(theme.paper(), -1);
    for (int style = 0; style < styleCount; ++style) {
        if (!lexer.description(style).isEmpty()) {
            lexer.setColor(theme.color(roleOf(style)), style);
            lexer.setEolFill(false, style);
        }
    }
}

void SourceText::applyThemeToEditor()
{
    const PreviewTheme theme(palette());
    m_editor->setPaper(theme.paper());
    m_editor->setColor(theme.color(TextRole::Plain));
    m_editor->setSelectionBackgroundColor(palette().color(QPalette::Active, QPalette::Highlight));
    m_editor->setSelectionForegroundColor(palette().color(QPalette::Active, QPalette::HighlightedText));
    m_editor->setMarginsFont(codeFont());
    m_editor->setMarginsBackgroundColor(theme.paper());
    m_editor->setMarginsForegroundColor(theme.quiet());
    fitMargin();
}

void SourceText::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange)
        applyTheme();
}

QString SourceText::shownText() const
{
    return m_editor->text();
}

QString SourceText::selectedText() const
{
    const auto begin = static_cast<qsizetype>(m_editor->SendScintilla(QsciScintilla::SCI_GETSELECTIONSTART));
    const auto end = static_cast<qsizetype>(m_editor->SendScintilla(QsciScintilla::SCI_GETSELECTIONEND));
    QByteArray text;
    qsizetype from = begin;
    for (auto fold = std::ranges::lower_bound(m_folds, begin); fold != m_folds.end() && *fold < end; ++fold) {
        text += QByteArrayView(m_text).sliced(from, *fold - from);
        from = *fold + 1;
    }
    text += QByteArrayView(m_text).sliced(from, end - from);
    return QString::fromUtf8(text);
}

QWidget *SourceText::editor() const
{
    return m_editor;
}

} // namespace brevant
