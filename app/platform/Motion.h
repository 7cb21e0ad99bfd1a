// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>

namespace brevant {

/// Whether the user has asked the desktop for less motion: GNOME's switch for animations, or KDE's animation
/// speed at "instant", as the desktop portal tells them. False if the portal is not running or does not
/// answer at once.
[[nodiscard]] bool isMotionReduced(const QDBusConnection &bus = QDBusConnection::sessionBus());

} // namespace brevant
