// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SavePanel.h"

#include "looks/FilePanel.h"
#include "queue/PathString.h"

#include <QLineEdit>

namespace brevant {

SavePanel::SavePanel(const QString &kind, const QString &name, QWidget *parent)
    : QFileDialog(parent, tr("Save Combined File")), m_kind(kind)
{
    // Only our own panel lets us see to the ending before it asks whether to replace a file.
    setOption(DontUseNativeDialog);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    setUpFilePanel(*this);
    setNameFilter(tr("%1 files (*.%2)").arg(kind.toUpper(), kind));
    selectFile(PathString::withExtension(name, kind));
}

QString SavePanel::chosenPath() const
{
    return selectedFiles().value(0);
}

void SavePanel::accept()
{
    auto *const nameEdit = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QString name = nameEdit->text();
    while (name.endsWith(u'.'))
        name.chop(1);
    if (!name.isEmpty() && !name.endsWith(u'/') && PathString::extension(name) != m_kind)
        nameEdit->setText(PathString::withExtension(name, m_kind));
    QFileDialog::accept();
}

} // namespace brevant
