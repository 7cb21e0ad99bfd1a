// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunMaker.h"
#include "app/results/Inquiry.h"
#include "app/results/MessagePane.h"
#include "app/results/ResultTable.h"
#include "app/results/ResultsWindow.h"
#include "app/results/RunChooser.h"
#include "app/results/StateFilter.h"
#include "engine/Tools.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "widgets/FilterField.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace brevant;
using namespace brevant::test;
using Column = ResultModel::Column;
using State = ResultRow::State;

/// The window Results, driven by its keys and buttons.
class tst_ResultsWindow final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_runs = std::make_unique<ResultRuns>();
        m_inquiry = std::make_unique<Inquiry>(*m_runs, m_settings, m_tools);
    }

    void cleanup()
    {
        m_window.reset();
        m_inquiry.reset();
    }

    void withoutARun()
    {
        open();
        QVERIFY(hasLabel(u"No run yet. What becomes of each file is shown here."_s));
        const QRect room = table()->viewport()->rect();
        QTRY_VERIFY(table()->viewport()->findChild<QLabel *>()->width() > room.width() / 2);
        QVERIFY(room.contains(table()->viewport()->findChild<QLabel *>()->geometry()));
        QVERIFY(!button(u"&Save Report…"_s)->isEnabled());
        QVERIFY(!button(u"Retry &Failed"_s)->isEnabled());
        QVERIFY(!control<RunChooser>()->isEnabled());
    }

    void aRunThatHasEnded()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        QVERIFY(table()->hasFocus());
        QVERIFY(hasLabel(
            u"5 files · 4 kB → 2.1 kB · 47.5 % saved · 1 failed · 1 put back · 1 skipped · 1 with warnings"_s));
        QCOMPARE(names(), u"a.js e.js d.css c.html b.css"_s); // the worst first
        QCOMPARE(table()->selectedRows(), std::vector<int>{0});
        QCOMPARE(messages(), u"Line 68, column 58: Unexpected \"}\""_s);
        QCOMPARE(states(), QStringList({u"All 5"_s, u"Done 2"_s, u"Failed 1"_s, u"Put back 1"_s,
                                        u"Skipped 1"_s, u"Warnings 1"_s}));
        QVERIFY(table()->isColumnHidden(Column::Gzip)); // nobody has one
        QVERIFY(!table()->isColumnHidden(Column::Message));
    }

    void aRunThatGoesOn()
    {
        m_runs->start(1, u"Classic compressors"_s);
        open();
        for (const ResultRow &made : mixedRows()) {
            m_runs->startFile(1, made.source, 5);
            m_runs->endFile(1, made);
        }
        QCOMPARE(names(), u"b.css a.js d.css c.html e.js"_s); // as listed
        QTRY_COMPARE(control<RunChooser>()->currentText(), u"Running, 5 of 5 files"_s);
        QVERIFY(!button(u"&Save Report…"_s)->isEnabled());
        table()->selectRow(3);
        m_runs->end(1, {});
        QCOMPARE(names(), u"a.js e.js d.css c.html b.css"_s);
        QCOMPARE(table()->currentFile()->source, u"/w/c.html"_s); // what was selected stays that
        QVERIFY(button(u"&Save Report…"_s)->isEnabled());
    }

    void theUsersOrderStays()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        const QHeaderView &header = *table()->horizontalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          QPoint(header.sectionViewportPosition(Column::Name) + 30, header.height() / 2));
        QCOMPARE(names(), u"a.js b.css c.html d.css e.js"_s);
        addRun(*m_runs, 2, mixedRows());
        QCOMPARE(control<RunChooser>()->count(), 2);
        QCOMPARE(names(), u"a.js b.css c.html d.css e.js"_s);
    }

    void filters()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        QTest::keyClick(m_window.get(), 'f', Qt::ControlModifier);
        QVERIFY(filter()->hasFocus());
        QTest::keyClicks(filter(), u"css"_s);
        QCOMPARE(names(), u"d.css b.css"_s);
        QTest::keyClicks(filter(), u"x"_s);
        QVERIFY(hasLabel(u"No file matches."_s));
        QTest::keyClick(filter(), Qt::Key_Escape);
        QVERIFY(m_window->isVisible());
        QCOMPARE(filter()->text(), QString());
        QCOMPARE(names(), u"a.js e.js d.css c.html b.css"_s);
        QTest::keyClick(filter(), Qt::Key_Escape);
        QVERIFY(!m_window->isVisible());
    }

    void theCurrentFileStaysUnderAFilter()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        table()->selectRow(4);
        filter()->setText(u"css"_s);
        QCOMPARE(table()->currentFile()->source, u"/w/b.css"_s);
        filter()->setText(u"html"_s);
        QVERIFY(!table()->currentFile());
        QCOMPARE(messages(), u"Select a file to see its messages."_s);
    }

    void theStatesAreOneStopOfTheTabKey()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        auto *const all = toolButton(u"All 5"_s);
        all->setFocus();
        QTest::keyClick(all, Qt::Key_Right);
        QVERIFY(toolButton(u"Done 2"_s)->hasFocus());
        QCOMPARE(names(), u"c.html b.css"_s);
        QTest::keyClick(toolButton(u"Done 2"_s), Qt::Key_Tab);
        QVERIFY(filter()->hasFocus());
    }

    void aStateThatIsGoneIsChosenNoLonger()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        toolButton(u"Failed 1"_s)->click();
        QCOMPARE(names(), u"a.js"_s);
        addRun(*m_runs, 2, {row(State::Done, u"/w/new.css"_s, 2, 1)});
        QCOMPARE(names(), u"new.css"_s);
        QVERIFY(toolButton(u"All 1"_s)->isChecked());
    }

    void rowsAreCopiedAsText()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        table()->selectRow(0);
        QTest::keyClick(table(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(table(), 'c', Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 u"State\tName\tFolder\tBefore\tAfter\tSaved\tTime\tMessage\n"
                 "Failed\ta.js\t/w\t100 bytes\t–\t–\t–\t68:58  Unexpected \"}\"\n"
                 "Put back\te.js\t/w\t70 bytes\t–\t–\t–\tThe compressor failed; the source was put back\n"_s);
    }

    void whatCanBeDoneWithAFile()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        QSignalSpy opened(m_window.get(), &ResultsWindow::openRequested);
        QSignalSpy revealed(m_window.get(), &ResultsWindow::revealRequested);
        QVERIFY(!toolButton(u"Re&veal Output"_s)->isEnabled());
        QCOMPARE(toolButton(u"Re&veal Output"_s)->toolTip(), u"There is no output."_s);
        toolButton(u"&Open"_s)->click();
        QCOMPARE(opened, QList<QVariantList>{{u"/w/a.js"_s}});
        toolButton(u"&Copy Path"_s)->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), u"/w/a.js"_s);
        table()->selectRow(4);
        toolButton(u"Re&veal Output"_s)->click();
        QCOMPARE(revealed, QList<QVariantList>{{u"/w/b.css.out"_s}});
    }

    void noFileIsLeftWithoutASelection()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        table()->clearSelection();
        QVERIFY(!toolButton(u"&Open"_s)->isEnabled());
        QCOMPARE(messages(), u"Select a file to see its messages."_s);
    }

    void whatFailedIsRetried()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        QSignalSpy retried(m_window.get(), &ResultsWindow::retryRequested);
        m_runs->start(2, u"another"_s);
        m_window->showRun(1);
        QVERIFY(!button(u"Retry &Failed"_s)->isEnabled());
        m_runs->end(2, {});
        QVERIFY(button(u"Retry &Failed"_s)->isEnabled());
        button(u"Retry &Failed"_s)->click();
        QCOMPARE(retried,
                 QList<QVariantList>{{QStringList({u"/w/a.js"_s, u"/w/sub/d.css"_s, u"/w/e.js"_s})}});
    }

    void anOlderRunIsChosen()
    {
        addRun(*m_runs, 1, mixedRows());
        addRun(*m_runs, 2, {row(State::Done, u"/w/new.css"_s, 2, 1)});
        open();
        QCOMPARE(names(), u"new.css"_s);
        auto *const chooser = control<RunChooser>();
        chooser->setFocus();
        QTest::keyClick(chooser, Qt::Key_Down);
        QCOMPARE(names(), u"a.js e.js d.css c.html b.css"_s);
    }

    void runsAreToldApart()
    {
        addRun(*m_runs, 1, mixedRows());
        addRun(*m_runs, 2, mixedRows());
        open();
        QVERIFY(control<RunChooser>()->itemText(0) != control<RunChooser>()->itemText(1));
    }

    void anotherRunDoesNotTakeTheRoomOfOneThatGoesOn()
    {
        m_runs->start(1, u"one"_s);
        m_runs->startFile(1, u"/w/a.css"_s, 1);
        open();
        addRun(*m_runs, 2, mixedRows());
        QCOMPARE(names(), u"a.css"_s);
        QCOMPARE(control<RunChooser>()->count(), 2);
    }

    void reportsAreSaved_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("beginning");
        QTest::newRow("JSON") << u"report.json"_s << "{"_ba;
        QTest::newRow("CSV") << u"report.CSV"_s << "state,source"_ba;
        QTest::newRow("Markdown") << u"report.md"_s << "# Brevant"_ba;
        QTest::newRow("without an extension") << u"report"_s << "{"_ba;
    }

    void reportsAreSaved()
    {
        QFETCH(const QString, name);
        const QTemporaryDir folder;
        addRun(*m_runs, 1, mixedRows());
        open();
        button(u"&Save Report…"_s)->click();
        auto *const panel = m_window->findChild<QFileDialog *>();
        QVERIFY(panel);
        panel->selectFile(folder.filePath(name));
        static_cast<QDialog *>(panel)->accept();
        const QString file = folder.filePath(name.contains(u'.') ? name : name + u".json"_s);
        QTRY_VERIFY(QFile::exists(file));
        QFETCH(const QByteArray, beginning);
        QVERIFY2(readFile(file).startsWith(beginning), readFile(file).constData());
    }

    void columnsAreHiddenByTheUser()
    {
        addRun(*m_runs, 1, mixedRows());
        open();
        Q_EMIT table()->horizontalHeader()->customContextMenuRequested({5, 5});
        const auto menus = table()->findChildren<QMenu *>();
        QCOMPARE(menus.size(), 1);
        QAction *const folder = menus.front()->actions().at(Column::Folder);
        QCOMPARE(folder->text(), u"Folder"_s);
        folder->trigger();
        QVERIFY(table()->isColumnHidden(Column::Folder));
        addRun(*m_runs, 2, mixedRows());
        QVERIFY(table()->isColumnHidden(Column::Folder));
    }

