// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/SourceView.h"

#include "app/preview/PreviewReader.h"
#include "app/results/Signs.h"
#include "widgets/Contrast.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>
#include <QTextBlock>

#include <algorithm>

namespace brevant {

namespace {

constexpr int padding = 8;
constexpr int spacesOfTab = 4;

bool isLineEnd(QChar unit)
{
    return unit == u'\n' || unit == u'\r' || unit == QChar::LineSeparator ||
           unit == QChar::ParagraphSeparator;
}

/// The bytes of a character in UTF-8; of a pair, all with its first half.
qsizetype bytesOf(QChar unit)
{
    if (unit.isSurrogate())
        return unit.isHighSurrogate() ? 4 : 0;
    return unit.unicode() < 0x80 ? 1 : unit.unicode() < 0x800 ? 2 : 3;
}

} // namespace

ShownSource::ShownSource(const PreviewContent &content, qint64 line, qint64 column) : numbers{1}
{
    const QString source = QString::fromUtf8(content.text);
    qint64 atLine = 1;
    qint64 atColumn = 1;
    qsizetype byte = 0;
    for (qsizetype i = 0; i < source.size(); ++i) {
        const QChar unit = source.at(i);
        const bool isAdded = std::ranges::binary_search(content.folds, byte) ||
                             std::ranges::binary_search(content.marks, byte);
        byte += bytesOf(unit);
        const bool isCounted = !isAdded && !unit.isLowSurrogate();
        if (place < 0 && isCounted && atLine == line && (atColumn >= column || isLineEnd(unit)))
            place = text.size();
        if (!isLineEnd(unit)) {
            text += unit;
            atColumn += isCounted ? 1 : 0;
        } else if (unit != u'\r' || i + 1 == source.size() || source.at(i + 1) != u'\n') {
            text += u'\n';
            atLine += isAdded ? 0 : 1;
            atColumn = isAdded ? atColumn : 1;
            numbers.push_back(isAdded ? 0 : atLine);
        }
    }
    if (place < 0 && atLine == line)
        place = text.size();
}

/// The margin beside the text.
class LineNumbers final : public QWidget {
public:
    explicit LineNumbers(SourceView &view) : QWidget(&view), m_view(view) {}

protected:
    void paintEvent(QPaintEvent *event) override { m_view.paintNumbers(event->rect()); }

private:
    SourceView &m_view;
};

SourceView::SourceView(QWidget *parent) : QPlainTextEdit(parent), m_margin(new LineNumbers(*this))
{
    setReadOnly(true);
    setLineWrapMode(NoWrap);
    setFrameShape(NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setCursorWidth(1);
    connect(this, &QPlainTextEdit::updateRequest, m_margin, [this](const QRect &rect, int dy) {
        if (dy != 0)
            m_margin->scroll(0, dy);
        else
            m_margin->update(0, rect.y(), m_margin->width(), rect.height());
    });
    updateLooks();
}

void SourceView::setSource(const ShownSource &source)
{
    m_numbers = source.numbers;
    m_place = source.place;
    setPlainText(source.text);
    QTextCursor cursor = textCursor();
    cursor.setPosition(static_cast<int>(std::max<qsizetype>(m_place, 0)));
    m_markedLine = m_place < 0 ? -1 : cursor.blockNumber();
    setTextCursor(cursor);
    updateLooks();
    centerCursor();
}

int SourceView::numbersWidth() const
{
    const qint64 last = m_numbers.empty() ? 0 : *std::ranges::max_element(m_numbers);
    return fontMetrics().horizontalAdvance(QString::number(std::max<qint64>(last, 10))) + 2 * padding;
}

void SourceView::paintNumbers(const QRect &dirty)
{
    const QColor ground = palette().color(QPalette::Active, QPalette::Base);
    const QColor text = palette().color(QPalette::Active, QPalette::Text);
    QPainter painter(m_margin);
    painter.fillRect(dirty, ground);
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
        if (place.top() > dirty.bottom())
            return;
        const auto line = static_cast<std::size_t>(block.blockNumber());
        if (line >= m_numbers.size() || m_numbers[line] == 0)
            continue;
        painter.setFont(font());
        painter.setPen(block.blockNumber() == m_markedLine ? text : mutedText(ground, text));
        painter.drawText(QRectF(0, place.top(), m_margin->width() - padding, place.height()),
                         Qt::AlignRight | Qt::AlignAbsolute, QString::number(m_numbers[line]));
    }
}

/// On the left, as code is read from there in every language.
void SourceView::placeNumbers()
{
    const int width = numbersWidth();
    setViewportMargins(width, 0, 0, 0);
    m_margin->setGeometry(contentsRect().left(), contentsRect().top(), width, contentsRect().height());
}

void SourceView::updateLooks()
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabStopDistance(spacesOfTab * fontMetrics().horizontalAdvance(u' '));
    placeNumbers();
    if (m_markedLine < 0) {
        setExtraSelections({});
        return;
    }
    const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    QTextEdit::ExtraSelection line;
    line.cursor = textCursor();
    line.cursor.setPosition(static_cast<int>(m_place));
    line.format.setBackground(selectionGround(palette()));
    line.format.setProperty(QTextFormat::FullWidthSelection, true);
    QTextEdit::ExtraSelection place = line;
    place.cursor.movePosition(place.cursor.atBlockEnd() ? QTextCursor::PreviousCharacter
                                                        : QTextCursor::NextCharacter,
                              QTextCursor::KeepAnchor);
    place.format.setProperty(QTextFormat::FullWidthSelection, false);
    place.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    place.format.setUnderlineColor(readableOn(palette().color(QPalette::Active, QPalette::Base),
                                              palette().color(QPalette::Active, QPalette::Text), accent,
                                              visibleContrast));
    place.format.setFontWeight(QFont::Bold);
    setExtraSelections({line, place});
}

void SourceView::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    placeNumbers();
}

void SourceView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        updateLooks();
}

} // namespace brevant
