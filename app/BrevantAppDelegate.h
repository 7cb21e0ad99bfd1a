// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace brevant {

class Application;
class PreviewPanel;

/// Answers the application's own events: opened again, files opened with it, the preview asked for. Works on
/// the same controls as the main controller. Lives until the process ends.
class BrevantAppDelegate final : public QObject {
    Q_OBJECT

public:
    explicit BrevantAppDelegate(Application &app, QObject *parent = nullptr);
    ~BrevantAppDelegate() override;

    /// Connects the preview's menu item and key. To be called once the layout is loaded.
    void awakeFromNib();

    void applicationDidFinishLaunching() {}

    /// Brings the main window to the front, wherever it was; always true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// Adds files opened with the application from outside, and minifies if that is to be done by itself.
    void applicationOpenFiles(const QStringList &paths);

    /// Adds files from outside, and minifies the list.
    void minifyFiles(const QStringList &paths);

    /// Opens the preview panel, or closes it if it is open.
    void togglePreviewPanel();

    /// One whole run, on the calling thread.
    void doMinify(const std::atomic<Stop> &stop);

    /// The panel, if it was ever opened.
    [[nodiscard]] PreviewPanel *sharedPreviewPanel() const { return m_sharedPreviewPanel.get(); }

private:
    void startRun();
    void makePreviewPanel();

    Application &m_app;
    std::unique_ptr<PreviewPanel> m_sharedPreviewPanel;
};

} // namespace brevant
