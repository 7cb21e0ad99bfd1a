// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/SourceText.h"

#include "app/preview/PreviewReader.h"
#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"
#include "app/preview/StyleSheets.h"
#include "app/preview/TextRoles.h"
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

/// `text` without the end of its last line, after which the editor would number one more.
QByteArrayView withoutLastEnd(QByteArrayView text)
{
    if (text.endsWith("\r\n"))
        return text.chopped(2);
    return text.endsWith('\n') || text.endsWith('\r') ? text.chopped(1) : text;
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
      m_javaScript(new QsciLexerJavaScript(this)), m_html(new QsciLexerHTML(this)),
      m_styleSheets(std::make_unique<StyleSheets>(*m_editor))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_editor);
    setUpEditor();
    applyTheme();
}

SourceText::~SourceText() = default;

void SourceText::setUpEditor()
{
    m_editor->setUtf8(true);
    m_editor->setReadOnly(true);
    m_editor->setFrameStyle(QFrame::NoFrame);
    m_editor->setFocusPolicy(Qt::ClickFocus);
    m_editor->setAcceptDrops(false);
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
    const FileKind *const kind = kindOf(path);
    switch (kind ? kind->family : KindFamily::Markup) {
    case KindFamily::StyleSheet:
        return m_css;
    case KindFamily::Script:
        return m_javaScript;
    case KindFamily::Markup:
        return m_html;
    }
    Q_UNREACHABLE();
}

void SourceText::setContent(const PreviewContent &content)
{
    if (content.text == m_text && content.path == m_path)
        return;
    m_text = content.text;
    m_isFolded = !content.folds.empty();
    m_added = content.folds;
    for (const qsizetype mark : content.marks) {
        for (qsizetype byte = 0; byte < leftToRightMark.size(); ++byte)
            m_added.push_back(mark + byte);
    }
    std::ranges::sort(m_added);
    m_path = content.path;
    m_editor->setReadOnly(false);
    m_editor->SendScintilla(QsciScintilla::SCI_CLEARALL);
    // Between the two texts, so that neither is coloured by the lexer of the other.
    if (QsciLexer *lexer = lexerFor(m_path); lexer != m_editor->lexer()) {
        m_editor->setLexer(lexer);
        applyThemeToEditor();
    }
    m_editor->SendScintilla(QsciScintilla::SCI_SETSCROLLWIDTH, 1UL);
    const QByteArrayView lines = withoutLastEnd(m_text);
    m_editor->SendScintilla(QsciScintilla::SCI_APPENDTEXT, static_cast<unsigned long>(lines.size()),
                            lines.data());
    m_editor->setReadOnly(true);
    if (m_editor->lexer() == m_html)
        m_styleSheets->colour(lines);
    fitMargin();
}

void SourceText::fitMargin()
{
    if (m_isFolded) {
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
    m_styleSheets->setTheme(PreviewTheme(palette()));
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
    for (auto added = std::ranges::lower_bound(m_added, begin); added != m_added.end() && *added < end;
         ++added) {
        text += QByteArrayView(m_text).sliced(from, *added - from);
        from = *added + 1;
    }
    text += QByteArrayView(m_text).sliced(from, end - from);
    return QString::fromUtf8(text);
}

QWidget *SourceText::editor() const
{
    return m_editor;
}

} // namespace brevant
