// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Adding.h"

#include "queue/FileQueue.h"

#include <QLayout>
#include <QProgressBar>

namespace brevant {

namespace {

/// Shows the spinner for as long as it lives.
class Spinning final {
public:
    explicit Spinning(QProgressBar &spinner) : m_spinner(spinner)
    {
        m_spinner.show();
        // The window does not come to paint by itself before the walk is over.
        if (QWidget *const bar = m_spinner.parentWidget(); bar != nullptr && bar->layout() != nullptr) {
            bar->layout()->activate();
            bar->repaint();
        }
    }
    ~Spinning() { m_spinner.hide(); }

    Spinning(const Spinning &) = delete;
    Spinning &operator=(const Spinning &) = delete;

private:
    QProgressBar &m_spinner;
};

} // namespace

void addWithSpinner(const QStringList &paths, const Outlets &outlets, FileQueue &queue,
                    const SettingsStore &settings)
{
    if (paths.isEmpty())
        return;
    const Spinning spinning(*outlets.spinner);
    for (const QString &path : paths)
        addTopLevelPath(path, queue, settings);
}

} // namespace brevant
