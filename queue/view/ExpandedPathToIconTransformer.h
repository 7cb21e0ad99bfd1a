// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QMetaType>
#include <QString>

#include <optional>

namespace brevant {

/// Turns a path into the icon of what it names, 16 by 16; there is no reverse.
class ExpandedPathToIconTransformer final {
public:
    ExpandedPathToIconTransformer() = delete;

    [[nodiscard]] static QMetaType transformedValueClass() { return QMetaType::fromType<QIcon>(); }
    [[nodiscard]] static constexpr bool allowsReverseTransformation() { return false; }

    /// The icon of the item at `path`, in which a leading "~" stands for the home folder. For what does not
    /// exist, the icon of its kind by the extension, or that of a folder if there is no extension. No path,
    /// no icon.
    [[nodiscard]] static QIcon transformedValue(const std::optional<QString> &path);
};

} // namespace brevant
