// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/Pty.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <csignal>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QString java = u"/usr/bin/java"_s;
const QByteArray css("a { b : c ; }");

void addFiles(const Sandbox &sandbox, const QByteArray &second)
{
    sandbox.add(u"a.css"_s, css);
    sandbox.add(u"b.js"_s, second);
    sandbox.add(u"c.css"_s, css);
}

const QStringList files{u"a.css"_s, u"b.js"_s, u"c.css"_s};

/// Waits until the compressor of the second file runs, and holds it, however fast it is, until a SIGCONT; its
/// process id, or -1.
pid_t holdSecondFile(Pty &terminal)
{
    pid_t child = -1;
    const bool found = terminal.waitUntil([&] {
        if (terminal.output().contains("Minified 2 of 3 items."))
            child = childRunning(terminal.processId(), java);
        return child > 0;
    });
    return found && ::kill(child, SIGSTOP) == 0 ? child : -1;
}

bool isAlive(pid_t process)
{
    return ::kill(process, 0) == 0;
}

} // namespace

/// Ctrl+C and other signals, with the real compressors.
class tst_BrevantCliStop final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        const Sandbox sandbox;
        m_minified = bareOutput(sandbox.add(u"b.js"_s, m_source));
        QVERIFY(m_minified.size() > 50'000);
    }

    void finishesTheFile_data()
    {
        QTest::addColumn<int>("signal"); // 0: Ctrl+C is typed
        QTest::addColumn<int>("status");

        QTest::newRow("Ctrl+C") << 0 << 130;
        QTest::newRow("SIGTERM") << SIGTERM << 143;
        QTest::newRow("SIGHUP") << SIGHUP << 129;
    }

    void finishesTheFile()
    {
        QFETCH(int, signal);
        const Sandbox sandbox;
        addFiles(sandbox, m_source);
        Pty terminal(sandbox, QStringList{u"--report"_s, u"r.json"_s} + files);
        const pid_t child = holdSecondFile(terminal);
        QVERIFY2(child > 0, terminal.output());
        for (const char *stream : {"0", "1", "2"}) {
            const QString link = u"/proc/%1/fd/%2"_s.arg(child).arg(QLatin1StringView(stream));
            QCOMPARE(QFile::symLinkTarget(link), terminal.device());
        }
        // Twice at a moment, which is one request: timeout(1) sends to the program and to its group.
        if (signal == 0) {
            terminal.type("\x03\x03");
        } else {
            ::kill(terminal.processId(), SIGSTOP); // so that both have come before one is heard
            ::kill(terminal.processId(), signal);
            ::kill(-terminal.processId(), signal);
            ::kill(terminal.processId(), SIGCONT);
        }
        QVERIFY(terminal.waitUntil([&] { return terminal.output().contains("Stopping after this file"); }));
        QVERIFY(isAlive(child));

        ::kill(child, SIGCONT);
        QTEST(terminal.waitForEnd(), "status");
        QVERIFY(!isAlive(child));
        QVERIFY(sandbox.has(u"a.min.css"_s));
        QVERIFY(sandbox.read(u"b.min.js"_s) == m_minified);
        QVERIFY(!sandbox.has(u"c.min.css"_s));
        const QByteArray next = QFile::encodeName(sandbox.path(u"c.css"_s));
        QVERIFY2(terminal.output().contains("\n2 files: "), terminal.output());
        QVERIFY2(terminal.output().endsWith("Stopped before " + next + "; 1 file not minified.\r\n"),
                 terminal.output());
        QVERIFY(!terminal.output().contains("Well done!"));
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"done"_s].toInt(), 2);
        QCOMPARE(report[u"notRun"_s].toInt(), 1);
    }

    void finishesBothFiles()
    {
        const Sandbox sandbox;
        addFiles(sandbox, m_source);
        sandbox.add(u"a.js"_s, m_source);
        const QStringList several{u"--jobs"_s, u"2"_s, u"a.js"_s, u"b.js"_s, u"c.css"_s};
        Pty terminal(sandbox, several);
        QVERIFY(terminal.waitUntil([&] { return childrenRunning(terminal.processId(), java) == 2; }));
        terminal.type("\x03");
        QVERIFY(terminal.waitUntil([&] { return terminal.output().contains("Stopping after these files"); }));
        QCOMPARE(terminal.waitForEnd(), 130);
        QVERIFY(sandbox.read(u"a.min.js"_s) == m_minified);
        QVERIFY(sandbox.read(u"b.min.js"_s) == m_minified);
        QVERIFY(!sandbox.has(u"c.min.css"_s));
        QVERIFY2(terminal.output().contains("\n2 files: "), terminal.output());
    }

    void secondTimeEndsAtOnce()
    {
        const Sandbox sandbox;
        addFiles(sandbox, m_source);
        const QStringList inPlace{u"--set"_s, u"suffixSwitcherKeyString=false"_s, u"--report"_s, u"r.json"_s};
        Pty terminal(sandbox, inPlace + files);
        const pid_t child = holdSecondFile(terminal);
        QVERIFY2(child > 0, terminal.output());
        terminal.type("\x03");
        QVERIFY(terminal.waitUntil([&] { return terminal.output().contains("Stopping after this file"); }));
        QTest::qWait(600); // within half a second it would be the same request
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), 130);
        QVERIFY2(!isAlive(child), "the compressor goes on");
        QVERIFY(sandbox.read(u"b.js"_s) == m_source);
        QCOMPARE(sandbox.read(u"c.css"_s), css);
        QVERIFY2(terminal.output().contains("; 1 failed.\r\nStopped before "), terminal.output());
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"done"_s].toInt(), 1);
        QCOMPARE(report[u"failed"_s].toInt(), 1);
        QCOMPARE(report[u"notRun"_s].toInt(), 1);
    }

    void outputWhereTheTerminalStopsTheBackground()
    {
        // The compressors are not in the terminal's foreground, and must be able to speak there all the same.
        const Sandbox sandbox;
        for (const QString &name : files)
            sandbox.add(name, "a {"); // an error to the compressor of b.js
        Pty terminal(sandbox, files);
        QVERIFY(terminal.waitUntil([&] { return terminal.output().contains("Minified 1 of 3"); }));
        terminal.stopBackgroundOutput();
        QCOMPARE(terminal.waitForEnd(), 1);
        QVERIFY2(terminal.output().contains("[ERROR]"), terminal.output());
    }

    void ignoredStaysIgnored_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void ignoredStaysIgnored()
    {
        QFETCH(int, signal);
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, manyFunctions(500));
        sandbox.add(u"b.css"_s, css);
        const auto inChild = [signal] { ::signal(signal, SIG_IGN); };
        bool sent = false;
        const auto whenStarted = [&](qint64 process) {
            sent =
                QTest::qWaitFor([&] { return childRunning(static_cast<pid_t>(process), java) > 0; }, 30'000);
            ::kill(static_cast<pid_t>(process), signal);
        };
        const Ended ended = sandbox.runProgram(cliProgram(), {u"a.js"_s, u"b.css"_s}, inChild, whenStarted);
        QVERIFY(sent);
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QVERIFY(sandbox.has(u"a.min.js"_s));
        QVERIFY(sandbox.has(u"b.min.css"_s));
    }

    void duringTheLastFile()
    {
        // Nothing is left to stop: the run is complete.
        const Sandbox sandbox;
        sandbox.add(u"b.js"_s, manyFunctions(500));
        Pty terminal(sandbox, {u"b.js"_s});
        QVERIFY(terminal.waitUntil([&] { return childRunning(terminal.processId(), java) > 0; }));
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), 0);
        QVERIFY2(terminal.output().contains("Well done!"), terminal.output());
        QVERIFY(!terminal.output().contains("Stopped before"));
    }

private:
    QByteArray m_source = manyFunctions(1500);
    QByteArray m_minified;
};

BREVANT_TEST(tst_BrevantCliStop, QCoreApplication)
#include "tst_BrevantCliStop.moc"
