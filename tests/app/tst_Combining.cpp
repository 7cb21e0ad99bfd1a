// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFixture.h"

#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Combining as the user does it: the alerts, the save panel, and what the list shows afterwards.
class tst_Combining final : public QObject {
    Q_OBJECT

private:
    /// Runs Combine… on the selection; the save panel that comes up.
    static QFileDialog *panelOf(AppFixture &app)
    {
        app.window.ui().combineMenu->trigger();
        return app.window.findChild<QFileDialog *>();
    }

    /// Types a name and confirms.
    static void save(QDialog *panel, const QString &path)
    {
        panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
        panel->accept();
    }

private Q_SLOTS:
    void refusals_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QStringList &names, const char *title,
                            const char *message) {
            QTest::newRow(name) << names << QString::fromUtf8(title) << QString::fromUtf8(message);
        };
        row("none", {}, "Notice", "Please select 2 or more files to combine.");
        row("one", {u"a.css"_s}, "Notice", "Please select 2 or more files to combine.");
        row("two kinds", {u"a.css"_s, u"b.js"_s}, "Combine different kinds of files?",
            "No, please select only one kind of files at a time.");
        row("html", {u"a.html"_s, u"b.html"_s}, "Combine HTML files?",
            "Sorry, you can only combine CSS or JS files. Combine HTML files makes no scene.");
        row("phtml", {u"a.phtml"_s, u"b.phtml"_s}, "Combine PHTML files?",
            "Sorry, you can only combine CSS or JS files. Combine PHTML files makes no scene.");
        row("php", {u"a.php"_s, u"b.php"_s}, "Combine PHP files?",
            "Sorry, you can only combine CSS or JS files. Combine PHP files makes no scene.");
    }

    void refusals()
    {
        QFETCH(QStringList, names);
        AppFixture app;
        app.settings.setOverride(true, enablePHPCheckerKeyString);
        QStringList paths;
        for (const QString &name : names)
            paths.append(app.file(name));
        app.drop(paths);
        app.window.show();
        app.controller.selectAll();
        app.window.ui().combineMenu->trigger();
        auto *const box = app.window.findChild<QMessageBox *>();
        QVERIFY(box != nullptr && box->isVisible());
        QTEST(box->text(), "title");
        QTEST(box->informativeText(), "message");
        QCOMPARE(box->icon(), QMessageBox::Warning);
        QCOMPARE(box->windowModality(), Qt::WindowModal);
        QCOMPARE(box->buttons().size(), 1);
        QVERIFY(app.window.findChild<QFileDialog *>() == nullptr);
        QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
        QTRY_VERIFY(app.window.findChild<QMessageBox *>() == nullptr);
        QCOMPARE(app.queue.count(), static_cast<int>(names.size()));
    }

    void theKindIsSpeltAsInTheFirstFile_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("small first") << QStringList{u"a.css"_s, u"b.CSS"_s} << u"combined.css"_s;
        QTest::newRow("capital HTML") << QStringList{u"a.HTML"_s, u"b.HTML"_s} << u"combined.HTML"_s;
    }

    void theKindIsSpeltAsInTheFirstFile()
    {
        QFETCH(const QStringList, names);
        AppFixture app;
        app.drop({app.file(names.first()), app.file(names.last())});
        app.controller.selectAll();
        QFileDialog *const panel = panelOf(app);
        QVERIFY(panel != nullptr);
        QTEST(panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), "proposed");
        QCOMPARE(panel->windowModality(), Qt::WindowModal);
        panel->reject();
        QCOMPARE(app.queue.count(), 2);
    }

    void rowsGiveTheOrder()
    {
        AppFixture app;
        app.drop({app.file(u"0.js"_s, "0"), app.file(u"b.js"_s, "y"), app.file(u"2.js"_s, "2"),
                  app.file(u"a.js"_s, "x")});
        app.table->selectRowIndexes({3}, false);
        app.table->selectRowIndexes({1}, true);
        const QString target = app.folder.filePath(u"combined.js"_s);
        save(panelOf(app), target);
        QCOMPARE(app.queue.count(), 3);
        QCOMPARE(readFile(target), QByteArray("y\nx\n"));
        QCOMPARE(app.queue.entries().back(), target);
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({2}));
        QCOMPARE(app.state(), u"buttons on, menu on, table #ffffff, \"3 items\", badge \"3\""_s);
        QCOMPARE(app.javaCalls(), QStringList()); // combining minifies nothing
    }

    void oneItemIsLeft()
    {
        AppFixture app;
        app.settings.setOverride(false, badgeCheckerKeyString);
        app.drop({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        app.dockTile.setBadgeLabel(u"?"_s);
        app.controller.selectAll();
        save(panelOf(app), app.folder.filePath(u"all"_s)); // the ending is added
        QCOMPARE(app.status(), u"1 item"_s);
        QCOMPARE(app.queue.entries(), std::vector<QString>({app.folder.filePath(u"all.css"_s)}));
        QCOMPARE(app.dockTile.badgeLabel(), u"?"_s);
    }

    void theEncodingIsThatOfWhenThePanelOpened()
    {
        AppFixture app;
        const QByteArray text("/* \xd6\xd0 */"); // GBK, and no UTF-8: read as such, all would be aborted
        app.drop({app.file(u"a.css"_s, text), app.file(u"b.css"_s, text)});
        app.controller.selectAll();
        app.settings.setOverride(u"gbk"_s, selectedEncodingKeyString);
        QFileDialog *const panel = panelOf(app);
        app.settings.setOverride(u"utf-8"_s, selectedEncodingKeyString);
        const QString target = app.folder.filePath(u"combined.css"_s);
        save(panel, target);
        QTRY_COMPARE(app.queue.entries(), std::vector<QString>({target}));
        QCOMPARE(readFile(target), text + '\n' + text + '\n');
    }

    void theSelectionIsThatOfWhenThePanelIsConfirmed()
    {
        AppFixture app;
        const QString first = app.file(u"a.css"_s, "a");
        app.drop({first, app.file(u"b.css"_s, "b"), app.file(u"c.css"_s, "c")});
        app.table->selectRowIndexes({0, 1}, false);
        QFileDialog *const panel = panelOf(app);
        app.table->selectRowIndexes({1, 2}, false);
        const QString target = app.folder.filePath(u"combined.css"_s);
        save(panel, target);
        QTRY_COMPARE(app.queue.entries(), std::vector<QString>({first, target}));
        QCOMPARE(readFile(target), QByteArray("b\nc\n"));
    }

    void theCombinedFileIsScrolledTo()
    {
        AppFixture app;
        app.fill(40);
        app.window.show();
        app.table->selectRowIndexes({0, 1}, false);
        save(panelOf(app), app.folder.filePath(u"combined.css"_s));
        QTRY_COMPARE(app.table->selectedRowIndexes(), std::vector<int>({38}));
        QVERIFY(app.table->viewport()->rect().contains(app.table->frameOfCell(38)));
    }

    void theNameEndsInTheKind_data()
    {
        QTest::addColumn<QString>("saved");
        QTest::newRow("all.css") << "all.css";
        QTest::newRow("all.") << "all.css";
        QTest::newRow("all.min") << "all.min.css";
        QTest::newRow("all.CSS") << "all.CSS.css";
    }

    void theNameEndsInTheKind()
    {
        QFETCH(QString, saved);
        AppFixture app;
        app.drop({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        app.controller.selectAll();
        save(panelOf(app), app.folder.filePath(QString::fromLatin1(QTest::currentDataTag())));
        QTRY_COMPARE(app.queue.entries(), std::vector<QString>({app.folder.filePath(saved)}));
    }

    void ontoAPathThatIsListedAlready()
    {
        AppFixture app;
        const QString listed = app.file(u"c.css"_s, "old");
        const QString other = app.file(u"d.css"_s);
        app.drop({listed, app.file(u"a.css"_s, "a"), app.file(u"b.css"_s, "b"), other});
        app.table->selectRowIndexes({1, 2}, false);
        QFileDialog *const panel = panelOf(app);
        panel->setOption(QFileDialog::DontConfirmOverwrite);
        save(panel, listed);
        QCOMPARE(app.queue.entries(), std::vector<QString>({listed, other})); // in its place
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({0}));
        QCOMPARE(readFile(listed), QByteArray("a\nb\n"));
    }

    void ontoOneOfTheSources()
    {
        AppFixture app;
        const QString first = app.file(u"a.css"_s, "a");
        app.drop({first, app.file(u"b.css"_s, "b"), app.file(u"c.css"_s, "c")});
        app.table->selectRowIndexes({0, 1}, false);
        QFileDialog *const panel = panelOf(app);
        panel->setOption(QFileDialog::DontConfirmOverwrite);
        save(panel, first);
        QCOMPARE(app.queue.count(), 2);
        QCOMPARE(app.queue.entries().back(), first);
        QCOMPARE(readFile(first), QByteArray("a\nb\n"));
    }

    void replacingIsAskedFor()
    {
        AppFixture app;
        app.file(u"there.css"_s, "precious");
        app.drop({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        app.controller.selectAll();
        QFileDialog *const panel = panelOf(app);
        bool asked = false;
        QTimer looking; // the question is a loop of its own
        connect(&looking, &QTimer::timeout, panel, [&] {
            if (auto *const box = panel->findChild<QMessageBox *>()) {
                asked = true;
                box->button(QMessageBox::No)->click();
            }
        });
        looking.start(0);
        save(panel, app.folder.filePath(u"there"_s)); // the question is about there.css
        QVERIFY(asked);
        QCOMPARE(app.queue.count(), 2);
        QCOMPARE(readFile(app.folder.filePath(u"there.css"_s)), QByteArray("precious"));
    }

    void anInvalidFileAbortsAll()
    {
        AppFixture app;
        app.settings.setOverride(u"iso-8859-1"_s, selectedEncodingKeyString); // is read as UTF-8
        app.drop({app.file(u"a.css"_s, "a"), app.file(u"b.css"_s, "caf\xe9 {}")});
        app.controller.selectAll();
        const QString before = app.state();
        const QString target = app.folder.filePath(u"combined.css"_s);
        save(panelOf(app), target);
        QVERIFY(!QFile::exists(target));
        QCOMPARE(app.state(), before);
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({0, 1}));
    }

    void confirmingIsOneStep()
    {
        AppFixture app;
        const QByteArray text(5'000'000, 'x');
        app.drop({app.file(u"a.css"_s, text), app.file(u"b.css"_s, text)});
        app.controller.selectAll();
        const QString target = app.folder.filePath(u"combined.css"_s);
        save(panelOf(app), target);
        // No event has come in between.
        QCOMPARE(readFile(target).size(), 2 * text.size() + 2);
        QCOMPARE(app.queue.entries(), std::vector<QString>({target}));
        QCOMPARE(app.table->model()->rowCount(), 1);
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({0}));
        QCOMPARE(app.state(), u"buttons on, menu on, table #ffffff, \"1 item\", badge \"1\""_s);
    }

    void notWhileAJobRuns()
    {
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        const QString gate = app.file(u"gate"_s);
        app.drop({app.file(u"a.css"_s, "wait " + gate.toUtf8())});
        const QAction *const combine = app.window.ui().combineMenu;
        QVERIFY(combine->isEnabled());
        app.controller.minify();
        QVERIFY(!combine->isEnabled());
        QSignalSpy enabled(combine, &QAction::enabledChanged);
        app.jobs.detachNewThread([](const auto &) {}); // another that has ended long before
        QFile::remove(gate);
        QTRY_VERIFY(!app.jobs.isRunning());
        QVERIFY(combine->isEnabled());
        QCOMPARE(enabled.size(), 1);
    }

    void aRunHoldsThePanelUp_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("a file that is there is kept") << QByteArray("precious") << QByteArray("precious");
        QTest::newRow("a new file is empty") << QByteArray() << QByteArray();
    }

    /// The run takes the selection with it.
    void aRunHoldsThePanelUp()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        AppFixture app;
        app.settings.setOverride(false, soundCheckerKeyString);
        const QString gate = app.file(u"gate"_s);
        app.drop({app.file(u"a.css"_s, "wait " + gate.toUtf8()), app.file(u"b.css"_s)});
        app.window.show();
        app.controller.selectAll();
        const QPointer<QFileDialog> panel = panelOf(app);
        panel->setOption(QFileDialog::DontConfirmOverwrite);
        const auto *const button = panel->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save);
        QVERIFY(button->isEnabled());
        app.controller.minify();
        QVERIFY(!button->isEnabled());
        const QString target = app.folder.filePath(u"bundle.css"_s);
        if (!before.isEmpty())
            app.file(u"bundle.css"_s, before);
        save(panel, target);
        QVERIFY(panel && panel->isVisible() && !button->isEnabled());
        QFile::remove(gate);
        QTRY_VERIFY(button->isEnabled());
        static_cast<QDialog *>(panel)->accept();
        QVERIFY(!panel->isVisible());
        QCOMPARE(readFile(target), after);
        QCOMPARE(app.queue.count(), 3);
        QCOMPARE(app.queue.entries().back(), target);
        QCOMPARE(app.table->selectedRowIndexes(), std::vector<int>({2}));
    }

    void aWriteThatFailsChangesTheListAllTheSame()
    {
        AppFixture app;
        app.drop({app.file(u"a.css"_s), app.file(u"b.css"_s)});
        app.controller.selectAll();
        const QString target = u"/proc/combined.css"_s;
        save(panelOf(app), target);
        QCOMPARE(app.queue.entries(), std::vector<QString>({target}));
        QCOMPARE(app.status(), u"1 item"_s);
    }
};

BREVANT_TEST(tst_Combining, QApplication)
#include "tst_Combining.moc"
