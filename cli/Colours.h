// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// What marks words in colour, as far as a stream is to have colours. Words alone say the same.
class Colours final {
public:
    /// None.
    Colours() = default;

    /// Those of a standard stream: none if NO_COLOR is set and not empty; else, if CLICOLOR_FORCE is set, and
    /// not to 0, or on a terminal that is not dumb.
    [[nodiscard]] static Colours of(int descriptor);

    [[nodiscard]] QString error(const QString &text) const { return painted(31, text); }   // red
    [[nodiscard]] QString warning(const QString &text) const { return painted(33, text); } // yellow
    [[nodiscard]] QString success(const QString &text) const { return painted(32, text); } // green

private:
    [[nodiscard]] QString painted(int colour, const QString &text) const;

    bool m_areWanted = false;
};

} // namespace brevant
