// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <QWidget>

namespace brevant {

/// What was saved of each kind, as bars whose lengths are the sizes before.
class KindPicture final : public QWidget {
    Q_OBJECT

public:
    explicit KindPicture(QWidget *parent = nullptr);

    void setTotals(const RunTotals &totals);

    /// Whether there is anything to show.
    [[nodiscard]] bool isEmpty() const { return m_lines.empty(); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Line {
        QString kind;
        QString saved;
        double length = 0; ///< of the longest bar
        double part = 0;   ///< of its length
    };
    [[nodiscard]] int widestOf(QString Line::*text) const;

    std::vector<Line> m_lines;
};

} // namespace brevant
