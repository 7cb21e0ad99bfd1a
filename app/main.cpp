// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Application.h"
#include "app/StartUp.h"
#include "app/platform/FontLoading.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    if (brevant::answeredInWords(argc, argv))
        return 0;
    brevant::FontLoading fonts;
    const QApplication qtApplication(argc, argv);
    brevant::setUpApplication();
    const QStringList paths = brevant::pathsOnCommandLine();
    fonts.wait();
    brevant::Application application(brevant::SettingsStore::defaultFilePath());
    application.start(paths);
    return QApplication::exec();
}
