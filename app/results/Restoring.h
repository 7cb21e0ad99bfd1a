// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/originals/RestoreSource.h"

#include <QObject>

#include <vector>

class QAction;
class QWidget;

namespace brevant {

class ResultModel;
class ResultTable;

/// A file of a run whose original is to be put back.
struct RestoreWish {
    int run = 0;
    int row = 0; ///< of the run's record
    QString source;
    QString original; ///< where it is kept
};

/// Restore Source: which of the files selected in Results it is for, and what is asked and said of them.
class Restoring final : public QObject {
    Q_OBJECT

public:
    /// Sheets open on `window`.
    Restoring(QAction &action, const ResultTable &table, const ResultModel &model, QWidget &window);

    /// Greys the action, and says why, where there is nothing to put back. Not during a run.
    void follow(bool isAnyRunning);

    /// What became of the files asked for, as many as were come to.
    void take(const std::vector<RestoreWish> &wishes, const std::vector<RestoredSource> &done);

Q_SIGNALS:
    void requested(const std::vector<RestoreWish> &wishes, bool isBeside);

private:
    void request();
    void begin(const std::vector<RestoreWish> &wishes, bool isBeside);
    void offerBeside(const std::vector<RestoreWish> &changed, const QString &failures);
    [[nodiscard]] std::vector<RestoreWish> wishes() const;
    [[nodiscard]] QString whyNot(bool isAnyRunning) const;

    QAction &m_action;
    const ResultTable &m_table;
    const ResultModel &m_model;
    QWidget &m_window;
    bool m_isAtWork = false;
};

} // namespace brevant
