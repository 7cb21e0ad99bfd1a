// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanTable.h"
#include "app/planned/PlannedWindow.h"
#include "app/results/MessagePane.h"
#include "app/results/StateFilter.h"
#include "engine/Tools.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"
#include "tests/NoThreads.h"
#include "tests/TestClass.h"
#include "widgets/FilterField.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace brevant;
using namespace brevant::test;

/// The window Planned Outputs, driven by its keys and buttons.
class tst_PlannedWindow final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<SettingsStore>(path(u"settings.json"_s));
        m_settings->registerDefaults(registeredDefaults());
        m_queue = std::make_unique<FileQueue>();
        m_minify = std::make_unique<QAction>();
        m_preferences = std::make_unique<QAction>();
    }

    void cleanup() { m_window.reset(); }

    void anEmptyList()
    {
        open();
        QTRY_VERIFY(hasLabel(u"The list is empty. Where each of its files will go is shown here."_s));
        QVERIFY(hasLabel(u"0 files · 0 bytes"_s));
    }

    void whatIsShown()
    {
        fill();
        open();
        QVERIFY(table()->hasFocus());
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Will fail, Take care"_s);
        QCOMPARE(column(PlanModel::Name), u"a.css, b.css, c.css"_s);
        QTRY_COMPARE(states(), QStringList({u"All 3"_s, u"Ready 1"_s, u"Take care 1"_s, u"Will fail 1"_s}));
        QVERIFY(hasLabel(u"3 files · 6 bytes · 1 ready · 1 take care · 1 will fail"_s));
        QVERIFY(hasLabel(
            u"Classic compressors, beside the sources, suffix .min. Nothing has been written yet."_s));
        QVERIFY(hasLabel(u"Minify tries all 3 files, as the list has them."_s));
        QCOMPARE(messages(), u"Select a file to see what is planned for it."_s);
        table()->selectRow(2);
        QCOMPARE(messages().section(u'\n', -1),
                 path(u"c.min.css"_s) + u" was changed after its source. Minify writes it anew."_s);
    }

    void itFollowsListAndSettings()
    {
        fill();
        open();
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Will fail, Take care"_s);
        table()->selectRow(2);
        m_queue->removeAt({1});
        m_queue->reload();
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Take care"_s);
        // Of the file that was selected.
        QCOMPARE(messages().section(u'\n', -1).section(u' ', 0, 0), path(u"c.min.css"_s));
        m_settings->setBool(false, suffixSwitcherKeyString);
        QTRY_COMPARE(column(PlanModel::Problem),
                     u"Replaces its own source, Replaces its own source; Not valid in utf-8, at byte 2"_s);
        QVERIFY(hasLabel(u"Classic compressors, replacing the sources. Nothing has been written yet."_s));
        m_queue->append(path(u"d.css"_s));
        m_queue->reload();
        QTRY_COMPARE(column(PlanModel::State), u"Take care, Take care, Will fail"_s);
        m_queue->clear();
        m_queue->reload();
        QTRY_VERIFY(hasLabel(u"The list is empty. Where each of its files will go is shown here."_s));
    }

    void itWaitsForAThread()
    {
        fill();
        {
            const NoThreads none;
            open();
            QTest::qWait(100); // a timer that ends after that of the planner
            QCOMPARE(column(PlanModel::State), QString());
        }
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Will fail, Take care"_s);
    }

    void itDoesNotWorkWhileItIsClosed()
    {
        fill();
        open();
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Will fail, Take care"_s);
        m_window->close();
        QSignalSpy changed(table()->model(), &QAbstractItemModel::dataChanged);
        m_settings->setBool(false, suffixSwitcherKeyString);
        QCoreApplication::processEvents();
        QCOMPARE(table()->model()->index(0, PlanModel::GoesTo).data().toString(), path(u"a.min.css"_s));
        m_window->show();
        QTRY_COMPARE(table()->model()->index(0, PlanModel::GoesTo).data().toString(), path(u"a.css"_s));
        QVERIFY(!changed.isEmpty());
    }

    void filters()
    {
        fill();
        open();
        QTRY_COMPARE(column(PlanModel::State), u"Ready, Will fail, Take care"_s);
        QTest::keyClick(m_window.get(), 'f', Qt::ControlModifier);
        QVERIFY(filter()->hasFocus());
        QTest::keyClicks(filter(), u"newer"_s);
        QCOMPARE(column(PlanModel::Name), u"c.css"_s);
        QTest::keyClicks(filter(), u"x"_s);
        QVERIFY(hasLabel(u"No file matches."_s));
        QTest::keyClick(filter(), Qt::Key_Escape);
        QCOMPARE(filter()->text(), QString());
        QTRY_VERIFY(toolButton(u"Will fail 1"_s));
        QTest::mouseClick(toolButton(u"Will fail 1"_s), Qt::LeftButton);
        QCOMPARE(column(PlanModel::Name), u"b.css"_s);
        filter()->setFocus();
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
        m_window->show();
        QCOMPARE(m_window->focusWidget(), table()); // where Return minifies
    }

    void theFilterHoldsForNews()
    {
        fill();
        open();
        QTRY_VERIFY(toolButton(u"Ready 1"_s));
        QTest::mouseClick(toolButton(u"Ready 1"_s), Qt::LeftButton);
        QCOMPARE(column(PlanModel::Name), u"a.css"_s);
        QVERIFY(writeFile(path(u"b.css"_s), "b"));
        m_window->refresh();
        QTRY_COMPARE(column(PlanModel::Name), u"a.css, b.css"_s);
    }

    void buttons()
    {
        fill();
        m_minify->setEnabled(false);
        open();
        QPushButton *const minify = button(u"&Minify"_s);
        QVERIFY(!minify->isEnabled());
        m_minify->setEnabled(true);
        QVERIFY(minify->isEnabled());
        QVERIFY(minify->isDefault());
        QCOMPARE(minify->toolTip(), u"Writes 3 minified copies beside their sources"_s);
        QSignalSpy minified(m_minify.get(), &QAction::triggered);
        QSignalSpy preferred(m_preferences.get(), &QAction::triggered);
        QTest::mouseClick(minify, Qt::LeftButton);
        QTest::keyClick(table(), Qt::Key_Return);
        QCOMPARE(minified.size(), 2);
        filter()->setFocus();
        QTest::keyClick(filter(), Qt::Key_Return); // which belongs to the text
        QCOMPARE(minified.size(), 2);
        QTest::mouseClick(button(u"&Preferences…"_s), Qt::LeftButton);
        QCOMPARE(preferred.size(), 1);
    }

    void ofOneFile()
    {
        fill();
        open();
        QTRY_COMPARE(table()->model()->rowCount(), 3);
        QVERIFY(!toolButton(u"Re&veal Source"_s)->isEnabled());
        table()->selectRow(1);
        QSignalSpy opened(m_window.get(), &PlannedWindow::openRequested);
        QSignalSpy revealed(m_window.get(), &PlannedWindow::revealRequested);
        QTest::mouseClick(toolButton(u"&Open"_s), Qt::LeftButton);
        QTest::mouseClick(toolButton(u"Re&veal Source"_s), Qt::LeftButton);
        QTest::mouseClick(toolButton(u"&Copy Path"_s), Qt::LeftButton);
        QCOMPARE(opened.value(0).value(0).toString(), path(u"b.css"_s));
        QCOMPARE(revealed.value(0).value(0).toString(), path(u"b.css"_s));
        QCOMPARE(QGuiApplication::clipboard()->text(), path(u"b.css"_s));
        QTest::keyClick(table(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text().section(u'\t', 0, 2), u"Row\tState\tName"_s);
    }

    void theOrderOfTheTabKey()
    {
        fill();
        open();
        QTRY_COMPARE(table()->model()->rowCount(), 3);
        table()->selectRow(0);
        QStringList stops;
        for (int i = 0; i < 8; ++i) {
            const QWidget *const focus = QApplication::focusWidget();
            const auto *const pressed = qobject_cast<const QAbstractButton *>(focus);
            stops.append(pressed ? pressed->text().trimmed()
                                 : QString::fromLatin1(focus->metaObject()->className()).section(u':', -1));
            QTest::keyClick(m_window.get(), Qt::Key_Tab);
        }
        QCOMPARE(stops, QStringList({u"PlanTable"_s, u"&Open"_s, u"Re&veal Source"_s, u"&Copy Path"_s,
                                     u"QPlainTextEdit"_s, u"&Preferences…"_s, u"&Minify"_s, u"All 3"_s}));
        QVERIFY(filter()->hasFocus());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    /// One that is well, one that cannot be read, and one that is not valid, with a newer output.
    void fill()
    {
        QVERIFY(writeFile(path(u"a.css"_s), "a{}") && writeFile(path(u"c.css"_s), "c{\xE9"));
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            m_queue->append(path(name));
        m_queue->reload();
        QFile old(path(u"c.css"_s));
        QVERIFY(old.open(QIODevice::ReadWrite));
        QVERIFY(old.setFileTime(QDateTime::fromSecsSinceEpoch(1000), QFileDevice::FileModificationTime));
        QVERIFY(writeFile(path(u"c.min.css"_s), "c"));
    }

    void open()
    {
        m_window = std::make_unique<PlannedWindow>(*m_queue, *m_settings, m_tools, *m_minify, *m_preferences,
                                                   nullptr);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    PlanTable *table() const { return m_window->findChild<PlanTable *>(); }
    FilterField *filter() const { return m_window->findChild<FilterField *>(); }
    QString messages() const { return m_window->findChild<QPlainTextEdit *>()->toPlainText(); }

    template <typename Button>
    Button *buttonOf(const QString &text) const
    {
        for (Button *const found : m_window->findChildren<Button *>()) {
            if (found->isVisible() && found->text().trimmed() == text)
                return found;
        }
        return nullptr;
    }
    QPushButton *button(const QString &text) const { return buttonOf<QPushButton>(text); }
    QToolButton *toolButton(const QString &text) const { return buttonOf<QToolButton>(text); }

    QStringList states() const
    {
        QStringList found;
        for (const QToolButton *const made :
             m_window->findChild<StateFilter *>()->findChildren<QToolButton *>()) {
            if (made->isVisible())
                found.append(made->text().trimmed());
        }
        return found;
    }

    bool hasLabel(const QString &text) const
    {
        return std::ranges::any_of(m_window->findChildren<QLabel *>(), [&text](const QLabel *label) {
            return label->isVisible() && label->text() == text;
        });
    }

    QString column(int column) const
    {
        QStringList cells;
        const QAbstractItemModel &model = *table()->model();
        for (int row = 0; row < model.rowCount(); ++row)
            cells.append(model.index(row, column).data().toString());
        return cells.join(u", "_s);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    const Tools m_tools;
    std::unique_ptr<FileQueue> m_queue;
    std::unique_ptr<QAction> m_minify;
    std::unique_ptr<QAction> m_preferences;
    std::unique_ptr<PlannedWindow> m_window;
};

BREVANT_TEST(tst_PlannedWindow, QApplication)
#include "tst_PlannedWindow.moc"
