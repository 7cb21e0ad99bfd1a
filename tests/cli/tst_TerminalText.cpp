// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalText.h"
#include "files/RawBytes.h"
#include "tests/TestClass.h"

#include <QProcess>
#include <QTest>

#include <clocale>
#include <cstdio>

#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_TerminalText final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr); // as the program does
    }

    void printable_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");

        QTest::newRow("plain") << u"/w/a b%1.css"_s << u"/w/a b%1.css"_s;
        QTest::newRow("letters of all sorts") << u"ä日本😀é"_s << u"ä日本😀é"_s;
        QTest::newRow("newline") << u"a\nb"_s << u"a\\nb"_s;
        QTest::newRow("tabulator") << u"a\tb"_s << u"a\\tb"_s;
        QTest::newRow("carriage return") << u"a\rb"_s << u"a\\x0db"_s;
        QTest::newRow("escape") << u"\x1b[2J"_s << u"\\x1b[2J"_s;
        QTest::newRow("bell and delete") << u"\a\x7f"_s << u"\\x07\\x7f"_s;
        QTest::newRow("one byte sequence introducer") << u"\u009b2J"_s << u"\\x9b2J"_s;
        QTest::newRow("marks of direction") << u"\u061c\u200e\u200f\u202a\u202e\u2066\u2069"_s
                                            << u"\\u061c\\u200e\\u200f\\u202a\\u202e\\u2066\\u2069"_s;
        QTest::newRow("ends of lines") << u"\u0085\u2028\u2029"_s << u"\\x85\\u2028\\u2029"_s;
        QTest::newRow("joiners") << u"\u200d\u200c\u00ad"_s << u"\u200d\u200c\u00ad"_s;
        QTest::newRow("from right to left") << u"שלום"_s << u"שלום"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void printable()
    {
        QFETCH(QString, text);
        QTEST(brevant::printable(text), "expected");
    }

    void shellQuoted_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("expected");

        QTest::newRow("path") << u"/w/a_b-1.min.css"_s << u"/w/a_b-1.min.css"_s;
        QTest::newRow("option") << u"--line-break"_s << u"--line-break"_s;
        QTest::newRow("blank") << u"a b"_s << u"'a b'"_s;
        QTest::newRow("empty") << u""_s << u"''"_s;
        QTest::newRow("quote") << u"it's"_s << u"'it'\\''s'"_s;
        QTest::newRow("home") << u"~"_s << u"'~'"_s;
        QTest::newRow("letter beyond ASCII") << u"ä"_s << u"'ä'"_s;
        QTest::newRow("newline") << u"a\nb"_s << u"$'a\\012b'"_s;
        QTest::newRow("escape and quotes") << u"\x1b[31m'\\"_s << u"$'\\033[31m\\'\\\\'"_s;
        QTest::newRow("mark of direction, digits") << u"\u202e1ä"_s << u"$'\\342\\200\\2561ä'"_s;
    }

    void shellQuoted()
    {
        QFETCH(QString, argument);
        QTEST(TerminalText::shellQuoted(argument), "expected");
    }

    void aShellReadsItBack()
    {
        QStringList arguments{u""_s,
                              u" "_s,
                              u"a b"_s,
                              u"'"_s,
                              u"''"_s,
                              u"\""_s,
                              u"\\"_s,
                              u"$HOME"_s,
                              u"`id`"_s,
                              u"$(id)"_s,
                              u"*"_s,
                              u"?[a-z]"_s,
                              u"~"_s,
                              u"~root"_s,
                              u"#"_s,
                              u"a#b"_s,
                              u"a\nb"_s,
                              u"\n"_s,
                              u"a\tb"_s,
                              u"!!"_s,
                              u"{a,b}"_s,
                              u"a;b"_s,
                              u"a&b"_s,
                              u"a|b"_s,
                              u"<a>"_s,
                              u"(a)"_s,
                              u"a=b"_s,
                              u"-n"_s,
                              u"--"_s,
                              u"%s%%"_s,
                              u"\\n"_s,
                              u"ä日本😀"_s,
                              u"\x1b[2J"_s,
                              u"\r"_s,
                              u"\u202e\u2028'\\1"_s,
                              u"it's \"$1\"\n"_s};
        for (ushort code = 1; code < 128; ++code)
            arguments << QString(QChar(code)) << u"a"_s + QChar(code) + u"'"_s;
        const QString script = TerminalText::commandLine(u"printf"_s, QStringList{u"%s\\0"_s} + arguments);

        QProcess shell;
        shell.start(u"/bin/bash"_s, {u"-c"_s, script});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.readAllStandardError(), QByteArray());
        QStringList read;
        for (const QByteArray &argument : shell.readAllStandardOutput().split('\0'))
            read << QString::fromUtf8(argument);
        QVERIFY(!read.isEmpty());
        read.removeLast();
        QCOMPARE(read, arguments);
    }

    void grouped_data()
    {
        QTest::addColumn<qint64>("number");
        QTest::addColumn<QString>("expected");

        QTest::newRow("zero") << qint64(0) << u"0"_s;
        QTest::newRow("three digits") << qint64(999) << u"999"_s;
        QTest::newRow("four digits") << qint64(1000) << u"1,000"_s;
        QTest::newRow("five digits") << qint64(12345) << u"12,345"_s;
        QTest::newRow("many digits") << qint64(1234567890123) << u"1,234,567,890,123"_s;
    }

    void grouped()
    {
        QFETCH(qint64, number);
        QTEST(TerminalText::grouped(number), "expected");
    }

    void duration_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("expected");

        QTest::newRow("none") << 0.0 << u"0:00"_s;
        QTest::newRow("begun second") << 0.1 << u"0:01"_s;
        QTest::newRow("seconds") << 9.0 << u"0:09"_s;
        QTest::newRow("up to the minute") << 59.2 << u"1:00"_s;
        QTest::newRow("minutes") << 725.0 << u"12:05"_s;
        QTest::newRow("before the hour") << 3599.0 << u"59:59"_s;
        QTest::newRow("up to the hour") << 3599.5 << u"1:00:00"_s;
        QTest::newRow("hours") << 3723.0 << u"1:02:03"_s;
        QTest::newRow("days") << 360000.0 << u"100:00:00"_s;
    }

    void duration()
    {
        QFETCH(double, seconds);
        QTEST(TerminalText::duration(seconds), "expected");
    }

    void fitted_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("expected");

        QTest::newRow("shorter") << u"abc"_s << 4 << u"abc"_s;
        QTest::newRow("just so") << u"abc"_s << 3 << u"abc"_s;
        QTest::newRow("longer") << u"abcd"_s << 3 << u"abc"_s;
        QTest::newRow("wide, just so") << u"日本"_s << 4 << u"日本"_s;
        QTest::newRow("wide, cut") << u"日本"_s << 3 << u"日"_s;
        QTest::newRow("wide, no room") << u"日本"_s << 1 << QString();
        QTest::newRow("outside the first plane") << u"😀😀"_s << 3 << u"😀"_s;
        QTest::newRow("accent of its own") << u"e\u0301x"_s << 1 << u"e\u0301"_s;
        QTest::newRow("no columns") << u"abc"_s << 0 << QString();
        QTest::newRow("fewer than none") << u"abc"_s << -1 << QString();
        QTest::newRow("empty") << QString() << 5 << QString();
    }

    void fitted()
    {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QTEST(TerminalText::fitted(text, columns), "expected");
    }

    void progressLine_data()
    {
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("expected");

        const QString bar = u"[##########----------] 1/2  "_s;
        const QString status = u"Minified 2 of 2 items.  "_s;
        const QString left = u"0:05 left"_s;
        QTest::newRow("room for all") << 79 << u"a.css"_s << left << bar + status + u"a.css  0:05 left"_s;
        QTest::newRow("just so") << 68 << u"a.css"_s << left << bar + status + u"a.css  0:05 left"_s;
        QTest::newRow("without status") << 67 << u"a.css"_s << left << bar + u"a.css  0:05 left"_s;
        QTest::newRow("without bar") << 39 << u"a.css"_s << left << u"1/2  a.css  0:05 left"_s;
        QTest::newRow("without time") << 19 << u"a.css"_s << left << u"1/2  a.css"_s;
        QTest::newRow("time not known") << 57 << u"a.css"_s << QString() << bar + status + u"a.css"_s;
        QTest::newRow("long name") << 79 << QString(90, u'n') << left
                                   << bar + status + QString(15, u'n') + u"…  0:05 left"_s;
        QTest::newRow("long name, little room")
            << 19 << QString(90, u'n') << left << u"1/2  nnnnnnnnnnnnn…"_s;
        QTest::newRow("wide name") << 19 << u"日本日本日本日本"_s << left << u"1/2  日本日本日本…"_s;
        QTest::newRow("hardly any room") << 4 << u"a.css"_s << left << u"1/2 "_s;
        QTest::newRow("no room") << 0 << u"a.css"_s << left << QString();
    }

    void progressLine()
    {
        QFETCH(int, columns);
        QFETCH(QString, name);
        QFETCH(QString, left);
        const QString line =
            TerminalText::progressLine({1, 2, u"Minified 2 of 2 items."_s, name, left}, columns);
        QTEST(line, "expected");
        QVERIFY(TerminalText::width(line) <= columns);
    }

    void print()
    {
        std::FILE *file = std::tmpfile();
        QVERIFY(file != nullptr);
        TerminalText::print(file, u"ä\n"_s);
        QByteArray bytes(8, '\0');
        // Through the descriptor: it must be out of the buffer already.
        const ssize_t length = ::pread(::fileno(file), bytes.data(), 8, 0);
        std::fclose(file);
        QCOMPARE(bytes.first(length), QByteArray("ä\n"));
    }
};

BREVANT_TEST(tst_TerminalText, QCoreApplication)
#include "tst_TerminalText.moc"
