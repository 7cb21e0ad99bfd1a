// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewText.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

namespace brevant {

PreviewText *makePreviewText(QWidget *parent)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    // A build folder, the tests in it, an installation.
    for (const QString &place : {u"modules"_s, u"../modules"_s, QStringLiteral(BREVANT_INSTALLED_MODULES)}) {
        QPluginLoader loader(folder.filePath(place + u"/brevant-preview.so"_s));
        if (const auto *const maker = qobject_cast<PreviewTextMaker *>(loader.instance()))
            return maker->make(parent);
    }
    return nullptr;
}

} // namespace brevant
