// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QScrollArea>

namespace brevant {

/// A combo box whose items act: an item is chosen in the open list only, never in passing by the wheel or
/// by a key on the closed one, which opens the list instead. A title too long for it is cut in its middle.
class PopUpButton final : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

protected:
    void initStyleOption(QStyleOptionComboBox *option) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
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
