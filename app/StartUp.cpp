// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include "queue/PathString.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>

#include <cstdio>
#include <cstdlib>

namespace brevant {

void setUpApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("brevant"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVANT_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Brevant"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.brevant.Brevant"));
    QIcon::setFallbackThemeName(QStringLiteral("breeze"));
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/org.brevant.Brevant.png").arg(size),
                     QSize(size, size));
    QApplication::setWindowIcon(icon);
}

QStringList pathsOnCommandLine()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Minifies CSS, JavaScript, HTML and PHP files."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("Files and folders to list."),
                                 QStringLiteral("[PATH...]"));
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "brevant: %s\nTry: brevant --help\n", qUtf8Printable(parser.errorText()));
        std::exit(2);
    }
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp();
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    QStringList paths;
    for (const QString &path : parser.positionalArguments())
        paths.append(PathString::absolute(path));
    return paths;
}

} // namespace brevant
