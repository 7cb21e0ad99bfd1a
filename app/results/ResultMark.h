// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <QPushButton>

class QHBoxLayout;
class QLabel;

namespace brevant {

/// The result of the last run beside the status text: a sign, a few words, and more behind it. While it is
/// hidden the bar is as it is without it.
class ResultMark final : public QPushButton {
    Q_OBJECT

public:
    /// Takes its place in `bar`, behind `status`, hidden.
    ResultMark(QLabel &status, QHBoxLayout &bar);

    void showResult(const ShortResult &result);
    void hideResult();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void updateSign();
    void fitWords();

    QLabel &m_status;
    QHBoxLayout &m_bar;
    const QSizePolicy m_policyAlone; ///< of the status text without this
    ShortResult m_result;
};

} // namespace brevant
