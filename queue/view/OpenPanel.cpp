// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/OpenPanel.h"

#include "files/PathString.h"
#include "queue/FileKind.h"
#include "widgets/Dialogs.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTreeView>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// The folder shown when the panel was last closed.
QString lastFolder;

} // namespace

QStringList allowedFileTypes(const SettingsStore &settings)
{
    QStringList types;
    for (const FileKind &kind : allFileKinds()) {
        if (kind.isSwitchedOn(settings))
            types += kind.extension.toString();
    }
    return types;
}

OpenPanel::OpenPanel(const QStringList &allowedTypes, QWidget *parent)
    : QFileDialog(parent), m_allowedTypes(allowedTypes)
{
    setWindowTitle(tr("Choose Files or Folders"));
    setOption(DontUseNativeDialog);
    setAcceptMode(AcceptOpen);
    setFileMode(ExistingFiles);
    QStringList patterns;
    for (const QString &type : allowedTypes)
        patterns += "*."_L1 + type;
    setNameFilter(tr("Files to minify (%1)").arg(patterns.join(u' ')));
    setUpFilePanel(*this);
    // QFileDialog makes them when its own widgets are first needed, under fixed names.
    m_list = findChild<QListView *>(u"listView"_s);
    m_nameEdit = findChild<QLineEdit *>(u"fileNameEdit"_s);
    setUpChooseButton();
    setUpHiddenFiles();
}

/// QFileDialog's own button opens a selected folder, where this panel must choose it.
void OpenPanel::setUpChooseButton()
{
    auto *const box = findChild<QDialogButtonBox *>(u"buttonBox"_s);
    if (QPushButton *const open = box->button(QDialogButtonBox::Open)) {
        box->removeButton(open);
        open->deleteLater();
    }
    m_chooseButton = box->addButton(tr("Choose"), QDialogButtonBox::AcceptRole);
    m_chooseButton->setDefault(true);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OpenPanel::updateChooseButton);
    connect(m_nameEdit, &QLineEdit::textChanged, this, &OpenPanel::updateChooseButton);
    // What is typed counts, not what was selected before.
    connect(m_nameEdit, &QLineEdit::textEdited, m_list, &QAbstractItemView::clearSelection);
    connect(this, &QFileDialog::directoryEntered, this, [this] {
        m_wasEntered = true;
        updateChooseButton();
    });
    updateChooseButton();
}

void OpenPanel::setUpHiddenFiles()
{
    auto *const action = new QAction(tr("Show &Hidden Files"), this);
    action->setCheckable(true);
    action->setShortcut(Qt::CTRL | Qt::Key_H);
    connect(action, &QAction::toggled, this,
            [this](bool shown) { setFilter(filter().setFlag(QDir::Hidden, shown)); });
    addAction(action);
}

void OpenPanel::updateChooseButton()
{
    m_chooseButton->setEnabled(!chosenPaths().isEmpty());
}

bool OpenPanel::mayBeChosen(const QString &path) const
{
    const QFileInfo item(path);
    if (item.isDir())
        return true;
    return item.exists() && std::ranges::any_of(m_allowedTypes, [&path](const QString &type) {
               return PathString::hasExtension(path, type);
           });
}

/// The text is one name, or several in quotation marks; relative ones lie in the folder shown.
QStringList OpenPanel::typedPaths() const
{
    const QString text = m_nameEdit->text();
    QStringList names{text};
    if (text.count(u'"') >= 2) {
        names = text.split(u'"');
        for (qsizetype i = names.size() - 1; i >= 0; i -= 2)
            names.removeAt(i);
    }
    QStringList paths;
    for (const QString &name : names) {
        const QString path = directory().absoluteFilePath(PathString::expandTilde(name));
        if (!name.isEmpty() && mayBeChosen(path))
            paths += QDir::cleanPath(path);
    }
    return paths;
}

QStringList OpenPanel::chosenPaths() const
{
    const auto &files = *findChild<QTreeView *>(u"treeView"_s);
    // The list sorts itself a moment after it has been read.
    files.model()->sort(files.header()->sortIndicatorSection(), files.header()->sortIndicatorOrder());
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty() && m_nameEdit->text().isEmpty() && m_wasEntered)
        return {directory().absolutePath()};
    if (rows.isEmpty())
        return typedPaths();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList paths;
    for (const QModelIndex &row : rows)
        paths += row.data(QFileSystemModel::FilePathRole).toString();
    return paths;
}

void OpenPanel::accept()
{
    if (!chosenPaths().isEmpty())
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): QFileDialog's would open a chosen folder
}

std::optional<QStringList> OpenPanel::run(QWidget *parent, const QStringList &allowedTypes)
{
    OpenPanel panel(allowedTypes, parent);
    panel.setDirectory(lastFolder.isEmpty() ? QDir::homePath() : lastFolder);
    const bool confirmed = panel.exec() == Accepted;
    lastFolder = panel.directory().absolutePath();
    if (!confirmed)
        return std::nullopt;
    return panel.chosenPaths();
}

} // namespace brevant
