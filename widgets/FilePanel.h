// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QFileDialog;

namespace brevant {

/// Makes Qt's own file panel wide enough for its columns in any font, and shows sizes in the unit that all
/// windows use. Does nothing to a panel of the desktop. Call it before connecting to the selection of the
/// panel's list.
void setUpFilePanel(QFileDialog &panel);

} // namespace brevant
