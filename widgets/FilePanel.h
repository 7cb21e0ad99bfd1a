// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QFileDialog;

namespace brevant {

/// Gives Qt's own file panel room for what its columns hold, whatever the font, and sizes in the unit that
/// all windows have. Does nothing to a panel of the desktop. Must come before the first connection to the
/// selection of the panel's list.
void setUpFilePanel(QFileDialog &panel);

} // namespace brevant
