// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "widgets/ElidedLabel.h"

namespace brevant {

/// The line under the list: how many items there are, or how far a run is. Those who listen to the window
/// instead of looking at it hear of each new text once. A text that is too long is cut at its end.
class StatusLine final : public ElidedLabel {
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent) : ElidedLabel(parent, Qt::ElideRight) {}

    /// Shows `text` and announces it, if it is another one.
    void setStringValue(const QString &text);
};

} // namespace brevant
