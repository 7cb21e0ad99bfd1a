// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

class SettingsStore;
struct CommandLine;
struct Tools;

/// Overrides the settings that are about files and copies of them, which a text has not.
void overrideForText(SettingsStore &settings);

/// Minifies standard input, as a file of the kind `line.textKind`, in a private temporary folder. Standard
/// output gets the result, once it is whole, and nothing else. Returns the exit status.
[[nodiscard]] int minifyStandardInput(const CommandLine &line, const Tools &tools,
                                      const SettingsStore &settings);

} // namespace brevant
