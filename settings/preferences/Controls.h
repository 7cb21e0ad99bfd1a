// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QScrollArea>

namespace brevant {

/// A combo box whose items act: an item is chosen in the open list only, never in passing by the wheel or
/// by a key on the closed one, which opens the list instead. A title too long for it is cut in its middle.
class PopUpButton final : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void initStyleOption(QStyleOptionComboBox *option) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

/// What stands before a row of controls, next to them. All those of a window are as wide as the widest of
/// them, so that the controls of its pages begin at the same place.
class RowLabel final : public QLabel {
    Q_OBJECT

public:
    explicit RowLabel(QWidget *parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void changeEvent(QEvent *event) override;

private:
    void alignToControls();
};

/// Shows one page at its full size. Only where the screen is too small for it, the page scrolls.
class PageArea final : public QScrollArea {
    Q_OBJECT

public:
    explicit PageArea(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace brevant
