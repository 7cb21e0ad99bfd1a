// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

class QWindow;

namespace brevant {

/// The right to come to the front that this process was started with: "activation-token" (Wayland) and
/// "desktop-startup-id" (X11), each if there is one. To be called before there is a QApplication, which takes
/// both out of the environment. The keys are those of the interface in app/ApplicationService.h.
[[nodiscard]] QVariantMap activationFromEnvironment();

/// Makes a visible window the active one with the right that another process was given. Does nothing without
/// it, or on another display.
void activate(QWindow &window, const QVariantMap &platformData);

} // namespace brevant
