// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResultsFixture.h"
#include "app/results/MessagePane.h"
#include "app/results/ResultTable.h"
#include "tests/Files.h"
#include "tests/NoThreads.h"
#include "tests/TestClass.h"

#include <QAction>
#include <QMessageBox>

using namespace brevant;
using namespace brevant::test;

/// Restore Source in Results.
class tst_Restoring final : public ResultsFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_app->tools.originals = {m_app->folder.filePath(u"originals"_s)};
        m_app->settings.setOverride(false, soundCheckerKeyString);
        m_app->settings.setOverride(false, suffixSwitcherKeyString);
        m_app->settings.setOverride(true, keepOriginalsCheckerKeyString);
        m_app->window.show();
    }

    void whatWasReplacedIsPutBack()
    {
        runAndShow({"copy", "copy", "fail"});
        QVERIFY(table().actions().contains(&restore()));
        QVERIFY(m_app->window.findChild<MessagePane *>()->fileActions().contains(&restore()));
        table().selectAll();
        QVERIFY(restore().isEnabled());
        restore().trigger();
        QVERIFY(!restore().isEnabled());
        QCOMPARE(restore().toolTip(), u"Not while files are worked on."_s);
        QTRY_COMPARE(states(), (QStringList{u"Put back"_s, u"Put back"_s, u"Failed"_s}));
        QVERIFY(!rows()[0].basis && !rows()[1].basis);
        QCOMPARE(readFile(source(0)), "copy"_ba);
        QCOMPARE(readFile(source(1)), "copy"_ba);
        QCOMPARE(rows()[0].reason(), u"the original was put back"_s);
        QTRY_COMPARE(whyGreyed(source(0)), u"The original has been put back."_s);
        QCOMPARE(whyGreyed(source(2)), u"The source was not changed."_s);
        QVERIFY(!sheet());
        auto *const retry = button(u"Retry &Failed"_s);
        QTRY_VERIFY(retry->toolTip().endsWith(u" 1 in all"_s)); // not what was put back on purpose
    }

    void whyThereIsNothingToPutBack_data()
    {
        QTest::addColumn<bool>("isKeeping");
        QTest::addColumn<bool>("inPlace");
        QTest::addColumn<QString>("reason");
        QTest::newRow("not asked for")
            << false << true << u"Originals are kept only if the preferences say so."_s;
        QTest::newRow("beside") << true << false << u"The source was not changed."_s;
    }

    void whyThereIsNothingToPutBack()
    {
        QFETCH(bool, isKeeping);
        QFETCH(bool, inPlace);
        m_app->settings.setOverride(isKeeping, keepOriginalsCheckerKeyString);
        m_app->settings.setOverride(!inPlace, suffixSwitcherKeyString);
        runAndShow({"copy"});
        QTEST(whyGreyed(source(0)), "reason");
    }

    void whyItWasNotKept()
    {
        runAndShow({"copy"});
        ResultRow row(ResultRow::State::Done, source(0));
        row.output = source(0);
        ResultRemarks remarks;
        remarks.notKept = u"its original was not kept, as that"_s;
        row.remarks = std::make_shared<ResultRemarks>(remarks);
        m_app->results.runs.start(1000, u"Classic compressors"_s);
        m_app->results.runs.startFile(1000, source(0), 1);
        m_app->results.runs.endFile(1000, row);
        m_app->results.runs.end(1000, {});
        results()->showRun(1000);
        QCOMPARE(whyGreyed(source(0)), u"Its original was not kept, as that."_s);
        QCOMPARE(linesAbout(row), QStringList{u"Its original was not kept, as that."_s});
    }

    void severalAreOfferedAtOnce()
    {
        runAndShow({"copy", "copy", "copy"});
        QVERIFY(writeFile(source(0), "newer") && QFile::remove(source(1)));
        QVERIFY(writeFile(m_app->folder.filePath(u"f0.original.css"_s), "taken"));
        table().selectAll();
        restore().trigger();
        QTRY_VERIFY(sheet());
        QCOMPARE(sheet()->text(), u"2 files are no longer what their run has written."_s);
        QVERIFY2(sheet()->informativeText().contains(u"f0.css, as f0.original-2.css"_s),
                 qPrintable(sheet()->informativeText()));
        sheet()->defaultButton()->click();
        QTRY_COMPARE(readFile(m_app->folder.filePath(u"f1.original.css"_s)), "copy"_ba);
        QCOMPARE(readFile(m_app->folder.filePath(u"f0.original-2.css"_s)), "copy"_ba);
        QCOMPARE(readFile(m_app->folder.filePath(u"f0.original.css"_s)), "taken"_ba);
        QCOMPARE(readFile(source(0)), "newer"_ba);
        QCOMPARE(readFile(source(2)), "copy"_ba);
        QTRY_VERIFY(!m_app->jobs.isRunning());
    }

    void theNextRunEndsIt()
    {
        runAndShow({"copy"});
        const QString kept = rows()[0].remarks->original;
        QVERIFY(KeptOriginals::isThere(kept));
        run();
        QVERIFY(!KeptOriginals::isThere(kept));
        results()->showRun(m_app->results.runs.all().front()->number);
        QCOMPARE(whyGreyed(source(0)), u"The original is not kept any more."_s);
    }

    void withoutAThreadItCanBeTriedAgain()
    {
        runAndShow({"copy"});
        select(source(0));
        {
            const NoThreads none;
            restore().trigger();
        }
        QVERIFY(restore().isEnabled());
        QCOMPARE(states(), QStringList{u"Done"_s});
        restore().trigger();
        QTRY_COMPARE(states(), QStringList{u"Put back"_s});
    }

    void aRunUnderWay()
    {
        runAndShow({"copy"});
        select(source(0));
        QVERIFY(restore().isEnabled());
        m_app->results.runs.start(1000, u"Classic compressors"_s);
        select(source(0));
        QVERIFY(!restore().isEnabled());
        m_app->results.runs.end(1000, {});
    }

    void newerWorkIsNotReplaced()
    {
        runAndShow({"copy"});
        QVERIFY(writeFile(source(0), "newer"));
        select(source(0));
        restore().trigger();
        QTRY_VERIFY(sheet());
        QCOMPARE(sheet()->text(), u"f0.css is no longer what its run has written."_s);
        QVERIFY2(sheet()->informativeText().endsWith(u"as f0.original.css."_s),
                 qPrintable(sheet()->informativeText()));
        QCOMPARE(sheet()->windowModality(), Qt::WindowModal);
        QVERIFY(!QFile::exists(second()));
        sheet()->button(QMessageBox::Cancel)->click();
        QTRY_VERIFY(!sheet());
        QVERIFY(!QFile::exists(second()));
        QVERIFY(restore().isEnabled());
        restore().trigger();
        QTRY_VERIFY(sheet());
        sheet()->defaultButton()->click();
        QTRY_COMPARE(readFile(second()), "copy"_ba);
        QCOMPARE(readFile(source(0)), "newer"_ba);
        QTRY_COMPARE(rows()[0].remarks->notes,
                     QStringList{u"its original is beside it, as f0.original.css"_s});
        QCOMPARE(states(), QStringList{u"Done"_s});
        QTRY_VERIFY(restore().isEnabled());
    }

    void failuresAreSaid()
    {
        runAndShow({"copy", "copy", "copy"});
        QVERIFY(writeFile(rows()[0].remarks->original, "tampered with"));
        QVERIFY(writeFile(source(1), "newer"));
        table().selectAll();
        restore().trigger();
        QTRY_VERIFY(sheet());
        QCOMPARE(sheet()->text(), u"f1.css is no longer what its run has written."_s);
        QVERIFY2(sheet()->informativeText().endsWith(
                     u"One original could not be put back.\nf0.css: The copy of it is damaged."_s),
                 qPrintable(sheet()->informativeText()));
        sheet()->button(QMessageBox::Cancel)->click();
        QTRY_VERIFY(!sheet());
        QVERIFY(readFile(source(0)).startsWith("minified"));
        QCOMPARE(readFile(source(2)), "copy"_ba);
        QCOMPARE(rows()[0].remarks->notes,
                 QStringList{u"its original could not be put back: the copy of it is damaged"_s});
        select(source(0));
        restore().trigger();
        QTRY_VERIFY(sheet());
        QCOMPARE(sheet()->text(), u"One original could not be put back."_s);
        sheet()->buttons().constFirst()->click();
        QTRY_VERIFY(!sheet());
        QCOMPARE(rows()[0].remarks->notes.size(), 1);
    }

    void aRunThatBeginsMeanwhileTakesNothingAway()
    {
        runAndShow({"copy", "copy"});
        const QString kept = rows()[0].remarks->original;
        const KeptOriginals::Use use(m_app->keptOriginals, {kept});
        run();
        QVERIFY(KeptOriginals::isThere(kept));
    }

    void theEndOfTheProgram_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<bool>("isKept");
        QTest::newRow("six") << 6 << true;
        QTest::newRow("eight") << 8 << false;
    }

    void theEndOfTheProgram()
    {
        QFETCH(int, days);
        const QTemporaryDir folder;
        m_app->tools.originals = {folder.path()};
        runAndShow({"copy"});
        const QString kept = rows()[0].remarks->original;
        const QString record = QString(kept).replace(u".source.kept"_s, u".record.kept"_s);
        const time_t then = ::time(nullptr) - days * 24 * 60 * 60;
        const timespec times[]{{then, 0}, {then, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(record).constData(), times, 0), 0);
        m_app.reset();
        QTEST(KeptOriginals::isThere(kept), "isKept");
    }

