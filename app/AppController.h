// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preview/PreviewPanel.h"
#include "engine/Stop.h"
#include "queue/view/BVTableView.h"

#include <QObject>

#include <functional>
#include <memory>

namespace brevant {

class Application;
class PreferenceController;
class SettingsStore;

/// The main controller: carries out what the user does in the main window. Each action is a few calls of the
/// rooms below. Lives until the process ends.
class AppController final : public QObject,
                            public DropTarget,
                            public PreviewPanelDataSource,
                            public PreviewPanelDelegate {
    Q_OBJECT

public:
    /// Runs the open panel over a window and returns what was chosen, or nothing.
    using RunOpenPanel =
        std::function<std::optional<QStringList>(QWidget *window, const QStringList &allowedTypes)>;

    explicit AppController(Application &app, QObject *parent = nullptr);
    ~AppController() override;

    /// Registers the settings' defaults. To be called before there is a controller.
    static void initialize(SettingsStore &settings);

    /// Registers the observers: of every table's selection, and of the settings.
    void init();

    /// Connects the list, the buttons and the menu. To be called once the layout is loaded.
    void awakeFromNib();

    /// Replaces the open panel, for tests.
    void setRunOpenPanel(RunOpenPanel runOpenPanel) { m_runOpenPanel = std::move(runOpenPanel); }

    // Actions of the controls and the menu.
    void addFile();
    void minify();
    void clear();
    void selectAll();
    void removeRow();
    void revealInFinder();
    void combine(); ///< in Combining.cpp
    void showPreferencePanel();
    void mainPage();
    void feedback();

    /// One whole run, on the calling thread.
    void doMinify(const std::atomic<Stop> &stop);

    // Answers to notices.
    void updateBadge();

    /// Names the kinds of files that are switched on in the empty list.
    void updateDropHint();
    void refreshPreview();

    // The list's data source.
    [[nodiscard]] int numberOfRowsInTableView() const;
    [[nodiscard]] QString tableViewObjectValue(int row) const;
    Qt::DropAction tableViewValidateDrop(const QMimeData &drop) override;
    bool tableViewAcceptDrop(const QMimeData &drop) override;

    // The preview panel.
    [[nodiscard]] bool acceptsPreviewPanelControl() const { return true; }
    void beginPreviewPanelControl(PreviewPanel *panel);
    void endPreviewPanelControl();
    [[nodiscard]] int numberOfPreviewItemsInPreviewPanel() const override;
    [[nodiscard]] QUrl previewPanelPreviewItemAtIndex(int index) const override;
    bool previewPanelHandleEvent(QEvent *event) override;
    [[nodiscard]] QRect previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectMenu();

    Application &m_app;
    RunOpenPanel m_runOpenPanel;
    std::unique_ptr<PreferenceController> preferenceController; ///< from the first request on
    PreviewPanel *previewPanel = nullptr;                       ///< while it shows our selection
    std::vector<int> m_previewRows; ///< the selected rows, as the panel counts them
};

} // namespace brevant
