// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace brevant {

/// One line of plain text that is shortened rather than make the window wider.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent);

    /// Where the text is shortened: in the middle, if not told otherwise.
    void setElideMode(Qt::TextElideMode mode) { m_mode = mode; }

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode = Qt::ElideMiddle;
};

} // namespace brevant
