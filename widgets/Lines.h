// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace brevant {

/// A faint line across that sets two parts of a window apart, with as much room above and below it as its
/// height leaves. Its colour lies between the window's and its text's, so that it stays faint on a dark
/// window too; where the user asks for high contrast it is the text's.
class Hairline final : public QWidget {
    Q_OBJECT

public:
    explicit Hairline(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return {0, fontMetrics().height()}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// One that goes from side to side.
[[nodiscard]] QWidget *horizontalLine(QWidget *parent);

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
