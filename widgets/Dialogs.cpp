// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Dialogs.h"

#include "files/SizeText.h"

#include <QFileDialog>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QTreeView>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr int sizeColumn = 1;
// The size of the panel in letters of its font, places and columns together.
constexpr int letters = 120;
constexpr int lettersOfNames = 45;
constexpr int lines = 26;

/// The files with their sizes as sizeText() has them.
class FilesWithSizes final : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override
    {
        const auto &files = *static_cast<QFileSystemModel *>(sourceModel());
        const QModelIndex source = mapToSource(index);
        if (index.column() == sizeColumn && role == Qt::DisplayRole && !files.isDir(source))
            return sizeText(files.size(source));
        return QIdentityProxyModel::data(index, role);
    }
};

} // namespace

void setUpFilePanel(QFileDialog &panel)
{
    auto *const files = panel.findChild<QTreeView *>(u"treeView"_s);
    if (!files)
        return;
    panel.setProxyModel(new FilesWithSizes(&panel)); // a child of the panel
    const QFontMetrics metrics(panel.font());
    files->header()->resizeSection(0, lettersOfNames * metrics.averageCharWidth());
    for (int column = sizeColumn; column < files->header()->count(); ++column)
        files->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    panel.resize(QSize(letters * metrics.averageCharWidth(), lines * metrics.lineSpacing())
                     .expandedTo(panel.sizeHint())
                     .boundedTo(panel.screen()->availableSize()));
}

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
    if (auto *const headline = sheet->findChild<QLabel *>(u"qt_msgbox_label"_s)) {
        QFont bold = headline->font();
        bold.setBold(true);
        headline->setFont(bold);
    }
    sheet->open();
}

} // namespace brevant
