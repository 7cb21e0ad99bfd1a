// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "app/planned/RunManner.h"
#include "app/platform/DockTile.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "ui_MainWindow.h"
#include "widgets/BackgroundDrag.h"
#include "widgets/FusionStyle.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMessageBox>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

// The resources of a static library must be initialised, from outside of any namespace.
static void loadResources()
{
    Q_INIT_RESOURCE(brevant);
}

namespace brevant {

namespace {

constexpr double shareOfScreen = 0.9; // the rest is for the title bar and the frame

void showAbout(QWidget &window)
{
    auto *const box = new QMessageBox(&window); // deletes itself
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QCoreApplication::translate("About", "About Brevant"));
    box->setIconPixmap(window.windowIcon().pixmap(64));
    box->setText(
        QCoreApplication::translate("About", "Brevant %1").arg(QCoreApplication::applicationVersion()));
    box->setInformativeText(QCoreApplication::translate(
        "About",
        "Minifies CSS, JavaScript, HTML and PHP files with YUI Compressor 2.4.8 and htmlcompressor 1.5.3.\n\n"
        "Copyright 2026 The Brevant developers. Free software under the GNU General Public License, "
        "version 3 or later; there is no warranty."));
    box->open();
}

void showButtons(const Ui::MainWindow &ui, std::initializer_list<QPushButton *> buttons, bool visible)
{
    for (QPushButton *const button : buttons) {
        // Otherwise Qt moves the focus on as the Tab key does, and the list draws its focus ring.
        if (!visible && button->hasFocus())
            ui.filesTable->setFocus(Qt::OtherFocusReason);
        button->setVisible(visible);
    }
}

} // namespace

MainWindow::MainWindow(FileQueue &queue, const SettingsStore &settings, DockTile &dockTile)
    : m_queue(queue), m_settings(settings), m_dockTile(dockTile), m_ui(std::make_unique<Ui::MainWindow>())
{
}

MainWindow::~MainWindow()
{
    // The focus changes once more during destruction, when the buttons are gone.
    disconnect(qApp, nullptr, this, nullptr);
}

void MainWindow::setUp()
{
    loadResources();
    installAccessibleWindows();
    FusionStyle::install();
    m_ui->setupUi(this);
    // A screen with few pixels may have no room for the usual size.
    resize(size().boundedTo(screen()->availableSize() * shareOfScreen));
    m_ui->DropView->setImageNamed(u"dropN"_s);
    m_ui->filesTable->setDropView(m_ui->DropView);
    m_ui->filesTable->setBackgroundColor(std::nullopt);
    m_ui->spinner->hide();
    new BackgroundDrag(this); // a child of this
    setUpButtons();
    setUpMenus();
    setControlsAvailable(false);
    m_ui->filesTable->setFocus();
}

void MainWindow::setUpButtons()
{
    // The bar keeps its height while the buttons are hidden.
    for (QPushButton *button : {m_ui->clearButton, m_ui->minifyButton}) {
        QSizePolicy policy = button->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        button->setSizePolicy(policy);
    }
    connect(&m_queue, &QAbstractItemModel::rowsInserted, this, &MainWindow::updateMinifyToolTip);
    connect(&m_queue, &QAbstractItemModel::modelReset, this, &MainWindow::updateMinifyToolTip);
    connect(&m_settings, &SettingsStore::didChange, this, &MainWindow::updateMinifyToolTip);
    // As in a dialog, Return presses the default button, which is the one that has the focus, if any.
    connect(qApp, &QApplication::focusChanged, this, [this] {
        m_ui->clearButton->setDefault(m_ui->clearButton->hasFocus());
        m_ui->minifyButton->setDefault(!m_ui->clearButton->isDefault());
    });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *const shortcut = new QShortcut(key, this); // a child of this
        connect(shortcut, &QShortcut::activated, this, [this] {
            QPushButton *const button =
                m_ui->clearButton->isDefault() ? m_ui->clearButton : m_ui->minifyButton;
            if (button->isVisible())
                button->click();
        });
    }
}

