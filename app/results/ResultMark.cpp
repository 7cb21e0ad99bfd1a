// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultMark.h"

#include "app/results/Signs.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace brevant {

namespace {

/// The least room that the status text keeps beside the words, in letters.
constexpr int lettersOfStatus = 12;

} // namespace

ResultMark::ResultMark(QLabel &status, QHBoxLayout &bar)
    : QPushButton(status.parentWidget()), m_status(status), m_bar(bar), m_policyAlone(status.sizePolicy())
{
    setObjectName(QStringLiteral("resultMark"));
    setFlat(true);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
    const int place = bar.indexOf(&status) + 1;
    bar.insertWidget(place, this);
    bar.insertStretch(place + 1, 0);
    // The order of the Tab key is that of the bar.
    QWidget *last = this;
    for (int i = place + 1; i < bar.count(); ++i) {
        if (QWidget *const next = bar.itemAt(i)->widget()) {
            setTabOrder(last, next);
            last = next;
        }
    }
    parentWidget()->installEventFilter(this);
}

void ResultMark::showResult(const ShortResult &result)
{
    m_result = result;
    setAccessibleName(tr("Results: %1").arg(result.text));
    setToolTip((result.details.isEmpty() ? QString() : result.details + u' ') +
               tr("Shows what became of each file (Ctrl+L)"));
    updateSign();
    m_status.setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred); // as wide as its text
    fitWords();
    show();
}

void ResultMark::hideResult()
{
    if (hasFocus())
        nextInFocusChain()->setFocus(Qt::OtherFocusReason);
    hide();
    m_status.setSizePolicy(m_policyAlone);
}

/// No higher than the bar already is.
QSize ResultMark::sizeHint() const
{
    const QSize hint = QPushButton::sizeHint();
    return {hint.width(), std::min(hint.height(), m_bar.itemAt(m_bar.count() - 1)->sizeHint().height())};
}

void ResultMark::updateSign()
{
    const int size = signSize(fontMetrics());
    setIconSize({size, size});
    setIcon(signIcon(m_result.isAllWell ? ResultRow::State::Done : ResultRow::State::Warned, *this));
}

/// Where the bar is too narrow for the words, the sign stays.
void ResultMark::fitWords()
{
    const QString words = layoutDirection() == Qt::RightToLeft ? isolated(m_result.text) : m_result.text;
    setText(words);
    int needed = 0;
    for (int i = 0; i < m_bar.count(); ++i) {
        const QWidget *const widget = m_bar.itemAt(i)->widget();
        if (widget == &m_status)
            needed += m_bar.spacing() + std::min(m_status.sizeHint().width(),
                                                 lettersOfStatus * fontMetrics().averageCharWidth());
        else if (widget == this || (widget && widget->sizePolicy().retainSizeWhenHidden()))
            needed += m_bar.spacing() + widget->sizeHint().width();
    }
    const QMargins margins = m_bar.contentsMargins();
    if (needed > parentWidget()->width() - margins.left() - margins.right() + m_bar.spacing())
        setText({});
}

bool ResultMark::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && !isHidden())
        fitWords();
    return QPushButton::eventFilter(watched, event);
}

void ResultMark::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        updateSign();
}

void ResultMark::enterEvent(QEnterEvent *event)
{
    QPushButton::enterEvent(event);
    setFlat(false);
}

void ResultMark::leaveEvent(QEvent *event)
{
    QPushButton::leaveEvent(event);
    setFlat(true);
}

} // namespace brevant
