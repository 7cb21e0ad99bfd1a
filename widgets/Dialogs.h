// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QFileDialog;
class QWidget;

namespace brevant {

/// Makes Qt's own file panel wide enough for its columns in any font, and shows sizes as sizeText() has them.
/// Does nothing to a panel of the desktop. Call it before connecting to the selection of the panel's list.
void setUpFilePanel(QFileDialog &panel);

/// Shows a warning on `window`, which it blocks: a headline, a text below it, one button. Returns
/// at once; nothing happens when the user closes it.
void showWarningSheet(QWidget *window, const QString &message, const QString &informativeText,
                      const QString &button);

} // namespace brevant
