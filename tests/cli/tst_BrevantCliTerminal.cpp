// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/Pty.h"
#include "tests/cli/Screen.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { b : c ; }");

} // namespace

/// The live line, on a real terminal.
class tst_BrevantCliTerminal final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void liveLineComesAndGoes()
    {
        const Sandbox sandbox;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            sandbox.add(name, css);
        Pty terminal(sandbox, {u"a.css"_s, u"b.css"_s, u"c.css"_s}, 100);
        QCOMPARE(terminal.waitForEnd(), 0);

        // Each state of the screen, up to the next line written over it.
        QStringList lines;
        Screen screen(100);
        QByteArray output = terminal.output();
        output.replace("\x1b[A", "|\x1b[A");
        for (const QByteArray &part : output.split('|')) {
            screen.write(part);
            lines << screen.rows().value(0);
            QVERIFY2(lines.size() == 4 || screen.rows().size() == 1, terminal.output());
        }
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], u"[--------------------] 0/3  Minified 1 of 3 items.  a.css"_s);
        const QRegularExpression second(
            u"^\\[######--------------\\] 1/3  Minified 2 of 3 items\\.  b\\.css  0:0\\d left$"_s);
        QVERIFY2(second.match(lines[1]).hasMatch(), qPrintable(lines[1]));
        const QRegularExpression third(
            u"^\\[#############-------\\] 2/3  Minified 3 of 3 items\\.  c\\.css  0:0\\d left$"_s);
        QVERIFY2(third.match(lines[2]).hasMatch(), qPrintable(lines[2]));
        QCOMPARE(screen.rows(), (QStringList{u"Well done!"_s, u"3 files: 39 -> 18 bytes, 53.8 % saved."_s}));
        QCOMPARE(screen.unknown(), QStringList());
    }

    void neverWiderThanTheTerminal_data()
    {
        QTest::addColumn<int>("columns");
        for (const int columns : {1, 2, 10, 40, 57, 58, 80})
            QTest::addRow("%d columns", columns) << columns;
    }

    void neverWiderThanTheTerminal()
    {
        QFETCH(int, columns);
        const Sandbox sandbox;
        sandbox.add(u"日本日本日本日本日本日本日本日本日本日本日本日本日本.css"_s, css);
        Pty terminal(sandbox, {u"."_s}, columns);
        QCOMPARE(terminal.waitForEnd(), 0);
        Screen screen(columns);
        screen.write(terminal.output().first(terminal.output().indexOf("\x1b[A")));
        QVERIFY2(!screen.hasWrapped(), terminal.output());
        QCOMPARE(screen.rows().size(), columns == 1 ? 0 : 1);
    }

    void namesMoveNoCursor()
    {
        const Sandbox sandbox;
        sandbox.add(u"a\x1b[2J\n\r\x9b.css"_s, css);
        Pty terminal(sandbox, {u"."_s}, 120);
        QCOMPARE(terminal.waitForEnd(), 0);
        QVERIFY2(terminal.output().contains("  a\\x1b[2J\\n\\x0d\\x9b.css"), terminal.output());
        Screen screen(120);
        screen.write(terminal.output());
        QCOMPARE(screen.unknown(), QStringList());
        QCOMPARE(screen.rows().size(), 2);
    }

    void failureBelowItsLine()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"b.js"_s, "var = ;");
        sandbox.add(u"c.css"_s, css);
        Pty terminal(sandbox, {u"a.css"_s, u"b.js"_s, u"c.css"_s}, 100);
        QCOMPARE(terminal.waitForEnd(), 1);
        Screen screen(100);
        screen.write(terminal.output());
        const QStringList rows = screen.rows();
        // The line of the file that failed stays above what its compressor said; the others are gone.
        QVERIFY2(rows.value(0).startsWith(u"[######--------------] 1/3  Minified 2 of 3 items.  b.js"),
                 qPrintable(rows[0]));
        QCOMPARE(rows.filter(u"Minified "_s).size(), 1);
        QVERIFY(!rows.filter(u"[ERROR]"_s).isEmpty());
        QCOMPARE(rows.filter(u"Well done!"_s), QStringList{u"Well done!"_s});
        QCOMPARE(rows.last(),
                 u"Failed: %1: the compressor ended with status 2"_s.arg(sandbox.path(u"b.js"_s)));
    }

    void stopStaysReadable()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, manyFunctions(500));
        sandbox.add(u"b.css"_s, css);
        Pty terminal(sandbox, {u"a.js"_s, u"b.css"_s}, 100);
        QVERIFY(
            terminal.waitUntil([&] { return childRunning(terminal.processId(), u"/usr/bin/java"_s) > 0; }));
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), 130);
        Screen screen(100);
        screen.write(terminal.output());
        const QStringList rows = screen.rows();
        QCOMPARE(rows.filter(u"Stopping after this file; once more to end at once."_s).size(), 1);
        QVERIFY2(rows.last().startsWith(u"Stopped before "_s), qPrintable(rows.join(u'\n')));
    }

    void terminalsWithoutALiveLine_data()
    {
        QTest::addColumn<QString>("terminal");
        QTest::newRow("dumb") << u"dumb"_s;
        QTest::newRow("no name") << QString();
    }

    void terminalsWithoutALiveLine()
    {
        QFETCH(QString, terminal);
        Sandbox sandbox;
        if (terminal.isNull())
            sandbox.environment.remove(u"TERM"_s);
        else
            sandbox.environment.insert(u"TERM"_s, terminal);
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.css"_s, css));
        Pty pty(sandbox, {u"a.css"_s});
        QCOMPARE(pty.waitForEnd(), 0);
        QVERIFY(!pty.output().contains('\x1b'));
        QVERIFY2(pty.output().startsWith("Minified 1 of 1 items. " + path + " -> "), pty.output());
    }

    void javaThatSaysItsOptions()
    {
        // It says them below the line, which cannot be erased then.
        Sandbox sandbox;
        sandbox.environment.insert(u"JAVA_TOOL_OPTIONS"_s, u"-Dnothing=1"_s);
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"b.css"_s, css);
        Pty terminal(sandbox, {u"a.css"_s, u"b.css"_s}, 200);
        QCOMPARE(terminal.waitForEnd(), 0);
        Screen screen(200);
        screen.write(terminal.output());
        const QStringList rows = screen.rows();
        QCOMPARE(rows.size(), 6);
        for (const int row : {0, 2})
            QVERIFY2(rows[row].startsWith(u"Picked up JAVA_TOOL_OPTIONS"_s), qPrintable(rows[row]));
        for (const int row : {1, 3})
            QVERIFY2(rows[row].startsWith(u"Minified %1 of 2 items. "_s.arg(row / 2 + 1)),
                     qPrintable(rows[row]));
    }

    void quietOnATerminal()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        Pty terminal(sandbox, {u"--quiet"_s, u"a.css"_s});
        QCOMPARE(terminal.waitForEnd(), 0);
        QCOMPARE(terminal.output(), QByteArray());
    }
};

BREVANT_TEST(tst_BrevantCliTerminal, QCoreApplication)
#include "tst_BrevantCliTerminal.moc"
