// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

/// Tells assistive programs what Qt leaves out: that the preferences and the preview are dialogs, and that
/// the list's menu is open. To be called before the windows are looked at; once or more.
void installAccessibleWindows();

} // namespace brevant
