// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/PreferenceController.h"

#include "widgets/FilePanel.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

namespace brevant {

std::optional<QString> runFolderPanel(QWidget *window, const QString &startFolder)
{
    QFileDialog panel(window, QCoreApplication::translate("FolderPanel", "Choose a Folder"));
    panel.setFileMode(QFileDialog::Directory);
    panel.setOption(QFileDialog::ShowDirsOnly, true);
    panel.setOption(QFileDialog::ReadOnly, false); // new folders can be made
    setUpFilePanel(panel);
    panel.setSupportedSchemes({QStringLiteral("file")});
    if (QFileInfo(startFolder).isDir())
        panel.setDirectory(startFolder);
    if (panel.exec() != QDialog::Accepted)
        return std::nullopt;
    const QStringList chosen = panel.selectedFiles();
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.constFirst());
}

} // namespace brevant
