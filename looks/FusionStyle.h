// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace brevant {

/// Qt's own style, Fusion, with two things mended.
///
/// Where the palette is one of high contrast, each control has an outline in the colour of its text. Fusion
/// makes its outlines by darkening the ground, and a black ground gets no darker: a box that is not ticked
/// cannot be seen. What is disabled is drawn darker too.
///
/// And the picture of the button that a menu bar has when it is too narrow is read when it is drawn. A menu
/// bar asks for it when it is made, which loads all that Qt has for reading pictures.
class FusionStyle final : public QProxyStyle {
    Q_OBJECT

public:
    FusionStyle();

    /// Makes it the style of the program, unless the desktop has a style of its own, which knows what to do.
    static void install();

    /// Lets what cannot be used be read all the same.
    void polish(QPalette &palette) override;
    using QProxyStyle::polish;

    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption *option = nullptr,
                                     const QWidget *widget = nullptr) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
};

} // namespace brevant
