// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/preview/PreviewPanel.h"
#include "tests/TestClass.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *interfaceOf(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

QWidget *preferences()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->findChild<QWidget *>(u"suffixField"_s) != nullptr)
            return window;
    }
    return nullptr;
}

QList<QObject *> childrenOf(QAccessibleInterface *interface)
{
    QList<QObject *> children;
    for (int i = 0; i < interface->childCount(); ++i)
        children.append(interface->child(i)->object());
    return children;
}

} // namespace

/// What assistive programs are told of the windows.
class tst_Accessible final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void roles()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s, "a{}")});
        app.window.show();
        QCOMPARE(interfaceOf(&app.window)->role(), QAccessible::Window);
        QCOMPARE(interfaceOf(&app.window)->text(QAccessible::Name), u"Brevant"_s);

        app.window.ui().preferencesMenu->trigger();
        QWidget *const window = preferences();
        QVERIFY(window);
        QCOMPARE(interfaceOf(window)->role(), QAccessible::Dialog);
        QCOMPARE(interfaceOf(window)->text(QAccessible::Name), u"Preferences"_s);
        QVERIFY(interfaceOf(window)->childCount() > 0);
        window->close();

        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        PreviewPanel *const panel = app.delegate.sharedPreviewPanel();
        QCOMPARE(interfaceOf(panel)->role(), QAccessible::Dialog);
        QCOMPARE(interfaceOf(panel)->text(QAccessible::Name), u"Preview"_s);
        app.delegate.togglePreviewPanel();
    }

    void theKeyOfQuickLookIsNoPartOfItsName()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s, "a{}")});
        app.window.show();
        app.table->selectRowIndexes({0}, false);
        QAction *const action = app.window.ui().quickLookMenu;
        QCOMPARE(action->text(), u"&Quick Look"_s);
        QAccessibleInterface *const menu = interfaceOf(app.window.ui().viewMenu);
        QCOMPARE(menu->childCount(), 3);
        QCOMPARE(menu->child(0)->text(QAccessible::Name), u"Quick Look"_s);
        QCOMPARE(menu->child(0)->text(QAccessible::Accelerator), u"Space"_s);
        QCOMPARE(menu->child(1)->text(QAccessible::Name), u"Results"_s);
        QCOMPARE(menu->child(1)->text(QAccessible::Accelerator), u"Ctrl+L"_s);
        QCOMPARE(menu->child(2)->text(QAccessible::Name), u"Planned Outputs"_s);
        QCOMPARE(menu->child(2)->text(QAccessible::Accelerator), u"Ctrl+Shift+L"_s);
        // The space bar is still that of whatever has the focus.
        QSignalSpy triggered(action, &QAction::triggered);
        QSignalSpy toggled(app.table, &BVTableView::togglePreviewPanel);
        QSignalSpy clicked(app.window.ui().clearButton, &QPushButton::clicked);
        app.window.activateWindow();
        app.table->setFocus();
        QTest::keyClick(&app.window, Qt::Key_Space); // as the window gets it: shortcuts come first
        QTest::keyClick(app.table, Qt::Key_Space);
        QCOMPARE(toggled.size(), 1);
        app.delegate.sharedPreviewPanel()->orderOut();
        app.window.ui().clearButton->setFocus();
        QTest::keyClick(app.window.ui().clearButton, Qt::Key_Space);
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(triggered.size(), 0);
    }

    void theContextMenuIsPartOfTheWindowWhileItIsOpen()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s, "a{}")});
        app.window.show();
        app.table->selectRowIndexes({0}, false);
        QAccessibleInterface *const window = interfaceOf(&app.window);
        const QList<QObject *> before = childrenOf(window);
        QVERIFY(before.contains(app.window.ui().menuBar));
        QVERIFY(before.contains(app.window.ui().contents));

        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QApplication::sendEvent(app.table, &event);
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QCOMPARE(childrenOf(window), before + QList<QObject *>{menu});
        QAccessibleInterface *const found = window->child(window->childCount() - 1);
        QCOMPARE(found->role(), QAccessible::PopupMenu);
        QCOMPARE(found->childCount(), 4);
        QCOMPARE(found->child(0)->text(QAccessible::Name), u"Quick Look"_s);
        QCOMPARE(window->indexOfChild(found), window->childCount() - 1);
        menu->close();
        QCOMPARE(childrenOf(window), before);
    }
};

BREVANT_TEST(tst_Accessible, QApplication)
#include "tst_Accessible.moc"
