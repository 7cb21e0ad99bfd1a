// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant::SoundMessages {

/// From now on nothing is said about sound: what Qt would print from the calling thread, or from the thread
/// the sound server's library works in, is dropped. Everything else is printed as before.
void hideThoseOfThisThread();

} // namespace brevant::SoundMessages
