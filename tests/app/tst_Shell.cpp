// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/preview/PreviewPanel.h"
#include "tests/TestClass.h"

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QWindow>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

/// Notes what the panel asks when it reloads.
class Source final : public PreviewPanelDataSource {
public:
    mutable int asked = 0;
    [[nodiscard]] int numberOfPreviewItemsInPreviewPanel() const override
    {
        ++asked;
        return 0;
    }
    [[nodiscard]] QUrl previewPanelPreviewItemAtIndex(int) const override { return {}; }
};

} // namespace

/// The menu's ways out, the preferences, the preview.
class tst_Shell final : public QObject {
    Q_OBJECT

private:
    static void fill(AppFixture &app, int count)
    {
        app.fill(count, "a { color: red }");
        app.window.show();
        app.table->setFocus();
    }

    static QStringList items(const AppController &controller)
    {
        QStringList names;
        for (int i = 0; i < controller.numberOfPreviewItemsInPreviewPanel(); ++i)
            names.append(controller.previewPanelPreviewItemAtIndex(i).fileName());
        return names;
    }

private Q_SLOTS:
    void homePage()
    {
        AppFixture app;
        app.window.ui().homePageMenu->trigger();
        QCOMPARE(app.opened, QList<QUrl>({QUrl(u"https://brevant.example/"_s)}));
    }

    void homePageWithoutAnAddress()
    {
        AppFixture app;
        app.homePage.clear();
        app.supportMail.clear();
        app.controller.mainPage();
        const QDir above(QFileInfo(app.folder.path()).path());
        QCOMPARE(app.opened,
                 QList<QUrl>({QUrl::fromLocalFile(above.filePath(u"doc/brevant/brevant.1.html"_s))}));
        QVERIFY(app.window.ui().feedbackMenu->isVisible());
        AppController controller(app);
        controller.awakeFromNib();
        QVERIFY(!app.window.ui().feedbackMenu->isVisible());
    }

    void theDropHintFollowsTheSettings()
    {
        AppFixture app;
        const auto hint = [&app] { return app.window.ui().DropView->accessibleName(); };
        const QString rest = u" or folders here, or double-click to choose them"_s;
        QCOMPARE(hint(), u"Drop CSS, JavaScript or HTML files"_s + rest);
        app.settings.setBool(true, enablePHPCheckerKeyString);
        QCOMPARE(hint(), u"Drop CSS, JavaScript, HTML or PHP files"_s + rest);
        app.settings.setBool(false, enableHTMLCheckerKeyString);
        QCOMPARE(hint(), u"Drop CSS, JavaScript or PHP files"_s + rest);
        app.settings.setBool(false, enablePHPCheckerKeyString);
        QCOMPARE(hint(), u"Drop CSS or JavaScript files"_s + rest);
    }

    void feedbackMail()
    {
        QCoreApplication::setApplicationVersion(u"1.0.0"_s);
        AppFixture app;
        app.window.ui().feedbackMenu->trigger();
        QCOMPARE(app.opened.size(), 1);
        const QString url = QString::fromUtf8(app.opened.first().toEncoded());
        QVERIFY2(url.startsWith(
                     u"mailto:support@brevant.example?SUBJECT=Brevant%201.0.0%20feedback,%20OS%20X%20"_s),
                 qPrintable(url));
        QVERIFY2(url.endsWith(u'&') && !url.contains(u' '), qPrintable(url));
    }

