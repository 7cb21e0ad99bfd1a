// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/view/ExpandedPathToIconTransformer.h"

#include "files/PathString.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QPainter>
#include <QStandardPaths>
#include <QStyle>

#include <utility>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSize = 16;

QIcon folderIcon()
{
    return QIcon::fromTheme(u"folder"_s, QApplication::style()->standardIcon(QStyle::SP_DirIcon));
}

/// The folders that themes have icons of their own for.
QIcon iconOfFolder(const QString &path)
{
    static constexpr std::pair<QStandardPaths::StandardLocation, const char *> known[]{
        {QStandardPaths::HomeLocation, "user-home"},
        {QStandardPaths::DesktopLocation, "user-desktop"},
        {QStandardPaths::DocumentsLocation, "folder-documents"},
        {QStandardPaths::DownloadLocation, "folder-download"},
        {QStandardPaths::MusicLocation, "folder-music"},
        {QStandardPaths::PicturesLocation, "folder-pictures"},
        {QStandardPaths::MoviesLocation, "folder-videos"},
    };
    const QString clean = QDir::cleanPath(path);
    for (const auto &[location, name] : known) {
        if (clean == QStandardPaths::writableLocation(location))
            return QIcon::fromTheme(QLatin1StringView(name), folderIcon());
    }
    return folderIcon();
}

QIcon iconOfFile(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    const QIcon plain = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
    return QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName(), plain));
}

/// The icon in exactly one size, whatever sizes its source has.
QIcon atIconSize(const QIcon &source)
{
    QIcon icon;
    for (const int scale : {1, 2}) {
        const QPixmap image = source.pixmap(QSize(iconSize, iconSize), scale);
        const QSizeF size = image.deviceIndependentSize();
        QPixmap square(iconSize * scale, iconSize * scale);
        square.setDevicePixelRatio(scale);
        square.fill(Qt::transparent);
        QPainter painter(&square);
        painter.drawPixmap(QPointF((iconSize - size.width()) / 2, (iconSize - size.height()) / 2), image);
        painter.end();
        icon.addPixmap(square);
    }
    return icon;
}

} // namespace

QIcon ExpandedPathToIconTransformer::transformedValue(const std::optional<QString> &path)
{
    if (!path)
        return {};
    const QString expanded = PathString::expandTilde(*path);
    const QFileInfo item(expanded);
    if (PathString::extension(expanded).isEmpty() && !item.exists())
        return atIconSize(folderIcon());
    return atIconSize(item.isDir() ? iconOfFolder(expanded) : iconOfFile(expanded));
}

} // namespace brevant
