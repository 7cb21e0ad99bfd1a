// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/ApplicationService.h"
#include "app/StartUp.h"
#include "app/platform/Activation.h"
#include "files/Descriptor.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    brevant::openClosedStandardStreams();
    if (brevant::printedHelpOrVersion(argc, argv))
        return 0;
    const QVariantMap activation = brevant::activationFromEnvironment();
    brevant::ApplicationService service;
    const auto handedOver = [&](const brevant::Launch &launch) {
        return service.claimOrHandOver(brevant::sessionBus(), launch, activation);
    };
    if (!brevant::mayHaveDisplay(argc, argv)) {
        const QCoreApplication qtApplication(argc, argv); // a Brevant that runs may have one
        if (const std::optional<int> status = handedOver(brevant::launchOnCommandLine()))
            return *status;
    }
    const std::future<void> fonts = brevant::loadFonts();
    const QApplication qtApplication(argc, argv);
    brevant::setUpApplication();
    fonts.wait();
    const brevant::Launch launch = brevant::launchOnCommandLine();
    if (const std::optional<int> status = handedOver(launch))
        return *status;
    brevant::Application application(brevant::SettingsStore::defaultFilePath());
    application.setUp();
    application.serve(service);
    application.start(launch);
    return QApplication::exec();
}