    void about()
    {
        QCoreApplication::setApplicationVersion(u"1.0.0"_s);
        AppFixture app;
        app.window.show();
        app.window.ui().aboutMenu->trigger();
        const QPointer<QMessageBox> box = app.window.findChild<QMessageBox *>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->text(), u"Brevant 1.0.0"_s);
        QTest::keyClick(box, Qt::Key_Escape);
        QTRY_VERIFY(!box);
    }

    void thePreferencesAreMadeOnce()
    {
        AppFixture app;
        app.settings.setOverride(false, sameFolderKeyString);
        app.settings.setOverride(app.folder.path(), selectedFolderKeyString);
        app.window.ui().preferencesMenu->trigger();
        const auto preferences = [] {
            QList<QWidget *> windows;
            for (QWidget *window : QApplication::topLevelWidgets()) {
                if (window->findChild<QWidget *>(u"suffixField"_s) != nullptr)
                    windows.append(window);
            }
            return windows;
        };
        QCOMPARE(preferences().size(), 1);
        QWidget *const first = preferences().first();
        QVERIFY(first->isVisible());
        const auto *const popup = first->findChild<QComboBox *>(u"popupButton"_s);
        QVERIFY(!popup->itemIcon(popup->currentIndex()).isNull()); // of the chosen folder
        first->close();
        app.window.ui().preferencesMenu->trigger();
        QCOMPARE(preferences(), QList<QWidget *>({first}));
        QVERIFY(first->isVisible());
        first->close();
    }

    void spaceOpensAndClosesThePreview()
    {
        AppFixture app;
        fill(app, 3);
        QTest::keyClick(app.table, Qt::Key_Space);
        QVERIFY(app.delegate.sharedPreviewPanel() == nullptr); // nothing is selected
        app.table->selectRowIndexes({0, 2}, false);
        QTest::keyClick(app.table, Qt::Key_Space);
        QVERIFY(app.delegate.sharedPreviewPanel() != nullptr);
        QVERIFY(app.delegate.sharedPreviewPanel()->isOpen());
        QCOMPARE(items(app.controller), QStringList({u"f0.css"_s, u"f2.css"_s}));
        QTest::keyClick(app.delegate.sharedPreviewPanel(), Qt::Key_Space);
        QTRY_VERIFY(!app.delegate.sharedPreviewPanel()->isOpen());
        QTest::keyClick(app.table, Qt::Key_Space);
        QVERIFY(app.delegate.sharedPreviewPanel()->isOpen());
        app.window.ui().quickLookMenu->trigger();
        QTRY_VERIFY(!app.delegate.sharedPreviewPanel()->isOpen());
    }

    void anOpenPreviewIsEasyToClose_data()
    {
        QTest::addColumn<bool>("inPanel");
        QTest::newRow("in the window") << false;
        QTest::newRow("in the preview") << true;
    }

    /// Also when nothing is selected, as after a run.
    void anOpenPreviewIsEasyToClose()
    {
        QFETCH(bool, inPanel);
        AppFixture app;
        fill(app, 3);
        QAction *const quickLook = app.window.ui().quickLookMenu;
        for (const bool byKey : {true, false}) {
            app.window.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&app.window));
            app.table->selectRowIndexes({0}, false);
            app.delegate.togglePreviewPanel();
            PreviewPanel *const panel = app.delegate.sharedPreviewPanel();
            QTRY_VERIFY(panel->isActiveWindow());
            app.table->deselectAll();
            QVERIFY(quickLook->isEnabled());
            if (!inPanel) {
                app.window.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&app.window));
            }
            QWidget *const focus = inPanel ? panel : static_cast<QWidget *>(app.table);
            QTest::keyClick(focus, Qt::Key_Space); // no key of the list without a selection
            QVERIFY(panel->isOpen());
            if (byKey)
                QTest::keyClick(focus, Qt::Key_Escape);
            else
                quickLook->trigger();
            QVERIFY(!panel->isOpen());
            QVERIFY(!quickLook->isEnabled());
        }
        QTest::keyClick(app.table, Qt::Key_Escape);
        QVERIFY(!app.delegate.sharedPreviewPanel()->isOpen());
    }

    void deselectingARowLeavesOneItem()
    {
        AppFixture app;
        fill(app, 3);
        app.table->selectRowIndexes({0, 2}, false);
        app.delegate.togglePreviewPanel();
        QCOMPARE(items(app.controller).size(), 2);
        app.table->selectRowIndexes({2}, false);
        QCOMPARE(items(app.controller), QStringList({u"f2.css"_s}));
        app.delegate.togglePreviewPanel();
    }

    void thePreviewFloatsAndKeepsItsKeys()
    {
        AppFixture app;
        fill(app, 3);
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        PreviewPanel *const panel = app.delegate.sharedPreviewPanel();
        QTRY_VERIFY(panel->isVisible());
        QCOMPARE(panel->windowHandle()->transientParent(), app.window.windowHandle());
        QTest::keyClick(panel, Qt::Key_Return);
        QTest::keyClick(panel, Qt::Key_Delete);
        QVERIFY(!app.jobs.isRunning());
        QCOMPARE(app.queue.count(), 3);
        app.delegate.togglePreviewPanel();
    }

    void aTildeInANameIsOneForThePreviewToo()
    {
        AppFixture app;
        app.queue.append(u"~/a.css"_s);
        app.drop({});
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        QCOMPARE(app.controller.previewPanelPreviewItemAtIndex(0).path(),
                 QDir::currentPath() + u"/~/a.css"_s);
        app.delegate.togglePreviewPanel();
    }

    void namesThatBeginWithTwoSlashes()
    {
        AppFixture app;
        app.queue.append(u"//Home/User/a.css"_s);
        app.drop({});
        app.window.show();
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        const QUrl item = app.controller.previewPanelPreviewItemAtIndex(0);
        QCOMPARE(item.path(), u"//Home/User/a.css"_s);
        QVERIFY(!app.controller.previewPanelSourceFrameOnScreenForPreviewItem(item).isEmpty());
        app.delegate.togglePreviewPanel();
    }

    void anArrowInThePreviewMovesTheSelection()
    {
        AppFixture app;
        fill(app, 3);
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        QTest::keyClick(app.delegate.sharedPreviewPanel(), Qt::Key_Down);
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({1}));
        QCOMPARE(items(app.controller), QStringList({u"f1.css"_s}));
        app.delegate.togglePreviewPanel();
    }

    void otherEventsAreLeftToThePreview()
    {
        AppFixture app;
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Down, Qt::NoModifier);
        QVERIFY(!app.controller.previewPanelHandleEvent(&release));
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QVERIFY(app.controller.previewPanelHandleEvent(&press));
    }

    void thePreviewZoomsOutOfItsRow()
    {
        AppFixture app;
        fill(app, 3);
        const QUrl second = QUrl::fromLocalFile(app.folder.filePath(u"f1.css"_s));
        const QRect frame = app.controller.previewPanelSourceFrameOnScreenForPreviewItem(second);
        QCOMPARE(frame.topLeft(), app.table->viewport()->mapToGlobal(app.table->frameOfCell(1).topLeft()));
        QCOMPARE(frame.size(), app.table->frameOfCell(1).size());
        app.table->selectRowIndexes({1}, false);
        app.controller.removeRow();
        QCOMPARE(app.controller.previewPanelSourceFrameOnScreenForPreviewItem(second), QRect());
    }

    void anyTablesSelectionReloadsThePreview()
    {
        AppFixture app;
        fill(app, 2);
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        PreviewPanel *const panel = app.delegate.sharedPreviewPanel();

        QStandardItemModel model(2, 1);
        QTableView other;
        other.setModel(&model);
        other.show();
        Source source;
        panel->setDataSource(&source);
        source.asked = 0;
        other.selectRow(1);
        QVERIFY(source.asked > 0);
        panel->setDataSource(&app.controller);
        app.delegate.togglePreviewPanel();
    }

    void clearingLeavesThePreviewAlone()
    {
        AppFixture app;
        fill(app, 2);
        app.table->selectRowIndexes({0}, false);
        app.delegate.togglePreviewPanel();
        app.table->deselectAll(); // so that no change of the selection reloads it
        PreviewPanel *const panel = app.delegate.sharedPreviewPanel();
        Source source;
        panel->setDataSource(&source);
        source.asked = 0;
        app.controller.clear();
        QCOMPARE(source.asked, 0);
        panel->setDataSource(&app.controller);
        app.delegate.togglePreviewPanel();
    }

    void theWindowMovesByItsBackground()
    {
        AppFixture app;
        fill(app, 2);
        QWidget *const window = &app.window;
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const auto drag = [window](const QWidget *by) {
            const QPoint from = by->mapTo(window, QPoint(4, by->height() / 2));
            const QPoint before = window->pos();
            QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, from);
            QTest::mouseMove(window->windowHandle(), from + QPoint(20, 30));
            QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, from);
            return window->pos() - before;
        };
        QCOMPARE(drag(app.window.ui().progressTextField), QPoint(20, 30));
        QCOMPARE(drag(app.window.ui().minifyButton), QPoint());
    }
};

BREVANT_TEST(tst_Shell, QApplication)
#include "tst_Shell.moc"
