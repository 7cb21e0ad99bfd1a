// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preview/PreviewPanel.h"
#include "app/preview/PreviewPlace.h"
#include "tests/app/preview/PreviewFiles.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QProxyStyle>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <vector>

namespace brevant::test {

using namespace Qt::StringLiterals;

/// What the application would say and do.
struct FakeOwner final : PreviewPanelDataSource, PreviewPanelDelegate {
    QStringList paths;
    QRect frame;
    bool takesKeys = true;
    std::vector<int> keys;
    mutable QList<QUrl> framesAskedFor;

    int numberOfPreviewItemsInPreviewPanel() const override { return int(paths.size()); }
    QUrl previewPanelPreviewItemAtIndex(int index) const override
    {
        return QUrl::fromLocalFile(paths.at(index));
    }
    bool previewPanelHandleEvent(QEvent *event) override
    {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Alt && key != Qt::Key_Control)
            keys.push_back(key);
        return takesKeys;
    }
    QRect previewPanelSourceFrameOnScreenForPreviewItem(const QUrl &item) const override
    {
        framesAskedFor += item;
        return frame;
    }
};

/// A desktop with or without moving windows.
class MotionStyle final : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration ? duration
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }
    int duration = 200;
};

/// A panel over a window, and three files to show.
class PreviewBench : public QObject {
protected:
    /// Once, before the first panel.
    void setUpFiles()
    {
        m_style = new MotionStyle;
        QApplication::setStyle(m_style); // which the application owns from here
        m_a = m_files.add(u"a.css"_s, "a{color:red}");
        m_b = m_files.add(u"b.js"_s, "var b");
        m_c = m_files.add(u"c.html"_s, "<p>c</p>");
    }

    void setUpPanel()
    {
        m_owner = FakeOwner();
        m_encoding = u"utf-8"_s;
        m_style->duration = 200;
        m_window = std::make_unique<QWidget>();
        m_window->setGeometry(20, 20, 200, 200);
        m_window->show();
        m_panel = new PreviewPanel([this] { return m_encoding; }, m_window.get());
        m_panel->setDataSource(&m_owner);
        m_panel->setDelegate(&m_owner);
    }

    [[nodiscard]] QString labelText(const char *name) const
    {
        return m_panel->findChild<QLabel *>(QLatin1StringView(name))->text();
    }
    [[nodiscard]] QToolButton *button(const char *name) const
    {
        return m_panel->findChild<QToolButton *>(QLatin1StringView(name));
    }
    [[nodiscard]] QWidget *editor() const { return m_panel->findChild<QWidget *>(u"previewText"_s); }

    [[nodiscard]] QString shownText() const { return m_panel->shownText(); }

    [[nodiscard]] ZoomWindow *zoom() const { return m_panel->findChild<ZoomWindow *>(); }

    void open(const QStringList &paths)
    {
        m_owner.paths = paths;
        m_panel->makeKeyAndOrderFront();
        QTRY_VERIFY(m_panel->isVisible());
        QTRY_VERIFY(paths.isEmpty() || !labelText("previewFooter").isEmpty() ||
                    !labelText("previewSentence").isEmpty());
    }

    PreviewFiles m_files;
    QString m_a, m_b, m_c;
    FakeOwner m_owner;
    QString m_encoding;
    MotionStyle *m_style = nullptr;
    std::unique_ptr<QWidget> m_window;
    PreviewPanel *m_panel = nullptr;
};

} // namespace brevant::test
