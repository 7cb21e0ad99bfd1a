// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Tools.h"

#include <QString>

namespace brevant {

class DockTile;
class DoneSound;
class FileQueue;
class JobRunner;
class RunNews;
class SettingsStore;
class Workspace;

/// Where the user is sent; empty where the build names no address.
struct Addresses {
    QString homePage;
    QString supportMail;
};

/// What the two controllers share: made once, and outliving both.
struct Services {
    SettingsStore &settings;
    FileQueue &queue;
    JobRunner &jobs;
    DockTile &dockTile;
    DoneSound &doneSound;
    Workspace &workspace;
    RunNews &runNews;
    Tools tools;
    Addresses addresses;
};

} // namespace brevant
