// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowJobDisplay.h"

#include "app/QueueDisplay.h"
#include "app/StatusLine.h"
#include "app/platform/DoneSound.h"
#include "queue/view/BVTableView.h"

#include <utility>

namespace brevant {

WindowJobDisplay::WindowJobDisplay(const Outlets &outlets, DoneSound &sound, QObject *parent)
    : QObject(parent), m_outlets(outlets), m_sound(sound)
{
}

void WindowJobDisplay::onMainThread(std::function<void()> step)
{
    QMetaObject::invokeMethod(this, std::move(step), Qt::QueuedConnection);
}

void WindowJobDisplay::lockControls()
{
    onMainThread([this] { setControlsAvailable(m_outlets, false); });
}

void WindowJobDisplay::setStatusText(const QString &text)
{
    onMainThread([this, text] { m_outlets.progressTextField->setStringValue(text); });
}

void WindowJobDisplay::selectRow(int row)
{
    onMainThread([this, row] {
        m_outlets.filesTable->deselectAll();
        m_outlets.filesTable->selectRowIndexes({row}, true);
    });
}

void WindowJobDisplay::deselectRows()
{
    onMainThread([this] { m_outlets.filesTable->deselectAll(); });
}

void WindowJobDisplay::playDoneSound()
{
    onMainThread([this] {
        if (m_sound.load())
            m_sound.play();
    });
}

void WindowJobDisplay::unlockControls()
{
    onMainThread([this] { setControlsAvailable(m_outlets, true); });
}

} // namespace brevant
