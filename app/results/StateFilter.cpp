// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/StateFilter.h"

#include "app/results/Signs.h"

#include <QEvent>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int buttonGap = 6;

} // namespace

StateFilter::StateFilter(std::vector<Choice> choices, QWidget *parent)
    : QWidget(parent), m_choices(std::move(choices))
{
    setAccessibleName(tr("Show"));
    for (int choice = 0; choice <= static_cast<int>(m_choices.size()); ++choice) {
        auto *const button = new QToolButton(this);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        m_group.addButton(button, choice);
    }
    m_group.button(0)->setChecked(true);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    updateSigns();
    connect(&m_group, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (isChecked)
            Q_EMIT changed();
    });
}

void StateFilter::setCounts(int all, const std::vector<int> &counts)
{
    m_group.button(0)->setText(tr("All %1").arg(all));
    for (std::size_t i = 0; i < m_choices.size(); ++i) {
        QAbstractButton *const button = m_group.button(static_cast<int>(i) + 1);
        button->setText(u" %1 %2"_s.arg(m_choices[i].second).arg(counts[i])); // apart from the sign
        button->setAccessibleName(button->text().trimmed());
        button->setVisible(counts[i] > 0);
        if (counts[i] == 0 && button->isChecked())
            m_group.button(0)->setChecked(true);
    }
    updateGeometry();
    static_cast<void>(place(width(), true));
}

QSize StateFilter::sizeHint() const
{
    return place(QWIDGETSIZE_MAX, false);
}

QSize StateFilter::minimumSizeHint() const
{
    int widest = 0;
    for (const QAbstractButton *const button : m_group.buttons())
        widest = std::max(widest, button->isHidden() ? 0 : button->sizeHint().width());
    return {widest, 0};
}

void StateFilter::resizeEvent(QResizeEvent *)
{
    static_cast<void>(place(width(), true));
}

void StateFilter::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::LayoutDirectionChange ||
        event->type() == QEvent::FontChange)
        updateSigns();
}

void StateFilter::updateSigns()
{
    const int size = signSize(fontMetrics());
    for (std::size_t i = 0; i < m_choices.size(); ++i) {
        QAbstractButton *const button = m_group.button(static_cast<int>(i) + 1);
        button->setIconSize({size, size});
        button->setIcon(signIcon(m_choices[i].first, *this));
    }
}

/// Puts the buttons side by side in as many lines as they need; the size of all. Only tries unless `isDone`.
QSize StateFilter::place(int width, bool isDone) const
{
    QPoint at;
    QSize size;
    for (QAbstractButton *const button : m_group.buttons()) {
        if (button->isHidden())
            continue;
        const QSize hint = button->sizeHint();
        if (at.x() > 0 && at.x() + hint.width() > width)
            at = QPoint(0, size.height() + 2);
        if (isDone)
            button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), QRect(at, hint)));
        size = size.expandedTo(QSize(at.x() + hint.width(), at.y() + hint.height()));
        at.rx() += hint.width() + buttonGap;
    }
    return size;
}

} // namespace brevant
