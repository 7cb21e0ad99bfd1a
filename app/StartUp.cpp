// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QApplication>
#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QSettings>

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
    static_cast<void>(launchOnCommandLine());
    return true;
}

bool mayHaveDisplay(int argc, char *argv[])
{
    constexpr std::array<const char *, 3> variables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    constexpr std::array<std::string_view, 2> words{"-platform", "--platform"};
    return std::any_of(variables.begin(), variables.end(),
                       [](const char *name) { return !qEnvironmentVariableIsEmpty(name); }) ||
           std::find_first_of(argv + 1, argv + argc, words.begin(), words.end()) != argv + argc;
}

void setUpApplication()
{
    nameApplication();
    // No display name: Qt would put it behind the title of every window that does not end in it.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.brevant.Brevant"));
    QIcon::setFallbackThemeName(QStringLiteral("breeze"));
    // Where Qt's file panels would keep the folders that were shown, in a file for all programs made with Qt.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void loadApplicationIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/org.brevant.Brevant.png").arg(size),
                     QSize(size, size));
    QApplication::setWindowIcon(icon);
}

Launch launchOnCommandLine()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Minifies CSS, JavaScript, HTML and PHP files."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption minify(QStringLiteral("minify"),
                                    QStringLiteral("Minify the list once the files are on it."));
    parser.addOption(minify);
    // The name that the desktop's own programs have for it.
    QCommandLineOption service(QStringLiteral("gapplication-service"));
    service.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(service);
    parser.addPositionalArgument(
        QStringLiteral("PATH"),
        QStringLiteral("Files and folders to list, in the window that is open if there is one."),
        QStringLiteral("[PATH...]"));
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "brevant: %s\nTry: brevant --help\n",
                     qUtf8Printable(printable(parser.errorText())));
        std::exit(2);
    }
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp();
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    Launch launch{{}, parser.isSet(minify), parser.isSet(service)};
    for (const QString &path : parser.positionalArguments())
        launch.paths.append(PathString::absolute(path));
    return launch;
}

} // namespace brevant
