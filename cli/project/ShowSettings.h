// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

class EntrySettings;
class ProjectUse;
struct CommandLine;

/// What holds in this folder, or for the one file that the command line names, and where each value comes
/// from. `given`: the command line itself.
[[nodiscard]] QString settingsText(const CommandLine &given, const ProjectUse &project,
                                   const EntrySettings &settings);

} // namespace brevant
