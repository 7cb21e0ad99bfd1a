// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class PreviewPanel;
}

namespace brevant {

class PreviewLoader;
class PreviewText;
class ZoomWindow;
struct PreviewContent;

/// What the panel shows.
class PreviewPanelDataSource {
public:
    virtual ~PreviewPanelDataSource() = default;
    [[nodiscard]] virtual int numberOfPreviewItemsInPreviewPanel() const = 0;
    [[nodiscard]] virtual QUrl previewPanelPreviewItemAtIndex(int index) const = 0;
};

/// The output of a file, for its second page.
struct PreviewOutput {
    QString path;       ///< empty if there is none
    QString reason;     ///< why, in a sentence
    QString original{}; ///< a copy of what the file was before, for its first page; else empty
};

/// How the panel behaves.
class PreviewPanelDelegate {
public:
    virtual ~PreviewPanelDelegate() = default;

    /// Handles a key pressed in the panel; false leaves it to the panel.
    virtual bool previewPanelHandleEvent(QEvent *event) = 0;

    /// Where the panel comes from and goes to; an empty rectangle if it is just there.
    [[nodiscard]] virtual QRect previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const = 0;
};

/// The quick-look panel: a light window over the others that shows the text of a file, one of several at a
/// time. Its layout is resources/PreviewPanel.ui.
///
/// Every key is the delegate's, unless it is a shortcut of the main window's menu with Ctrl or Alt, or
/// Escape. Two buttons turn over to another item. Files are read on other threads.
class PreviewPanel final : public QWidget {
    Q_OBJECT

public:
    /// `encodingName` is asked for the encoding each time a file is read.
    explicit PreviewPanel(std::function<QString()> encodingName, QWidget *parent);
    ~PreviewPanel() override;

    /// Neither is owned. Nothing is asked without one.
    void setDataSource(PreviewPanelDataSource *dataSource) { m_dataSource = dataSource; }
    void setDelegate(PreviewPanelDelegate *delegate) { m_delegate = delegate; }

    /// With it, files have two pages, the source and its output, by two buttons.
    void setOutputOf(std::function<PreviewOutput(const QString &source)> outputOf);

    /// Whether it is open: from makeKeyAndOrderFront() to orderOut(), whatever still moves on the screen.
    [[nodiscard]] bool isOpen() const { return m_open; }

    /// Opens the panel, or brings it to the front, and makes it the one that gets the keys.
    void makeKeyAndOrderFront();

    /// Closes it.
    void orderOut();

    /// Asks for the items again. The item that is shown stays if it is still among them.
    void reloadData();

    /// The text shown; empty while a sentence stands in its place.
    [[nodiscard]] QString shownText() const;

    [[nodiscard]] int currentPreviewItemIndex() const { return m_index; } ///< -1 if there is none
    void setCurrentPreviewItemIndex(int index);

Q_SIGNALS:
    void willOpen(); ///< the time to set a data source and a delegate
    void didClose(); ///< neither is asked any more

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void endZoom();
    [[nodiscard]] int itemCount() const;
    [[nodiscard]] QRect sourceFrame() const;
    void showItem(int index, int count);
    void turnTo(bool isOutput);
    void showPageButtons(bool isOutput, bool hasOutput);
    void showContent(const PreviewContent &content);
    void showPage(const QString &path, const QString &sentence);
    void showHeader(const QString &path);

    const std::unique_ptr<Ui::PreviewPanel> m_ui;
    const std::function<QString()> m_encodingName;
    PreviewPanelDataSource *m_dataSource = nullptr;
    PreviewPanelDelegate *m_delegate = nullptr;
    PreviewLoader *const m_loader;
    ZoomWindow *const m_zoom;
    PreviewText *m_text = nullptr; ///< a child of the pages; null if its module is missing
    QTimer m_patience;             ///< after it the old content makes way for "Loading…"

    bool m_open = false;
    int m_index = -1;
    QUrl m_item;
    std::function<PreviewOutput(const QString &source)> m_outputOf;
    PreviewOutput m_output;        ///< of the item
    bool m_isOutputWanted = false; ///< where there is one
    QString m_shownPath;
    const QEvent *m_offered = nullptr; ///< the key that the delegate has left to the panel
};

} // namespace brevant
