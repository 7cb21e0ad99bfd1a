// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppController.h"

#include "app/Application.h"
#include "app/results/StateTable.h"
#include "engine/Tools.h"
#include "queue/OutputPath.h"
#include "queue/view/BVImageView.h"
#include "queue/view/BVTableView.h"
#include "queue/view/ExpandedPathToIconTransformer.h"
#include "queue/view/ImageTextCell.h"
#include "queue/view/OpenPanel.h"
#include "settings/SettingsKeys.h"
#include "settings/preferences/PreferenceController.h"
#include "ui_MainWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

AppController::AppController(Application &app, QObject *parent)
    : QObject(parent), m_app(app), m_runOpenPanel(&OpenPanel::run)
{
}

AppController::~AppController() = default;

void AppController::initialize(SettingsStore &settings)
{
    settings.registerDefaults(registeredDefaults());
}

void AppController::init()
{
    QCoreApplication::instance()->installEventFilter(this);
    connect(&m_app.settings, &SettingsStore::didChange, this, &AppController::updateBadge);
    connect(&m_app.settings, &SettingsStore::didChange, this, &AppController::updateDropHint);
}

/// Watches the selection of every table but those of results and plans from its polishing on, which comes
/// once, before it is first shown.
bool AppController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Polish)
        return false;
    const auto *const table = qobject_cast<QTableView *>(watched);
    if (qobject_cast<StateTable *>(watched) != nullptr)
        return false; // what is selected there is nothing to preview
    if (const auto *const filesTable = qobject_cast<BVTableView *>(watched)) {
        connect(filesTable, &BVTableView::selectionDidChange, this, &AppController::refreshPreview,
                Qt::UniqueConnection);
    } else if (table != nullptr && table->selectionModel() != nullptr) {
        connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                &AppController::refreshPreview, Qt::UniqueConnection);
    }
    return false;
}

void AppController::awakeFromNib()
{
    BVTableView *const filesTable = m_app.window.ui().filesTable;
    filesTable->setModel(&m_app.queue);
    filesTable->setDropTarget(this);
    filesTable->setItemDelegateForColumn(0, new ImageTextCell(filesTable)); // a child of the table
    connect(filesTable, &BVTableView::doubleAction, this, &AppController::addFile);
    connectMenu();
    updateDropHint();
}

void AppController::connectMenu()
{
    const Ui::MainWindow &ui = m_app.window.ui();
    const std::pair<QAction *, void (AppController::*)()> items[] = {
        {ui.addFilesMenu, &AppController::addFile},
        {ui.minifyMenu, &AppController::minify},
        {ui.combineMenu, &AppController::combine},
        {ui.clearMenu, &AppController::clear},
        {ui.selectAllMenu, &AppController::selectAll},
        {ui.removeMenu, &AppController::removeRow},
        {ui.revealMenu, &AppController::revealInFinder},
        {ui.preferencesMenu, &AppController::showPreferencePanel},
        {ui.homePageMenu, &AppController::mainPage},
        {ui.feedbackMenu, &AppController::feedback},
    };
    for (const auto &[item, action] : items)
        connect(item, &QAction::triggered, this, action);
    connect(ui.minifyButton, &QPushButton::clicked, this, &AppController::minify);
    connect(ui.clearButton, &QPushButton::clicked, this, &AppController::clear);
    connect(&m_app.jobs, &JobRunner::started, ui.combineMenu, [&ui] { ui.combineMenu->setEnabled(false); });
    connect(&m_app.jobs, &JobRunner::allEnded, ui.combineMenu, [&ui] { ui.combineMenu->setEnabled(true); });
    ui.feedbackMenu->setVisible(!m_app.supportMail.isEmpty());
}

void AppController::addFile()
{
    if (const std::optional<QStringList> chosen =
            m_runOpenPanel(&m_app.window, allowedFileTypes(m_app.settings)))
        m_app.window.addFiles(*chosen);
}

void AppController::minify()
{
    m_app.jobs.detachNewThread([this](const std::atomic<Stop> &stop) { doMinify(stop); });
}

