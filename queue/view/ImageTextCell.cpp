// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/ImageTextCell.h"

#include "looks/Contrast.h"
#include "queue/FileKind.h"
#include "queue/PathString.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>

namespace brevant {

namespace {

constexpr qreal textIndent = 8;
constexpr int namePixels = 13;
constexpr int folderPixels = 11;

// The rows stand on white, or on the pale blue of the selection, in a dark theme too. A colour of the theme
// serves only if it is readable on both.
constexpr QRgb darkerGround = qRgb(204, 238, 255);
constexpr QRgb ownText = qRgb(0, 0, 0);
constexpr QRgb ownGrey = qRgb(104, 104, 104);
constexpr QRgb ownDarkGrey = qRgb(70, 70, 70);

std::optional<QColor> kindColour(QStringView path)
{
    const std::optional<FileKind> kind = kindOf(path);
    if (!kind)
        return std::nullopt;
    switch (*kind) {
    case FileKind::Js:
        return QColor(159, 0, 195);
    case FileKind::Css:
        return QColor(0, 140, 0);
    case FileKind::Html:
    case FileKind::Phtml:
    case FileKind::Php:
        return QColor(255, 103, 38);
    }
    return std::nullopt;
}

QColor readable(const QColor &colour, double leastContrast, QRgb otherwise)
{
    if (colour.alpha() == 255 && contrast(colour, QColor(darkerGround)) >= leastContrast)
        return colour;
    return QColor(otherwise);
}

/// The colour of a kind is fixed, but for those who ask for high contrast.
QColor shownKindColour(const QColor &colour, bool wantsHighContrast)
{
    return wantsHighContrast ? readableOn(QColor(darkerGround), QColor(ownText), colour, highContrast)
                             : colour;
}

QFont fixedFont(int pixels)
{
    const QString family = QStringLiteral("Menlo");
    QFont font(family);
    font.setFamilies({family, QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixels);
    // What is left open a painter takes from its own font, which may be bold or slanted.
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

void ImageTextCell::drawWithFrame(const QRectF &cellFrame, QPainter &painter, const QString &path) const
{
    const QPalette palette = QApplication::palette();
    const bool wantsHighContrast = isHighContrast(palette);
    const double leastContrast = wantsHighContrast ? highContrast : readableContrast;
    const QString name = PathString::lastComponent(path).toString();
    const QPointF nameCorner(cellFrame.x() + textIndent, cellFrame.y());
    if (const std::optional<QColor> colour = kindColour(path)) {
        drawAtPoint(painter, nameCorner, name, fixedFont(namePixels),
                    shownKindColour(*colour, wantsHighContrast));
    } else {
        const QColor text = readable(palette.color(QPalette::Active, QPalette::Text), leastContrast, ownText);
        drawAtPoint(painter, nameCorner, name, QApplication::font(), text);
    }

    const QString folder = PathString::folder(path).toString() + u'/';
    const QPointF folderCorner(nameCorner.x(), cellFrame.y() + cellFrame.height() * 4 / 10);
    const QColor grey = readable(palette.color(QPalette::Disabled, QPalette::Text), leastContrast,
                                 wantsHighContrast ? ownDarkGrey : ownGrey);
    drawAtPoint(painter, folderCorner, folder, fixedFont(folderPixels), grey);
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
    drawWithFrame(cellFrame, *painter, path.toString());
    painter->restore();
}

} // namespace brevant
