// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/BVImageView.h"

#include "queue/FileKind.h"

#include <QEvent>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <QTimer>
#include <QtMath>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 16;

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QString secondLine()
{
    return BVImageView::tr("or folders here, or double-click to choose them");
}

} // namespace

QString dropHint(const SettingsStore &settings)
{
    QStringList names;
    for (const FileKind &kind : allFileKinds()) {
        if (kind.isSwitchedOn(settings) && !names.contains(kind.name))
            names += kind.name;
    }
    const QString last = names.takeLast();
    return BVImageView::tr("Drop %1 or %2 files").arg(names.join(u", "_s), last);
}

BVImageView::BVImageView(QWidget *parent) : QWidget(parent) {}

BVImageView::~BVImageView() = default;

void BVImageView::setImageNamed(const QString &name)
{
    const QString plain = name.endsWith(".png"_L1) ? name.chopped(4) : name;
    if (plain == m_imageName)
        return;
    m_imageName = plain;
    m_image.reset();
    update();
}

void BVImageView::setWords(const QString &words)
{
    if (words == m_words)
        return;
    m_words = words;
    setAccessibleName(words + u' ' + secondLine());
    m_drawn = QPixmap();
    update();
}

// Read when it is first needed.
QSvgRenderer &BVImageView::image() const
{
    if (m_image)
        return *m_image;
    const QString path = u":/%1.svg"_s.arg(m_imageName);
    const QString darkPath = u":/%1-dark.svg"_s.arg(m_imageName);
    m_drawn = QPixmap();
    m_image = std::make_unique<QSvgRenderer>();
    if (QFile::exists(path))
        m_image->load(isDark(palette()) && QFile::exists(darkPath) ? darkPath : path);
    m_image->setAspectRatioMode(Qt::KeepAspectRatio);
    return *m_image;
}

QRectF BVImageView::imageRect() const
{
    if (!image().isValid())
        return {};
    const QSizeF full = image().defaultSize();
    const QSizeF room = QSizeF(size()) - QSizeF(2 * margin, 2 * margin);
    const qreal scale = std::min({1.0, room.width() / full.width(), room.height() / full.height()});
    if (scale <= 0)
        return {};
    QRectF rect(QPointF(), full * scale);
    rect.moveCenter(QRectF(this->rect()).center());
    // On whole pixels, so that the straight lines of the picture stay crisp at its full size.
    rect.moveTopLeft(rect.topLeft().toPoint());
    return rect;
}

void BVImageView::paintEvent(QPaintEvent *)
{
    const QRectF rect = imageRect();
    if (rect.isEmpty())
        return;
    QPainter painter(this);
    painter.drawPixmap(rect.topLeft(), drawn(rect.size(), painter.deviceTransform().m11()));
}

// Nearly all paint events ask for the same size, as the picture does not grow with the window.
const QPixmap &BVImageView::drawn(QSizeF size, qreal scale) const
{
    const QSize pixels(qCeil(size.width() * scale), qCeil(size.height() * scale));
    if (m_drawn.size() == pixels && m_drawn.devicePixelRatio() == scale)
        return m_drawn;
    m_drawn = QPixmap(pixels);
    m_drawn.setDevicePixelRatio(scale);
    m_drawn.fill(Qt::transparent);
    QPainter painter(&m_drawn);
    painter.setRenderHint(QPainter::Antialiasing);
    image().render(&painter, QRectF(QPointF(), size));
    painter.scale(size.width() / image().defaultSize().width(), size.width() / image().defaultSize().width());
    drawLine(painter, m_words, 15, 251);
    drawLine(painter, secondLine(), 12, 274);
    return m_drawn;
}

/// A centred line, in smaller letters if it would be too wide.
void BVImageView::drawLine(QPainter &painter, const QString &text, int pixels, int baseline) const
{
    constexpr qreal room = 360;
    QFont lineFont = font();
    lineFont.setPixelSize(pixels);
    const qreal width = QFontMetricsF(lineFont).horizontalAdvance(text);
    const qreal scale = std::min(1.0, room / std::max(1.0, width));
    painter.save();
    painter.translate(image().defaultSize().width() / 2.0 - width * scale / 2, baseline);
    painter.scale(scale, scale);
    painter.setFont(lineFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QPointF(), text);
    painter.restore();
}

void BVImageView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // While the window waits to be mapped, which takes longer than reading and drawing the picture.
    QTimer::singleShot(0, this, [this] {
        if (const QRectF rect = imageRect(); !rect.isEmpty())
            drawn(rect.size(), devicePixelRatioF());
    });
}

void BVImageView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        m_image.reset();
    QWidget::changeEvent(event);
}

} // namespace brevant
