// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/StateWindow.h"

#include "app/results/FilterBar.h"
#include "app/results/Signs.h"
#include "app/results/StateTable.h"
#include "widgets/Lines.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>

#include <algorithm>

namespace brevant {

namespace {

constexpr int edgeOfBottom = 16;
constexpr int lettersAcross = 60;
constexpr double partOfScreen = 0.9;

} // namespace

StateWindow::StateWindow(const QString &title, QWidget *parent)
    : QMainWindow(parent, Qt::Window), m_totals(new QLabel(this)), m_manner(new ElidedLabel(this)),
      m_hint(new QLabel(this))
{
    setWindowTitle(title);
    m_totals->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
}

void StateWindow::setUp(const Parts &parts, QSize size)
{
    m_parts = parts;
    auto *const contents = new QWidget(this);
    auto *const column = new QVBoxLayout(contents);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(parts.head);
    column->addWidget(horizontalLine(contents));
    if (parts.offer)
        column->addWidget(parts.offer);
    column->addWidget(parts.filter);
    column->addWidget(horizontalLine(contents));
    column->addWidget(parts.table, 1);
    column->addWidget(horizontalLine(contents));
    column->addWidget(parts.pane);
    column->addWidget(horizontalLine(contents));
    column->addWidget(parts.bottom);
    setCentralWidget(contents);
    auto *const place = new QVBoxLayout(parts.table->viewport());
    place->addWidget(m_hint);
    updateLooks();
    resize(size.expandedTo(sizeHint()).boundedTo(screen()->availableSize() * partOfScreen));
}

QWidget *StateWindow::makeBottom(QWidget *first, std::initializer_list<QPushButton *> buttons)
{
    auto *const bar = new QWidget(this);
    auto *const row = new QHBoxLayout(bar);
    row->setContentsMargins(edgeOfBottom, 12, edgeOfBottom, 12);
    row->setSpacing(8);
    if (first)
        row->addWidget(first, 1);
    else
        row->addStretch(1);
    for (QPushButton *const button : buttons) {
        button->setAutoDefault(true);
        button->setMinimumWidth(button->sizeHint().width() + edgeOfBottom);
        row->addWidget(button);
    }
    return bar;
}

void StateWindow::showHint(const QString &text)
{
    m_hint->setVisible(m_parts.table->model()->rowCount() == 0);
    m_hint->setText(text);
}

bool StateWindow::event(QEvent *event)
{
    const bool isDone = QMainWindow::event(event);
    if (m_parts.table && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize))
        fitLeastSize();
    return isDone;
}

/// A window knows by itself no height that depends on its width, as that of buttons and words that wrap does.
void StateWindow::fitLeastSize()
{
    int width = lettersAcross * fontMetrics().averageCharWidth();
    for (const QWidget *const part :
         {m_parts.offer, static_cast<QWidget *>(m_parts.filter), m_parts.bottom}) {
        if (part && !part->isHidden())
            width = std::max(width, part->minimumSizeHint().width());
    }
    const int height = centralWidget()->layout()->minimumHeightForWidth(std::max(width, this->width()));
    const QSize least = QSize(width, height).boundedTo(screen()->availableSize() * partOfScreen);
    if (least != minimumSize())
        setMinimumSize(least);
}

void StateWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isCancel = event->matches(QKeySequence::Cancel);
    if (event->matches(QKeySequence::Close) || (isCancel && !m_parts.filter->clearText()))
        close();
    else if (!isCancel)
        QMainWindow::keyPressEvent(event);
}

/// Opened again, the window begins at the table, wherever it was left.
void StateWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!event->spontaneous())
        m_parts.table->setFocus();
}

void StateWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        updateLooks();
}

void StateWindow::updateLooks()
{
    mute(*m_manner, QPalette::Window);
    mute(*m_hint, QPalette::Base);
    QFont bold = font();
    bold.setBold(true);
    m_totals->setFont(bold);
}

} // namespace brevant
