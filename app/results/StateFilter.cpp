// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/StateFilter.h"

#include "app/results/Signs.h"

#include <QEvent>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Shown = ResultModel::Shown;
using State = ResultRow::State;

constexpr int gap = 6;

/// The button of each choice but All, with the state whose sign it has.
constexpr std::array choices{
    std::pair{Shown::Done, State::Done},       std::pair{Shown::Failed, State::Failed},
    std::pair{Shown::PutBack, State::PutBack}, std::pair{Shown::Skipped, State::Skipped},
    std::pair{Shown::NotRun, State::NotRun},   std::pair{Shown::Warned, State::Warned}};

} // namespace

StateFilter::StateFilter(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(tr("Show"));
    for (int choice = static_cast<int>(Shown::All); choice <= static_cast<int>(Shown::Warned); ++choice) {
        auto *const button = new QToolButton(this);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        m_group.addButton(button, choice);
    }
    m_group.button(static_cast<int>(Shown::All))->setChecked(true);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    updateSigns();
    connect(&m_group, &QButtonGroup::idToggled, this, [this](int, bool isChecked) {
        if (isChecked)
            Q_EMIT changed();
    });
}

void StateFilter::setTotals(const RunTotals &totals, int rows)
{
    QAbstractButton *const all = m_group.button(static_cast<int>(Shown::All));
    all->setText(tr("All %1").arg(rows));
    for (const auto &[choice, state] : choices) {
        int count = 0;
        for (std::size_t i = 0; i < RunTotals::stateCount; ++i)
            count += ResultModel::isShown(choice, static_cast<State>(i)) ? totals.counts.at(i) : 0;
        QAbstractButton *const button = m_group.button(static_cast<int>(choice));
        const QString name = choice == Shown::Warned ? tr("Warnings") : stateText(state);
        button->setText(u" %1 %2"_s.arg(name).arg(count)); // apart from the sign
        button->setAccessibleName(button->text().trimmed());
        button->setVisible(count > 0);
        if (count == 0 && button->isChecked())
            all->setChecked(true);
    }
    updateGeometry();
    place(width(), true);
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
    place(width(), true);
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
    for (const auto &[choice, state] : choices) {
        m_group.button(static_cast<int>(choice))->setIconSize({size, size});
        m_group.button(static_cast<int>(choice))->setIcon(signIcon(state, *this));
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
        at.rx() += hint.width() + gap;
    }
    return size;
}

} // namespace brevant
