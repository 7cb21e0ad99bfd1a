// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

class QMouseEvent;
class QWidget;

namespace brevant {

/// Lets the user move a window by dragging its background, as by its title bar. Labels and lines are
/// background; controls are not, not even disabled ones.
class BackgroundDrag final : public QObject {
public:
    /// Becomes a child of `window`, which must be a window of its own.
    explicit BackgroundDrag(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool press(const QMouseEvent &event);

    QWidget *const m_window;
    std::optional<QPoint>
        m_grip; ///< from the window's corner to the pointer, while we move the window ourselves
};

} // namespace brevant
