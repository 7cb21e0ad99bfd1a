// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowFixture.h"
#include "app/results/StateCell.h"
#include "app/results/StateFilter.h"
#include "tests/TestClass.h"

#include <QTextBlock>
#include <QToolButton>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// What the window Results says of files that are done, but have lost something.
class tst_WarnedFiles final : public WindowFixture {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<InquiryFixture>();
        addRun(m_bench->runs, 1,
               {m_bench->doneRow(u"sound.css"_s, ".b { top: 1px }", ".b{top:1px}"),
                m_bench->damagedRow(u"damaged.css"_s)});
    }

    void cleanup() { m_window.reset(); }

    void aSignAndASentenceInTheRow()
    {
        open();
        QTRY_COMPARE(m_bench->rowOf(1, 1).state, State::Warned);
        QCOMPARE(cell(0, ResultModel::Name).toString(), u"damaged.css"_s); // the worst first
        QCOMPARE(cell(0, ResultModel::State).toString(), u"Done"_s);
        QCOMPARE(cell(0, ResultModel::State, StateRole).toInt(), static_cast<int>(State::Warned));
        QCOMPARE(cell(0, ResultModel::Message).toString(), u"Warning: 2 declarations damaged"_s);
        QCOMPARE(cell(1, ResultModel::Message).toString(), QString());
        QTRY_VERIFY(hasLabel(*m_window, u"2 files · 85 bytes → 63 bytes · 25.9 % saved · 1 with warnings"_s));
        QTRY_COMPARE(states(), QStringList({u"All 2"_s, u"Done 2"_s, u"Warnings 1"_s}));
        m_window->findChild<StateFilter *>()->findChildren<QToolButton *>().back()->click();
        QCOMPARE(table()->model()->rowCount(), 1);
        QCOMPARE(cell(0, ResultModel::Name).toString(), u"damaged.css"_s);
    }

    void eachLossInThePane()
    {
        openAtDamaged();
        QCOMPARE(messages(), u"Line 2: declaration changed in .a: width: calc(1px + 2px) → calc(1px+2px)\n"
                             "Line 4: declaration changed in .a: left: calc(3px + 4px) → calc(3px+4px)"_s);
    }

    void theSourceIsShownAtALoss_data()
    {
        QTest::addColumn<std::function<void(tst_WarnedFiles &)>>("choose");
        QTest::addColumn<int>("line");
        using Test = tst_WarnedFiles;
        const auto add = [](const char *name, int line, const std::function<void(Test &)> &choose) {
            QTest::newRow(name) << choose << line;
        };
        add("Return in the table", 2, [](Test &test) { QTest::keyClick(test.table(), Qt::Key_Return); });
        add("double click in the table", 2, [](Test &test) { test.doubleClick(0); });
        add("double click in the pane", 4,
            [](Test &test) { doubleClick(test.pane()->viewport(), test.placeOfLine(1)); });
        add("Return in the pane", 4, [](Test &test) {
            QTextCursor cursor(test.pane()->document()->findBlockByNumber(1));
            test.pane()->setTextCursor(cursor);
            QTest::keyClick(test.pane(), Qt::Key_Return);
        });
    }

    void theSourceIsShownAtALoss()
    {
        QFETCH(const std::function<void(tst_WarnedFiles &)>, choose);
        QFETCH(const int, line);
        openAtDamaged();
        choose(*this);
        QVERIFY(viewer());
        QVERIFY(viewer()->isVisible());
        QCOMPARE(viewer()->windowTitle(), u"damaged.css"_s);
        auto *const view = viewer()->findChild<SourceView *>();
        QTRY_COMPARE(view->textCursor().blockNumber(), line - 1);
        QCOMPARE(view->textCursor().positionInBlock(), 0);
        QVERIFY(hasLabel(*viewer(), messages().section(u'\n', line / 2 - 1, line / 2 - 1)));
    }

    /// Minified in place, with its original kept elsewhere.
    void theOriginalIsShownAtALoss()
    {
        ResultRow row = m_bench->damagedRow(u"replaced.css"_s);
        ResultRemarks remarks;
        remarks.original = m_bench->path(u"kept"_s);
        QVERIFY(QFile::rename(row.source, remarks.original) && QFile::copy(row.output, row.source));
        row.output = row.source;
        row.basis = CheckBasis{TextEncoding::Utf8, *FileState::of(remarks.original),
                               *FileState::of(row.output), remarks.original};
        row.remarks = std::make_shared<ResultRemarks>(remarks);
        addRun(m_bench->runs, 2, {row});
        open();
        QTRY_COMPARE(messages().count(u'\n'), 1);
        doubleClick(pane()->viewport(), placeOfLine(1));
        QTRY_COMPARE(viewer()->findChild<SourceView *>()->textCursor().blockNumber(), 3);
    }

    void nothingIsShownOfASoundFile()
    {
        open();
        QTRY_COMPARE(m_bench->rowOf(1, 1).state, State::Warned);
        table()->selectRow(1);
        QTRY_COMPARE(messages(), QString());
        QTest::keyClick(table(), Qt::Key_Return);
        QVERIFY(!viewer());
    }

    void whyAFileWasNotChecked()
    {
        ResultRow row = m_bench->damagedRow(u"changed.css"_s);
        QVERIFY(writeFile(row.source, "b{}"));
        addRun(m_bench->runs, 2, {row});
        open();
        QTRY_COMPARE(messages(), u"Not checked: the source has changed since the run."_s);
        QCOMPARE(cell(0, ResultModel::Message).toString(), QString());
    }

private:
    void openAtDamaged()
    {
        open();
        QTRY_COMPARE(m_bench->rowOf(1, 1).state, State::Warned);
        table()->selectRow(0);
        QTRY_COMPARE(messages().count(u'\n'), 1);
    }

    [[nodiscard]] QVariant cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return table()->model()->index(row, column).data(role);
    }

    [[nodiscard]] QPoint placeOfLine(int line) const
    {
        return pane()->cursorRect(QTextCursor(pane()->document()->findBlockByNumber(line))).center() +
               QPoint(20, 0);
    }

    [[nodiscard]] QStringList states() const
    {
        QStringList found;
        for (const QToolButton *const made :
             m_window->findChild<StateFilter *>()->findChildren<QToolButton *>()) {
            if (made->isVisible())
                found.append(made->text().trimmed());
        }
        return found;
    }
};

BREVANT_TEST(tst_WarnedFiles, QApplication)
#include "tst_WarnedFiles.moc"
