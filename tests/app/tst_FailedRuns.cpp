// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResultsFixture.h"
#include "app/results/MessagePane.h"
#include "app/results/OfferBar.h"
#include "app/results/ResultTable.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QLabel>
#include <QPlainTextEdit>

/// From a run with failures of the classic compressors themselves to one with the modern ones.
class tst_FailedRuns final : public ResultsFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_app->tools.java = Tools().java;
        m_app->tools.folder = QStringLiteral(CLASSIC_ARCHIVES);
        m_app->tools.programs = QStringLiteral(MODERN_PROGRAMS);
        QCOMPARE(m_app->tools.missingClassic(), QString());
        if (const QString missing = m_app->tools.missingModern(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        m_app->window.show();
        m_app->drop({m_app->file(u"good.js"_s, "var good = 1 ;"), m_app->file(u"bad.js"_s, "var bad = ;"),
                     m_app->file(u"newer.js"_s, "var ok = 1;\nlet newer = () => ok ;"),
                     m_app->file(u"page.html"_s, "<p>\n<script>\nlet newer = () => 1;\n</script>")});
        {
            const test::CapturedStandardError said; // by the compressors
            run();
        }
        m_app->results.show();
        QTRY_COMPARE(m_app->results.runs.all().back()->forModern.size(), 2);
    }

    void eachFailureIsExplained()
    {
        QCOMPARE(mark()->text(), u"3 of 4 failed"_s);
        QCOMPARE(explained(u"bad.js"_s), u"Line 1, column 11: syntax error"_s);
        QCOMPARE(explained(u"newer.js"_s), u"Line 2, column 14: syntax error"_s);
        QCOMPARE(explained(u"page.html"_s), u"Line 3, column 14: syntax error"_s);
        QVERIFY(!QFile::exists(m_app->folder.filePath(u"newer.min.js"_s)));
    }

    void modernCompressorsMinifyWhatIsOffered_data()
    {
        QTest::addColumn<int>("pressed");
        QTest::addColumn<bool>("isSet");
        QTest::newRow("once") << 0 << false;
        QTest::newRow("always") << 1 << true;
    }

    void modernCompressorsMinifyWhatIsOffered()
    {
        QFETCH(const int, pressed);
        auto *const offer = results()->findChild<OfferBar *>();
        QTRY_VERIFY(offer->isVisible());
        offer->findChildren<QPushButton *>().at(pressed)->click();
        QTRY_COMPARE(m_app->results.runs.all().size(), 2U);
        QTRY_VERIFY(!m_app->jobs.isRunning());
        const auto again = m_app->results.runs.all().back();
        QCOMPARE(again->manner, u"Modern compressors, outputs beside the sources"_s);
        QCOMPARE(again->totals().count(ResultRow::State::Done), 2);
        QCOMPARE(again->rows.size(), 2U);
        QCOMPARE(test::readFile(m_app->folder.filePath(u"newer.min.js"_s)), "var ok=1;let newer=()=>ok;");
        QTEST(isModernChosen(m_app->settings), "isSet");
        QVERIFY(!offer->isVisible());
    }

private:
    /// What the pane says first of a file, once its compressor has been asked.
    QString explained(const QString &name) const
    {
        auto *const table = results()->findChild<ResultTable *>();
        for (int at = 0; at < table->model()->rowCount(); ++at) {
            if (table->model()->index(at, ResultModel::Name).data().toString() == name)
                table->selectRow(at);
        }
        auto *const said = results()->findChild<MessagePane *>()->findChild<QPlainTextEdit *>();
        static_cast<void>(QTest::qWaitFor([&] { return said->toPlainText().startsWith(u"Line"_s); }));
        return said->toPlainText().section(u'\n', 0, 0);
    }
};

BREVANT_TEST(tst_FailedRuns, QApplication)
#include "tst_FailedRuns.moc"
