// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A window to drag files out of, as a file manager's: drag-source PATH…, or drag-source --text TEXT.
// Prints what became of each drag: "copy", "none", or the number of another action. Before that, each time
// it changes, what would become of it there: "over copy" and so on.

#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

class DragSource final : public QLabel {
public:
    explicit DragSource(QStringList arguments) : m_arguments(std::move(arguments))
    {
        setText(u"Drag me"_s);
        setAlignment(Qt::AlignCenter);
        setWindowTitle(u"drag-source"_s);
        setGeometry(40, 60, 160, 100);
    }

protected:
    void mousePressEvent(QMouseEvent *event) override { m_pressed = event->position().toPoint(); }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const QPoint way = event->position().toPoint() - m_pressed;
        if (way.manhattanLength() < QApplication::startDragDistance())
            return;
        auto *const drag = new QDrag(this); // deletes itself
        drag->setMimeData(data());
        QPixmap nothing(1, 1); // which would hide what is below it
        nothing.fill(Qt::transparent);
        drag->setPixmap(nothing);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) { say("over ", action); });
        say("", drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction));
    }

private:
    static void say(const char *when, Qt::DropAction action)
    {
        std::fputs(when, stdout);
        if (action == Qt::CopyAction)
            std::puts("copy");
        else if (action == Qt::IgnoreAction)
            std::puts("none");
        else
            std::printf("%d\n", static_cast<int>(action));
        std::fflush(stdout);
    }

    [[nodiscard]] QMimeData *data() const
    {
        auto *const data = new QMimeData; // goes to the drag
        if (m_arguments.value(0) == u"--text"_s) {
            data->setText(m_arguments.value(1));
            return data;
        }
        QList<QUrl> urls;
        for (const QString &path : m_arguments)
            urls.append(QUrl::fromLocalFile(path));
        data->setUrls(urls);
        return data;
    }

    const QStringList m_arguments;
    QPoint m_pressed;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    DragSource source(QApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
