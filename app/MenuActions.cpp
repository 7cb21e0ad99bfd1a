// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MenuActions.h"

#include "app/AppController.h"
#include "app/BrevantAppDelegate.h"
#include "app/Lifetime.h"
#include "app/MainWindow.h"
#include "ui_MainWindow.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace brevant {

namespace {

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
        "Copyright 2026 The Brevant developers. Free software under the GNU General Public License, version "
        "3 "
        "or later; there is no warranty."));
    box->open();
}

} // namespace

void connectActions(MainWindow &window, AppController &controller, BrevantAppDelegate &delegate,
                    Lifetime &lifetime)
{
    const Ui::MainWindow &ui = window.ui();
    const auto menu = [&controller](QAction *action, void (AppController::*member)()) {
        QObject::connect(action, &QAction::triggered, &controller, member);
    };
    menu(ui.addFilesMenu, &AppController::addFile);
    menu(ui.minifyMenu, &AppController::minify);
    menu(ui.combineMenu, &AppController::combine);
    menu(ui.clearMenu, &AppController::clear);
    menu(ui.selectAllMenu, &AppController::selectAll);
    menu(ui.removeMenu, &AppController::removeRow);
    menu(ui.revealMenu, &AppController::revealInFinder);
    menu(ui.preferencesMenu, &AppController::showPreferencePanel);
    menu(ui.homePageMenu, &AppController::mainPage);
    menu(ui.feedbackMenu, &AppController::feedback);
    ui.feedbackMenu->setVisible(controller.takesFeedback());
    QObject::connect(ui.quitMenu, &QAction::triggered, &lifetime, &Lifetime::quit);
    QObject::connect(ui.quickLookMenu, &QAction::triggered, &delegate,
                     &BrevantAppDelegate::togglePreviewPanel);
    QObject::connect(&delegate, &BrevantAppDelegate::previewPanelToggled, &window,
                     &MainWindow::setPreviewOpen);
    QObject::connect(ui.aboutMenu, &QAction::triggered, &window, [&window] { showAbout(window); });
    QObject::connect(ui.minifyButton, &QPushButton::clicked, &controller, &AppController::minify);
    QObject::connect(ui.clearButton, &QPushButton::clicked, &controller, &AppController::clear);
    QObject::connect(ui.filesTable, &BVTableView::togglePreviewPanel, &delegate,
                     &BrevantAppDelegate::togglePreviewPanel);
}

} // namespace brevant
