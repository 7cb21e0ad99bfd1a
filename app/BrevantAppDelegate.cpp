// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BrevantAppDelegate.h"

#include "app/Application.h"
#include "files/RawBytes.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"

#include <algorithm>
#include <vector>

namespace brevant {

namespace {

PreviewOutput outputShown(const QString &source, const QString &output, const QString &original = {})
{
    if (KeptOriginals::isThere(original))
        return {output, {}, original};
    if (output == source)
        return {{}, PreviewPanel::tr("The output replaces the source.")};
    return {output, {}};
}

/// What the last run over the file has left; for one that was in none, where its output would be.
PreviewOutput previewedOutput(const Application &app, const QString &source)
{
    auto runs = app.results.runs.all();
    std::ranges::reverse(runs); // the last one first
    for (const auto &run : runs) {
        const std::vector<ResultRow> &rows = run->rows;
        const auto row = std::ranges::find(rows, source, &ResultRow::source);
        if (row == rows.end() || row->state == ResultRow::State::NotRun)
            continue;
        if (row->state == ResultRow::State::Running)
            break;
        if (row->isMinified())
            return outputShown(source, row->output, row->remarks ? row->remarks->original : QString());
        const QString why = row->remarks && !row->remarks->messages.shown.empty()
                                ? row->remarks->messages.shown.front().inWords()
                                : row->reason();
        return {{}, PreviewPanel::tr("Not minified: %1").arg(printable(why))};
    }
    return outputShown(source, OutputPath(app.settings).next(source).value_or(QString()));
}

} // namespace

BrevantAppDelegate::BrevantAppDelegate(Application &app, QObject *parent) : QObject(parent), m_app(app) {}

BrevantAppDelegate::~BrevantAppDelegate()
{
    if (m_sharedPreviewPanel && m_sharedPreviewPanel->isOpen())
        m_app.controller.endPreviewPanelControl();
}

void BrevantAppDelegate::awakeFromNib()
{
    const Ui::MainWindow &ui = m_app.window.ui();
    connect(ui.quickLookMenu, &QAction::triggered, this, &BrevantAppDelegate::togglePreviewPanel);
    connect(ui.filesTable, &BVTableView::togglePreviewPanel, this, &BrevantAppDelegate::togglePreviewPanel);
}

bool BrevantAppDelegate::applicationShouldHandleReopen([[maybe_unused]] bool hasVisibleWindows)
{
    m_app.window.setWindowState(m_app.window.windowState() & ~Qt::WindowMinimized);
    m_app.window.show();
    m_app.window.raise();
    m_app.window.activateWindow();
    return true;
}

void BrevantAppDelegate::applicationOpenFiles(const QStringList &paths)
{
    if (m_app.window.addFiles(paths) && m_app.settings.isTrue(autoMinifyCheckerKeyString))
        startRun();
}

void BrevantAppDelegate::minifyFiles(const QStringList &paths)
{
    if (m_app.window.addFiles(paths))
        startRun();
}

void BrevantAppDelegate::startRun()
{
    m_app.jobs.detachNewThread([this](const std::atomic<Stop> &stop) { doMinify(stop); });
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
        [this] { return m_app.settings.stringForKey(selectedEncodingKeyString).value_or(QString()); },
        &m_app.window);
    m_sharedPreviewPanel->setOutputOf(
        [this](const QString &source) { return previewedOutput(m_app, source); });
    connect(m_sharedPreviewPanel.get(), &PreviewPanel::willOpen, this, [this] {
        if (m_app.controller.acceptsPreviewPanelControl())
            m_app.controller.beginPreviewPanelControl(m_sharedPreviewPanel.get());
        m_app.window.setPreviewOpen(true);
    });
    connect(m_sharedPreviewPanel.get(), &PreviewPanel::didClose, this, [this] {
        m_app.controller.endPreviewPanelControl();
        m_app.window.setPreviewOpen(false);
    });
}

void BrevantAppDelegate::doMinify(const std::atomic<Stop> &stop)
{
    runMinifyJob(m_app, stop);
}

} // namespace brevant
