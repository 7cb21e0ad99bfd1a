// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QPropertyAnimation>
#include <QWidget>

namespace brevant {

/// Where on the screen the preview opens for the first time.
///
/// Beside, below or above `window`, smaller than `size` if need be, so that the list stays in sight; if there
/// is no room for that, over the window but clear of `row`, the row it is about (empty if none is in sight);
/// in the middle of `area`, the usable part of the screen, if there is no room for that either. All
/// with the frames of the window manager.
[[nodiscard]] QRect previewPlace(const QRect &window, const QRect &row, const QSize &size, const QRect &area);

/// Gives the panel its first place, or brings it back onto the screen from where it was left.
void placeOnScreen(QWidget &panel, const QRect &row);

/// Where the panel is, or will be, without its frame.
[[nodiscard]] QRect restingPlace(const QWidget &panel);

/// The picture of a window on its way between two rectangles of the screen. Takes no input.
class ZoomWindow final : public QWidget {
    Q_OBJECT

public:
    explicit ZoomWindow(QWidget *parent);

    /// Starts at `from`, or where a zoom that has not ended is now, with a picture of `window`, and stays at
    /// `to` when it has finished. Does nothing and returns false if a rectangle is empty, the platform does
    /// not let programs place their windows, or the user has asked for less motion.
    [[nodiscard]] bool zoom(QWidget &window, const QRect &from, const QRect &to);
    void setPicture(const QPixmap &picture);
    [[nodiscard]] bool isZooming() const;

Q_SIGNALS:
    void finished();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPropertyAnimation m_animation;
    QPixmap m_picture;
};

} // namespace brevant
