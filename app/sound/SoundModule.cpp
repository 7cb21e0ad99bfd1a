// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundThread.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT brevant::SoundEngine *brevantMakeSoundEngine()
{
    return new brevant::SoundThread;
}
