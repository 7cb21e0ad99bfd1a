// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BrevantAppDelegate.h"

#include "app/Adding.h"
#include "app/AppController.h"
#include "app/JobRunner.h"
#include "app/WindowRun.h"
#include "app/preview/PreviewPanel.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QWidget>

namespace brevant {

BrevantAppDelegate::BrevantAppDelegate(const Services &services, const Outlets &outlets,
                                       PreviewPanelController &previewController, QObject *parent)
    : QObject(parent), m_services(services), m_outlets(outlets), m_previewController(previewController),
      m_queueDisplay(outlets, services.queue, services.settings, services.dockTile)
{
}

BrevantAppDelegate::~BrevantAppDelegate()
{
    if (m_sharedPreviewPanel && m_sharedPreviewPanel->isOpen())
        m_previewController.endPreviewPanelControl();
}

bool BrevantAppDelegate::applicationShouldHandleReopen([[maybe_unused]] bool hasVisibleWindows)
{
    QWidget *const window = m_outlets.window;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    return true;
}

void BrevantAppDelegate::applicationOpenFiles(const QStringList &paths)
{
    if (addFiles(paths) && m_services.settings.isTrue(autoMinifyCheckerKeyString))
        startRun();
}

void BrevantAppDelegate::minifyFiles(const QStringList &paths)
{
    if (addFiles(paths))
        startRun();
}

// Whether there is something on the list then.
bool BrevantAppDelegate::addFiles(const QStringList &paths)
{
    addWithSpinner(paths, m_outlets, m_services.queue, m_services.settings);
    if (m_services.queue.isEmpty())
        return false;
    m_queueDisplay.refreshAfterAdding();
    return true;
}

void BrevantAppDelegate::startRun()
{
    m_services.jobs.detachNewThread([this](const std::atomic<Stop> &stop) { doMinify(stop); });
}

void BrevantAppDelegate::togglePreviewPanel()
{
    if (m_sharedPreviewPanel && m_sharedPreviewPanel->isOpen()) {
        m_sharedPreviewPanel->orderOut();
        return;
    }
    if (!m_sharedPreviewPanel)
        makePreviewPanel();
    m_sharedPreviewPanel->makeKeyAndOrderFront();
}

void BrevantAppDelegate::makePreviewPanel()
{
    m_sharedPreviewPanel = std::make_unique<PreviewPanel>(
        [this] { return m_services.settings.stringForKey(selectedEncodingKeyString).value_or(QString()); },
        m_outlets.window);
    connect(m_sharedPreviewPanel.get(), &PreviewPanel::willOpen, this, [this] {
        if (m_previewController.acceptsPreviewPanelControl())
            m_previewController.beginPreviewPanelControl(m_sharedPreviewPanel.get());
        Q_EMIT previewPanelToggled(true);
    });
    connect(m_sharedPreviewPanel.get(), &PreviewPanel::didClose, this, [this] {
        m_previewController.endPreviewPanelControl();
        Q_EMIT previewPanelToggled(false);
    });
}

void BrevantAppDelegate::doMinify(const std::atomic<Stop> &stop)
{
    runMinifyJob(m_outlets, m_services, stop);
}

} // namespace brevant
