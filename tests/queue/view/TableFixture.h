// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "queue/FileQueue.h"
#include "queue/view/BVImageView.h"
#include "queue/view/BVTableView.h"
#include "queue/view/ImageTextCell.h"

#include <QApplication>
#include <QDragLeaveEvent>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QSignalSpy>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace brevant::test {

class Table final : public BVTableView {
public:
    using BVTableView::BVTableView;
    using BVTableView::dragMoveEvent;
    using BVTableView::dropEvent;
};

/// Takes every drop, and remembers what it was asked.
class Target final : public DropTarget {
public:
    explicit Target(BVImageView &picture) : m_picture(picture) {}

    Qt::DropAction tableViewValidateDrop(const QMimeData &) override
    {
        ++validated;
        m_picture.setImageNamed(u"dropP"_s);
        return Qt::CopyAction;
    }

    bool tableViewAcceptDrop(const QMimeData &drop) override
    {
        ++drops;
        m_picture.setImageNamed(u"dropN"_s);
        for (const QUrl &url : drop.urls())
            dropped += url.toLocalFile();
        return true;
    }

    int validated = 0;
    int drops = 0;
    QStringList dropped;

private:
    BVImageView &m_picture;
};

/// A table of `count` files as the main window has it: over the picture, with all its helpers.
class Fixture final {
public:
    explicit Fixture(int count, int visibleRows = 10)
    {
        add(count);
        window.resize(400, 40 * visibleRows);
        window.setPalette(QPalette(QColor(Qt::gray), QColor(90, 60, 30)));
        picture.resize(window.size());
        table.resize(window.size());
        picture.setImageNamed(u"dropN"_s);
        table.setDropView(&picture);
        table.setDropTarget(&target);
        table.setMenu(&menu);
        menu.addAction(u"Remove"_s);
        table.setModel(&queue);
        table.setItemDelegateForColumn(0, new ImageTextCell(&table));
        if (count > 0)
            table.setBackgroundColor(QColor(Qt::white));
        queue.reload();
        window.show();
    }

    /// Ends a drag that is still over the table, so that the application forgets about it.
    ~Fixture()
    {
        QDragLeaveEvent event;
        QApplication::sendEvent(table.viewport(), &event);
    }

    Fixture(const Fixture &) = delete;
    Fixture &operator=(const Fixture &) = delete;

    /// Appends so many files to the queue, and to it alone.
    void add(int count)
    {
        for (int i = 0; i < count; ++i)
            queue.append(u"/w/%1.css"_s.arg(m_added++));
    }

    /// The middle of a row, or of where it would be, in the viewport.
    [[nodiscard]] QPoint at(int row) const { return {200, 40 * row + 20}; }

    /// What is on the screen, once all that waits to be painted has been.
    [[nodiscard]] QImage onScreen()
    {
        QCoreApplication::processEvents();
        return window.screen()->grabWindow(window.winId()).toImage();
    }

    FileQueue queue;
    QWidget window;
    BVImageView picture{&window};
    Table table{&window};
    Target target{picture};
    QMenu menu;
    QSignalSpy selectionChanges{&table, &BVTableView::selectionDidChange};
    QSignalSpy doubleActions{&table, &BVTableView::doubleAction};
    QSignalSpy previewToggles{&table, &BVTableView::togglePreviewPanel};

private:
    int m_added = 0;
};

using Rows = std::vector<int>;

} // namespace brevant::test
