// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/QueueDisplay.h"

#include "app/StatusLine.h"
#include "app/platform/DockTile.h"
#include "queue/FileQueue.h"
#include "queue/view/BVTableView.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QAction>
#include <QPushButton>

namespace brevant {

QString itemCountText(int count)
{
    return count == 1 ? QStringLiteral("%1 item").arg(count) : QStringLiteral("%1 items").arg(count);
}

namespace {

/// A button that goes hands the focus on as the Tab key does, and the list would draw its ring.
void takeFocusOffButtons(const Outlets &outlets)
{
    if (outlets.minifyButton->hasFocus() || outlets.clearButton->hasFocus())
        outlets.filesTable->setFocus(Qt::OtherFocusReason);
}

} // namespace

void setControlsAvailable(const Outlets &outlets, bool available)
{
    if (!available)
        takeFocusOffButtons(outlets);
    outlets.minifyButton->setVisible(available);
    outlets.clearButton->setVisible(available);
    outlets.minifyMenu->setEnabled(available);
    outlets.clearMenu->setEnabled(available);
}

void setControlsLocked(const Outlets &outlets, bool locked)
{
    outlets.minifyMenu->setEnabled(!locked);
    outlets.clearMenu->setEnabled(!locked);
    if (locked)
        takeFocusOffButtons(outlets);
    outlets.clearButton->setVisible(!locked);
    outlets.minifyButton->setVisible(!locked);
}

void QueueDisplay::refreshAfterAdding()
{
    if (m_queue.isEmpty())
        return;
    m_outlets.filesTable->setBackgroundColor(QColor(Qt::white));
    m_outlets.filesTable->reloadData();
    setControlsAvailable(m_outlets, true);
    showBadgeIfOn();
    showCount();
}

void QueueDisplay::refreshAfterRemoving()
{
    showCount();
    showBadgeIfOn();
    if (!m_queue.isEmpty())
        return;
    setControlsAvailable(m_outlets, false);
    m_outlets.filesTable->setBackgroundColor(std::nullopt);
    m_outlets.progressTextField->setStringValue(QString());
    m_dockTile.setBadgeLabel(QString());
}

void QueueDisplay::refreshAfterClearing()
{
    m_outlets.filesTable->setBackgroundColor(std::nullopt);
    m_outlets.window->setPalette(QPalette());
    m_outlets.filesTable->reloadData();
    setControlsAvailable(m_outlets, false);
    m_outlets.progressTextField->setStringValue(QString());
    m_dockTile.setBadgeLabel(QString());
}

void QueueDisplay::refreshAfterCombining()
{
    showCount();
    showBadgeIfOn();
}

void QueueDisplay::updateBadge()
{
    if (!m_settings.boolForKey(badgeCheckerKeyString))
        m_dockTile.setBadgeLabel(QString());
    else if (!m_queue.isEmpty())
        showBadgeIfOn();
}

void QueueDisplay::showCount()
{
    m_outlets.progressTextField->setStringValue(itemCountText(m_queue.count()));
}

void QueueDisplay::showBadgeIfOn()
{
    if (m_settings.boolForKey(badgeCheckerKeyString))
        m_dockTile.setBadgeLabel(QString::number(m_queue.count()));
}

} // namespace brevant