private:
    void open()
    {
        m_window = std::make_unique<ResultsWindow>(
            *m_runs, *m_inquiry, [] { return QString(); }, nullptr);
        m_window->showLastRun();
        m_window->resize(1200, 600); // room for all columns
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    template <typename Control>
    Control *control() const
    {
        return m_window->findChild<Control *>();
    }
    ResultTable *table() const { return control<ResultTable>(); }
    FilterField *filter() const { return control<FilterField>(); }
    QString messages() const { return control<QPlainTextEdit>()->toPlainText(); }

    QPushButton *button(const QString &text) const
    {
        for (QPushButton *const found : m_window->findChildren<QPushButton *>()) {
            if (found->text() == text)
                return found;
        }
        return nullptr;
    }

    QToolButton *toolButton(const QString &text) const
    {
        for (QToolButton *const found : m_window->findChildren<QToolButton *>()) {
            if (found->text().trimmed() == text)
                return found;
        }
        return nullptr;
    }

    QStringList states() const
    {
        QStringList found;
        for (const QToolButton *const made : control<StateFilter>()->findChildren<QToolButton *>()) {
            if (made->isVisible())
                found.append(made->text().trimmed());
        }
        return found;
    }

    bool hasLabel(const QString &text) const
    {
        for (const QLabel *const label : m_window->findChildren<QLabel *>()) {
            if (label->isVisible() && label->text() == text)
                return true;
        }
        return false;
    }

    QString names() const
    {
        QStringList found;
        const QAbstractItemModel &model = *table()->model();
        for (int at = 0; at < model.rowCount(); ++at)
            found.append(model.index(at, Column::Name).data().toString());
        return found.join(u' ');
    }

    const SettingsStore m_settings{u"/nowhere/settings.json"_s};
    const Tools m_tools;
    std::unique_ptr<ResultRuns> m_runs;
    std::unique_ptr<Inquiry> m_inquiry;
    std::unique_ptr<ResultsWindow> m_window;
};

BREVANT_TEST(tst_ResultsWindow, QApplication)
#include "tst_ResultsWindow.moc"
