// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Tools.h"

#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

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
    tools.programs = findProgramFolder();
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

QString Tools::minify() const
{
    return PathString::join(programs, u"minify.so");
}

QString Tools::versions() const
{
    const std::pair<QString, QString> compressors[]{
        {u"YUI Compressor 2.4.8"_s, PathString::join(folder, QString(yuiCompressor))},
        {u"htmlcompressor 1.5.3"_s, PathString::join(folder, QString(htmlCompressor))},
        {u"esbuild 0.28.2"_s, esbuild()},
        {u"minify 2.24.8"_s, minify()},
    };
    QString text;
    for (const auto &[name, path] : compressors)
        text += QFileInfo(path).isFile() ? name + u'\n' : name + u" (missing)\n"_s;
    return text;
}

bool Tools::hasBrotli()
{
    return QFileInfo(brotli()).isExecutable();
}

QString Tools::missingClassic() const
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

QString Tools::missingModern(const QString &esbuild) const
{
    for (const QString &path : {esbuild.isEmpty() ? this->esbuild() : esbuild, markup(), minify()}) {
        if (!QFileInfo(path).isFile())
            return u"The modern compressor %1 is missing. Install Brevant again, or fetch it with: "
                   "scripts/fetch-compressors"_s.arg(path);
    }
    return {};
}

QString Tools::missing(const SettingsStore &settings) const
{
    if (settings.isTrue(brotliCheckerKeyString) && !hasBrotli())
        return u"Brotli copies need %1. Install it, on Debian with: sudo apt install brotli"_s.arg(brotli());
    return isModernChosen(settings)
               ? missingModern(settings.stringForKey(esbuildPathKeyString).value_or(QString()))
               : missingClassic();
}

/// What is beside the running program in a build folder, else what is installed, seen from the program.
static QString besideProgram(const QString &name, const QString &installed)
{
    const QDir folder = QFileInfo(QFileInfo(u"/proc/self/exe"_s).canonicalFilePath()).dir();
    const QString beside = folder.filePath(name);
    return QFileInfo(beside).isDir() ? beside : QDir::cleanPath(folder.filePath(installed));
}

QString findResourceFolder()
{
    return besideProgram(u"resources"_s, QStringLiteral(BREVANT_INSTALLED_RESOURCES));
}

QString findProgramFolder()
{
    return besideProgram(u"libexec"_s, QStringLiteral(BREVANT_INSTALLED_PROGRAMS));
}

} // namespace brevant
