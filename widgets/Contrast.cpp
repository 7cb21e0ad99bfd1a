// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/Contrast.h"

#include <QColor>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace brevant {

namespace {

/// More than black on the greys that ordinary windows have.
constexpr double extreme = 19;

/// Relative luminance, https://www.w3.org/TR/WCAG21/#dfn-relative-luminance.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor &from, const QColor &to, double part)
{
    const auto between = [part](int one, int other) { return one + int(std::lround((other - one) * part)); };
    return {between(from.red(), to.red()), between(from.green(), to.green()),
            between(from.blue(), to.blue())};
}

QColor readableOn(const QColor &ground, const QColor &text, const QColor &colour, double ratio)
{
    constexpr int steps = 10;
    for (int step = 0; step < steps; ++step) {
        const QColor tried = mixed(colour, text, double(step) / steps);
        if (contrast(tried, ground) >= ratio)
            return tried;
    }
    return text;
}

bool isHighContrast(const QPalette &palette)
{
    const auto between = [&palette](QPalette::ColorRole one, QPalette::ColorRole other) {
        return contrast(palette.color(QPalette::Active, one), palette.color(QPalette::Active, other));
    };
    return between(QPalette::Window, QPalette::WindowText) >= extreme &&
           between(QPalette::Base, QPalette::Text) >= extreme;
}

} // namespace brevant
