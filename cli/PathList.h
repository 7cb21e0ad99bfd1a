// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

struct CommandLine;

/// Adds the paths in the file of --files-from to those of the command line. Returns why it cannot be read;
/// empty if it can, or if none was named.
[[nodiscard]] QString addPathsFromFile(CommandLine &line);

} // namespace brevant
