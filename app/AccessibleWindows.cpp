// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "app/preview/PreviewPanel.h"

#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QApplication>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// The main window with one more child at the end, the context menu, while that is open. Qt counts no menu
/// among the children of a widget, and no popup among the windows of the program.
class MainWindowInterface final : public QAccessibleWidget {
public:
    explicit MainWindowInterface(MainWindow *window) : QAccessibleWidget(window, QAccessible::Window) {}

    [[nodiscard]] int childCount() const override
    {
        return QAccessibleWidget::childCount() + (openMenu() ? 1 : 0);
    }

    [[nodiscard]] QAccessibleInterface *child(int index) const override
    {
        QMenu *const menu = openMenu();
        return menu && index == QAccessibleWidget::childCount() ? QAccessible::queryAccessibleInterface(menu)
                                                                : QAccessibleWidget::child(index);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override
    {
        QMenu *const menu = openMenu();
        return menu && child && child->object() == menu ? QAccessibleWidget::childCount()
                                                        : QAccessibleWidget::indexOfChild(child);
    }

private:
    [[nodiscard]] QMenu *openMenu() const
    {
        auto *const menu = widget()->findChild<QMenu *>(u"contextMenu"_s, Qt::FindDirectChildrenOnly);
        return menu && menu->isVisible() ? menu : nullptr;
    }
};

/// The application under its display name; Qt gives the name of the program.
class ApplicationInterface final : public QAccessibleApplication {
public:
    [[nodiscard]] QString text(QAccessible::Text what) const override
    {
        return what == QAccessible::Name ? u"Brevant"_s : QAccessibleApplication::text(what);
    }
};

/// Called for each class of an object, from its own up to QObject.
QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (object == qApp)
        return new ApplicationInterface; // owned by Qt's cache, like those below
    if (auto *const window = qobject_cast<MainWindow *>(object))
        return new MainWindowInterface(window);
    auto *const widget = qobject_cast<QWidget *>(object);
    if (!widget || !widget->isWindow())
        return nullptr;
    // The preferences window is a plain QWidget, which has no role of its own.
    if (qobject_cast<PreviewPanel *>(widget) || widget->metaObject() == &QWidget::staticMetaObject)
        return new QAccessibleWidget(widget, QAccessible::Dialog);
    return nullptr;
}

} // namespace

void installAccessibleWindows()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace brevant
