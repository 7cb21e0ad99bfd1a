// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

class AppController;
class BrevantAppDelegate;
class Lifetime;
class MainWindow;

/// Connects every button and menu item of the window to its action.
void connectActions(MainWindow &window, AppController &controller, BrevantAppDelegate &delegate,
                    Lifetime &lifetime);

} // namespace brevant
