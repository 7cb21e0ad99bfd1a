// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/Restoring.h"

#include "app/results/MessagePane.h"
#include "app/results/ResultModel.h"
#include "app/results/ResultTable.h"
#include "engine/originals/KeptOriginals.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "widgets/Dialogs.h"

#include <QAction>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr qsizetype mostLines = 5; // of a sheet

bool canBeRestored(const ResultRow &row)
{
    return row.remarks && KeptOriginals::isThere(row.remarks->original);
}

QString nameOf(const QString &path)
{
    return printable(PathString::lastComponent(path).toString());
}

/// The name that the original would get beside its source.
QString freeSecondName(const QString &source)
{
    int number = 1;
    while (QFileInfo::exists(secondName(source, number)))
        ++number;
    return nameOf(secondName(source, number));
}

QString firstLines(const QStringList &all)
{
    const QString first = all.first(std::min(mostLines, all.size())).join(u'\n');
    const qsizetype more = all.size() - mostLines;
    return more > 0 ? first + u'\n' + Restoring::tr("And %1 more.").arg(more) : first;
}

QString failureHeadline(qsizetype count)
{
    return count == 1 ? Restoring::tr("One original could not be put back.")
                      : Restoring::tr("%1 originals could not be put back.").arg(count);
}

} // namespace

Restoring::Restoring(QAction &action, const ResultTable &table, const ResultModel &model, QWidget &window)
    : QObject(&window), m_action(action), m_table(table), m_model(model), m_window(window)
{
    connect(&action, &QAction::triggered, this, &Restoring::request);
}

/// The selected files whose originals are kept.
std::vector<RestoreWish> Restoring::wishes() const
{
    std::vector<RestoreWish> wishes;
    for (const int row : m_table.selectedRows()) {
        if (const ResultRow &file = m_model.at(row); canBeRestored(file))
            wishes.push_back(
                {m_model.run()->number, m_model.recordAt(row), file.source, file.remarks->original});
    }
    return wishes;
}

/// Why nothing can be put back; empty if something can.
QString Restoring::whyNot(bool isAnyRunning) const
{
    if (isAnyRunning || m_isAtWork)
        return tr("Not while files are worked on.");
    const std::vector<int> rows = m_table.selectedRows();
    if (std::ranges::any_of(rows, [this](int row) { return canBeRestored(m_model.at(row)); }))
        return {};
    const ResultRow *const row = m_table.currentFile();
    if (!row)
        return tr("No file is selected.");
    if (row->remarks && row->remarks->isRestored)
        return tr("The original has been put back.");
    if (!row->isMinified() || row->output != row->source)
        return tr("The source was not changed.");
    if (!row->remarks || (row->remarks->original.isEmpty() && row->remarks->notKept.isEmpty()))
        return tr("Originals are kept only if the preferences say so.");
    return row->remarks->original.isEmpty() ? wholeSentence(row->remarks->notKept)
                                            : tr("The original is not kept any more.");
}

void Restoring::follow(bool isAnyRunning)
{
    const QString why = whyNot(isAnyRunning);
    m_action.setEnabled(why.isEmpty());
    m_action.setToolTip(why.isEmpty() ? tr("Put the original back in the place of the output") : why);
}

void Restoring::request()
{
    if (const std::vector<RestoreWish> all = wishes(); !all.empty())
        begin(all, false);
}

void Restoring::begin(const std::vector<RestoreWish> &wishes, bool isBeside)
{
    m_isAtWork = true;
    follow(false);
    Q_EMIT requested(wishes, isBeside);
}

void Restoring::take(const std::vector<RestoreWish> &wishes, const std::vector<RestoredSource> &done)
{
    m_isAtWork = false;
    QStringList failures;
    std::vector<RestoreWish> changed;
    for (std::size_t i = 0; i < done.size(); ++i) {
        if (done[i].outcome == RestoredSource::Outcome::Changed)
            changed.push_back(wishes[i]);
        else if (done[i].outcome == RestoredSource::Outcome::Failed)
            failures.append(u"%1: %2"_s.arg(nameOf(wishes[i].source), wholeSentence(done[i].error)));
    }
    if (!m_window.isVisible())
        return; // the rows say it
    const QString lines = failures.isEmpty() ? QString() : firstLines(failures);
    if (!changed.empty())
        offerBeside(changed,
                    failures.isEmpty() ? QString() : failureHeadline(failures.size()) + u'\n' + lines);
    else if (!failures.isEmpty())
        showWarningSheet(&m_window, failureHeadline(failures.size()), lines, tr("OK"));
}

/// Asks whether the originals of files that hold something newer are wanted by other names.
void Restoring::offerBeside(const std::vector<RestoreWish> &changed, const QString &failures)
{
    const bool isOne = changed.size() == 1;
    const QString &source = changed.front().source;
    QStringList names;
    for (const RestoreWish &wish : changed)
        names.append(u"%1, as %2"_s.arg(nameOf(wish.source), freeSecondName(wish.source)));
    const QString text = isOne ? tr("%1 is no longer what its run has written.").arg(nameOf(source))
                               : tr("%1 files are no longer what their run has written.").arg(changed.size());
    const QString offer = isOne
                              ? tr("So that nothing newer is lost, its original was not put back. It can be "
                                   "saved beside it, as %1.")
                                    .arg(freeSecondName(source))
                              : tr("So that nothing newer is lost, their originals were not put back. They "
                                   "can be saved beside them:\n%1")
                                    .arg(firstLines(names));
    auto *const sheet = new QMessageBox(&m_window); // deletes itself when it is closed
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setWindowTitle(m_window.windowTitle());
    sheet->setIcon(QMessageBox::Question);
    sheet->setTextFormat(Qt::PlainText);
    sheet->setText(text);
    sheet->setInformativeText(failures.isEmpty() ? offer : offer + u"\n\n"_s + failures);
    QPushButton *const save = sheet->addButton(tr("&Save Beside"), QMessageBox::AcceptRole);
    sheet->setDefaultButton(save);
    sheet->addButton(QMessageBox::Cancel);
    connect(save, &QPushButton::clicked, this, [this, changed] { begin(changed, true); });
    sheet->open();
}

} // namespace brevant
