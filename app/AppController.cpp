// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppController.h"

#include "app/Adding.h"
#include "app/Combining.h"
#include "app/JobRunner.h"
#include "app/TableSelectionWatch.h"
#include "app/WindowRun.h"
#include "app/platform/Workspace.h"
#include "queue/FileQueue.h"
#include "queue/view/BVImageView.h"
#include "queue/view/BVTableView.h"
#include "queue/view/ExpandedPathToIconTransformer.h"
#include "queue/view/ImageTextCell.h"
#include "queue/view/OpenPanel.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "settings/preferences/PreferenceController.h"

#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace brevant {

AppController::AppController(const Services &services, const Outlets &outlets, QObject *parent)
    : QObject(parent), m_services(services), m_outlets(outlets),
      m_queueDisplay(outlets, services.queue, services.settings, services.dockTile),
      m_runOpenPanel(&OpenPanel::run),
      m_combining(std::make_unique<Combining>(outlets, services.queue, services.settings, services.jobs))
{
}

AppController::~AppController() = default;

void AppController::initialize(SettingsStore &settings)
{
    settings.registerDefaults(registeredDefaults());
}

void AppController::init()
{
    auto *const watch = new TableSelectionWatch(this); // a child of this
    connect(watch, &TableSelectionWatch::tableSelectionDidChange, this, &AppController::refreshPreview);
    connect(&m_services.settings, &SettingsStore::didChange, this, &AppController::updateBadge);
    connect(&m_services.settings, &SettingsStore::didChange, this, &AppController::updateDropHint);
}

void AppController::awakeFromNib()
{
    BVTableView *const filesTable = m_outlets.filesTable;
    filesTable->setModel(&m_services.queue);
    filesTable->setDropTarget(this);
    filesTable->setItemDelegateForColumn(0, new ImageTextCell(filesTable)); // a child of the table
    filesTable->setBackgroundColor(std::nullopt);
    connect(filesTable, &BVTableView::doubleAction, this, &AppController::addFile);
    connect(m_combining.get(), &Combining::didCombine, this, [this] {
        refreshPreview();
        m_combining->showResult();
        m_queueDisplay.refreshAfterCombining();
    });
    m_combining->watchJobs();
    updateDropHint();
    setControlsAvailable(m_outlets, false);
}

void AppController::addFile()
{
    const std::optional<QStringList> chosen =
        m_runOpenPanel(m_outlets.window, allowedFileTypes(m_services.settings));
    if (!chosen)
        return;
    addWithSpinner(*chosen, m_outlets, m_services.queue, m_services.settings);
    m_queueDisplay.refreshAfterAdding();
}

void AppController::minify()
{
    m_services.jobs.detachNewThread([this](const std::atomic<Stop> &stop) { doMinify(stop); });
}

void AppController::doMinify(const std::atomic<Stop> &stop)
{
    runMinifyJob(m_outlets, m_services, stop);
}

void AppController::clear()
{
    m_services.queue.clear();
    m_queueDisplay.refreshAfterClearing();
}

void AppController::selectAll()
{
    m_outlets.filesTable->selectAllRows();
}

void AppController::removeRow()
{
    BVTableView *const filesTable = m_outlets.filesTable;
    const std::vector<int> rows = filesTable->selectedRowIndexes();
    const int last = filesTable->selectedRow();
    m_services.queue.removeAt(rows);
    filesTable->reloadData();
    if (!rows.empty()) {
        // The row that has taken the place of the one selected last, or the new last one.
        const auto above = std::ranges::lower_bound(rows, last) - rows.begin();
        filesTable->selectRowIndexes({std::min(last - static_cast<int>(above), m_services.queue.count() - 1)},
                                     false);
    }
    refreshPreview();
    m_queueDisplay.refreshAfterRemoving();
}

void AppController::revealInFinder()
{
    if (const std::optional<QString> entry = m_services.queue.entryAt(m_outlets.filesTable->selectedRow()))
        m_services.workspace.selectFile(*entry);
}

void AppController::combine()
{
    m_combining->combine();
}

void AppController::showPreferencePanel()
{
    if (!preferenceController) {
        preferenceController =
            std::make_unique<PreferenceController>(m_services.settings, [](const QString &path) {
                return ExpandedPathToIconTransformer::transformedValue(path);
            });
    }
    preferenceController->showWindow();
}

void AppController::mainPage()
{
    const QString &address = m_services.addresses.homePage;
    // At the same place seen from the resources, installed or in a build folder.
    const QString manual = m_services.tools.folder + QLatin1StringView("/../../doc/brevant/brevant.1.html");
    static_cast<void>(
        m_services.workspace.openUrl(address.isEmpty() ? fileUrl(QDir::cleanPath(manual)) : QUrl(address)));
}

void AppController::feedback()
{
    const QUrl mail = feedbackMailUrl(m_services.addresses.supportMail,
                                      QCoreApplication::applicationVersion(), operatingSystemVersionString());
    static_cast<void>(m_services.workspace.openUrl(mail));
}

bool AppController::takesFeedback() const
{
    return !m_services.addresses.supportMail.isEmpty();
}

void AppController::updateDropHint()
{
    m_outlets.DropView->setWords(dropHint(m_services.settings));
}

void AppController::updateBadge()
{
    m_queueDisplay.updateBadge();
}

void AppController::refreshPreview()
{
    if (previewPanel == nullptr)
        return;
    // Looked up once for a panel that asks for many items.
    m_previewRows = m_outlets.filesTable->selectedRowIndexes();
    previewPanel->reloadData();
}

int AppController::numberOfRowsInTableView() const
{
    return m_services.queue.count();
}

QString AppController::tableViewObjectValue(int row) const
{
    return m_services.queue.entryAt(row).value_or(QString());
}

Qt::DropAction AppController::tableViewValidateDrop([[maybe_unused]] const QMimeData &drop)
{
    m_outlets.DropView->setImageNamed(QStringLiteral("dropP"));
    return Qt::CopyAction;
}

bool AppController::tableViewAcceptDrop(const QMimeData &drop)
{
    m_outlets.DropView->setImageNamed(QStringLiteral("dropN"));
    QStringList paths;
    for (const QUrl &url : drop.urls()) {
        if (const std::optional<QString> path = localPath(url))
            paths.append(*path);
    }
    addWithSpinner(paths, m_outlets, m_services.queue, m_services.settings);
    if (m_services.queue.isEmpty())
        return true;
    m_queueDisplay.refreshAfterAdding();
    if (m_services.settings.isTrue(autoMinifyCheckerKeyString))
        minify();
    return true;
}

void AppController::beginPreviewPanelControl(PreviewPanel *panel)
{
    previewPanel = panel;
    m_previewRows = m_outlets.filesTable->selectedRowIndexes();
    panel->setDelegate(this);
    panel->setDataSource(this);
}

void AppController::endPreviewPanelControl()
{
    previewPanel = nullptr;
}

int AppController::numberOfPreviewItemsInPreviewPanel() const
{
    return static_cast<int>(m_previewRows.size());
}

QUrl AppController::previewPanelPreviewItemAtIndex(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_previewRows.size())
        return {};
    return fileUrl(tableViewObjectValue(m_previewRows[static_cast<std::size_t>(index)]));
}

bool AppController::previewPanelHandleEvent(QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    m_outlets.filesTable->keyDown(static_cast<QKeyEvent *>(event));
    return true;
}

QRect AppController::previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const
{
    const int row = m_services.queue.indexOf(item.path(QUrl::FullyDecoded));
    return row < 0 ? QRect() : m_outlets.filesTable->frameOfCellOnScreen(row);
}

} // namespace brevant
