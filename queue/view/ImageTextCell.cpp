// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/ImageTextCell.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "widgets/Contrast.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr qreal textIndent = 8;
constexpr int namePixels = 13;
constexpr int folderPixels = 11;

QColor familyColour(KindFamily family)
{
    switch (family) {
    case KindFamily::StyleSheet:
        return {0, 140, 0};
    case KindFamily::Script:
        return {159, 0, 195};
    case KindFamily::Markup:
        return {255, 103, 38};
    }
    Q_UNREACHABLE();
}

/// The colour of a kind is fixed, but for those who ask for high contrast.
QColor kindColour(const FileKind &kind, const QPalette &palette)
{
    const QColor colour = familyColour(kind.family);
    return isHighContrast(palette) ? readableOn(QColor(selectionFill), Qt::black, colour, highContrast)
                                   : colour;
}

QFont fixedFont(int pixels)
{
    QFont font({u"Menlo"_s, u"DejaVu Sans Mono"_s, u"monospace"_s});
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixels);
    // A painter takes unset attributes from its own font, which may be bold or slanted.
    font.setResolveMask(QFont::AllPropertiesResolved);
    return font;
}

/// Draws one line with the upper left corner of its box at `corner`.
void drawAtPoint(QPainter &painter, QPointF corner, const QString &text, const QFont &font,
                 const QColor &colour)
{
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(corner + QPointF(0, QFontMetricsF(font).ascent()), text);
}

} // namespace

std::optional<QColor> ImageTextCell::highlightColorWithFrame(const QRectF &) const
{
    return std::nullopt;
}

void ImageTextCell::drawWithFrame(const QRectF &cellFrame, QPainter &painter, const QString &path,
                                  const QPalette &palette) const
{
    const QString name = PathString::lastComponent(path).toString();
    const QPointF nameCorner(cellFrame.x() + textIndent, cellFrame.y());
    const FileKind *const kind = kindOf(path);
    drawAtPoint(painter, nameCorner, name, kind ? fixedFont(namePixels) : QApplication::font(),
                kind ? kindColour(*kind, palette) : palette.color(QPalette::Active, QPalette::Text));

    const QString folder = PathString::folder(path).toString() + u'/';
    const QPointF folderCorner(nameCorner.x(), cellFrame.y() + cellFrame.height() * 4 / 10);
    drawAtPoint(painter, folderCorner, folder, fixedFont(folderPixels),
                palette.color(QPalette::Disabled, QPalette::Text));
}

void ImageTextCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    const QRectF cellFrame(option.rect);
    if (const std::optional<QColor> highlight = highlightColorWithFrame(cellFrame))
        painter->fillRect(cellFrame, *highlight);
    const QVariant path = index.data(Qt::DisplayRole);
    if (!path.isValid())
        return;
    painter->save();
    drawWithFrame(cellFrame, *painter, path.toString(), option.palette);
    painter->restore();
}

} // namespace brevant
