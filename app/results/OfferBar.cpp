// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/OfferBar.h"

#include "app/results/RunRecord.h"
#include "app/results/Signs.h"
#include "widgets/Contrast.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int edge = 16;
constexpr int between = 8;
constexpr double partOfHighlight = 0.2;

} // namespace

OfferBar::OfferBar(QWidget *parent)
    : QWidget(parent), m_lines(new QBoxLayout(QBoxLayout::LeftToRight, this)), m_sign(new QLabel(this)),
      m_text(new QLabel(this)), m_once(new QPushButton(this)), m_always(new QPushButton(tr("&Always"), this)),
      m_close(new QToolButton(this))
{
    m_lines->setContentsMargins(edge, between / 2, edge, between / 2);
    m_lines->setSpacing(between);
    auto *const words = new QHBoxLayout;
    words->addWidget(m_sign);
    words->addWidget(m_text, 1);
    m_text->setWordWrap(true);
    auto *const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *const button : {m_once, m_always}) {
        button->setAutoDefault(true); // Return presses it
        buttons->addWidget(button);
    }
    m_close->setAutoRaise(true);
    m_close->setFocusPolicy(Qt::StrongFocus);
    m_close->setToolTip(tr("Close"));
    m_close->setAccessibleName(tr("Close"));
    buttons->addWidget(m_close);
    m_lines->addLayout(words, 1);
    m_lines->addLayout(buttons);
    m_always->setToolTip(tr("Minifies these, and sets Compressors to Modern in the preferences"));
    connect(m_once, &QPushButton::clicked, this, [this] { accept(false); });
    connect(m_always, &QPushButton::clicked, this, [this] { accept(true); });
    connect(m_close, &QToolButton::clicked, this, &OfferBar::decline);
    updateLooks();
    hide();
}

void OfferBar::setRun(const RunRecord *run, bool isPossible)
{
    m_run = run ? run->number : -1;
    m_sources = run && !m_declined.contains(m_run) ? run->forModern : QStringList();
    const auto files = static_cast<int>(m_sources.size());
    m_text->setText(files == 1 ? tr("1 of these uses newer JavaScript than YUI Compressor knows")
                               : tr("%1 of these use newer JavaScript than YUI Compressor knows").arg(files));
    m_once->setText(files == 1 ? tr("&Minify It With Modern Compressors")
                               : tr("&Minify These With Modern Compressors"));
    for (QPushButton *const button : {m_once, m_always})
        button->setMinimumWidth(button->sizeHint().width() + edge);
    m_once->setEnabled(isPossible);
    m_always->setEnabled(isPossible);
    m_once->setDefault(isPossible);
    setVisible(files > 0);
}

void OfferBar::accept(bool isForAlways)
{
    const QStringList sources = m_sources;
    decline();
    Q_EMIT accepted(sources, isForAlways);
}

void OfferBar::decline()
{
    m_declined.insert(m_run);
    hide();
    Q_EMIT closed();
}

void OfferBar::paintEvent(QPaintEvent *)
{
    const QColor ground = palette().color(QPalette::Active, QPalette::Window);
    const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    QPainter(this).fillRect(rect(),
                            isHighContrast(palette()) ? ground : mixed(ground, accent, partOfHighlight));
}

/// Where there is no room beside the words, the buttons go below them.
void OfferBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const int needed = fontMetrics().horizontalAdvance(m_text->text() + m_once->text() + m_always->text());
    m_lines->setDirection(needed + 10 * edge > width() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void OfferBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::PaletteChange)
        updateLooks();
}

void OfferBar::updateLooks()
{
    const int size = signSize(fontMetrics());
    const auto sign = [this](const QString &name, QStyle::StandardPixmap own) {
        return QIcon::hasThemeIcon(name) ? textIcon(name, *this) : style()->standardIcon(own, nullptr, this);
    };
    m_sign->setPixmap(sign(u"dialog-information"_s, QStyle::SP_MessageBoxInformation)
                          .pixmap({size, size}, devicePixelRatioF()));
    m_close->setIconSize({size, size});
    // The one that is not symbolic is red.
    m_close->setIcon(sign(u"window-close-symbolic"_s, QStyle::SP_TitleBarCloseButton));
}

} // namespace brevant
