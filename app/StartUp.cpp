// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QApplication>
#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QIcon>
#include <QSettings>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <fontconfig/fontconfig.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(u"brevant"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVANT_VERSION));
}

} // namespace

bool printedHelpOrVersion(int &argc, char *argv[])
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

std::future<void> loadFonts()
{
    return std::async(std::launch::async, [] {
        // Must not slow the display server. On Linux each thread has its own nice value: sched(7).
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
        FcInit();
    });
}

void setUpApplication()
{
    nameApplication();
    // No display name: Qt would append it to the titles of windows.
    QGuiApplication::setDesktopFileName(u"org.brevant.Brevant"_s);
    QIcon::setFallbackThemeName(u"breeze"_s);
    // Keeps Qt's file panels from storing the folders shown in a file shared by all Qt programs.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/dev/null"_s);
}

Launch launchOnCommandLine()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Minifies CSS, JavaScript, HTML and PHP files."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption minify(u"minify"_s, u"Minify the list once the files are on it."_s);
    parser.addOption(minify);
    // The same name as in the programs of the desktop.
    QCommandLineOption service(u"gapplication-service"_s);
    service.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(service);
    parser.addPositionalArgument(u"PATH"_s,
                                 u"Files and folders to list, in the window that is open if there is one."_s,
                                 u"[PATH...]"_s);
    if (!parser.parse(QCoreApplication::arguments())) {
        std::fprintf(stderr, "brevant: %s\nTry: brevant --help\n",
                     qUtf8Printable(printable(parser.errorText())));
        std::exit(2);
    }
    if (parser.isSet(u"help"_s))
        parser.showHelp();
    if (parser.isSet(u"version"_s))
        parser.showVersion();
    Launch launch{{}, parser.isSet(minify), parser.isSet(service)};
    for (const QString &path : parser.positionalArguments())
        launch.paths.append(PathString::absolute(path));
    return launch;
}

} // namespace brevant
