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
#include <optional>
#include <string_view>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

struct CommandLine {
    Launch launch;
    std::optional<int> status; ///< to end with at once
};

/// What the command line asks for. Answers --help and --version, and to an unknown option.
CommandLine readCommandLine()
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
        return {{}, 2};
    }
    if (parser.isSet(u"help"_s)) {
        std::printf("%s", qUtf8Printable(parser.helpText()));
        return {{}, 0};
    }
    if (parser.isSet(u"version"_s)) {
        std::printf("brevant " BREVANT_VERSION "\n%s",
                    qUtf8Printable(Tools::inResources(findResourceFolder()).versions()));
        return {{}, 0};
    }
    Launch launch{{}, parser.isSet(u"minify"_s), parser.isSet(service)};
    for (const QString &path : parser.positionalArguments())
        launch.paths.append(PathString::absolute(path));
    return {launch, std::nullopt};
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
    const auto statusAfter = [&](const CommandLine &line) {
        return line.status ? line.status : service.claimOrHandOver(sessionBus(), line.launch, activation);
    };
    // Printing the help or the version needs no display, and an instance that is already running may have
    // one.
    if (isGiven(argc, argv, {"-h", "--help", "-v", "--version"}) || !mayHaveDisplay(argc, argv)) {
        const QCoreApplication qtApplication(argc, argv);
        if (const std::optional<int> status = statusAfter(readCommandLine()))
            return *status;
    }
    const std::future<void> fonts = loadFonts(); // which every return waits for
    const QApplication qtApplication(argc, argv);
    setUpApplication();
    const CommandLine line = readCommandLine();
    if (const std::optional<int> status = statusAfter(line))
        return *status;
    Application application(SettingsStore::defaultFilePath(), sessionBus());
    fonts.wait();
    application.setUp();
    application.serve(service);
    application.start(line.launch);
    return QApplication::exec();
}
