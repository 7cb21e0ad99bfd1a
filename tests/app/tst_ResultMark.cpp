// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResultsFixture.h"
#include "app/results/Signs.h"
#include "tests/TestClass.h"

/// The mark beside the status text, and the bar that it stands in.
class tst_ResultMark final : public ResultsFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_app = std::make_unique<AppFixture>(); }

    void theMark_data()
    {
        QTest::addColumn<QList<QByteArray>>("texts");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        using Texts = QList<QByteArray>;
        const QByteArray cut("cut 0 xy"); // to two bytes
        const QString behind = u"Shows what became of each file (Ctrl+L)"_s;
        QTest::newRow("all well") << Texts{cut, cut} << u"75 % saved"_s << behind;
        QTest::newRow("one failed") << Texts{sound, "fail", sound} << u"1 of 3 failed"_s
                                    << u"1 failed. "_s + behind;
        QTest::newRow("none is left")
            << Texts{"fail", "silent"} << u"2 of 2 failed"_s << u"2 failed. "_s + behind;
    }

    void theMark()
    {
        QFETCH(const QList<QByteArray>, texts);
        m_app->window.show();
        for (const char *const output : {"f0.min.css", "f1.min.css"})
            m_app->file(QString::fromLatin1(output), "there is an older one");
        fill(texts);
        run();
        QTEST(mark()->text(), "text");
        QTEST(mark()->toolTip(), "toolTip");
        QVERIFY(mark()->isVisible());
        QCOMPARE(mark()->accessibleName(), u"Results: "_s + mark()->text());
        QVERIFY(mark()->focusPolicy() & Qt::TabFocus);
        mark()->click();
        QVERIFY(results()->isVisible());
        m_app->controller.clear();
        QVERIFY(!mark()->isVisible());
    }

    /// The words stay those of the notification.
    void whatChecksHaveFoundIsSaidLater()
    {
        m_app->window.show();
        fill({"copy", sound});
        run();
        const QString text = mark()->text();
        const auto sign = [this] { return mark()->icon().pixmap(mark()->iconSize()).toImage(); };
        QTRY_COMPARE(mark()->toolTip(), u"1 with warnings. Shows what became of each file (Ctrl+L)"_s);
        QCOMPARE(mark()->text(), text);
        QCOMPARE(sign(), signIcon(ResultRow::State::Warned, *mark()).pixmap(mark()->iconSize()).toImage());
        m_app->controller.clear();
        QVERIFY(!mark()->isVisible());
    }

    /// Nor does it come back for that.
    void aMarkThatIsGoneStaysSo()
    {
        m_app->window.show();
        fill({"copy"});
        run();
        m_app->controller.clear();
        QTRY_COMPARE(m_app->results.runs.all().back()->rows.front().state, ResultRow::State::Warned);
        QCoreApplication::processEvents();
        QVERIFY(!mark()->isVisible());
    }

    void theMarkIsGoneWhileARunIsOn()
    {
        m_app->window.show();
        fill({"copy"});
        run();
        QVERIFY(mark()->isVisible());
        const QString gate = m_app->file(u"gate"_s);
        m_app->file(u"f0.css"_s, "wait " + gate.toUtf8());
        m_app->controller.minify();
        QTRY_VERIFY(!mark()->isVisible());
        QFile::remove(gate);
        QTRY_VERIFY(mark()->isVisible());
        QTRY_VERIFY(!m_app->jobs.isRunning());
    }

    void theMarkWaitsForTheLastOfTwoRuns()
    {
        m_app->window.show();
        fill({"copy"});
        m_app->results.runs.start(1000, u"another"_s);
        run();
        QVERIFY(!mark());
        m_app->results.runs.startFile(1000, u"/w/a.css"_s, 1);
        RunEnding ending;
        ending.count = 1;
        m_app->results.runs.end(1000, ending);
        QCOMPARE(mark()->text(), u"1 of 1 not minified"_s);
    }

    void anEmptyRunLeavesNoMark()
    {
        run();
        QVERIFY(!mark());
    }

    void theBarIsAsBeforeOnceTheMarkIsGone()
    {
        const Ui::MainWindow &ui = m_app->window.ui();
        m_app->window.show();
        fill({"copy", "fail"});
        QVERIFY(QTest::qWaitForWindowExposed(&m_app->window));
        const auto places = [&ui] {
            QList<QRect> found;
            for (const QWidget *const widget : std::initializer_list<QWidget *>{
                     ui.filesTable, ui.bottomBar, ui.progressTextField, ui.clearButton, ui.minifyButton})
                found.append(widget->geometry());
            return found;
        };
        const QList<QRect> before = places();
        run();
        QTest::qWait(0);
        QList<QRect> marked = places();
        QVERIFY(mark()->x() > marked.at(2).left());
        QVERIFY(mark()->geometry().right() < marked.at(3).left());
        marked[2] = before.at(2); // only the text makes room
        QCOMPARE(marked, before);
        m_app->controller.clear();
        QTest::qWait(0);
        QCOMPARE(places(), before);
    }

    void inANarrowWindowTheSignIsLeft()
    {
        m_app->window.show();
        fill({sound, "fail"});
        run();
        QCOMPARE(mark()->text(), u"1 of 2 failed"_s);
        m_app->window.resize(m_app->window.minimumSize());
        QTRY_COMPARE(mark()->text(), QString());
        QVERIFY(mark()->toolTip().startsWith(u"1 failed."_s));
        m_app->window.resize(520, 560);
        QTRY_COMPARE(mark()->text(), u"1 of 2 failed"_s);
    }

    void theTabKeyComesToTheMark()
    {
        m_app->window.show();
        fill({"copy"});
        run();
        m_app->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_app->window));
        m_app->table->setFocus();
        QTest::keyClick(m_app->table, Qt::Key_Tab);
        QVERIFY(mark()->hasFocus());
        QTest::keyClick(mark(), Qt::Key_Tab);
        QVERIFY(m_app->window.ui().clearButton->hasFocus());
    }
};

BREVANT_TEST(tst_ResultMark, QApplication)
#include "tst_ResultMark.moc"
