// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewTheme.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brevant {

namespace {

constexpr double readable = 7.0;
constexpr double readableSmall = 4.5;

struct Tint {
    QRgb onLight;
    QRgb onDark;
};

// In the order of TextRole; the first is the palette's text.
constexpr std::array<Tint, 8> tints{{
    {0xFF000000, 0xFFFFFFFF},
    {0xFF3F5A45, 0xFF9CB89F},
    {0xFF7A1F8A, 0xFFDDA6F0},
    {0xFF0B4F8A, 0xFF8CC8FF},
    {0xFF8A2A0B, 0xFFF2B48C},
    {0xFF00585C, 0xFF7FD8CE},
    {0xFF4A4A4A, 0xFFC4C4C4},
    {0xFF7A4100, 0xFFEBCB7A},
}};

/// Relative luminance, as the guidelines for readable pages of the web define it.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mix(const QColor &from, const QColor &to, double part)
{
    const auto between = [part](int one, int other) { return one + int(std::lround((other - one) * part)); };
    return {between(from.red(), to.red()), between(from.green(), to.green()),
            between(from.blue(), to.blue())};
}

/// `color`, as far towards `text` as it must be to be readable on `paper`.
QColor readableOn(const QColor &paper, const QColor &text, const QColor &color, double ratio)
{
    constexpr int steps = 10;
    for (int step = 0; step < steps; ++step) {
        const QColor mixed = mix(color, text, double(step) / steps);
        if (contrast(mixed, paper) >= ratio)
            return mixed;
    }
    return text;
}

} // namespace

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

PreviewTheme::PreviewTheme(const QPalette &palette)
    : m_paper(palette.color(QPalette::Active, QPalette::Base)),
      m_text(palette.color(QPalette::Active, QPalette::Text))
{
}

QColor PreviewTheme::color(TextRole role) const
{
    if (role == TextRole::Plain)
        return m_text;
    const Tint &tint = tints[static_cast<std::size_t>(role)];
    const bool isDark = luminance(m_paper) < luminance(m_text);
    return readableOn(m_paper, m_text, QColor(isDark ? tint.onDark : tint.onLight), readable);
}

QColor PreviewTheme::quiet() const
{
    return readableOn(m_paper, m_text, mix(m_paper, m_text, 0.5), readableSmall);
}

} // namespace brevant
