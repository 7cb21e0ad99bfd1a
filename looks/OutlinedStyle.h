// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace brevant {

/// Qt's own style with an outline round each control, in the colour of its text, where the palette is one of
/// high contrast. That style makes its outlines by darkening the ground, and a black ground gets no darker:
/// a box that is not ticked cannot be seen. What is disabled is drawn darker too.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    /// Makes it the style of the program, if the palette asks for it and the style is Qt's own: those of the
    /// desktops know what to do.
    static void installIfNeeded();

    /// Lets what cannot be used be read all the same.
    void polish(QPalette &palette) override;
    using QProxyStyle::polish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
};

} // namespace brevant
