// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "app/ApplicationService.h"
#include "tests/TestClass.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// What the window does of that which the bus asks for.
class tst_Application final : public QObject {
    Q_OBJECT

private:
    struct Served : AppFixture {
        Served()
        {
            controller.setRunOpenPanel([this](QWidget *, const QStringList &) {
                ++panels;
                return std::nullopt;
            });
            serve(service);
        }

        void act(const char *action, const QStringList &paths = {})
        {
            Q_EMIT service.actionRequested(QString::fromLatin1(action), paths, {});
        }

        int panels = 0;
        ApplicationService service;
    };

    static QWidget *preferences()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->findChild<QWidget *>(u"suffixField"_s) != nullptr)
                return window;
        }
        return nullptr;
    }

private Q_SLOTS:
    void aHiddenWindowComesBack()
    {
        Served app;
        Q_EMIT app.service.activateRequested({});
        QVERIFY(app.window.isVisible());
        app.window.hide();
        Q_EMIT app.service.activateRequested({});
        QVERIFY(app.window.isVisible());
    }

    void aMinimisedWindowComesBack()
    {
        Served app;
        app.window.showMinimized();
        Q_EMIT app.service.openRequested({}, {});
        QVERIFY(!app.window.isMinimized());
        QVERIFY(app.window.isVisible());
        QCOMPARE(app.queue.count(), 0);
    }

    void filesAreListed()
    {
        Served app;
        Q_EMIT app.service.openRequested({app.file(u"a b.css"_s), app.file(u"c.txt"_s)}, {});
        QVERIFY(app.window.isVisible());
        QCOMPARE(app.queue.count(), 1);
        QCOMPARE(app.status(), u"1 item"_s);
        QVERIFY(!app.jobs.isRunning());
    }

    void filesAreListedAndMinified()
    {
        Served app;
        app.window.show();
        app.drop({app.file(u"a.css"_s)});
        app.act("minify", {app.file(u"b.css"_s)});
        QTRY_COMPARE(app.status(), u"Well done!"_s);
        QCOMPARE(app.javaCalls().size(), 2);
    }

    void theListIsMinified()
    {
        Served app;
        app.drop({app.file(u"a.css"_s)});
        app.act("minify");
        QVERIFY(app.window.isVisible());
        QTRY_COMPARE(app.status(), u"Well done!"_s);
        QCOMPARE(app.javaCalls().size(), 1);
    }

    void nothingIsMinified()
    {
        Served app;
        app.act("minify", {app.file(u"a.txt"_s)});
        QVERIFY(app.window.isVisible());
        QVERIFY(!app.jobs.isRunning());
        QCOMPARE(app.status(), QString());
    }

    void automaticallyMinifiedOnce()
    {
        Served app;
        app.settings.setBool(true, autoMinifyCheckerKeyString);
        app.act("minify", {app.file(u"a.css"_s)});
        QTRY_COMPARE(app.status(), u"Well done!"_s);
        QTRY_VERIFY(!app.jobs.isRunning());
        QCOMPARE(app.javaCalls().size(), 1);
    }

    void panelAndPreferences()
    {
        Served app;
        app.act("add-files");
        QVERIFY(app.window.isVisible());
        QCOMPARE(app.panels, 1);
        app.act("preferences");
        QVERIFY(preferences() != nullptr);
        preferences()->close();
    }

    void notOverAPanelThatIsOpen()
    {
        Served app;
        app.window.show();
        QDialog panel(&app.window);
        panel.open();
        app.act("add-files");
        app.act("preferences");
        QCOMPARE(app.panels, 0);
        QVERIFY(preferences() == nullptr);
    }

    void otherActionsArePassedOver_data()
    {
        QTest::addColumn<QByteArray>("action");
        for (const char *action : {"", "Minify", "quit", "minify ", "add-file"})
            QTest::newRow(action) << QByteArray(action);
    }

    void otherActionsArePassedOver()
    {
        QFETCH(const QByteArray, action);
        Served app;
        app.drop({app.file(u"a.css"_s)});
        app.act(action.constData(), {app.file(u"b.css"_s)});
        QVERIFY(!app.window.isVisible());
        QCOMPARE(app.queue.count(), 1);
        QVERIFY(!app.jobs.isRunning());
    }

    void theNameGoesWhenTheEndIsCertain()
    {
        Served app;
        const QSignalSpy ending(&app, &Application::ending);
        app.window.show();
        app.drop({app.file(u"a.css"_s)});
        app.controller.minify();
        app.window.close();
        QCOMPARE(ending.size(), 0); // the window may be opened again
        Q_EMIT app.service.activateRequested({});
        QTRY_VERIFY(!app.jobs.isRunning());
        app.controller.minify();
        app.window.ui().quitMenu->trigger();
        QCOMPARE(ending.size(), 1);
        QTRY_VERIFY(!app.jobs.isRunning());
    }

    void theNameGoesAfterTheLastRun()
    {
        Served app;
        const QSignalSpy ending(&app, &Application::ending);
        app.window.show();
        app.drop({app.file(u"a.css"_s)});
        app.controller.minify();
        app.window.close();
        QTRY_COMPARE(ending.size(), 1);
        QVERIFY(!app.jobs.isRunning());
    }
};

BREVANT_TEST(tst_Application, QApplication)
#include "tst_Application.moc"
