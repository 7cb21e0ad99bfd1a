// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Module.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>

namespace brevant {

QFunctionPointer moduleFunction(const char *module, const char *function)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    // A build folder, the tests in it, an installation.
    for (const char *const place : {"modules", "../modules", BREVANT_INSTALLED_MODULES}) {
        const QString file = folder.filePath(
            QStringLiteral("%1/%2.so").arg(QLatin1StringView(place), QLatin1StringView(module)));
        if (QFile::exists(file))
            return QLibrary::resolve(file, function);
    }
    return nullptr;
}

} // namespace brevant
