// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SavePanel.h"

#include "files/PathString.h"
#include "widgets/Dialogs.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

namespace brevant {

SavePanel::SavePanel(const QString &kind, const QString &name, QWidget *parent)
    : QFileDialog(parent, tr("Save Combined File")), m_kind(kind)
{
    // Only Qt's own panel lets us correct the extension before it asks whether to replace a file.
    setOption(DontUseNativeDialog);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    setUpFilePanel(*this);
    setNameFilter(tr("%1 files (*.%2)").arg(kind.toUpper(), kind));
    selectFile(PathString::withExtension(name, kind));
    m_nameEdit = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    connect(m_nameEdit, &QLineEdit::textChanged, this, &SavePanel::updateSaveButton);
}

QString SavePanel::chosenPath() const
{
    return selectedFiles().value(0);
}

void SavePanel::setSavingAllowed(bool allowed)
{
    m_savingAllowed = allowed;
    updateSaveButton();
}

/// The dialog itself enables it when a name is typed.
void SavePanel::updateSaveButton()
{
    auto *const buttons = findChild<QDialogButtonBox *>();
    buttons->button(QDialogButtonBox::Save)->setEnabled(m_savingAllowed && !m_nameEdit->text().isEmpty());
}

void SavePanel::accept()
{
    QString name = m_nameEdit->text();
    while (name.endsWith(u'.'))
        name.chop(1);
    if (!name.isEmpty() && !name.endsWith(u'/') && PathString::extension(name) != m_kind)
        m_nameEdit->setText(PathString::withExtension(name, m_kind));
    QFileDialog::accept();
}

void SavePanel::done(int result)
{
    // Checked last: the question whether to replace a file can stay open for long.
    if (result != Accepted || m_savingAllowed)
        QFileDialog::done(result);
}

} // namespace brevant
