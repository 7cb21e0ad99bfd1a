// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace brevant {

/// One line of plain text that gives up its middle rather than make the window wider.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brevant
