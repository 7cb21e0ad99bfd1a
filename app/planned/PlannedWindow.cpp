// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlannedWindow.h"

#include "app/planned/PlanTable.h"
#include "app/planned/PlanTexts.h"
#include "app/planned/RunManner.h"
#include "app/results/FilterBar.h"
#include "app/results/MessagePane.h"
#include "app/results/Signs.h"
#include "queue/FileQueue.h"
#include "settings/SettingsStore.h"
#include "widgets/FilterField.h"
#include "widgets/Lines.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using State = PlannedFile::State;

constexpr int windowEdge = 16;
constexpr QSize firstSize(936, 512);

/// The choices of the filter after All.
constexpr std::array filterStates{State::Ready, State::TakeCare, State::WillFail, State::Checking};

std::vector<StateFilter::Choice> filterChoices()
{
    std::vector<StateFilter::Choice> choices;
    choices.reserve(filterStates.size());
    for (const State state : filterStates)
        choices.emplace_back(signOf(state), stateText(state));
    return choices;
}

} // namespace

PlannedWindow::PlannedWindow(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                             QAction &minify, QAction &preferences, QWidget *parent)
    : StateWindow(tr("Planned Outputs"), parent), m_queue(queue), m_settings(settings),
      m_minifyAction(minify), m_preferencesAction(preferences), m_planner(queue, settings, tools)
{
    // The order of the Tab key is that of making.
    m_table = new PlanTable(m_model, this);
    m_pane = new MessagePane(MessagePane::Reveal::Source, this);
    m_note = new ElidedLabel(this);
    m_preferences = new QPushButton(tr("&Preferences…"), this);
    m_minify = new QPushButton(tr("&Minify"), this);
    m_minify->setDefault(true);
    QWidget *const bottom = makeBottom(m_note, {m_preferences, m_minify});
    m_filter = new FilterBar(filterChoices(), tr("Filter by name or problem"), this);
    connectAll();
    setUp({makeHead(), nullptr, m_filter, m_table, m_pane, bottom}, firstSize);
}

QWidget *PlannedWindow::makeHead()
{
    auto *const head = new QWidget(this);
    auto *const column = new QVBoxLayout(head);
    column->setContentsMargins(windowEdge, 8, windowEdge, 8);
    column->setSpacing(4);
    column->addWidget(m_totals);
    column->addWidget(m_manner);
    return head;
}

void PlannedWindow::connectAll()
{
    connect(&m_queue, &QAbstractItemModel::rowsInserted, this, &PlannedWindow::refresh);
    connect(&m_queue, &QAbstractItemModel::modelReset, this, &PlannedWindow::refresh);
    connect(&m_settings, &SettingsStore::didChange, this, &PlannedWindow::refresh);
    connect(&m_planner, &Planner::planned, this, &PlannedWindow::take);
    connect(&m_planner, &Planner::finished, this, [this] {
        if (m_model.isStale()) // rows that leave their places earlier would be a nuisance
            updateFilter();
    });
    connect(m_filter, &FilterBar::changed, this, &PlannedWindow::updateFilter);
    connect(m_table, &StateTable::currentFileChanged, this, &PlannedWindow::updatePane);
    connect(&m_minifyAction, &QAction::changed, this, &PlannedWindow::updateButtons);
    connect(m_minify, &QPushButton::clicked, &m_minifyAction, &QAction::trigger);
    connect(m_preferences, &QPushButton::clicked, &m_preferencesAction, &QAction::trigger);
    connect(m_pane, &MessagePane::openRequested, this, &PlannedWindow::openRequested);
    connect(m_pane, &MessagePane::revealRequested, this, &PlannedWindow::revealRequested);
    m_table->addActions(m_pane->fileActions());
}

void PlannedWindow::refresh()
{
    if (!isVisible())
        return;
    m_planner.restart();
    updateHead();
    updateButtons();
}

void PlannedWindow::take(int first, const std::vector<PlannedFile> &files, int count)
{
    m_table->setFiles(first, files, count);
    updateHead();
    updatePane();
}

void PlannedWindow::updateHead()
{
    const PlanTotals totals = totalsOf(m_model.files());
    m_totals->setText(totalsText(totals, layoutDirection()));
    m_manner->setText(RunManner(m_settings).ofPlan());
    std::vector<int> counts;
    counts.reserve(filterStates.size());
    for (const State state : filterStates)
        counts.push_back(totals.count(state));
    const auto all = static_cast<int>(m_model.files().size());
    m_filter->states().setCounts(all, counts);
    m_note->setText(all == 1 ? tr("Minify tries the file, as the list has it.")
                             : tr("Minify tries all %1 files, as the list has them.").arg(all));
    m_note->setVisible(all > 0);
    updateHint();
}

void PlannedWindow::updateButtons()
{
    m_minify->setEnabled(m_minifyAction.isEnabled());
    m_minify->setToolTip(RunManner(m_settings).ofMinify(m_queue.count()));
}

void PlannedWindow::updateFilter()
{
    const int shown = m_filter->states().shown();
    m_table->setFilter(shown > 0 ? std::optional(filterStates.at(static_cast<std::size_t>(shown) - 1))
                                 : std::nullopt,
                       m_filter->text());
    updateHint();
}

void PlannedWindow::updatePane()
{
    const int record = m_table->currentRecord();
    if (record < 0)
        return m_pane->setRow(nullptr);
    const PlannedFile &file = m_model.files()[static_cast<std::size_t>(record)];
    ResultRow row(signOf(file.state()), file.source);
    row.remarks = std::make_shared<ResultRemarks>(ResultRemarks{{}, {}, sentencesAbout(file, record)});
    m_pane->setRow(&row);
}

void PlannedWindow::updateHint()
{
    showHint(m_model.files().empty() ? tr("The list is empty. Where each of its files will go is shown here.")
                                     : tr("No file matches."));
}

void PlannedWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !m_filter->field().hasFocus())
        m_minify->click();
    else
        StateWindow::keyPressEvent(event);
}

void PlannedWindow::showEvent(QShowEvent *event)
{
    StateWindow::showEvent(event);
    refresh();
}

void PlannedWindow::hideEvent(QHideEvent *event)
{
    StateWindow::hideEvent(event);
    m_planner.stop();
}

void PlannedWindow::changeEvent(QEvent *event)
{
    StateWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        refresh(); // files may have changed while others were in front
}

void PlannedWindow::updateLooks()
{
    StateWindow::updateLooks();
    mute(*m_note, QPalette::Window);
}

} // namespace brevant
