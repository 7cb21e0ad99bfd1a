// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "app/AccessibleWindows.h"
#include "ui_MainWindow.h"
#include "widgets/BackgroundDrag.h"
#include "widgets/FusionStyle.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QTimer>

#include <utility>

// Resources in a static library are there only for those who ask; the macro wants to stand outside of
// namespaces.
static void loadResources()
{
    Q_INIT_RESOURCE(brevant);
}

namespace brevant {

namespace {

constexpr double shareOfScreen = 0.9; // the rest is for the title bar and the frame

} // namespace

MainWindow::MainWindow() : m_ui(std::make_unique<Ui::MainWindow>()) {}

MainWindow::~MainWindow()
{
    // The focus changes once more while the window goes, when its buttons are no longer known.
    disconnect(qApp, nullptr, this, nullptr);
}

void MainWindow::setUp()
{
    loadResources();
    installAccessibleWindows();
    FusionStyle::install();
    m_ui->setupUi(this);
    // A screen with large pixels may have no room for the usual size.
    resize(size().boundedTo(screen()->availableSize() * shareOfScreen));
    m_ui->DropView->setImageNamed(QStringLiteral("dropN"));
    m_ui->filesTable->setDropView(m_ui->DropView);
    m_ui->spinner->hide();
    new BackgroundDrag(this); // a child of this
    setUpButtons();
    setUpContextMenu();
    m_closePreview = new QShortcut(Qt::Key_Escape, this); // a child of this
    m_closePreview->setEnabled(false);
    connect(m_closePreview, &QShortcut::activated, m_ui->quickLookMenu, &QAction::trigger);
    connect(m_ui->filesTable, &BVTableView::selectionDidChange, this, &MainWindow::updateSelectionActions);
    updateSelectionActions();
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

void MainWindow::setUpContextMenu()
{
    auto *const menu = new QMenu(this); // a child of the window, where assistive programs find it
    menu->setObjectName(QStringLiteral("contextMenu"));
    menu->setAccessibleName(m_ui->filesTable->accessibleName());
    menu->addActions({m_ui->quickLookMenu, m_ui->revealMenu, m_ui->combineMenu, m_ui->removeMenu});
    m_ui->filesTable->setMenu(menu);
}

Outlets MainWindow::outlets()
{
    return {
        .window = this,
        .filesTable = m_ui->filesTable,
        .DropView = m_ui->DropView,
        .spinner = m_ui->spinner,
        .progressTextField = m_ui->progressTextField,
        .minifyButton = m_ui->minifyButton,
        .clearButton = m_ui->clearButton,
        .minifyMenu = m_ui->minifyMenu,
        .clearMenu = m_ui->clearMenu,
        .combineMenu = m_ui->combineMenu,
    };
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
