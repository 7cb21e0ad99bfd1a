// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

/// Opens /dev/null for each of standard input, output and error that is closed: to be called first of all.
/// Else the next file opened would take its place, and what a child process prints would go into that.
void openClosedStandardStreams();

} // namespace brevant
