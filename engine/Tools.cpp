// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Tools.h"

#include "files/PathString.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

namespace brevant {

QStringList Tools::standardOriginals()
{
    QStringList paths;
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    const QString home = qEnvironmentVariable("HOME");
    if (state.startsWith(u'/'))
        paths.append(PathString::join(state, u"brevant/originals"));
    else if (home.startsWith(u'/'))
        paths.append(PathString::join(home, u".local/state/brevant/originals"));
    paths.append(PathString::join(QDir::tempPath(), QStringLiteral("brevant-originals-%1").arg(::geteuid())));
    return paths;
}

Tools Tools::inResources(const QString &resourceFolder)
{
    Tools tools;
    tools.folder = resourceFolder + QLatin1StringView("/lib");
    return tools;
}

QString Tools::yuiCompressor()
{
    return QStringLiteral("yuicompressor-2.4.8.jar");
}

QString Tools::htmlCompressor()
{
    return QStringLiteral("htmlcompressor-1.5.3.jar");
}

QString Tools::missing() const
{
    if (!QFileInfo(java).isExecutable())
        return QStringLiteral("Java was not found at %1. Install it, on Debian with: sudo apt install "
                              "default-jre-headless")
            .arg(java);
    for (const QString &archive : {yuiCompressor(), htmlCompressor()}) {
        const QString path = PathString::join(folder, archive);
        if (!QFileInfo(path).isFile())
            return QStringLiteral(
                       "The compressor %1 is missing. Install Brevant again, or fetch it into that "
                       "folder with: scripts/fetch-compressors")
                .arg(path);
    }
    return {};
}

QString findResourceFolder()
{
    const QString program = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    const QDir folder = QFileInfo(program).dir();
    QString beside = folder.filePath(QStringLiteral("resources"));
    if (QFileInfo(beside).isDir())
        return beside;
    return QDir::cleanPath(folder.filePath(QStringLiteral(BREVANT_INSTALLED_RESOURCES)));
}

} // namespace brevant
