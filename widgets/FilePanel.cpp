// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/FilePanel.h"

#include "widgets/SizeText.h"

#include <QFileDialog>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QScreen>
#include <QTreeView>

namespace brevant {

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
    auto *const files = panel.findChild<QTreeView *>(QStringLiteral("treeView"));
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

} // namespace brevant
