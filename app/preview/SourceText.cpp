// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/SourceText.h"

#include "app/preview/PreviewReader.h"
#include "app/preview/PreviewTheme.h"
#include "app/preview/QScintilla.h"
#include "files/PathString.h"
#include "queue/FileKind.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMenu>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cctype>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Sci = QsciScintilla;

constexpr int styleCount = 128;
constexpr qsizetype firstIndicator = 8; // those before it are the lexers'
constexpr int roleCount = int(TextRole::Special) + 1;

qsizetype send(const Sci &editor, unsigned int message, qsizetype first = 0, qsizetype second = 0)
{
    return editor.SendScintilla(message, static_cast<unsigned long>(first), static_cast<long>(second));
}

void append(const Sci &editor, QByteArrayView text)
{
    editor.SendScintilla(Sci::SCI_APPENDTEXT, static_cast<unsigned long>(text.size()), text.data());
}

int styleAt(const Sci &editor, qsizetype position)
{
    return static_cast<int>(send(editor, Sci::SCI_GETSTYLEAT, position));
}

/// `text` without the end of its last line, after which the editor would number one more.
QByteArrayView withoutLastEnd(QByteArrayView text)
{
    if (text.endsWith("\r\n"))
        return text.chopped(2);
    return text.endsWith('\n') || text.endsWith('\r') ? text.chopped(1) : text;
}

/// The offsets of the bytes in the text that are not in the file, ascending.
std::vector<qsizetype> bytesAdded(const PreviewContent &content)
{
    std::vector<qsizetype> added = content.folds;
    for (const qsizetype mark : content.marks) {
        for (qsizetype byte = 0; byte < leftToRightMark.size(); ++byte)
            added.push_back(mark + byte);
    }
    std::ranges::sort(added);
    return added;
}

QFont codeFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const QString &family : {u"DejaVu Sans Mono"_s, u"Menlo"_s}) {
        if (QFontDatabase::hasFamily(family))
            font.setFamily(family); // the last one found
    }
    font.setPointSizeF(QFontInfo(QApplication::font()).pointSizeF());
    return font;
}

bool sameLetter(char one, char other)
{
    return std::tolower(static_cast<unsigned char>(one)) == std::tolower(static_cast<unsigned char>(other));
}

/// The place of `word` in `text` from `from` on, capitals or not; the end of the text if it is not there.
qsizetype find(QByteArrayView text, QByteArrayView word, qsizetype from)
{
    return std::search(text.begin() + from, text.end(), word.begin(), word.end(), sameLetter) - text.begin();
}

} // namespace

/// Colours the style sheets within a page as CSS, which the lexer of the page takes for plain text.
class StyleSheets final {
public:
    explicit StyleSheets(Sci &page) : m_page(page)
    {
        for (int role = 0; role < roleCount; ++role)
            send(m_page, Sci::SCI_INDICSETSTYLE, firstIndicator + role, Sci::INDIC_TEXTFORE);
    }

    void setTheme(const PreviewTheme &theme)
    {
        for (int role = 0; role < roleCount; ++role)
            m_page.SendScintilla(Sci::SCI_INDICSETFORE, static_cast<unsigned long>(firstIndicator + role),
                                 theme.color(TextRole(role)));
    }

    /// `text` is what the editor shows now.
    void colour(QByteArrayView text)
    {
        constexpr QByteArrayView tag("<style");
        qsizetype begin = find(text, tag, 0);
        if (begin == text.size())
            return;
        send(m_page, Sci::SCI_COLOURISE, 0, -1);
        while (begin < text.size()) {
            qsizetype end = begin + 1;
            // Not one in a comment or in a script, nor a tag with a longer name.
            if (styleAt(m_page, begin) == QsciLexerHTML::Tag &&
                styleAt(m_page, begin + tag.size() - 1) == QsciLexerHTML::Tag) {
                const qsizetype sheet = std::min(find(text, ">", begin) + 1, text.size());
                end = find(text, "</style", sheet);
                colourSheet(text, sheet, end);
            }
            begin = find(text, tag, end);
        }
    }

private:
    void colourSheet(QByteArrayView text, qsizetype begin, qsizetype end)
    {
        if (!m_sheet) {
            m_sheet = std::make_unique<QsciScintilla>();
            m_sheet->setUtf8(true);
            m_sheet->setLexer(new QsciLexerCSS(m_sheet.get())); // a child of the sheet
        }
        send(*m_sheet, Sci::SCI_CLEARALL);
        append(*m_sheet, text.sliced(begin, end - begin));
        send(*m_sheet, Sci::SCI_COLOURISE, 0, -1);
        for (qsizetype at = begin; at < end;) {
            const int style = styleAt(*m_sheet, at - begin);
            const int pageStyle = styleAt(m_page, at);
            qsizetype next = at + 1;
            while (next < end && styleAt(*m_sheet, next - begin) == style &&
                   styleAt(m_page, next) == pageStyle)
                ++next;
            // What is not plain to the lexer of the page is PHP.
            if (pageStyle == QsciLexerHTML::Default) {
                const TextRole role = roleOf(*m_sheet->lexer(), style);
                send(m_page, Sci::SCI_SETINDICATORCURRENT, firstIndicator + qsizetype(role));
                send(m_page, Sci::SCI_INDICATORFILLRANGE, at, next - at);
            }
            at = next;
        }
    }

