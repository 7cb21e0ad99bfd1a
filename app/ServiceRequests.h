// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

class AppController;
class ApplicationService;
class BrevantAppDelegate;
class MainWindow;

/// Connects what the session bus asks for with those who do it. The actions are those of the desktop entry;
/// any other is passed over.
void connectRequests(ApplicationService &service, MainWindow &window, AppController &controller,
                     BrevantAppDelegate &delegate);

} // namespace brevant
