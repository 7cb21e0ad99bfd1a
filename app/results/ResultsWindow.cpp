// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultsWindow.h"

#include "app/results/FilterBar.h"
#include "app/results/Inquiry.h"
#include "app/results/KindPicture.h"
#include "app/results/MessagePane.h"
#include "app/results/OfferBar.h"
#include "app/results/Restoring.h"
#include "app/results/ResultRuns.h"
#include "app/results/ResultTable.h"
#include "app/results/RunChooser.h"
#include "app/results/SaveReport.h"
#include "app/results/Signs.h"
#include "app/results/SourceViewer.h"
#include "widgets/Lines.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int windowEdge = 16;
constexpr int lettersOfTotals = 85;
constexpr QSize resultsSize(936, 592);
constexpr std::chrono::milliseconds headDelay(100);

/// The buttons of the filter by state, in the order of ResultModel::Shown.
std::vector<StateFilter::Choice> stateChoices()
{
    using enum ResultRow::State;
    std::vector<StateFilter::Choice> choices;
    for (const ResultRow::State state : {Done, Failed, PutBack, Skipped, NotRun})
        choices.emplace_back(state, stateText(state));
    choices.emplace_back(Warned, ResultsWindow::tr("Warnings"));
    return choices;
}

std::vector<int> countsOf(const RunTotals &totals)
{
    std::vector<int> counts;
    for (int shown = 1; shown <= static_cast<int>(ResultModel::Shown::Warned); ++shown) {
        int count = 0;
        for (std::size_t i = 0; i < RunTotals::stateCount; ++i)
            count += ResultModel::isShown(ResultModel::Shown(shown), static_cast<ResultRow::State>(i))
                         ? totals.counts.at(i)
                         : 0;
        counts.push_back(count);
    }
    return counts;
}

} // namespace

ResultsWindow::ResultsWindow(const ResultRuns &runs, Inquiry &inquiry, std::function<QString()> encodingName,
                             QWidget *parent)
    : StateWindow(tr("Results"), parent), m_runs(runs), m_inquiry(inquiry),
      m_encodingName(std::move(encodingName)), m_model(runs)
{
    // The order of the Tab key is that of making.
    m_table = new ResultTable(m_model, this);
    m_pane = new MessagePane(MessagePane::Reveal::Output, this);
    m_save = new QPushButton(tr("&Save Report…"), this);
    m_retry = new QPushButton(tr("Retry &Failed"), this);
    QWidget *const bottom = makeBottom(nullptr, {m_save, m_retry});
    QWidget *const head = makeHead();
    m_offer = new OfferBar(this);
    m_filter = new FilterBar(stateChoices(), tr("Filter by name or message"), this);
    m_headTimer.setSingleShot(true);
    connectAll();
    setUp({head, m_offer, m_filter, m_table, m_pane, bottom}, resultsSize);
}

QWidget *ResultsWindow::makeHead()
{
    auto *const head = new QWidget(this);
    auto *const row = new QHBoxLayout(head);
    row->setContentsMargins(windowEdge, 8, windowEdge, 8);
    auto *const column = new QVBoxLayout;
    row->addLayout(column, 1);
    auto *const chooserRow = new QHBoxLayout;
    column->addLayout(chooserRow);
    auto *const label = new QLabel(tr("R&un:"), head);
    m_chooser = new RunChooser(m_runs, head);
    label->setBuddy(m_chooser);
    m_manner->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    chooserRow->addWidget(label);
    chooserRow->addWidget(m_chooser);
    chooserRow->addWidget(m_manner, 1);
    column->addWidget(m_totals);
    m_picture = new KindPicture(head);
    row->addWidget(m_picture);
    return head;
}

void ResultsWindow::connectAll()
{
    connect(&m_headTimer, &QTimer::timeout, this, &ResultsWindow::updateHead);
    connect(&m_runs, &ResultRuns::added, this, &ResultsWindow::addRun);
    connect(&m_runs, &ResultRuns::ended, this, &ResultsWindow::endRun);
    const auto later = [this] {
        // The rows of a run that goes on come together.
        if (!m_headTimer.isActive())
            m_headTimer.start(m_runs.isAnyRunning() ? std::chrono::milliseconds() : headDelay);
    };
    connect(&m_runs, &ResultRuns::rowAdded, this, later);
    connect(&m_runs, &ResultRuns::rowChanged, this, later);
    connect(m_chooser, &RunChooser::chosen, this, &ResultsWindow::showRun);
    connect(m_filter, &FilterBar::changed, this, &ResultsWindow::updateFilter);
    connect(m_table, &ResultTable::currentFileChanged, this, &ResultsWindow::updatePane);
    connect(m_table, &ResultTable::sourceRequested, this, &ResultsWindow::showFirstPlace);
    connect(m_pane, &MessagePane::messageChosen, this, &ResultsWindow::showSource);
    connect(&m_inquiry, &Inquiry::changed, this, &ResultsWindow::updatePane);
    connect(&m_runs, &ResultRuns::forModernChanged, this, &ResultsWindow::updateOffer);
    connect(m_offer, &OfferBar::accepted, this, &ResultsWindow::modernRequested);
    connect(m_offer, &OfferBar::closed, this, [this] {
        updateOffer();
        m_table->setFocus();
    });
    connect(m_save, &QPushButton::clicked, this, [this] { saveReport(m_model.run(), this); });
    connect(m_retry, &QPushButton::clicked, this, [this] { Q_EMIT retryRequested(toRetry()); });
    connect(m_pane, &MessagePane::openRequested, this, &ResultsWindow::openRequested);
    connect(m_pane, &MessagePane::revealRequested, this, &ResultsWindow::revealRequested);
    m_table->addActions(m_pane->fileActions());
    m_restoring = new Restoring(*m_pane->restoreAction(), *m_table, m_model, *this);
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, &ResultsWindow::updateHint);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &ResultsWindow::updateHint);
}

