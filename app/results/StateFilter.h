// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultModel.h"

#include <QButtonGroup>
#include <QWidget>

namespace brevant {

/// Buttons that say how many files are in which state, one of which is chosen. To the Tab key they are one
/// stop, and the arrow keys go from one to the next. Where they do not fit beside one another they wrap.
class StateFilter final : public QWidget {
    Q_OBJECT

public:
    explicit StateFilter(QWidget *parent = nullptr);

    /// Shows a button for each state that there is, besides All.
    void setTotals(const RunTotals &totals, int rows);

    [[nodiscard]] ResultModel::Shown shown() const { return ResultModel::Shown(m_group.checkedId()); }

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override { return place(width, false).height(); }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void changed();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void updateSigns();
    QSize place(int width, bool isDone) const;

    QButtonGroup m_group;
};

} // namespace brevant
