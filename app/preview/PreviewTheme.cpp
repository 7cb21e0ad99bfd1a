// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewTheme.h"

#include "widgets/Contrast.h"

#include <array>

namespace brevant {

namespace {

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

} // namespace

PreviewTheme::PreviewTheme(const QPalette &palette)
    : m_paper(palette.color(QPalette::Active, QPalette::Base)),
      m_text(palette.color(QPalette::Active, QPalette::Text)),
      m_quiet(isHighContrast(palette) ? highContrast : readableContrast)
{
}

QColor PreviewTheme::color(TextRole role) const
{
    if (role == TextRole::Plain)
        return m_text;
    const Tint &tint = tints[static_cast<std::size_t>(role)];
    const bool isDark = contrast(m_paper, Qt::black) < contrast(m_text, Qt::black);
    return readableOn(m_paper, m_text, QColor(isDark ? tint.onDark : tint.onLight), highContrast);
}

QColor PreviewTheme::quiet() const
{
    return readableOn(m_paper, m_text, mixed(m_paper, m_text, 0.5), m_quiet);
}

} // namespace brevant
