// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowFixture.h"
#include "app/results/OfferBar.h"
#include "tests/TestClass.h"

#include <QHeaderView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QToolButton>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// What the window Results says of files that failed, and offers to do about them.
class tst_FailedFiles final : public WindowFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<InquiryFixture>(); }

    void cleanup() { m_window.reset(); }

    void theCompressorOfTheCurrentFileIsAsked()
    {
        const QString gate = m_bench->path(u"gate"_s);
        QVERIFY(writeFile(gate, ""));
        QVERIFY(m_bench->setCompressor(u"while [ -e '%1' ]; do sleep 0.01; done; "_s.arg(gate) +
                                       m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s), m_bench->failedRow(u"b.js"_s)});
        open();
        const QString status = u"The compressor ended with status 2."_s;
        QCOMPARE(messages(), u"Asking the compressor once more…\n"_s + status);
        QVERIFY(QFile::remove(gate));
        QTRY_COMPARE(messages(), u"Line 2, column 3: syntax error\n"_s + status);
        QCOMPARE(m_bench->words(1, 1), QString());
        QTest::keyClick(table(), Qt::Key_Down);
        QTRY_COMPARE(m_bench->words(1, 1), u"line 2, column 3: syntax error"_s);
    }

    /// Wherever what is found out moves them.
    void theCurrentFileStays()
    {
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1,
               {m_bench->failedRow(u"a.js"_s), m_bench->failedRow(u"b.js"_s), m_bench->failedRow(u"c.js"_s)});
        open();
        table()->sortByColumn(ResultModel::Message, Qt::DescendingOrder);
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
        QCOMPARE(table()->currentFile()->source, m_bench->path(u"a.js"_s));
        QCOMPARE(table()->selectedRows(), std::vector<int>{2});
        QCOMPARE(m_bench->calls(), 1);
    }

    void nothingIsAskedWhileTheWindowIsClosed()
    {
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s)});
        open();
        QTRY_COMPARE(m_bench->calls(), 1);
        QTRY_VERIFY(!m_bench->words(1, 0).isEmpty());
        m_window->close();
        addRun(m_bench->runs, 2, {m_bench->failedRow(u"b.js"_s)});
        table()->selectRow(0);
        QVERIFY(!m_bench->inquiry.isAskingWhy(2, 0));
        m_window->show();
        QTRY_COMPARE(m_bench->words(2, 0), u"line 2, column 3: syntax error"_s);
    }

    void theSourceIsShownAtTheFault_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Return") << true;
        QTest::newRow("double click") << false;
    }

    void theSourceIsShownAtTheFault()
    {
        QFETCH(const bool, byKey);
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s, "one\ntwo\nthree")});
        open();
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
        if (byKey)
            QTest::keyClick(table(), Qt::Key_Return);
        else
            doubleClick(0);
        QVERIFY(viewer());
        QVERIFY(viewer()->isVisible());
        QCOMPARE(viewer()->windowTitle(), u"a.js"_s);
        auto *const view = viewer()->findChild<SourceView *>();
        QTRY_COMPARE(view->toPlainText(), u"one\ntwo\nthree"_s);
        QCOMPARE(view->textCursor().blockNumber(), 1);
        QCOMPARE(view->textCursor().positionInBlock(), 2);
        QVERIFY(view->isReadOnly());
        QVERIFY(hasLabel(*viewer(), u"Line 2, column 3: syntax error"_s));
        QTest::keyClick(view, Qt::Key_Escape);
        QVERIFY(!viewer()->isVisible());
        QVERIFY(m_window->isVisible());
    }

    void atTheEndOfARunTheFirstFailureIsSelected_data()
    {
        QTest::addColumn<bool>("isSorted");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing selected") << false << -1 << u"/w/a.js"_s;
        QTest::newRow("a file selected") << false << 0 << u"/w/b.css"_s;
        QTest::newRow("sorted") << true << -1 << u"/w/e.js"_s;
    }

    void atTheEndOfARunTheFirstFailureIsSelected()
    {
        QFETCH(const bool, isSorted);
        QFETCH(const int, selected);
        m_bench->runs.start(1, u"Classic compressors"_s);
        open();
        for (const ResultRow &made : mixedRows()) {
            m_bench->runs.startFile(1, made.source, 5);
            m_bench->runs.endFile(1, made);
        }
        QVERIFY(!table()->currentFile());
        if (isSorted) { // from Z to A
            QHeaderView &header = *table()->horizontalHeader();
            const QPoint title(header.sectionViewportPosition(ResultModel::Name) + 30, header.height() / 2);
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, title);
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, title);
        }
        if (selected >= 0)
            table()->selectRow(selected);
        m_bench->runs.end(1, {});
        QVERIFY(table()->currentFile());
        QTEST(table()->currentFile()->source, "expected");
    }

    void aFileThatIsDoneIsNotShown()
    {
        addRun(m_bench->runs, 1, {row(State::Done, u"/w/a.js"_s, 2, 1)});
        open();
        QCOMPARE(defaultButton(), QString());
        QTest::keyClick(table(), Qt::Key_Return);
        QVERIFY(!m_window->findChild<SourceViewer *>());
    }

    void modernCompressorsAreOffered()
    {
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1, mixedRows());
        open();
        QVERIFY(!offer()->isVisible());
        QCOMPARE(defaultButton(), u"Retry &Failed"_s);
        m_bench->runs.addForModern(1, 1);
        QVERIFY(offer()->isVisible());
        QCOMPARE(defaultButton(), u"&Minify It With Modern Compressors"_s);
        QVERIFY(hasLabel(*offer(), u"1 of these uses newer JavaScript than YUI Compressor knows"_s));
        QCOMPARE(button(0)->text(), u"&Minify It With Modern Compressors"_s);
        m_bench->runs.addForModern(1, 4);
        QVERIFY(hasLabel(*offer(), u"2 of these use newer JavaScript than YUI Compressor knows"_s));
        QCOMPARE(button(0)->text(), u"&Minify These With Modern Compressors"_s);
        QCOMPARE(button(1)->toolTip(),
                 u"Minifies these, and sets Compressors to Modern in the preferences"_s);
        m_bench->runs.start(2, u"Modern compressors"_s);
        m_window->showRun(1);
        QVERIFY(!button(0)->isEnabled());
        QVERIFY(!button(1)->isEnabled());
        QCOMPARE(defaultButton(), QString());
        m_bench->runs.end(2, {});
        QVERIFY(button(0)->isEnabled());
    }

    void theOfferIsTaken_data()
    {
        QTest::addColumn<int>("pressed");
        QTest::addColumn<bool>("isForAlways");
        QTest::newRow("once") << 0 << false;
        QTest::newRow("always") << 1 << true;
    }

    void theOfferIsTaken()
    {
        QFETCH(const int, pressed);
        addRun(m_bench->runs, 1, mixedRows());
        m_bench->runs.addForModern(1, 1);
        open();
        const QSignalSpy requests(m_window.get(), &ResultsWindow::modernRequested);
        QTest::mouseClick(button(pressed), Qt::LeftButton);
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.at(0).at(0).toStringList(), QStringList{u"/w/a.js"_s});
        QTEST(requests.at(0).at(1).toBool(), "isForAlways");
        QVERIFY(!offer()->isVisible());
    }

    void theOfferIsClosed()
    {
        addRun(m_bench->runs, 1, mixedRows());
        m_bench->runs.addForModern(1, 1);
        open();
        QTest::mouseClick(offer()->findChild<QToolButton *>(), Qt::LeftButton);
        QVERIFY(!offer()->isVisible());
        QVERIFY(table()->hasFocus());
        QCOMPARE(defaultButton(), u"Retry &Failed"_s);
        m_bench->runs.addForModern(1, 4);
        QVERIFY(!offer()->isVisible());
    }

private:
    [[nodiscard]] OfferBar *offer() const { return m_window->findChild<OfferBar *>(); }
    [[nodiscard]] QPushButton *button(int place) const
    {
        return offer()->findChildren<QPushButton *>().at(place);
    }
    /// What is to be seen of those that look like the default one.
    [[nodiscard]] QString defaultButton() const
    {
        QStringList found;
        for (const QPushButton *const made : m_window->findChildren<QPushButton *>()) {
            if (made->isVisible() && made->isDefault())
                found.append(made->text());
        }
        return found.join(u", "_s);
    }
};

BREVANT_TEST(tst_FailedFiles, QApplication)
#include "tst_FailedFiles.moc"
