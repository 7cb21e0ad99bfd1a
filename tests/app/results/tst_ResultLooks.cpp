// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "InquiryFixture.h"
#include "app/results/MessagePane.h"
#include "app/results/ResultTable.h"
#include "app/results/ResultsWindow.h"
#include "app/results/Signs.h"
#include "app/results/SourceViewer.h"
#include "tests/TestClass.h"
#include "widgets/Contrast.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSet>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// Results in any colours, and read from the right.
class tst_ResultLooks final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto); }

    void signsAreToldApartByShape()
    {
        QSet<QByteArray> shapes;
        for (int state = 0; state < int(RunTotals::stateCount); ++state)
            shapes.insert(shapeOf(State(state), Qt::LeftToRight));
        QCOMPARE(shapes.size(), qsizetype(RunTotals::stateCount));
    }

    void onlyWhatPointsSomewhereIsMirrored_data()
    {
        QTest::addColumn<State>("state");
        QTest::addColumn<bool>("isMirrored");
        QTest::newRow("failed") << State::Failed << false;
        QTest::newRow("put back") << State::PutBack << true;
        QTest::newRow("skipped") << State::Skipped << true;
        QTest::newRow("warned") << State::Warned << false;
        QTest::newRow("done") << State::Done << false;
    }

    void onlyWhatPointsSomewhereIsMirrored()
    {
        QFETCH(const State, state);
        QTEST(shapeOf(state, Qt::LeftToRight) != shapeOf(state, Qt::RightToLeft), "isMirrored");
    }

    void signsCanBeSeen_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(0xfcfcfc) << QColor(0x232629);
        QTest::newRow("selected") << QColor(0xceebfa) << QColor(0x232629);
        QTest::newRow("dark") << QColor(0x1b1e20) << QColor(0xfcfcfc);
        QTest::newRow("dark, selected") << QColor(0x244252) << QColor(0xfcfcfc);
        QTest::newRow("high contrast") << QColor(Qt::black) << QColor(Qt::white);
    }

    void signsCanBeSeen()
    {
        QFETCH(const QColor, ground);
        QFETCH(const QColor, text);
        for (int state = 0; state < int(RunTotals::stateCount); ++state) {
            const QImage image = drawn(State(state), ground, text, Qt::LeftToRight);
            double best = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    best = std::max(best, contrast(image.pixelColor(x, y), ground));
            }
            QVERIFY2(best >= readableContrast, qPrintable(u"%1: %2"_s.arg(state).arg(best)));
        }
    }

    void aSelectionCanBeReadAndSeen_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << palette(0xfcfcfc, 0x232629, 0x3daee9);
        QTest::newRow("dark") << palette(0x1b1e20, 0xfcfcfc, 0x3daee9);
        QTest::newRow("high contrast") << palette(0x000000, 0xffffff, 0xffff00);
    }

    void aSelectionCanBeReadAndSeen()
    {
        QFETCH(const QPalette, palette);
        const QColor ground = selectionGround(palette);
        const QColor text = palette.color(QPalette::Text);
        QVERIFY(contrast(ground, text) >= readableContrast);
        QVERIFY(contrast(ground, mutedText(ground, text)) >= readableContrast);
        QVERIFY(ground != palette.color(QPalette::Base));
    }

    void readFromTheRight()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        InquiryFixture bench;
        addRun(bench.runs, 1, mixedRows());
        ResultsWindow window(
            bench.runs, bench.inquiry, [] { return QString(); }, nullptr);
        window.showLastRun();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *const table = window.findChild<ResultTable *>();
        QCOMPARE(table->selectedRows(), std::vector<int>{0});
        QVERIFY(table->columnViewportPosition(ResultModel::State) >
                table->columnViewportPosition(ResultModel::Name));
        const auto labels = window.findChildren<QLabel *>();
        QVERIFY(std::ranges::any_of(labels, [](const QLabel *label) {
            return label->text().isRightToLeft() && label->text().contains(u"←"_s);
        }));
    }

    void theSourceReadFromTheRight()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        SourceViewer viewer(nullptr);
        const ResultRow file = failure(u"/w/a.js"_s, u"Unexpected"_s, 1, 2);
        viewer.showSource(file, file.remarks->messages.shown.front(), u"utf-8"_s);
        QStringList texts;
        for (const QLabel *const label : viewer.findChildren<QLabel *>()) {
            texts.append(label->text());
            if (label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse))
                QVERIFY(label->alignment().testFlag(Qt::AlignRight));
        }
        QVERIFY(texts.contains(u"\u2068/w\u2069"_s)); // the slash stays before
        QVERIFY(texts.contains(u"Line 1, column 2: Unexpected"_s));
    }

    void threeMessagesHaveRoom()
    {
        MessagePane pane(MessagePane::Reveal::Output, nullptr);
        ResultRow file(State::Failed, u"/w/a.css"_s);
        file.remarks = std::make_shared<ResultRemarks>(ResultRemarks{{}, {}, {u"a"_s, u"b"_s, u"c"_s}});
        pane.setRow(&file);
        pane.resize(400, 100);
        pane.show();
        QVERIFY(QTest::qWaitForWindowExposed(&pane));
        const QPlainTextEdit *const messages = pane.findChild<QPlainTextEdit *>();
        QCOMPARE(messages->blockCount(), 3);
        QVERIFY(!messages->verticalScrollBar()->isVisible());
    }

    void nothingIsCutOff_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("isOffered");
        for (const int points : {9, 13}) { // larger ones are too large for this screen
            for (const bool isOffered : {false, true})
                QTest::addRow("%d points%s", points, isOffered ? ", an offer" : "") << points << isOffered;
        }
    }

    /// However small the window is made.
    void nothingIsCutOff()
    {
        QFETCH(const int, points);
        QFETCH(const bool, isOffered);
        InquiryFixture bench;
        std::vector<ResultRow> rows = mixedRows();
        rows.push_back(row(State::NotRun, u"/w/f.js"_s, 1));
        addRun(bench.runs, 1, rows);
        ResultsWindow window(
            bench.runs, bench.inquiry, [] { return QString(); }, nullptr);
        QFont font = window.font();
        font.setPointSize(points);
        window.setFont(font);
        if (isOffered)
            bench.runs.addForModern(1, 1);
        window.showLastRun();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (const QSize &size : {QSize(600, 1), QSize(1, 1), QSize(700, 1)}) {
            window.resize(size.expandedTo(window.minimumSize()));
            QTRY_COMPARE(cutOff(window), QString());
            const auto *const table = window.findChild<ResultTable *>();
            QVERIFY(table->viewport()->height() >= 2 * table->rowHeight(0));
        }
    }