void MainWindow::setUpMenus()
{
    auto *const menu = new QMenu(this); // a child of the window, where assistive programs find it
    menu->setObjectName(u"contextMenu"_s);
    menu->setAccessibleName(m_ui->filesTable->accessibleName());
    menu->addActions({m_ui->quickLookMenu, m_ui->revealMenu, m_ui->combineMenu, m_ui->removeMenu});
    m_ui->filesTable->setMenu(menu);
    m_closePreview = new QShortcut(Qt::Key_Escape, this); // a child of this
    m_closePreview->setEnabled(false);
    connect(m_closePreview, &QShortcut::activated, m_ui->quickLookMenu, &QAction::trigger);
    connect(m_ui->aboutMenu, &QAction::triggered, this, [this] { showAbout(*this); });
    connect(m_ui->filesTable, &BVTableView::selectionDidChange, this, &MainWindow::updateSelectionActions);
    updateSelectionActions();
}

bool MainWindow::addFiles(const QStringList &paths)
{
    if (!paths.isEmpty()) {
        m_ui->spinner->show();
        const auto hideSpinner = qScopeGuard([this] { m_ui->spinner->hide(); });
        // The window does not paint by itself until the walk is over.
        m_ui->bottomLayout->activate();
        m_ui->bottomBar->repaint();
        for (const QString &path : paths)
            addTopLevelPath(path, m_queue, m_settings);
    }
    if (m_queue.isEmpty())
        return false;
    m_ui->filesTable->setBackgroundColor(QColor(Qt::white));
    m_ui->filesTable->reloadData();
    setControlsAvailable(true);
    showBadgeIfOn();
    showCountText();
    return true;
}

void MainWindow::showRemaining()
{
    showCount();
    if (m_queue.isEmpty())
        showEmpty();
}

void MainWindow::showCleared()
{
    m_ui->filesTable->setBackgroundColor(std::nullopt);
    setPalette(QPalette());
    m_ui->filesTable->reloadData();
    showEmpty();
}

void MainWindow::showEmpty()
{
    setControlsAvailable(false);
    m_ui->filesTable->setBackgroundColor(std::nullopt);
    setStatusText({});
    m_dockTile.setBadgeLabel({});
}

void MainWindow::showCount()
{
    showCountText();
    showBadgeIfOn();
}

void MainWindow::showCountText()
{
    const int count = m_queue.count();
    setStatusText((count == 1 ? u"%1 item"_s : u"%1 items"_s).arg(count));
}

void MainWindow::showBadgeIfOn()
{
    if (m_settings.boolForKey(badgeCheckerKeyString))
        m_dockTile.setBadgeLabel(QString::number(m_queue.count()));
}

void MainWindow::updateMinifyToolTip()
{
    m_ui->minifyButton->setToolTip(RunManner(m_settings).ofMinify(m_queue.count()));
}

void MainWindow::updateBadge()
{
    if (!m_settings.boolForKey(badgeCheckerKeyString))
        m_dockTile.setBadgeLabel({});
    else if (!m_queue.isEmpty())
        showBadgeIfOn();
}

void MainWindow::setStatusText(const QString &text)
{
    if (text == m_ui->progressTextField->text())
        return;
    m_ui->progressTextField->setText(text); // which tells assistive programs
    m_ui->progressTextField->setToolTip(text);
}

void MainWindow::setControlsAvailable(bool available)
{
    showButtons(*m_ui, {m_ui->minifyButton, m_ui->clearButton}, available);
    m_ui->minifyMenu->setEnabled(available);
    m_ui->clearMenu->setEnabled(available);
}

void MainWindow::setRunning(bool isRunning)
{
    m_ui->minifyMenu->setEnabled(!isRunning);
    m_ui->clearMenu->setEnabled(!isRunning);
    showButtons(*m_ui, {m_ui->clearButton, m_ui->minifyButton}, !isRunning);
}

void MainWindow::setPreviewOpen(bool isOpen)
{
    m_closePreview->setEnabled(isOpen);
    updateSelectionActions();
}

void MainWindow::updateSelectionActions()
{
    const bool anySelected = m_ui->filesTable->selectedRow() >= 0;
    m_ui->removeMenu->setEnabled(anySelected);
    m_ui->revealMenu->setEnabled(anySelected);
    m_ui->quickLookMenu->setEnabled(anySelected || m_closePreview->isEnabled());
}

void MainWindow::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!std::exchange(m_painted, true))
        QTimer::singleShot(0, this, &MainWindow::painted);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    hide();
    Q_EMIT closed();
}

} // namespace brevant
