// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

class QWindow;

namespace brevant {

/// What this process was given to prove that its user asked for it: "activation-token" (Wayland) and
/// "desktop-startup-id" (X11), each if there is one. To be asked before there is a QApplication, which takes
/// both out of the environment. The keys: the same page as in app/ApplicationService.h.
[[nodiscard]] QVariantMap activationFromEnvironment();

/// Makes a visible window the active one, with what another process was given. Without it, or on another
/// display, the call does nothing.
void activate(QWindow &window, const QVariantMap &platformData);

} // namespace brevant
