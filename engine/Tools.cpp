// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Tools.h"

#include "files/PathString.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

namespace brevant {

using namespace Qt::StringLiterals;

QStringList Tools::standardOriginals()
{
    QStringList paths;
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    const QString home = qEnvironmentVariable("HOME");
    if (state.startsWith(u'/'))
        paths.append(PathString::join(state, u"brevant/originals"));
    else if (home.startsWith(u'/'))
        paths.append(PathString::join(home, u".local/state/brevant/originals"));
    paths.append(PathString::join(QDir::tempPath(), u"brevant-originals-%1"_s.arg(::geteuid())));
    return paths;
}

Tools Tools::inResources(const QString &resourceFolder)
{
    Tools tools;
    tools.folder = resourceFolder + "/lib"_L1;
    return tools;
}

QString Tools::esbuild() const
{
    return PathString::join(programs, u"esbuild");
}

QString Tools::markup() const
{
    return PathString::join(programs, u"brevant-markup");
}

QString Tools::missing() const
{
    if (!QFileInfo(java).isExecutable())
        return u"Java was not found at %1. Install it, on Debian with: sudo apt install "
               "default-jre-headless"_s.arg(java);
    for (const QLatin1StringView archive : {yuiCompressor, htmlCompressor}) {
        const QString path = PathString::join(folder, QString(archive));
        if (!QFileInfo(path).isFile())
            return u"The compressor %1 is missing. Install Brevant again, or fetch it into that "
                   "folder with: scripts/fetch-compressors"_s.arg(path);
    }
    return {};
}

QString Tools::missingModern() const
{
    for (const QString &path : {esbuild(), markup(), PathString::join(programs, u"minify.so")}) {
        if (!QFileInfo(path).isFile())
            return u"The modern compressor %1 is missing. Install Brevant again, or fetch it with: "
                   "scripts/fetch-compressors"_s.arg(path);
    }
    return {};
}

QString findResourceFolder()
{
    const QString program = QFileInfo(u"/proc/self/exe"_s).canonicalFilePath();
    const QDir folder = QFileInfo(program).dir();
    QString beside = folder.filePath(u"resources"_s);
    if (QFileInfo(beside).isDir())
        return beside;
    return QDir::cleanPath(folder.filePath(QStringLiteral(BREVANT_INSTALLED_RESOURCES)));
}

} // namespace brevant
