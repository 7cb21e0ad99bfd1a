// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "engine/classic/Explanation.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"

#include <QDir>
#include <QTemporaryDir>

namespace brevant::test {

/// A folder with sources, and the compressors of the build folder.
struct ClassicFixture {
    ClassicFixture()
    {
        settings.registerDefaults(registeredDefaults());
        tools.folder = QStringLiteral(BUILD_FOLDER "/resources/lib");
        tools.programs = QStringLiteral(BUILD_FOLDER "/libexec");
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    /// What is in the folder: names and contents.
    [[nodiscard]] QStringList tree() const
    {
        QStringList names;
        for (const QString &name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name))
            names.append(name + u": "_s + QString::fromUtf8(readFile(path(name))));
        return names;
    }

    /// The arguments of a run over the file.
    [[nodiscard]] QStringList arguments(const QString &name, const QString &output) const
    {
        return CompressorCommand(settings).arguments(path(name), path(output));
    }

    /// Why the compressor fails for a new file with that text.
    [[nodiscard]] Explanation explain(const QString &name, QByteArrayView text) const
    {
        return writeFile(path(name), text) ? explainFailure(arguments(name, u"out"_s), tools, stop)
                                           : Explanation();
    }

    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(u"absent/settings.json"_s)};
    Tools tools;
    std::atomic<Stop> stop = Stop::No;
};

} // namespace brevant::test
