// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/SourceView.h"

#include "app/preview/PreviewReader.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTest>
#include <QTextBlock>

using namespace brevant;
using namespace brevant::test;

/// Where a place of a source is in what is shown of it.
class tst_SourceView final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void places_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<qint64>("line");
        QTest::addColumn<qint64>("column");
        QTest::addColumn<QString>("before"); ///< the text of the shown line before the place; null for none
        const QByteArray folded = QByteArray("abcdefg; ").repeated(60) + "\nnext";
        QTest::newRow("the beginning") << "ab\ncd"_ba << qint64(1) << qint64(1) << u""_s;
        QTest::newRow("within a line") << "ab\ncd"_ba << qint64(2) << qint64(2) << u"c"_s;
        QTest::newRow("the end of a line") << "ab\ncd"_ba << qint64(1) << qint64(3) << u"ab"_s;
        QTest::newRow("behind a line") << "ab\ncd"_ba << qint64(1) << qint64(9) << u"ab"_s;
        QTest::newRow("behind the last line") << "ab\ncd"_ba << qint64(2) << qint64(9) << u"cd"_s;
        QTest::newRow("no such line") << "ab\ncd"_ba << qint64(3) << qint64(1) << QString();
        QTest::newRow("no line") << "ab\ncd"_ba << qint64(0) << qint64(0) << QString();
        QTest::newRow("CR LF") << "ab\r\ncd\r\nef"_ba << qint64(3) << qint64(2) << u"e"_s;
        QTest::newRow("CR") << "ab\rcd\ref"_ba << qint64(3) << qint64(2) << u"e"_s;
        QTest::newRow("another end of lines") << "ab\u2028cd"_ba << qint64(2) << qint64(2) << u"c"_s;
        QTest::newRow("a character of two units") << "𝒳𝒳b"_ba << qint64(1) << qint64(3) << u"𝒳𝒳"_s;
        QTest::newRow("a byte-order mark") << "\xEF\xBB\xBF"
                                              "ab"_ba
                                           << qint64(1) << qint64(2) << u"a"_s;
        QTest::newRow("from right to left") << "אב a"_ba << qint64(1) << qint64(4) << u"\u200Eאב\u200E "_s;
        QTest::newRow("in a folded line") << folded << qint64(1) << qint64(91) << u" abcdefg; "_s;
        QTest::newRow("behind a folded line") << folded << qint64(2) << qint64(3) << u"ne"_s;
    }

    void places()
    {
        QFETCH(const QByteArray, source);
        QFETCH(const qint64, line);
        QFETCH(const qint64, column);
        QFETCH(const QString, before);
        const ShownSource shown(contentOf(source), line, column);
        QCOMPARE(shown.place < 0, before.isNull());
        if (shown.place >= 0)
            QCOMPARE(shown.text.first(shown.place).section(u'\n', -1), before);
    }

    void linesHaveTheNumbersOfTheSource()
    {
        const ShownSource shown(contentOf(QByteArray("abcdefg; ").repeated(60) + "\r\n\r\nnext"), 0, 0);
        std::vector<qint64> expected{1};
        expected.resize(shown.numbers.size() - 2);
        expected.insert(expected.end(), {2, 3});
        QCOMPARE(shown.numbers, expected);
        QVERIFY(shown.numbers.size() > 5);
        QCOMPARE(static_cast<qsizetype>(shown.numbers.size()), shown.text.count(u'\n') + 1);
    }

    void thePlaceIsMarkedAndInSight()
    {
        SourceView view(nullptr);
        view.resize(300, 100);
        view.show();
        view.setSource(ShownSource(contentOf(QByteArray("some text\n").repeated(500)), 300, 6));
        QCOMPARE(view.textCursor().blockNumber(), 299);
        QCOMPARE(view.textCursor().positionInBlock(), 5);
        QVERIFY(view.viewport()->rect().contains(view.cursorRect().center()));
        const auto marks = view.extraSelections();
        QCOMPARE(marks.size(), 2);
        QCOMPARE(marks.at(0).cursor.blockNumber(), 299);
        QCOMPARE(marks.at(1).cursor.selectedText(), u"t"_s);
        view.setSource(ShownSource(contentOf("x"), 7, 1));
        QVERIFY(view.extraSelections().isEmpty());
    }

private:
    [[nodiscard]] PreviewContent contentOf(const QByteArray &source) const
    {
        const QString path = m_folder.filePath(u"a.js"_s);
        return writeFile(path, source) ? *readPreview(path, u"utf-8"_s, [] { return false; })
                                       : PreviewContent();
    }

    const QTemporaryDir m_folder;
};

BREVANT_TEST(tst_SourceView, QApplication)
#include "tst_SourceView.moc"
