// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Combining.h"

#include "app/JobRunner.h"
#include "app/SavePanel.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "queue/view/BVTableView.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "widgets/WarningSheet.h"

#include <QAction>

#include <cstdio>

namespace brevant {

Combining::Combining(const Outlets &outlets, FileQueue &queue, const SettingsStore &settings, JobRunner &jobs,
                     QObject *parent)
    : QObject(parent), m_outlets(outlets), m_queue(queue), m_settings(settings), m_jobs(jobs)
{
}

void Combining::watchJobs()
{
    QAction *const action = m_outlets.combineMenu;
    connect(&m_jobs, &JobRunner::started, action, [action] { action->setEnabled(false); });
    connect(&m_jobs, &JobRunner::allEnded, action, [action] { action->setEnabled(true); });
}

std::vector<QString> Combining::selectedEntries() const
{
    std::vector<QString> entries;
    for (const int row : m_outlets.filesTable->selectedRowIndexes()) {
        if (std::optional<QString> entry = m_queue.entryAt(row))
            entries.push_back(*std::move(entry));
    }
    return entries;
}

void Combining::combine()
{
    const TextEncoding encoding = textEncodingNamed(m_settings.stringForKey(selectedEncodingKeyString));
    const std::vector<QString> entries = selectedEntries();
    if (const std::optional<CombineAlert> refusal = combineRefusal(entries))
        showWarningSheet(m_outlets.window, refusal->title, refusal->message, tr("OK"));
    else
        runSavePanel(combineKind(entries), encoding);
}

void Combining::runSavePanel(const QString &kind, TextEncoding encoding)
{
    auto *const panel = new SavePanel(kind, QStringLiteral("combined"), m_outlets.window); // deletes itself
    panel->setAttribute(Qt::WA_DeleteOnClose);
    // A run can still be started from outside.
    connect(m_outlets.combineMenu, &QAction::enabledChanged, panel, &SavePanel::setSavingAllowed);
    connect(panel, &SavePanel::accepted, this,
            [this, panel, encoding] { write(panel->chosenPath(), encoding); });
    panel->open();
}

void Combining::write(const QString &target, TextEncoding encoding)
{
    const CombineResult result = brevant::combine(selectedEntries(), target, encoding);
    if (!result.errorText.isEmpty())
        std::fprintf(stderr, "brevant: %s\n", qUtf8Printable(printable(result.errorText)));
    if (result.outcome == CombineResult::Outcome::Aborted)
        return;
    m_queue.removeAt(m_outlets.filesTable->selectedRowIndexes());
    m_queue.append(target);
    m_target = target;
    m_outlets.filesTable->reloadData();
    Q_EMIT didCombine();
}

void Combining::showResult()
{
    const int found = m_queue.indexOf(m_target);
    const int row = found >= 0 ? found : m_queue.count() - 1;
    m_outlets.filesTable->deselectAll();
    m_outlets.filesTable->selectRowIndexes({row}, false);
    m_outlets.filesTable->scrollRowToVisible(row);
}

} // namespace brevant
