// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/KindPicture.h"

#include "app/results/Signs.h"
#include "files/SizeText.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int gap = 12;
constexpr int longestBar = 90;
constexpr int barThickness = 8;
constexpr std::array kindNames{"CSS"_L1, "JavaScript"_L1, "HTML"_L1}; // by family

} // namespace

KindPicture::KindPicture(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(tr("Saved by kind"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KindPicture::setTotals(const RunTotals &totals)
{
    m_lines.clear();
    qint64 largest = 1;
    for (const RunTotals::Sizes &sizes : totals.ofKinds)
        largest = std::max(largest, sizes.before);
    QStringList words;
    for (std::size_t kind = 0; kind < kindNames.size(); ++kind) {
        const auto &[before, after] = totals.ofKinds[kind];
        if (before == 0)
            continue;
        const double part = 1 - static_cast<double>(after) / static_cast<double>(before);
        const QString amount = before >= after ? tr("saved %1, %2 %").arg(sizeText(before - after))
                                               : tr("%1 larger, %2 %").arg(sizeText(after - before));
        m_lines.push_back({kindNames.at(kind), amount.arg(std::abs(part) * 100, 0, 'f', 0),
                           static_cast<double>(before) / static_cast<double>(largest), part});
        words.append(m_lines.back().kind + u": "_s + m_lines.back().saved);
    }
    setAccessibleDescription(words.join(u"; "));
    setToolTip(words.isEmpty() ? QString()
                               : tr("The longer a bar, the larger the sources; filled is what was saved."));
    updateGeometry();
    update();
}

int KindPicture::widestOf(QString Line::*text) const
{
    int widest = 0;
    for (const Line &line : m_lines)
        widest = std::max(widest, fontMetrics().horizontalAdvance(line.*text));
    return widest;
}

QSize KindPicture::sizeHint() const
{
    const auto barWidth = static_cast<int>(longestBar * fontScale(fontMetrics()));
    return {widestOf(&Line::kind) + gap + barWidth + gap + widestOf(&Line::saved),
            static_cast<int>(kindNames.size()) * fontMetrics().height()};
}

void KindPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    const QColor ground = palette().color(QPalette::Active, QPalette::Window);
    const int height = fontMetrics().height();
    const int kinds = widestOf(&Line::kind);
    const auto barWidth = static_cast<int>(longestBar * fontScale(fontMetrics()));
    const auto barHeight = static_cast<int>(barThickness * fontScale(fontMetrics()));
    const auto visual = [this](const QRect &area) {
        return QStyle::visualRect(layoutDirection(), rect(), area);
    };
    const auto alignment = [this](Qt::Alignment wanted) {
        return int(QStyle::visualAlignment(layoutDirection(), wanted | Qt::AlignVCenter) |
                   Qt::AlignAbsolute) |
               Qt::TextSingleLine;
    };
    int top = (this->height() - static_cast<int>(m_lines.size()) * height) / 2;
    for (const Line &line : m_lines) {
        painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
        painter.drawText(visual({0, top, kinds, height}), alignment(Qt::AlignRight), line.kind);
        const QRect bar(kinds + gap, top + (height - barHeight) / 2,
                        std::max(3, static_cast<int>(barWidth * line.length)), barHeight);
        drawSavedBar(painter, visual(bar), line.part, ground, palette(), layoutDirection());
        painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
        const int left = kinds + gap + barWidth + gap;
        painter.drawText(visual({left, top, width() - left, height}), alignment(Qt::AlignRight), line.saved);
        top += height;
    }
}

} // namespace brevant
