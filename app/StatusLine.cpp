// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StatusLine.h"

namespace brevant {

void StatusLine::setStringValue(const QString &text)
{
    if (text == this->text())
        return;
    setText(text); // which tells assistive programs
    setToolTip(text);
}

} // namespace brevant
