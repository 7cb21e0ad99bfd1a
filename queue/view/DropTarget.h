// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <Qt>

class QMimeData;

namespace brevant {

/// What becomes of drags over the file table. Implemented by the controller; the table asks it about drags of
/// file names only, refuses all others by itself, and takes every drop as a whole, between no two rows.
class DropTarget {
public:
    virtual ~DropTarget() = default;

    /// A drag moves over the table. Returns the operation to offer; Qt::IgnoreAction refuses the drag.
    virtual Qt::DropAction tableViewValidateDrop(const QMimeData &drop) = 0;

    /// The user has dropped. Returns whether the drop is taken.
    virtual bool tableViewAcceptDrop(const QMimeData &drop) = 0;

protected:
    DropTarget() = default;
    DropTarget(const DropTarget &) = default;
    DropTarget &operator=(const DropTarget &) = default;
};

} // namespace brevant
