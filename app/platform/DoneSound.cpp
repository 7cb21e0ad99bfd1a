// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DoneSound.h"

#include "app/sound/SoundEngine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>

namespace brevant {

namespace {

/// Makes an engine from the module, in whichever of the places it is; null if it is in none.
std::unique_ptr<SoundEngine> makeEngine()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    // A build folder, the tests in it, an installation.
    for (const char *const place : {"modules", "../modules", BREVANT_INSTALLED_MODULES}) {
        const QString file = folder.filePath(QLatin1StringView(place) + QLatin1StringView("/brevant-sound.so"));
        if (!QFile::exists(file))
            continue;
        // Stays loaded to the end: a thread that the sound server holds up may still be in it.
        QLibrary module(file);
        if (const auto make = reinterpret_cast<MakeSoundEngine>(module.resolve("brevantMakeSoundEngine")))
            return std::unique_ptr<SoundEngine>(make());
    }
    return nullptr;
}

} // namespace

DoneSound::DoneSound() = default;

DoneSound::~DoneSound() = default;

bool DoneSound::load(const QString &path)
{
    if (!m_engine)
        m_engine = makeEngine();
    QFile file(path);
    return m_engine && m_engine->loadFromData(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
}

void DoneSound::play()
{
    if (m_engine)
        m_engine->play();
}

} // namespace brevant
