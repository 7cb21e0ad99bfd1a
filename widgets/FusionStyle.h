// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace brevant {

/// Qt's own style, Fusion, with three things mended.
///
/// Fusion makes its outlines by darkening the ground, which can hardly be seen on a dark one and not at all
/// on black. So the boxes of check boxes and radio buttons have an outline of their own in a dark palette,
/// and all controls have one in the colour of their text in a palette of high contrast, where what is
/// disabled can be read, too.
///
/// A button focused by the keyboard has a line inside: Fusion draws it like a default button without focus.
///
/// And the icon of the button that a menu bar shows when it is too narrow is read when it is drawn. A menu
/// bar asks for it when it is made, which loads all that Qt has for reading pictures.
class FusionStyle final : public QProxyStyle {
    Q_OBJECT

public:
    FusionStyle();

    /// Makes it the style of the program, unless the desktop has a style of its own.
    static void install();

    /// Makes disabled text readable in high contrast.
    void polish(QPalette &palette) override;
    using QProxyStyle::polish;

    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption *option = nullptr,
                                     const QWidget *widget = nullptr) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
};

} // namespace brevant
