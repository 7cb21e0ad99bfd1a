// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/classic/ClassicMessages.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

/// Reads what compressors and Java print, also what they print only in places that no test can make.
class tst_ClassicMessages final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<QByteArray>("said");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("isAboutSyntax");

        QTest::newRow("with the file") << "[ERROR] in /w/a.js\n  68:58:syntax error\n"_ba << QString()
                                       << u"line 68, column 58: syntax error"_s << true;
        QTest::newRow("without the file") << "[ERROR]\n  68:58:syntax error\n"_ba << QString()
                                          << u"line 68, column 58: syntax error"_s << true;
        QTest::newRow("a file with a line feed") << "[ERROR] in /w/a\nb.js\n  1:2:syntax error\n"_ba
                                                 << QString() << u"line 1, column 2: syntax error"_s << true;
        QTest::newRow("without a place")
            << "[ERROR] in /w/a.js\n  too odd\n"_ba << QString() << u"too odd"_s << true;
        QTest::newRow("a warning") << "\n[WARNING] in /w/a.js\n  1:6:odd digit\n"_ba << QString()
                                   << u"line 1, column 6: odd digit"_s << false;
        QTest::newRow("options of Java")
            << "Picked up JAVA_TOOL_OPTIONS: -Xss1m\n[ERROR] in /w/a.js\n  1:2:syntax error\n"_ba << QString()
            << u"line 1, column 2: syntax error"_s << true;
        QTest::newRow("an exception with words")
            << "org.mozilla.javascript.EvaluatorException: Too deep recursion\n\tat org.A.b(A.java:1)\n"_ba
            << QString() << u"Too deep recursion"_s << false;
        QTest::newRow("an exception inside another")
            << "Exception in thread \"main\" java.lang.reflect.InvocationTargetException\n\tat "
               "a.B.c(B.java:1)\n"
               "Caused by: java.lang.IllegalStateException: no room\n"_ba
            << QString() << u"no room"_s << false;
        QTest::newRow("out of memory")
            << "Exception in thread \"main\" java.lang.OutOfMemoryError: Java heap space\n"_ba << QString()
            << u"Java ran out of memory"_s << false;
        QTest::newRow("out of memory in its end")
            << "\nException: java.lang.OutOfMemoryError thrown from the UncaughtExceptionHandler in thread \"main\"\n"_ba
            << QString() << u"Java ran out of memory"_s << false;
        QTest::newRow("no start") << "Error occurred during initialization of VM\nToo small maximum heap\n"_ba
                                  << QString() << u"Java could not start: Too small maximum heap"_s << false;
        QTest::newRow("an unreadable page") << "ERROR: /w/a.html (Permission denied)\n"_ba << QString()
                                            << u"/w/a.html (Permission denied)"_s << false;
        QTest::newRow("nothing") << ""_ba << QString() << QString() << false;
        QTest::newRow("anything else") << "Hello\n\tat home\n"_ba << QString() << QString() << false;
    }

    void messages()
    {
        QFETCH(const QByteArray, said);
        QFETCH(const QString, source);
        const Explanation explanation = readClassicMessages(said, source);
        QTEST(explanation.messages.inWords(), "words");
        QTEST(explanation.isAboutSyntax, "isAboutSyntax");
    }

    /// Compressors count UTF-16 units, and the byte-order mark.
    void columnsAreInCharacters_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<qint64>("column");
        QTest::newRow("ASCII") << u"x\nabcdef"_s << qint64(4);
        QTest::newRow("one unit") << u"x\näöüdef"_s << qint64(4);
        QTest::newRow("two units") << u"x\n𝒳bcdef"_s << qint64(3);
        QTest::newRow("CR LF") << u"x\r\nabcdef"_s << qint64(4);
        QTest::newRow("another line") << u"𝒳\nabcdef"_s << qint64(4);
        QTest::newRow("a short line") << u"x\na"_s << qint64(4);
        QTest::newRow("no such line") << u"x"_s << qint64(4);
    }

    void columnsAreInCharacters()
    {
        QFETCH(const QString, source);
        const Explanation explanation = readClassicMessages("[ERROR] in a\n  2:4:odd\n", source);
        QTEST(explanation.messages.shown.at(0).column, "column");
    }

    void aByteOrderMarkIsNoColumn()
    {
        const auto columnOf = [](const QByteArray &said) {
            return readClassicMessages(said, u"\uFEFFabc"_s).messages.shown.at(0).column;
        };
        QCOMPARE(columnOf("[ERROR] in a\n  1:3:odd\n"), 2);
        QCOMPARE(columnOf("[ERROR] in a\n  1:0:odd\n"), 1);
    }

    void manyMessagesAreCounted()
    {
        QByteArray said;
        for (int i = 1; i <= 25; ++i)
            said += "[ERROR] in a\n  " + QByteArray::number(i) + ":1:odd\n";
        said += "[ERROR] in a\n  1:0:Compilation produced 25 syntax errors.\n";
        const CompressorMessages messages = readClassicMessages(said, QString()).messages;
        QCOMPARE(messages.shown.size(), std::size_t(20));
        QCOMPARE(messages.inWords(), u"line 1, column 1: odd (and 24 more)"_s);
    }
};

BREVANT_TEST(tst_ClassicMessages, QCoreApplication)
#include "tst_ClassicMessages.moc"
