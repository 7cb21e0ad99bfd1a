// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/ApplicationService.h"
#include "app/Instance.h"
#include "app/StartUp.h"
#include "app/platform/Activation.h"
#include "app/platform/FontLoading.h"
#include "files/Descriptor.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    brevant::openClosedStandardStreams();
    if (brevant::answeredInWords(argc, argv))
        return 0;
    const QVariantMap activation = brevant::activationFromEnvironment();
    brevant::ApplicationService service;
    brevant::Instance instance(service, brevant::sessionBusAddress());
    if (!brevant::mayHaveDisplay(argc, argv)) {
        const QCoreApplication qtApplication(argc, argv); // a Brevant that runs may have one
        instance.finishClaim();
        if (const std::optional<int> status = instance.handOver(brevant::launchOnCommandLine(), activation))
            return *status;
    }
    brevant::FontLoading fonts;
    const QApplication qtApplication(argc, argv);
    brevant::setUpApplication();
    instance.finishClaim();
    fonts.wait();
    const brevant::Launch launch = brevant::launchOnCommandLine();
    if (const std::optional<int> status = instance.handOver(launch, activation))
        return *status;
    brevant::Application application(brevant::SettingsStore::defaultFilePath());
    application.serve(service);
    application.start(launch);
    return QApplication::exec();
}