private:
    /// The texts of what cannot be seen whole.
    static QString cutOff(const QWidget &window)
    {
        QStringList found;
        for (const QAbstractButton *const button : window.findChildren<QAbstractButton *>()) {
            if (button->isVisible() && button->visibleRegion().boundingRect() != button->rect())
                found.append(button->text() + u" of "_s +
                             QString::fromLatin1(button->parent()->metaObject()->className()));
        }
        return found.join(u", "_s);
    }

    static QImage drawn(State state, const QColor &ground, const QColor &text, Qt::LayoutDirection direction)
    {
        QImage image(32, 32, QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        drawSign(painter, QRectF(0, 0, 32, 32), state, ground, text, direction);
        return image;
    }

    /// Which pixels are not the ground's.
    static QByteArray shapeOf(State state, Qt::LayoutDirection direction)
    {
        const QImage image = drawn(state, Qt::white, Qt::black, direction);
        QByteArray shape;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                shape.append(image.pixelColor(x, y) == Qt::white ? ' ' : '#');
        }
        return shape;
    }

    static QPalette palette(QRgb base, QRgb text, QRgb highlight)
    {
        QPalette made;
        made.setColor(QPalette::Base, QColor(base));
        made.setColor(QPalette::Text, QColor(text));
        made.setColor(QPalette::Highlight, QColor(highlight));
        return made;
    }
};

BREVANT_TEST(tst_ResultLooks, QApplication)
#include "tst_ResultLooks.moc"
