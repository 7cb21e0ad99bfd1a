// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "engine/CombineFiles.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"
#include "widgets/Dialogs.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// Asks where to save a file of one kind. The name shown ends in the kind, and so does the name chosen,
/// whatever is typed; a file that is there already is replaced only after the user has agreed. While saving
/// is not allowed, the panel stays open and cannot be confirmed.
class SavePanel final : public QFileDialog {
public:
    /// `kind` is an extension without its dot.
    SavePanel(const QString &kind, QWidget *parent)
        : QFileDialog(parent, tr("Save Combined File")), m_kind(kind)
    {
        // Only Qt's own panel lets us correct the extension before it asks whether to replace a file.
        setOption(DontUseNativeDialog);
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
        setUpFilePanel(*this);
        setNameFilter(tr("%1 files (*.%2)").arg(kind.toUpper(), kind));
        selectFile(PathString::withExtension(u"combined", kind));
        m_nameEdit = findChild<QLineEdit *>(u"fileNameEdit"_s);
        connect(m_nameEdit, &QLineEdit::textChanged, this, &SavePanel::updateSaveButton);
    }

    void setSavingAllowed(bool allowed)
    {
        m_savingAllowed = allowed;
        updateSaveButton();
    }

    void accept() override
    {
        QString name = m_nameEdit->text();
        while (name.endsWith(u'.'))
            name.chop(1);
        if (!name.isEmpty() && !name.endsWith(u'/') && PathString::extension(name) != m_kind)
            m_nameEdit->setText(PathString::withExtension(name, m_kind));
        QFileDialog::accept();
    }

    void done(int result) override
    {
        // Checked last: the question whether to replace a file can stay open for long.
        if (result != Accepted || m_savingAllowed)
            QFileDialog::done(result);
    }

private:
    /// The dialog itself enables it when a name is typed.
    void updateSaveButton()
    {
        auto *const buttons = findChild<QDialogButtonBox *>();
        buttons->button(QDialogButtonBox::Save)->setEnabled(m_savingAllowed && !m_nameEdit->text().isEmpty());
    }

    const QString m_kind;
    bool m_savingAllowed = true;
    QLineEdit *m_nameEdit; ///< the dialog's own
};

std::vector<QString> selectedEntries(const Application &app)
{
    std::vector<QString> entries;
    for (const int row : app.window.ui().filesTable->selectedRowIndexes()) {
        if (std::optional<QString> entry = app.queue.entryAt(row))
            entries.push_back(*std::move(entry));
    }
    return entries;
}

/// Selects the row of the combined file, and only that, and scrolls to it.
void selectCombined(const Application &app, const QString &target)
{
    BVTableView &filesTable = *app.window.ui().filesTable;
    const int found = app.queue.indexOf(target);
    const int row = found >= 0 ? found : app.queue.count() - 1;
    filesTable.deselectAll();
    filesTable.selectRowIndexes({row}, false);
    filesTable.scrollRowToVisible(row);
}

void writeCombined(Application &app, const QString &target, TextEncoding encoding)
{
    const CombineResult result = combine(selectedEntries(app), target, encoding);
    if (!result.errorText.isEmpty())
        std::fprintf(stderr, "brevant: %s\n", qUtf8Printable(printable(result.errorText)));
    if (result.outcome == CombineResult::Outcome::Aborted)
        return;
    app.queue.removeAt(app.window.ui().filesTable->selectedRowIndexes());
    app.queue.append(target);
    app.window.ui().filesTable->reloadData();
    app.controller.refreshPreview();
    selectCombined(app, target);
    app.window.showCount();
}

} // namespace

/// Asks where to save the combined file, or says why the selection cannot be combined. Once the user has
/// confirmed, nothing else in the window can come between the reading and the new list.
void AppController::combine()
{
    const TextEncoding encoding = textEncodingNamed(m_app.settings.stringForKey(selectedEncodingKeyString));
    const std::vector<QString> entries = selectedEntries(m_app);
    if (const std::optional<CombineAlert> refusal = combineRefusal(entries)) {
        showWarningSheet(&m_app.window, refusal->title, refusal->message, tr("OK"));
        return;
    }
    auto *const panel = new SavePanel(combineKind(entries), &m_app.window); // deletes itself
    panel->setAttribute(Qt::WA_DeleteOnClose);
    // A run can still be started over the session bus.
    connect(m_app.window.ui().combineMenu, &QAction::enabledChanged, panel, &SavePanel::setSavingAllowed);
    connect(panel, &QDialog::accepted, this,
            [this, panel, encoding] { writeCombined(m_app, panel->selectedFiles().value(0), encoding); });
    panel->open();
}

} // namespace brevant
