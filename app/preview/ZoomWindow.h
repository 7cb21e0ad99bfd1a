// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace brevant {

/// The picture of a window on its way between two rectangles of the screen. Takes no input.
class ZoomWindow final : public QWidget {
    Q_OBJECT

public:
    explicit ZoomWindow(QWidget *parent);

    /// Whether windows may move by themselves: the platform lets a program place them, and the user has not
    /// asked for less motion.
    [[nodiscard]] static bool isAllowed(const QWidget &window);

    /// Starts at `from`, or where a zoom that has not ended is now. It stays at `to` when it has finished.
    void zoom(const QPixmap &picture, const QRect &from, const QRect &to);
    void setPicture(const QPixmap &picture);
    [[nodiscard]] bool isZooming() const;

Q_SIGNALS:
    void finished();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QVariantAnimation m_animation;
    QPixmap m_picture;
};

} // namespace brevant
