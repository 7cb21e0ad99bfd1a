// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/StyleSheet.h"

#include <QHash>
#include <QSet>

namespace brevant {

/// Where the custom properties of a style sheet are used.
class CustomProperties final {
public:
    explicit CustomProperties(const StyleSheet &sheet) : m_sheet(sheet) {}

    /// Whether a custom property, or one made from it, is used where the zeros in its value need their units.
    [[nodiscard]] bool needZeroUnits(const StyleSheet::Declaration &declaration);

private:
    struct Use {
        QStringView inProperty;
        QString function; ///< the innermost around it
        bool isInMath;
    };

    void findUses();
    [[nodiscard]] QSet<QStringView> needing(QStringView unit) const;

    const StyleSheet &m_sheet;
    bool m_isRead = false;
    QMultiHash<QStringView, Use> m_uses;             ///< by custom property
    QMultiHash<QStringView, QStringView> m_parts;    ///< custom properties in the value of another
    QHash<QStringView, QSet<QStringView>> m_needing; ///< those that need it, by unit
};

} // namespace brevant
