// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace brevant {

/// Shows a warning on `window`, which it blocks: a headline, a text below it, one button. Returns
/// at once; nothing happens when the user closes it.
void showWarningSheet(QWidget *window, const QString &message, const QString &informativeText,
                      const QString &button);

} // namespace brevant
