// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Combining.h"

#include "app/AppContext.h"
#include "app/SavePanel.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"
#include "widgets/Dialogs.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace brevant {

Combining::Combining(AppContext &context, QObject *parent) : QObject(parent), m_app(context) {}

void Combining::watchJobs()
{
    QAction *const action = m_app.window.ui().combineMenu;
    connect(&m_app.jobs, &JobRunner::started, action, [action] { action->setEnabled(false); });
    connect(&m_app.jobs, &JobRunner::allEnded, action, [action] { action->setEnabled(true); });
}

std::vector<QString> Combining::selectedEntries() const
{
    std::vector<QString> entries;
    for (const int row : m_app.window.ui().filesTable->selectedRowIndexes()) {
        if (std::optional<QString> entry = m_app.queue.entryAt(row))
            entries.push_back(*std::move(entry));
    }
    return entries;
}

void Combining::combine()
{
    const TextEncoding encoding = textEncodingNamed(m_app.settings.stringForKey(selectedEncodingKeyString));
    const std::vector<QString> entries = selectedEntries();
    if (const std::optional<CombineAlert> refusal = combineRefusal(entries))
        showWarningSheet(&m_app.window, refusal->title, refusal->message, tr("OK"));
    else
        runSavePanel(combineKind(entries), encoding);
}

void Combining::runSavePanel(const QString &kind, TextEncoding encoding)
{
    auto *const panel = new SavePanel(kind, u"combined"_s, &m_app.window); // deletes itself
    panel->setAttribute(Qt::WA_DeleteOnClose);
    // A run can still be started over the session bus.
    connect(m_app.window.ui().combineMenu, &QAction::enabledChanged, panel, &SavePanel::setSavingAllowed);
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
    m_app.queue.removeAt(m_app.window.ui().filesTable->selectedRowIndexes());
    m_app.queue.append(target);
    m_app.window.ui().filesTable->reloadData();
    Q_EMIT didCombine();
    select(target);
    m_app.window.showCount();
}

/// Selects the row of the combined file, and only that, and scrolls to it.
void Combining::select(const QString &target)
{
    const int found = m_app.queue.indexOf(target);
    const int row = found >= 0 ? found : m_app.queue.count() - 1;
    m_app.window.ui().filesTable->deselectAll();
    m_app.window.ui().filesTable->selectRowIndexes({row}, false);
    m_app.window.ui().filesTable->scrollRowToVisible(row);
}

} // namespace brevant
