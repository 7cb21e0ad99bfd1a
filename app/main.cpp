// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "engine/Tools.h"
#include "files/Descriptor.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QApplication>
#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// What the command line asks for. Answers --help and --version, and ends the process with 2 for an unknown
/// option.
Launch launchOnCommandLine()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Minifies CSS, JavaScript, HTML and PHP files."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({u"minify"_s, u"Minify the list once the files are on it."_s});
    QCommandLineOption service(u"gapplication-service"_s); // as the programs of the desktop call it
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
    if (parser.isSet(u"version"_s)) {
        std::printf("brevant " BREVANT_VERSION "\n%s",
                    qUtf8Printable(Tools::inResources(findResourceFolder()).versions()));
        std::exit(0);
    }
    Launch launch{{}, parser.isSet(u"minify"_s), parser.isSet(service)};
    for (const QString &path : parser.positionalArguments())
        launch.paths.append(PathString::absolute(path));
    return launch;
}

/// Whether one of the words is among the arguments.
bool isGiven(int argc, char *argv[], std::initializer_list<std::string_view> words)
{
    return std::find_first_of(argv + 1, argv + argc, words.begin(), words.end()) != argv + argc;
}

/// Whether a display is named, or a Qt platform that needs none.
bool mayHaveDisplay(int argc, char *argv[])
{
    constexpr std::array<const char *, 3> variables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::ranges::any_of(variables,
                               [](const char *name) { return !qEnvironmentVariableIsEmpty(name); }) ||
           isGiven(argc, argv, {"-platform", "--platform"});
}

} // namespace

} // namespace brevant

int main(int argc, char *argv[])
{
    using namespace brevant;

    openClosedStandardStreams();
    QCoreApplication::setApplicationName(u"brevant"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVANT_VERSION));
    const QVariantMap activation = activationFromEnvironment();
    ApplicationService service;
    const auto handedOver = [&](const Launch &launch) {
        return service.claimOrHandOver(sessionBus(), launch, activation);
    };
    // Printing the help or the version needs no display, and an instance that is already running may have
    // one.
    if (isGiven(argc, argv, {"-h", "--help", "-v", "--version"}) || !mayHaveDisplay(argc, argv)) {
        const QCoreApplication qtApplication(argc, argv);
        if (const std::optional<int> status = handedOver(launchOnCommandLine()))
            return *status;
    }
    const std::future<void> fonts = loadFonts();
    const QApplication qtApplication(argc, argv);
    setUpApplication();
    const Launch launch = launchOnCommandLine();
    if (const std::optional<int> status = handedOver(launch))
        return *status;
    Application application(SettingsStore::defaultFilePath(), sessionBus());
    fonts.wait();
    application.setUp();
    application.serve(service);
    application.start(launch);
    return QApplication::exec();
}