    Sci &m_page;
    std::unique_ptr<Sci> m_sheet; ///< never shown, only asked for styles; null until there is a sheet
};

SourceText::SourceText(QWidget *parent)
    : PreviewText(parent), m_editor(new QsciScintilla(this)), m_css(new QsciLexerCSS(this)),
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
    send(*m_editor, Sci::SCI_SETUNDOCOLLECTION, 0);
    send(*m_editor, Sci::SCI_SETSCROLLWIDTHTRACKING, 1);
    send(*m_editor, Sci::SCI_SETPOSITIONCACHE, 16384);
    send(*m_editor, Sci::SCI_SETMARGINLEFT, 0, 4);
    send(*m_editor, Sci::SCI_SETLAYOUTCACHE, Sci::SC_CACHE_PAGE);
    m_editor->setObjectName(u"previewText"_s);
    setFocusProxy(m_editor);
    m_editor->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_editor, &QWidget::customContextMenuRequested, this, &SourceText::showMenu);
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
    m_added = bytesAdded(content);
    m_path = content.path;
    m_editor->setAccessibleName(tr("Text of %1").arg(PathString::lastComponent(m_path)));
    m_editor->setReadOnly(false);
    send(*m_editor, Sci::SCI_CLEARALL);
    // Between the two texts, so that neither is coloured by the lexer of the other.
    if (QsciLexer *lexer = lexerFor(m_path); lexer != m_editor->lexer()) {
        m_editor->setLexer(lexer);
        applyThemeToEditor();
    }
    send(*m_editor, Sci::SCI_SETSCROLLWIDTH, 1);
    const QByteArrayView lines = withoutLastEnd(m_text);
    append(*m_editor, lines);
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
    m_editor->setMarginWidth(0, QString(digits + 1, u'0'));
}

void SourceText::applyTheme()
{
    const PreviewTheme theme(palette());
    for (QsciLexer *const lexer : {m_css, m_javaScript, m_html}) {
        lexer->setDefaultColor(theme.color(TextRole::Plain));
        lexer->setDefaultPaper(theme.paper());
        lexer->setFont(codeFont(), -1);
        lexer->setPaper(theme.paper(), -1);
        for (int style = 0; style < styleCount; ++style) {
            if (!lexer->description(style).isEmpty()) {
                lexer->setColor(theme.color(roleOf(*lexer, style)), style);
                lexer->setEolFill(false, style);
            }
        }
    }
    m_styleSheets->setTheme(theme);
    applyThemeToEditor();
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
    const qsizetype begin = send(*m_editor, Sci::SCI_GETSELECTIONSTART);
    const qsizetype end = send(*m_editor, Sci::SCI_GETSELECTIONEND);
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

/// What other texts have keys for; here all keys are the list's.
void SourceText::showMenu(QPoint point)
{
    auto *const menu = new QMenu(this); // deletes itself
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QString selected = selectedText();
    menu->addAction(tr("&Copy"), this, [selected] { QGuiApplication::clipboard()->setText(selected); })
        ->setEnabled(!selected.isEmpty());
    menu->addSeparator();
    const auto scrolling = [this](QAbstractSlider::SliderAction action) {
        return [this, action] { m_editor->verticalScrollBar()->triggerAction(action); };
    };
    menu->addAction(tr("Page &Up"), this, scrolling(QAbstractSlider::SliderPageStepSub));
    menu->addAction(tr("Page &Down"), this, scrolling(QAbstractSlider::SliderPageStepAdd));
    menu->popup(m_editor->mapToGlobal(point));
}

} // namespace brevant
