// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/app/preview/PreviewBench.h"

#include <QAbstractScrollArea>
#include <QClipboard>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The panel as a window: its keys and buttons, how it comes and goes, and where it is.
class tst_PreviewWindow final : public PreviewBench {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setUpFiles(); }
    void init() { setUpPanel(); }
    void cleanup() { m_window.reset(); }

    void keysGoToTheDelegate_data()
    {
        QTest::addColumn<QKeySequence>("keys");
        for (const Qt::Key key :
             {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_PageDown,
              Qt::Key_Home, Qt::Key_Delete, Qt::Key_X, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << QKeySequence(key);
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp,
                                  Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
            QTest::newRow(qPrintable(QKeySequence(Qt::ALT | key).toString())) << QKeySequence(Qt::ALT | key);
        for (const QKeySequence::StandardKey key :
             {QKeySequence::Copy, QKeySequence::SelectAll, QKeySequence::Close})
            QTest::newRow(qPrintable(QKeySequence(key).toString())) << QKeySequence(key);
    }

    void keysGoToTheDelegate()
    {
        QFETCH(QKeySequence, keys);
        open({m_a, m_b});
        QTRY_COMPARE(m_panel->focusWidget(), editor());
        QGuiApplication::clipboard()->setText(u"before"_s);
        QVERIFY(QMetaObject::invokeMethod(editor(), "selectAll"));
        QTest::keySequence(editor(), keys);
        QTest::keySequence(m_panel, keys);
        QCOMPARE(m_owner.keys, (std::vector<int>{keys[0].key(), keys[0].key()}));
        QCOMPARE(m_panel->currentPreviewItemIndex(), 0);
        QVERIFY(m_panel->isOpen());
        QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    }

    void keysLeftToThePanel()
    {
        const QString path = m_files.add(u"long.css"_s, QByteArray("a{}\n").repeated(500));
        m_owner.takesKeys = false;
        open({path});
        QTRY_COMPARE(m_panel->focusWidget(), editor());
        auto *const area = qobject_cast<QAbstractScrollArea *>(editor());
        QTest::keyClick(editor(), Qt::Key_PageDown);
        QTest::keyClick(editor(), Qt::Key_PageDown);
        QTRY_VERIFY(area->verticalScrollBar()->value() > 0);
        QTest::keyClick(editor(), Qt::Key_F5); // one that the text does not take either
        QCOMPARE(m_owner.keys, (std::vector<int>{Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_F5}));
    }

    void heldKeys()
    {
        open({m_a});
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Down}) {
            QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(m_panel, &held);
        }
        QCOMPARE(m_owner.keys, (std::vector<int>{Qt::Key_Space, Qt::Key_Down}));
    }

    void theTextHasAMenu()
    {
        open({m_files.add(u"long.css"_s, QByteArray("a{}\n").repeated(500))});
        QTRY_COMPARE(m_panel->focusWidget(), editor());
        const QScrollBar &bar = *qobject_cast<QAbstractScrollArea *>(editor())->verticalScrollBar();
        QTRY_VERIFY(bar.maximum() > 4 * bar.pageStep());
        const auto item = [this](int index) {
            QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5),
                                    editor()->mapToGlobal(QPoint(5, 5)));
            QCoreApplication::sendEvent(editor(), &event);
            auto *const menu = m_panel->findChild<QMenu *>();
            return menu != nullptr && menu->isVisible() ? menu->actions().value(index) : nullptr;
        };
        const auto closeMenu = [this] {
            QPointer<QMenu> menu = m_panel->findChild<QMenu *>();
            menu->close();
            QTRY_VERIFY(!menu);
        };
        QVERIFY(item(0) != nullptr && !item(0)->isEnabled()); // nothing is selected
        closeMenu();
        item(3)->trigger();
        QCOMPARE(bar.value(), bar.pageStep());
        closeMenu();
        item(2)->trigger();
        QCOMPARE(bar.value(), 0);
        closeMenu();
        QVERIFY(QMetaObject::invokeMethod(editor(), "selectAll"));
        item(0)->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text().size(), 500 * 4 - 1);
        closeMenu();
    }

    void turnButtons()
    {
        open({m_a, m_b});
        QVERIFY(!button("previewPrevious")->isEnabled());
        QTest::mouseClick(button("previewNext"), Qt::LeftButton);
        QTRY_COMPARE(labelText("previewName"), u"b.js"_s);
        QVERIFY(!button("previewNext")->isEnabled());
        QTest::mouseClick(button("previewPrevious"), Qt::LeftButton);
        QTRY_COMPARE(labelText("previewName"), u"a.css"_s);
    }

    void closedByTheWindowManager()
    {
        const QSignalSpy closed(m_panel, &PreviewPanel::didClose);
        open({m_a});
        m_panel->close();
        QVERIFY(!m_panel->isOpen());
        QVERIFY(!m_panel->isVisible());
        QCOMPARE(closed.size(), 1);
    }

    void zooms()
    {
        m_owner.frame = QRect(30, 40, 150, 34);
        m_owner.paths = QStringList{m_a, m_b};
        m_panel->makeKeyAndOrderFront();
        QVERIFY(m_panel->isOpen());
        QVERIFY(!m_panel->isVisible());
        QVERIFY(zoom()->isVisible());
        QCOMPARE(zoom()->geometry(), m_owner.frame);
        QTRY_VERIFY(m_panel->isVisible());
        QCOMPARE(zoom()->geometry(), m_panel->geometry());
        QTRY_VERIFY(!zoom()->isVisible());
        QTRY_VERIFY(m_panel->isActiveWindow());

        m_panel->setCurrentPreviewItemIndex(1);
        m_owner.framesAskedFor.clear();
        m_panel->orderOut();
        QVERIFY(!m_panel->isVisible());
        QVERIFY(zoom()->isVisible());
        QTRY_VERIFY(!zoom()->isVisible());
        QCOMPARE(zoom()->geometry(), m_owner.frame);
        QCOMPARE(m_owner.framesAskedFor, QList<QUrl>{QUrl::fromLocalFile(m_b)});
    }

    void closedWhileItOpens()
    {
        m_owner.frame = QRect(30, 40, 150, 34);
        m_owner.paths = QStringList{m_a};
        m_panel->makeKeyAndOrderFront();
        m_panel->orderOut();
        QVERIFY(!m_panel->isOpen());
        QTRY_VERIFY(!zoom()->isVisible());
        QVERIFY(!m_panel->isVisible());
    }

    void reopenedWhileItCloses()
    {
        m_owner.frame = QRect(30, 40, 150, 34);
        open({m_a});
        m_panel->orderOut();
        m_panel->makeKeyAndOrderFront();
        QTRY_VERIFY(m_panel->isVisible());
        QTRY_VERIFY(!zoom()->isVisible());
        QVERIFY(m_panel->isVisible());
        QTRY_COMPARE(shownText(), u"a{color:red}"_s);
    }

    void noZoom_data()
    {
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<int>("duration");
        QTest::newRow("not in the queue") << QRect() << 200;
        QTest::newRow("reduced motion") << QRect(30, 40, 150, 34) << 0;
    }

    void noZoom()
    {
        QFETCH(QRect, frame);
        QFETCH(int, duration);
        m_owner.frame = frame;
        m_style->duration = duration;
        m_owner.paths = QStringList{m_a};
        m_panel->makeKeyAndOrderFront();
        QVERIFY(m_panel->isVisible());
        QVERIFY(!zoom()->isVisible());
        m_panel->orderOut();
        QVERIFY(!zoom()->isVisible());
    }

    void keepsSizeAndStaysOnScreen()
    {
        const QRect screen = m_panel->screen()->availableGeometry();
        open({m_a});
        QVERIFY(screen.contains(m_panel->frameGeometry()));
        m_panel->resize(410, 333);
        m_panel->orderOut();
        m_panel->makeKeyAndOrderFront();
        QCOMPARE(m_panel->size(), QSize(410, 333));
        m_panel->move(screen.right() - 20, screen.bottom() - 20);
        m_panel->orderOut();
        m_panel->makeKeyAndOrderFront();
        QVERIFY(screen.contains(m_panel->frameGeometry()));
        QCOMPARE(m_panel->size(), QSize(410, 333));
    }

    void pathsAreReadFromTheLeft()
    {
        const auto picture = [this](Qt::LayoutDirection direction) {
            QGuiApplication::setLayoutDirection(direction);
            setUpPanel();
            auto *const label = m_panel->findChild<QLabel *>(u"previewFolder"_s);
            if (direction == Qt::LayoutDirectionAuto)
                label->setAlignment(Qt::AlignVCenter | Qt::AlignRight);
            label->setText(u"/w/site"_s);
            label->resize(200, 20);
            return label->grab().toImage();
        };
        const QImage fromTheRight = picture(Qt::RightToLeft);
        QCOMPARE(fromTheRight, picture(Qt::LayoutDirectionAuto));
    }

    void accessibleNames()
    {
        open({m_a, m_b});
        QTRY_COMPARE(editor()->accessibleName(), u"Text of a.css"_s);
        QCOMPARE(m_panel->accessibleName(), u"Preview"_s);
        QCOMPARE(button("previewPrevious")->accessibleName(), u"Previous file"_s);
        QCOMPARE(button("previewNext")->accessibleName(), u"Next file"_s);
        QVERIFY(button("previewNext")->toolTip().contains(u"Next file"_s));
    }
};

BREVANT_TEST(tst_PreviewWindow, QApplication)
#include "tst_PreviewWindow.moc"
