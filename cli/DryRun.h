// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace brevant {

class FileQueue;
class SettingsStore;
struct Tools;

/// Each entry with the output that a run would give it.
[[nodiscard]] std::vector<std::pair<QString, std::optional<QString>>>
entriesWithOutputs(const FileQueue &queue, const SettingsStore &settings);

/// Prints the path of each entry and of its output, except for entries that hold RawBytes. False, with errno
/// set, on failure.
[[nodiscard]] bool printList(const FileQueue &queue, const SettingsStore &settings);

/// Prints the commands of a run as a shell script. False, with errno set, on failure.
[[nodiscard]] bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools);

} // namespace brevant
