// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"
#include "app/WindowRun.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// What the window makes of what a run tells, and in which order.
class tst_WindowRun final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_seen.clear();
        m_status.clear();
        m_app = std::make_unique<AppFixture>();
        m_app->sound->onCall = [this](const QString &call) { see(call); };
        const Ui::MainWindow &ui = m_app->window.ui();
        connect(ui.minifyMenu, &QAction::enabledChanged, this,
                [this](bool isEnabled) { see(isEnabled ? u"unlocked"_s : u"locked"_s); });
        connect(m_app->table, &BVTableView::selectionDidChange, this, [this] {
            QString rows = u"rows"_s;
            for (const int row : m_app->table->selectedRowIndexes())
                rows += u" %1"_s.arg(row);
            see(rows);
        });
    }

    void anEmptyQueue()
    {
        m_app->window.ui().minifyMenu->setEnabled(true);
        m_seen.clear();
        run();
        QCOMPARE(m_seen, QStringList({u"locked"_s, u"load"_s, u"play"_s, u"Well done!"_s, u"unlocked"_s}));
    }

    void threeEntries()
    {
        fill(3);
        run();
        QCOMPARE(m_seen, QStringList({u"locked"_s, u"Minified 1 of 3 items."_s, u"rows 0"_s,
                                      u"Minified 2 of 3 items."_s, u"rows"_s, u"rows 1"_s,
                                      u"Minified 3 of 3 items."_s, u"rows"_s, u"rows 2"_s, u"rows"_s,
                                      u"load"_s, u"play"_s, u"Well done!"_s, u"unlocked"_s}));
    }

    void withoutJava()
    {
        fill(2);
        m_app->tools.java = m_app->folder.filePath(u"java"_s);
        run();
        QCOMPARE(m_seen, QStringList({u"locked"_s, u"Minified 1 of 2 items."_s, u"rows 0"_s, u"rows"_s,
                                      u"Java was not found at %1."_s.arg(m_app->tools.java), u"unlocked"_s}));
    }

    void aStop()
    {
        fill(2);
        m_stop = Stop::AfterFile;
        run();
        m_stop = Stop::No;
        QCOMPARE(m_seen, QStringList({u"locked"_s, u"unlocked"_s}));
    }

    void soundIsTestedStrictly_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("plays");
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("false") << QJsonValue(false) << false;
        QTest::newRow("1") << QJsonValue(1) << false;
        QTest::newRow("text") << QJsonValue(u"true"_s) << false;
    }

    void soundIsTestedStrictly()
    {
        QFETCH(QJsonValue, stored);
        m_app->settings.setOverride(stored, soundCheckerKeyString);
        run();
        QTEST(m_seen.contains(u"play"_s), "plays");
        QVERIFY(m_seen.contains(u"load"_s)); // in any case
    }

    void soundIsReadAtTheEnd()
    {
        for (const bool isOn : {true, false}) {
            m_app->settings.setOverride(!isOn, soundCheckerKeyString);
            m_seen.clear();
            WindowRun window(*m_app, m_app->queue, m_app->settings, m_stop);
            window.runStarted();
            window.entryStarted({0, 1, u"/w/a.css"_s, u"Minified 1 of 1 items."_s});
            m_app->settings.setOverride(isOn, soundCheckerKeyString);
            window.runEnded(RunEnd::Completed, u"Well done!"_s);
            m_app->settings.setOverride(!isOn, soundCheckerKeyString);
            QCoreApplication::processEvents();
            QCOMPARE(m_seen.contains(u"play"_s), isOn);
        }
    }

private:
    void fill(int count)
    {
        QStringList paths;
        for (int i = 0; i < count; ++i)
            paths.append(m_app->file(u"f%1.css"_s.arg(i)));
        m_app->drop(paths);
        m_status = m_app->status();
        m_seen.clear();
    }

    /// A whole run on this thread; the window shows it afterwards.
    void run()
    {
        runMinifyJob(*m_app, m_stop);
        QCoreApplication::processEvents();
    }

    /// Writes down the status first, if it is another one.
    void see(const QString &what)
    {
        if (const QString status = m_app->status(); status != std::exchange(m_status, status))
            m_seen.append(status);
        m_seen.append(what);
    }

    std::unique_ptr<AppFixture> m_app;
    std::atomic<Stop> m_stop = Stop::No;
    QStringList m_seen;
    QString m_status;
};

BREVANT_TEST(tst_WindowRun, QApplication)
#include "tst_WindowRun.moc"
