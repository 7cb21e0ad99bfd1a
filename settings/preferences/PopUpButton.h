// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>

namespace brevant {

/// A combo box whose items act: an item is chosen in the open list only, never in passing by the wheel or
/// by a key on the closed one, which opens the list instead. A title too long for it is cut in its middle.
class PopUpButton final : public QComboBox {
    Q_OBJECT

public:
    explicit PopUpButton(QWidget *parent = nullptr);

protected:
    void initStyleOption(QStyleOptionComboBox *option) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace brevant