void AppController::doMinify(const std::atomic<Stop> &stop)
{
    runMinifyJob(m_app, stop);
}

void AppController::clear()
{
    m_app.queue.clear();
    m_app.results.hideMark();
    m_app.window.showCleared();
}

void AppController::selectAll()
{
    m_app.window.ui().filesTable->selectAllRows();
}

void AppController::removeRow()
{
    BVTableView *const filesTable = m_app.window.ui().filesTable;
    const std::vector<int> rows = filesTable->selectedRowIndexes();
    const int last = filesTable->selectedRow();
    m_app.queue.removeAt(rows);
    filesTable->reloadData();
    if (!rows.empty()) {
        // Select the row that takes the place of the one selected last, or the new last row.
        const auto above = std::ranges::lower_bound(rows, last) - rows.begin();
        filesTable->selectRowIndexes({std::min(last - static_cast<int>(above), m_app.queue.count() - 1)},
                                     false);
    }
    refreshPreview();
    m_app.window.showRemaining();
}

void AppController::revealInFinder()
{
    if (const std::optional<QString> entry = m_app.queue.entryAt(m_app.window.ui().filesTable->selectedRow()))
        m_app.workspace.selectFile(*entry);
}

void AppController::showPreferencePanel()
{
    if (!preferenceController) {
        PreferenceController::Questions questions;
        questions.iconForPath = &ExpandedPathToIconTransformer::transformedValue;
        questions.outputOf = [this](const QString &source) {
            return OutputPath(m_app.settings).next(source);
        };
        questions.hasBrotli = &Tools::hasBrotli;
        preferenceController = std::make_unique<PreferenceController>(m_app.settings, std::move(questions));
    }
    preferenceController->showWindow();
}

void AppController::mainPage()
{
    // The path from the resources is the same in an installation and in a build folder.
    const QString manual = QDir::cleanPath(m_app.tools.folder + u"/../../doc/brevant/brevant.1.html"_s);
    static_cast<void>(
        m_app.workspace.openUrl(m_app.homePage.isEmpty() ? fileUrl(manual) : QUrl(m_app.homePage)));
}

void AppController::feedback()
{
    static_cast<void>(m_app.workspace.openUrl(feedbackMailUrl(
        m_app.supportMail, QCoreApplication::applicationVersion(), operatingSystemVersionString())));
}

void AppController::updateDropHint()
{
    m_app.window.ui().DropView->setWords(dropHint(m_app.settings));
}

void AppController::updateBadge()
{
    m_app.window.updateBadge();
}

void AppController::refreshPreview()
{
    if (previewPanel == nullptr)
        return;
    // Looked up once, as the panel asks for many items.
    m_previewRows = m_app.window.ui().filesTable->selectedRowIndexes();
    previewPanel->reloadData();
}

int AppController::numberOfRowsInTableView() const
{
    return m_app.queue.count();
}

QString AppController::tableViewObjectValue(int row) const
{
    return m_app.queue.entryAt(row).value_or(QString());
}

Qt::DropAction AppController::tableViewValidateDrop([[maybe_unused]] const QMimeData &drop)
{
    m_app.window.ui().DropView->setImageNamed(u"dropP"_s);
    return Qt::CopyAction;
}

bool AppController::tableViewAcceptDrop(const QMimeData &drop)
{
    m_app.window.ui().DropView->setImageNamed(u"dropN"_s);
    if (m_app.window.addFiles(localPaths(drop.urls())) && m_app.settings.isTrue(autoMinifyCheckerKeyString))
        minify();
    return true;
}

void AppController::beginPreviewPanelControl(PreviewPanel *panel)
{
    previewPanel = panel;
    m_previewRows = m_app.window.ui().filesTable->selectedRowIndexes();
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
    m_app.window.ui().filesTable->keyDown(static_cast<QKeyEvent *>(event));
    return true;
}

QRect AppController::previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const
{
    const int row = m_app.queue.indexOf(item.path(QUrl::FullyDecoded));
    return row < 0 ? QRect() : m_app.window.ui().filesTable->frameOfCellOnScreen(row);
}

} // namespace brevant
