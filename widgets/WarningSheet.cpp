// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/WarningSheet.h"

#include <QLabel>
#include <QMessageBox>

namespace brevant {

void showWarningSheet(QWidget *window, const QString &message, const QString &informativeText,
                      const QString &button)
{
    auto *const sheet = new QMessageBox(window); // deletes itself when it is closed
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setWindowTitle(window->windowTitle());
    sheet->setIcon(QMessageBox::Warning);
    sheet->setTextFormat(Qt::PlainText);
    sheet->setText(message);
    sheet->setInformativeText(informativeText);
    sheet->addButton(button, QMessageBox::AcceptRole);
    if (auto *const headline = sheet->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        QFont bold = headline->font();
        bold.setBold(true);
        headline->setFont(bold);
    }
    sheet->open();
}

} // namespace brevant
