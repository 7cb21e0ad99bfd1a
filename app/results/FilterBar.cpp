// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/FilterBar.h"

#include "app/results/Signs.h"
#include "widgets/FilterField.h"

#include <QAction>
#include <QBoxLayout>
#include <QEvent>
#include <QIcon>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace brevant {

/// That of the window's edge.
constexpr int edgeOfBar = 16;

FilterBar::FilterBar(std::vector<StateFilter::Choice> choices, const QString &placeholder, QWidget *parent)
    : QWidget(parent), m_parts(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      m_states(new StateFilter(std::move(choices), this)), m_field(new FilterField(this))
{
    m_parts->setContentsMargins(edgeOfBar - 4, 8, edgeOfBar, 8);
    m_parts->addWidget(m_states, 1);
    m_field->setPlaceholderText(placeholder);
    m_field->setAccessibleName(tr("Filter"));
    m_field->setClearButtonEnabled(true);
    m_find = m_field->addAction(QIcon(), QLineEdit::LeadingPosition);
    m_find->setText(tr("Find"));
    // Qt gives its own no name for those who do not see it.
    if (auto *const clear = m_field->findChild<QAction *>(u"_q_qlineeditclearaction"_s))
        clear->setText(tr("Clear"));
    updateLooks();
    m_parts->addWidget(m_field, 0, Qt::AlignTop);
    connect(m_states, &StateFilter::changed, this, &FilterBar::changed);
    connect(m_field, &QLineEdit::textChanged, this, &FilterBar::changed);
    auto *const find = new QShortcut(QKeySequence::Find, this); // a child of this
    const auto goToField = [this] {
        m_field->setFocus(Qt::ShortcutFocusReason);
        m_field->selectAll();
    };
    connect(find, &QShortcut::activated, this, goToField);
    connect(m_find, &QAction::triggered, this, goToField);
}

bool FilterBar::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)
        placeField();
    return QWidget::event(event);
}

void FilterBar::placeField()
{
    const int needed = m_states->sizeHint().width() + m_field->width() + 2 * edgeOfBar + m_parts->spacing();
    m_parts->setDirection(needed > width() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void FilterBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        updateLooks();
}

void FilterBar::updateLooks()
{
    QPalette looks = m_field->palette();
    looks.setColor(QPalette::PlaceholderText, mutedText(palette().color(QPalette::Active, QPalette::Base),
                                                        palette().color(QPalette::Active, QPalette::Text)));
    m_field->setPalette(looks);
    m_find->setIcon(textIcon(u"edit-find"_s, *this));
    m_field->setFixedWidth(fontMetrics().horizontalAdvance(m_field->placeholderText()) + 2 * edgeOfBar +
                           2 * signSize(fontMetrics()));
}

QString FilterBar::text() const
{
    return m_field->text();
}

bool FilterBar::clearText()
{
    const bool hasText = !m_field->text().isEmpty();
    m_field->clear();
    return hasText;
}

} // namespace brevant
