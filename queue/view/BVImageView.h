// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QWidget>

#include <memory>

class QSvgRenderer;

namespace brevant {

class SettingsStore;

/// The line that asks for files, with the kinds that are switched on: "Drop CSS or JavaScript files". The
/// picture goes on from there.
[[nodiscard]] QString dropHint(const SettingsStore &settings);

/// The drop-zone picture: a named picture of the application's resources in the middle of the view.
///
/// It is drawn sharp at any scale, never larger than it was made and smaller where there is no room. If the
/// window is dark and the picture has a twin whose name ends in "-dark", the twin is shown.
class BVImageView : public QWidget {
    Q_OBJECT

public:
    explicit BVImageView(QWidget *parent = nullptr);
    ~BVImageView() override;

    /// Shows the picture `name`, "dropN" and "dropN.png" being the same. A name without a picture shows none.
    void setImageNamed(const QString &name);

    /// Writes `words` into the picture, and below them that folders and a double click work as well. Both
    /// lines are the view's accessible name.
    void setWords(const QString &words);

    /// The name of the picture, without an ending.
    [[nodiscard]] const QString &imageName() const { return m_imageName; }

    /// Yes: a drag that starts on the picture moves the window, as all its background does.
    [[nodiscard]] bool mouseDownCanMoveWindow() const { return true; }

    /// Where the picture is drawn; empty if none is shown.
    [[nodiscard]] QRectF imageRect() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QSvgRenderer &image() const;
    const QPixmap &drawn(QSizeF size, qreal scale) const;
    void drawLine(QPainter &painter, const QString &text, int pixels, int baseline) const;

    QString m_imageName;
    QString m_words;
    mutable std::unique_ptr<QSvgRenderer> m_image;
    mutable QPixmap m_drawn; ///< the picture at the size that it was last painted at
};

} // namespace brevant
