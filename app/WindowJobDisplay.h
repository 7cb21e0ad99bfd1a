// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"
#include "engine/JobDisplay.h"

#include <QObject>

#include <functional>

namespace brevant {

class DoneSound;

/// Shows minify jobs in the window. A job calls from its own thread; each call is handed to the main thread,
/// in order, and never waited for. Must outlive the jobs.
class WindowJobDisplay final : public QObject, public JobDisplay {
    Q_OBJECT

public:
    WindowJobDisplay(const Outlets &outlets, DoneSound &sound, QObject *parent = nullptr);

    void lockControls() override;
    void setStatusText(const QString &text) override;
    void selectRow(int row) override;
    void deselectRows() override;
    void playDoneSound() override;
    void unlockControls() override;

private:
    void onMainThread(std::function<void()> step);

    const Outlets m_outlets;
    DoneSound &m_sound;
};

} // namespace brevant
