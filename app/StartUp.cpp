// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include "queue/PathString.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace brevant {

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("brevant"));
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVANT_VERSION));
}

} // namespace

bool answeredInWords(int &argc, char *argv[])
{
    constexpr std::array<std::string_view, 4> words{"-h", "--help", "-v", "--version"};
    if (std::find_first_of(argv + 1, argv + argc, words.begin(), words.end()) == argv + argc)
        return false;
    const QCoreApplication application(argc, argv);
    nameApplication();
    static_cast<void>(pathsOnCommandLine());
    return true;
}

void setUpApplication()
{
    nameApplication();
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Brevant"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.brevant.Brevant"));
    QIcon::setFallbackThemeName(QStringLiteral("breeze"));
}

void loadApplicationIcon()
{
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
