// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace brevant {

/// The line under the list: how many items there are, or how far a run is. Those who listen to the window
/// instead of looking at it hear of each new text once. A text that is too long is cut at its end.
class StatusLine final : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Shows `text` and announces it, if it is another one.
    void setStringValue(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brevant
