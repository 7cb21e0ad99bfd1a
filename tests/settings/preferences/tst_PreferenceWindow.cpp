// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/Controls.h"
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QSpacerItem>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The window itself: how it opens, closes, moves, and that everything on it can be read and reached.
class tst_PreferenceWindow final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void madeOnceAndShownAgain()
    {
        PreferenceBench bench;
        bench.load();
        QWidget *window = bench.controller->window();
        QVERIFY(!window->isVisible());
        bench.controller->showWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        bench.control<QCheckBox>("gzipChecker")->click();
        bench.control<QLineEdit>("suffixField")->setText(u"-left"_s);
        window->move(30, 40);
        const QPoint place = window->pos();
        window->close();
        QVERIFY(!window->isVisible());
        bench.controller->showWindow();
        QCOMPARE(bench.controller->window(), window);
        QVERIFY(QTest::qWaitForWindowActive(window));
        QVERIFY(bench.control<QCheckBox>("gzipChecker")->isChecked());
        QCOMPARE(bench.control<QLineEdit>("suffixField")->text(), u"-left"_s);
        QCOMPARE(window->pos(), place);
        window->showMinimized();
        bench.controller->showWindow();
        QVERIFY(!window->isMinimized());
    }

    void closesByKey_data()
    {
        QTest::addColumn<QKeySequence>("keys");
        QTest::newRow("Escape") << QKeySequence(Qt::Key_Escape);
        QTest::newRow("Ctrl+W") << QKeySequence(Qt::CTRL | Qt::Key_W);
    }

    void closesByKey()
    {
        QFETCH(QKeySequence, keys);
        for (const char *name : {"suffixField", "gzipChecker", "popupButton"}) {
            PreferenceBench bench;
            QVERIFY(bench.show());
            auto *control = bench.control<QWidget>(name);
            control->setFocus();
            QTest::keySequence(control, keys);
            QTRY_VERIFY(!bench.controller->window()->isVisible());
            QCOMPARE(bench.writes.count(), 0);
            QVERIFY(bench.controller->window()->focusWidget() == nullptr);
        }
    }

    void movesByItsBackground()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        QWidget *window = bench.controller->window();
        const auto drag = [window](const QPoint &from) {
            const QPoint before = window->pos();
            QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, from);
            QTest::mouseMove(window->windowHandle(), from + QPoint(20, 30));
            // The window has come along, so that the pointer is where it was on it.
            QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, from);
            return window->pos() - before;
        };
        const auto centre = [&bench, window](const char *name) {
            auto *control = bench.control<QWidget>(name);
            QCoreApplication::sendPostedEvents(); // which lay out a page turned to
            return control->mapTo(window, control->rect().center());
        };
        QCOMPARE(drag(QPoint(5, 5)), QPoint(20, 30));
        QCOMPARE(drag(centre("runsLabel")), QPoint(20, 30));
        QCOMPARE(drag(centre("outputLine")), QPoint(20, 30));
        QCOMPARE(drag(centre("exampleText")), QPoint(20, 30));
        // Controls are no background, whether they are enabled or not.
        QCOMPARE(drag(bench.pages()->tabBar()->mapTo(window, QPoint(30, 10))), QPoint());
        QCOMPARE(drag(centre("suffixField")), QPoint());
        QCOMPARE(drag(centre("lineBreakField")), QPoint());
        QCOMPARE(drag(centre("gzipChecker")), QPoint());
        QTest::mouseMove(window->windowHandle(), QPoint(50, 60));
        const QPoint before = window->pos();
        QTest::mousePress(window->windowHandle(), Qt::RightButton, {}, QPoint(5, 5));
        QTest::mouseMove(window->windowHandle(), QPoint(15, 15));
        QTest::mouseRelease(window->windowHandle(), Qt::RightButton, {}, QPoint(15, 15));
        QCOMPARE(window->pos(), before);
    }

    void nothingIsClipped_data()
    {
        QTest::addColumn<int>("points");
        for (const int points : {7, 9, 12, 18})
            QTest::addRow("%d points", points) << points;
    }

    void nothingIsClipped()
    {
        QFETCH(int, points);
        const QFont usual = QApplication::font();
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        PreferenceBench bench;
        QVERIFY(bench.show());
        QApplication::setFont(usual);
        const QWidget *page = bench.control<QWidget>("page");
        QVERIFY(page->width() <= 960);
        for (int index = bench.pages()->count() - 1; index >= 0; --index) {
            bench.pages()->setCurrentIndex(index);
            QTRY_COMPARE(bench.pages()->currentWidget()->size(), bench.pages()->widget(2)->size());
        }
        int seen = 0;
        const auto whole = [page, &seen](const QWidget *widget) {
            ++seen;
            const QRect place(widget->mapTo(page, QPoint()), widget->size());
            return page->rect().contains(place) && widget->width() >= widget->sizeHint().width() &&
                   widget->height() >= widget->sizeHint().height();
        };
        for (const QLabel *label : page->findChildren<QLabel *>())
            QVERIFY2(whole(label), qPrintable(label->objectName()));
        for (const QAbstractButton *button : buttonsOn(*page))
            QVERIFY2(whole(button), qPrintable(button->objectName()));
        for (const QComboBox *popup : page->findChildren<QComboBox *>()) {
            QVERIFY2(whole(popup), qPrintable(popup->objectName()));
            QStyleOptionComboBox option;
            option.initFrom(popup);
            option.rect = popup->rect();
            const int room =
                popup->style()
                    ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, popup)
                    .width();
            for (int index = 0; index < popup->count(); ++index)
                QVERIFY2(popup->fontMetrics().horizontalAdvance(popup->itemText(index)) <= room,
                         qPrintable(popup->itemText(index)));
        }
        const auto *field = bench.control<QLineEdit>("lineBreakField");
        QVERIFY(field->width() > field->fontMetrics().horizontalAdvance(u"100000"_s));
        QCOMPARE(seen, 12 + (2 + bench.checkers().size()) + 3);
    }

    void followsTheFont()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        QWidget *window = bench.controller->window();
        QFont font = window->font();
        const int before = window->width();
        font.setPointSizeF(font.pointSizeF() * 1.2);
        window->setFont(font);
        QTRY_VERIFY(window->width() > before);
        QTRY_VERIFY(bench.control<QWidget>("page")->width() >=
                    bench.control<QWidget>("page")->sizeHint().width());
    }

    void scrollsOnASmallScreen()
    {
        PageArea area;
        auto *page = new QWidget; // owned by the area
        (new QVBoxLayout(page))
            ->addSpacerItem(new QSpacerItem(100, 10000, QSizePolicy::Fixed, QSizePolicy::Fixed));
        area.setWidgetResizable(true);
        area.setFrameShape(QFrame::NoFrame);
        area.setWidget(page);
        QVERIFY(area.sizeHint().height() < area.screen()->availableSize().height());
        area.resize(area.sizeHint());
        area.show();
        QTRY_VERIFY(area.verticalScrollBar()->maximum() > 0);
        QVERIFY(area.verticalScrollBar()->isVisible());
        QCOMPARE(area.horizontalScrollBar()->maximum(), 0);
    }

    void longFolderName()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("popupButton");
        const QSize before = bench.controller->window()->size();
        bench.answer = u"/out/"_s + QString(250, u'w');
        bench.controller->chooseFolderItemClicked();
        QCOMPARE(popup->currentText().size(), 250);
        QCoreApplication::processEvents();
        QCOMPARE(bench.controller->window()->size(), before);
        QCOMPARE(bench.controller->window()->sizeHint(), before);
    }

    void wheelChoosesNothing()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        for (const char *name : {"popupButton", "compressorsPopupButton", "encodingPopupButton"}) {
            auto *popup = bench.control<QComboBox>(name);
            const QPointF middle = popup->rect().center();
            QWheelEvent wheel(middle, popup->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(popup, &wheel);
            QCOMPARE(popup->currentIndex(), 0);
        }
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(bench.startFolders.isEmpty());
    }

    void keysOpenTheList_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Down") << Qt::Key_Down;
        QTest::newRow("Up") << Qt::Key_Up;
        QTest::newRow("End") << Qt::Key_End;
        QTest::newRow("PageDown") << Qt::Key_PageDown;
        QTest::newRow("C") << Qt::Key_C;
        QTest::newRow("Space") << Qt::Key_Space;
        QTest::newRow("F4") << Qt::Key_F4;
    }

    void keysOpenTheList()
    {
        QFETCH(Qt::Key, key);
        PreferenceBench bench;
        QVERIFY(bench.show());
        for (const char *name : {"popupButton", "compressorsPopupButton", "encodingPopupButton"}) {
            auto *popup = bench.control<QComboBox>(name);
            QTest::keyClick(popup, key);
            QTRY_VERIFY(popup->view()->isVisible());
            QCOMPARE(popup->currentIndex(), 0);
            QTest::keyClick(popup->view(), Qt::Key_Escape);
            QTRY_VERIFY(!popup->view()->isVisible());
            QCOMPARE(popup->currentIndex(), 0);
        }
        QCOMPARE(bench.writes.count(), 0);
        QVERIFY(bench.startFolders.isEmpty());
        QVERIFY(bench.controller->window()->isVisible());
    }

    void lettersSearchTheOpenList()
    {
        PreferenceBench bench;
        QVERIFY(bench.show());
        auto *popup = bench.control<QComboBox>("encodingPopupButton");
        QTest::keyClick(popup, 'k');
        QTRY_VERIFY(popup->view()->isVisible());
        QTest::keyClick(popup->view(), Qt::Key_Return);
        QTRY_COMPARE(bench.store.stringForKey(selectedEncodingKeyString), u"iso-2022-kr"_s);
    }
};

BREVANT_TEST(tst_PreferenceWindow, QApplication)
#include "tst_PreferenceWindow.moc"
