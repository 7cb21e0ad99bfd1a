// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preview/PreviewPlace.h"

#include <algorithm>
#include <array>

namespace brevant {

namespace {

constexpr int gap = 12;                ///< between the panel and the window beside it
constexpr int rowGap = 4;              ///< between the panel and the row that it must not cover
constexpr QSize leastBeside{400, 260}; ///< smaller, a text is better read over the window
constexpr QSize leastOver{320, 240};

bool holds(const QSize &room, const QSize &size)
{
    return room.width() >= size.width() && room.height() >= size.height();
}

qint64 areaOf(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

/// A frame of `size` in `room`, as near to the centre of `window` as it can be.
QRect nearTo(const QRect &window, const QSize &size, const QRect &room)
{
    QRect frame(QPoint(), size);
    frame.moveCenter(window.center());
    return keptWithin(frame, room);
}

} // namespace

QRect keptWithin(QRect frame, const QRect &area)
{
    frame.setSize(frame.size().boundedTo(area.size()));
    frame.moveLeft(std::clamp(frame.left(), area.left(), area.right() + 1 - frame.width()));
    frame.moveTop(std::clamp(frame.top(), area.top(), area.bottom() + 1 - frame.height()));
    return frame;
}

QRect previewPlace(const QRect &window, const QRect &row, const QSize &size, const QRect &area)
{
    const auto above = [&area](int y) { return area.adjusted(0, 0, 0, y - 1 - area.bottom()); };
    const auto below = [&area](int y) { return area.adjusted(0, y - area.top(), 0, 0); };
    const std::array<QRect, 4> rooms{
        area.adjusted(window.right() + 1 + gap - area.left(), 0, 0, 0),
        area.adjusted(0, 0, window.left() - 1 - gap - area.right(), 0),
        below(window.bottom() + 1 + gap),
        above(window.top() - gap),
    };
    const auto fits =
        std::ranges::find_if(rooms, [&size](const QRect &room) { return holds(room.size(), size); });
    if (fits != rooms.end())
        return nearTo(window, size, *fits);
    const auto offers = [&size](const QRect &room) { return areaOf(size.boundedTo(room.size())); };
    const QRect largest = *std::ranges::max_element(rooms, {}, [&offers](const QRect &room) {
        return holds(room.size(), leastBeside) ? offers(room) : 0;
    });
    if (holds(largest.size(), leastBeside))
        return nearTo(window, size.boundedTo(largest.size()), largest);
    if (!row.isEmpty()) {
        const QRect under = below(row.bottom() + 1 + rowGap);
        const QRect over = above(row.top() - rowGap);
        const QRect room = under.height() >= std::min(size.height(), over.height()) ? under : over;
        if (holds(room.size(), leastOver))
            return nearTo(window, size.boundedTo(room.size()), room);
    }
    return nearTo(area, size, area);
}

} // namespace brevant