private:
    void runAndShow(const QList<QByteArray> &texts)
    {
        fill(texts);
        run();
        m_app->results.show();
    }

    [[nodiscard]] QString source(int number) const
    {
        return m_app->folder.filePath(u"f%1.css"_s.arg(number));
    }
    [[nodiscard]] QString second() const { return m_app->folder.filePath(u"f0.original.css"_s); }
    [[nodiscard]] ResultTable &table() const { return *results()->findChild<ResultTable *>(); }
    [[nodiscard]] QAction &restore() const { return *results()->findChild<MessagePane *>()->restoreAction(); }
    [[nodiscard]] QMessageBox *sheet() const { return results()->findChild<QMessageBox *>(); }
    [[nodiscard]] QPushButton *button(const QString &text) const
    {
        for (QPushButton *const found : results()->findChildren<QPushButton *>()) {
            if (found->text() == text)
                return found;
        }
        return nullptr;
    }
    [[nodiscard]] const std::vector<ResultRow> &rows() const
    {
        return m_app->results.runs.all().back()->rows;
    }
    [[nodiscard]] QStringList states() const
    {
        QStringList states;
        for (const ResultRow &row : rows())
            states.append(stateText(row.state));
        return states;
    }

    void select(const QString &path) const
    {
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            if (table().model()->index(row, ResultModel::Name).data().toString() ==
                QFileInfo(path).fileName())
                table().selectRow(row);
        }
    }
    [[nodiscard]] QString whyGreyed(const QString &path) const
    {
        table().clearSelection();
        select(path);
        return restore().isEnabled() ? QString() : restore().toolTip();
    }
};

BREVANT_TEST(tst_Restoring, QApplication)
#include "tst_Restoring.moc"
