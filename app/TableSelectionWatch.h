// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace brevant {

/// Tells of every change of the selection in any table of the application, whichever window it is in.
class TableSelectionWatch final : public QObject {
    Q_OBJECT

public:
    explicit TableSelectionWatch(QObject *parent);

Q_SIGNALS:
    void tableSelectionDidChange();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace brevant
