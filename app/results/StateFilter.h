// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"

#include <QButtonGroup>
#include <QWidget>

#include <utility>
#include <vector>

namespace brevant {

/// Buttons that say how many files are in which state, one of which is chosen. To the Tab key they are one
/// stop, and the arrow keys go from one to the next. Where they do not fit beside one another they wrap.
class StateFilter final : public QWidget {
    Q_OBJECT

public:
    /// A button: its sign and its words.
    using Choice = std::pair<ResultRow::State, QString>;

    /// Those of `choices` have the numbers from 1 on; 0 is All.
    explicit StateFilter(std::vector<Choice> choices, QWidget *parent = nullptr);

    /// Shows a button for each choice that anything belongs to, besides All. One count for each.
    void setCounts(int all, const std::vector<int> &counts);

    /// The number of the choice.
    [[nodiscard]] int shown() const { return m_group.checkedId(); }

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
    [[nodiscard]] QSize place(int width, bool isDone) const;

    const std::vector<Choice> m_choices;
    QButtonGroup m_group;
};

} // namespace brevant
