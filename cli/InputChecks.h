// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FileCopies.h"

namespace brevant {

class EntrySettings;
class FileQueue;
class SettingsStore;
struct CommandLine;

/// The file that the settings come from; empty for none.
[[nodiscard]] QString settingsFile(const CommandLine &line);

/// Applies --set. The compressors run in another folder, so a relative folder is made absolute here.
void overrideSettings(SettingsStore &settings, const CommandLine &line);

/// What is wrong with the files and folders on the command line; empty if nothing is. Keys of the settings
/// file that are no settings are named on standard error.
[[nodiscard]] QString inputError(const CommandLine &line);

/// Why no run is possible with these settings; empty if one is.
[[nodiscard]] QString settingsError(const CommandLine &line, const SettingsStore &settings);

/// Says which file of the run the report would overwrite; empty if none.
[[nodiscard]] QString reportPlaceError(const CommandLine &line, const FileQueue &queue,
                                       const EntrySettings &settings, const std::vector<FileCopy> &copies);

/// In words, for standard error.
[[nodiscard]] QString reportError(const CommandLine &line, const QString &reason);

} // namespace brevant
