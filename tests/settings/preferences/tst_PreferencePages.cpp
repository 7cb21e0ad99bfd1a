// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/Controls.h"
#include "tests/TestClass.h"
#include "tests/settings/preferences/PreferenceBench.h"

#include <QApplication>
#include <QLabel>
#include <QSet>
#include <QTabBar>

#include <algorithm>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The three pages: what they look like together, and going from one to the other.
class tst_PreferencePages final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void titles()
    {
        PreferenceBench bench;
        bench.load();
        QStringList titles;
        for (int index = 0; index < bench.pages()->count(); ++index)
            titles.append(bench.pages()->tabText(index));
        QCOMPARE(titles, (QStringList{u"Output"_s, u"Compressors"_s, u"Files and Runs"_s}));
    }

    void mnemonicsDiffer()
    {
        PreferenceBench bench;
        bench.load();
        QString all;
        for (int index = 0; index < bench.pages()->count(); ++index) {
            QSet<QString> seen;
            const auto take = [&seen, &all](const QString &text) {
                const QString keys = QKeySequence::mnemonic(text).toString();
                const bool fresh = keys.isEmpty() || !seen.contains(keys);
                seen.insert(keys);
                all += keys.right(1);
                return fresh;
            };
            const QWidget *page = bench.pages()->widget(index);
            for (const QAbstractButton *button : buttonsOn(*page)) {
                QVERIFY2(!QKeySequence::mnemonic(button->text()).isEmpty(), qPrintable(button->text()));
                QVERIFY2(take(button->text()), qPrintable(button->text()));
            }
            for (const QLabel *label : page->findChildren<QLabel *>())
                QVERIFY2(take(label->text()), qPrintable(label->text()));
        }
        std::ranges::sort(all);
        QCOMPARE(all, u"BBCEFGHIKKLMNOPRSTUUV"_s);
        QCOMPARE(bench.control<QLabel>("compressorsLabel")->buddy(),
                 bench.control<QComboBox>("compressorsPopupButton"));
        QCOMPARE(bench.control<QLabel>("saveInLabel")->buddy(), bench.control<QComboBox>("popupButton"));
        QCOMPARE(bench.control<QLabel>("readingLabel")->buddy(),
                 bench.control<QComboBox>("encodingPopupButton"));
    }

    void everyControlIsNamedAndExplained()
    {
        PreferenceBench bench;
        bench.load();
        int controls = 0;
        for (const QWidget *widget : bench.control<QWidget>("page")->findChildren<QWidget *>()) {
            if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().isEmpty() ||
                widget->objectName().startsWith("qt_"_L1) ||
                qobject_cast<const QTabBar *>(widget->parentWidget()) != nullptr ||
                qobject_cast<const QTabWidget *>(widget) != nullptr)
                continue; // parts of others, and the tabs, which name themselves
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const QString name = button != nullptr ? button->text() : widget->accessibleName();
            QVERIFY2(!name.isEmpty(), qPrintable(widget->objectName()));
            QVERIFY2(widget->toolTip().size() > 20, qPrintable(widget->objectName()));
            ++controls;
        }
        QCOMPARE(controls, 7 + bench.checkers().size());
        for (const char *name : {"nomungeChecker", "preserveSemiChecker", "disableOptimizationsChecker"})
            QVERIFY(bench.control<QCheckBox>(name)->text().endsWith("(JavaScript)"_L1));
    }

    void everyControlIsReachedByTab()
    {
        PreferenceBench bench;
        bench.store.setBool(true, lineBreakSwitcherKeyString);
        QVERIFY(bench.show());
        const QWidget *page = bench.control<QWidget>("page");
        QStringList stops;
        for (int index = 0; index < bench.pages()->count(); ++index) {
            bench.pages()->setCurrentIndex(index);
            bench.pages()->tabBar()->setFocus();
            // From top to bottom; of the two rows, one choice, only the chosen one is a stop.
            int previous = -1;
            for (int stop = 0; stop < 30; ++stop) {
                QWidget *focused = QApplication::focusWidget();
                const int top = focused->mapTo(page, focused->rect().center()).y() / 8;
                if (top < previous)
                    break;
                previous = top;
                stops.append(focused->objectName());
                QTest::keyClick(focused, Qt::Key_Tab);
            }
            QCOMPARE(QApplication::focusWidget(), bench.pages()->tabBar());
        }
        stops.removeAll(u"qt_tabwidget_tabbar"_s);
        // Two are greyed with the classic compressors.
        QCOMPARE(stops.size(), 6 + bench.checkers().size() - 2);
    }

    void pagesAreTurnedByKeys_data()
    {
        QTest::addColumn<QString>("focused");
        for (const char *name : {"qt_tabwidget_tabbar", "suffixField", "popupButton", "gzipChecker", ""})
            QTest::addRow("focus on %s", name) << QString::fromLatin1(name);
    }

    void pagesAreTurnedByKeys()
    {
        QFETCH(const QString, focused);
        PreferenceBench bench;
        QVERIFY(bench.show());
        QWidget *window = bench.controller->window();
        QCOMPARE(QApplication::focusWidget(), bench.pages()->tabBar()); // at first
        if (focused.isEmpty())
            bench.controller->close();
        else
            window->findChild<QWidget *>(focused)->setFocus();
        const auto turn = [window](Qt::KeyboardModifiers modifiers) {
            QWidget *at = window->focusWidget();
            QTest::keyClick(at != nullptr ? at : window, Qt::Key_Tab, modifiers);
        };
        for (const int page : {1, 2, 0}) {
            turn(Qt::ControlModifier);
            QCOMPARE(bench.pages()->currentIndex(), page);
        }
        turn(Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(bench.pages()->currentIndex(), 2);
        QVERIFY(window->isVisible());
        QCOMPARE(bench.writes.count(), 0);
    }

    void opensOnTheFirstPageAtItsSize()
    {
        PreferenceBench bench;
        bench.load();
        bench.controller->showWindow();
        QCOMPARE(bench.pages()->currentIndex(), 0);
        // At once, without growing before the user's eyes.
        const QSize size = bench.controller->window()->size();
        QCOMPARE(size, bench.control<QWidget>("page")->sizeHint());
        for (const int page : {1, 2, 0}) {
            bench.pages()->setCurrentIndex(page);
            QCoreApplication::processEvents();
            QCOMPARE(bench.controller->window()->size(), size);
        }
        // And as it was left.
        bench.pages()->setCurrentIndex(1);
        bench.controller->window()->close();
        bench.controller->showWindow();
        QCOMPARE(bench.pages()->currentIndex(), 1);
        QCOMPARE(bench.writes.count(), 0);
    }

    void controlsBeginAtTheSamePlace_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }

    void controlsBeginAtTheSamePlace()
    {
        QFETCH(const Qt::LayoutDirection, direction);
        const bool mirrored = direction == Qt::RightToLeft;
        PreferenceBench bench;
        bench.load();
        QWidget *window = bench.controller->window();
        window->setLayoutDirection(direction);
        for (const double scale : {1., 1.5}) {
            QFont font = window->font();
            font.setPointSizeF(font.pointSizeF() * scale);
            window->setFont(font);
            bench.controller->showWindow();
            QSet<int> columns;
            for (const char *name : {"gzipChecker", "compressorsPopupButton", "nomungeChecker",
                                     "keepCommentsChecker", "filterChecker", "soundChecker"}) {
                auto *control = bench.control<QWidget>(name);
                QTRY_COMPARE(window->width(), bench.control<QWidget>("page")->sizeHint().width());
                QCoreApplication::processEvents();
                const QPoint start = mirrored ? control->rect().topRight() : QPoint();
                columns.insert(control->mapTo(window, start).x());
            }
            QCOMPARE(columns.size(), 1);
        }
        // The labels stand next to them, whatever the direction of their texts.
        const auto side = mirrored ? Qt::AlignLeft : Qt::AlignRight;
        for (const RowLabel *label : window->findChildren<RowLabel *>())
            QCOMPARE(label->alignment(), side | Qt::AlignAbsolute | Qt::AlignVCenter);
    }
};

BREVANT_TEST(tst_PreferencePages, QApplication)
#include "tst_PreferencePages.moc"
