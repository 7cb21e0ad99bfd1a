// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/planned/PlanModel.h"
#include "app/planned/Planner.h"
#include "app/results/StateWindow.h"

class QAction;

namespace brevant {

class MessagePane;
class PlanTable;

/// Shows each file of the list, where it will go, and what is wrong with it already. Follows list and
/// settings while it is on the screen.
class PlannedWindow final : public StateWindow {
    Q_OBJECT

public:
    /// Its buttons trigger these two, and can be pressed when they can. All must outlive the window.
    PlannedWindow(const FileQueue &queue, const SettingsStore &settings, const Tools &tools, QAction &minify,
                  QAction &preferences, QWidget *parent);

    /// Looks at everything again, if it is on the screen.
    void refresh();

Q_SIGNALS:
    void openRequested(const QString &path);
    void revealRequested(const QString &path);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void updateLooks() override;

private:
    [[nodiscard]] QWidget *makeHead();
    void connectAll();
    void take(int first, const std::vector<PlannedFile> &files, int count);
    void updateHead();
    void updateButtons();
    void updateFilter();
    void updatePane();
    void updateHint();

    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    QAction &m_minifyAction;
    QAction &m_preferencesAction;
    PlanModel m_model;
    Planner m_planner;
    FilterBar *m_filter = nullptr;
    PlanTable *m_table = nullptr;
    MessagePane *m_pane = nullptr;
    ElidedLabel *m_note = nullptr;
    QPushButton *m_preferences = nullptr;
    QPushButton *m_minify = nullptr;
};

} // namespace brevant
