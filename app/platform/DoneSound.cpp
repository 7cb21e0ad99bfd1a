// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DoneSound.h"

#include "app/platform/Module.h"
#include "app/sound/SoundEngine.h"

#include <QFile>

namespace brevant {

DoneSound::DoneSound() = default;

DoneSound::~DoneSound() = default;

bool DoneSound::load(const QString &path)
{
    if (!m_engine) {
        if (const auto make =
                reinterpret_cast<MakeSoundEngine>(moduleFunction("brevant-sound", "brevantMakeSoundEngine")))
            m_engine.reset(make());
    }
    QFile file(path);
    return m_engine && m_engine->loadFromData(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
}

void DoneSound::play()
{
    if (m_engine)
        m_engine->play();
}

} // namespace brevant
