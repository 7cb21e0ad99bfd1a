// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

class AppController;
class ApplicationService;
class BrevantAppDelegate;
class Lifetime;
class MainWindow;
class Notification;

/// Connects what the session bus asks for with those who do it. The actions are those of the desktop entry;
/// any other is passed over.
void connectRequests(ApplicationService &service, MainWindow &window, AppController &controller,
                     BrevantAppDelegate &delegate);

/// Brings the window to the front for a click on either notification. That of the runs is taken back when the
/// user quits; that of the sources is not, for it is said nowhere else.
void connectNotifications(Notification &ofRuns, Notification &ofSources, MainWindow &window,
                          BrevantAppDelegate &delegate, Lifetime &lifetime);

} // namespace brevant