void ResultsWindow::showLastRun()
{
    const auto all = m_runs.all();
    if (!all.empty())
        showRun(all.back()->number);
    else
        updateHead();
}

void ResultsWindow::showRun(int run)
{
    if (!m_model.run() || m_model.run()->number != run)
        m_table->showRun(m_runs.find(run));
    updateHead();
}

/// The run shown while it goes on stays, if another begins.
void ResultsWindow::addRun(int run)
{
    if (!m_model.run() || !m_model.run()->isRunning)
        showRun(run);
    updateHead();
}

void ResultsWindow::endRun(int run)
{
    if (m_model.run() && m_model.run()->number == run)
        m_table->endRun();
    updateHead();
}

void ResultsWindow::updateHead()
{
    const std::shared_ptr<const RunRecord> run = m_model.run();
    const RunTotals totals = run ? run->totals() : RunTotals();
    const int rows = run ? static_cast<int>(run->rows.size()) : 0;
    m_chooser->setRun(run ? run->number : -1);
    m_manner->setText(run ? mannerText(*run) : QString());
    m_totals->setText(run ? totalsText(totals, layoutDirection()) : QString());
    const int done = totals.count(ResultRow::State::Done) + totals.count(ResultRow::State::Warned);
    m_totals->setToolTip(done == 1 ? tr("The sizes are those of the file that is done.")
                                   : tr("The sizes are those of the %1 files that are done.").arg(done));
    m_picture->setTotals(totals);
    m_table->updateColumns();
    m_filter->states().setCounts(rows, countsOf(totals));
    m_save->setEnabled(run && !run->isRunning && rows > 0);
    const QStringList failed = toRetry();
    m_retry->setEnabled(!failed.isEmpty() && !m_runs.isAnyRunning());
    m_retry->setToolTip(tr("Minify the files again that were not minified, %1 in all").arg(failed.size()));
    updatePane();
    updateOffer();
    updateHint();
    fitPicture();
}

/// Shows the current file, and has its compressor asked why it failed, if that is not known yet.
void ResultsWindow::updatePane()
{
    const int record = m_table->currentRecord();
    const int run = record < 0 ? -1 : m_model.run()->number;
    if (record >= 0 && isVisible())
        m_inquiry.wantReason(run, record);
    m_pane->setRow(m_table->currentFile(), m_inquiry.isAskingWhy(run, record));
    m_restoring->follow(m_runs.isAnyRunning());
}

void ResultsWindow::updateOffer()
{
    const std::shared_ptr<const RunRecord> run = m_model.run();
    if (run && isVisible())
        m_inquiry.wantModern(run->number);
    m_offer->setRun(run.get(), !m_runs.isAnyRunning());
    m_retry->setDefault(m_retry->isEnabled() && m_offer->isHidden()); // one at most
}

void ResultsWindow::showFirstPlace()
{
    const ResultRow *const row = m_table->currentFile();
    if (row && !(row->isMinified() && messagesAbout(*row).empty()))
        showSource(firstPlaceIn(*row));
}

void ResultsWindow::showSource(const CompressorMessage &about)
{
    const ResultRow *const row = m_table->currentFile();
    if (!row || row->source.isEmpty())
        return;
    if (!m_viewer)
        m_viewer = new SourceViewer(this); // a child of this
    m_viewer->showSource(*row, about, m_encodingName());
}

void ResultsWindow::updateFilter()
{
    m_table->setFilter(ResultModel::Shown(m_filter->states().shown()), m_filter->text());
}

void ResultsWindow::updateHint()
{
    const bool hasRows = m_model.run() && !m_model.run()->rows.empty();
    showHint(hasRows ? tr("No file matches.") : tr("No run yet. What becomes of each file is shown here."));
}

/// The picture goes where it would take the room of the totals.
void ResultsWindow::fitPicture()
{
    const int room = width() - 3 * windowEdge - m_picture->sizeHint().width();
    m_picture->setVisible(!m_picture->isEmpty() &&
                          room >= fontMetrics().averageCharWidth() * lettersOfTotals);
}

QStringList ResultsWindow::toRetry() const
{
    QStringList sources;
    if (!m_model.run() || m_model.run()->isRunning || m_model.run()->isOfStart())
        return sources; // what a start tells of was not to be minified now
    for (const ResultRow &row : m_model.run()->rows) {
        const bool isRestored = row.remarks && row.remarks->isRestored;
        if (!row.isMinified() && !isRestored && !row.source.isEmpty())
            sources.append(row.source);
    }
    return sources;
}

void ResultsWindow::showEvent(QShowEvent *event)
{
    StateWindow::showEvent(event);
    updatePane();
    updateOffer();
}

/// Nothing is asked for nobody.
void ResultsWindow::hideEvent(QHideEvent *event)
{
    StateWindow::hideEvent(event);
    m_inquiry.wantNothing();
}

void ResultsWindow::resizeEvent(QResizeEvent *event)
{
    StateWindow::resizeEvent(event);
    fitPicture();
}

} // namespace brevant
