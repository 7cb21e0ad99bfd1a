// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/MountNamespace.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray noJava("Java was not found at /usr/bin/java. Install it, on Debian with: "
                        "sudo apt install default-jre-headless");

QByteArray noCompressor(const QString &path)
{
    return "The compressor " + QFile::encodeName(path) +
           " is missing. Install Brevant again, or fetch it into that folder with: scripts/fetch-compressors";
}

} // namespace

/// The Java runtime and the compressors: where they are looked for, what happens without them, and what a
/// child process gets from us. Java is replaced where a failure must be forced.
class tst_BrevantCliTools final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        m_noNamespace = noMountNamespace();
    }

    void noCompressors()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        sandbox.add(u"app/resources/lib/yuicompressor-2.4.8.jar"_s, "");
        QVERIFY(QFile::copy(cliProgram(), sandbox.path(u"app/brevant-cli"_s)));
        const QString program = sandbox.path(u"app/brevant-cli"_s);
        const QString lib = sandbox.path(u"app/resources/lib/"_s);

        const Ended one = sandbox.runProgram(program, {u"a.css"_s});
        QCOMPARE(one.err, "brevant-cli: " + noCompressor(lib + u"htmlcompressor-1.5.3.jar"_s) + "\n");
        QCOMPARE(one.out, QByteArray());
        QCOMPARE(one.status, 3);
        QVERIFY(QDir(lib).removeRecursively());
        sandbox.add(u"r.json"_s, "an older report");
        const Ended both =
            sandbox.runProgram(program, {u"--quiet"_s, u"--report"_s, u"r.json"_s, u"a.css"_s});
        QCOMPARE(both.err, "brevant-cli: " + noCompressor(lib + u"yuicompressor-2.4.8.jar"_s) + "\n");
        QCOMPARE(both.status, 3);
        QVERIFY(!sandbox.has(u"a.min.css"_s));
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"reason"_s].toString().toUtf8(), noCompressor(lib + u"yuicompressor-2.4.8.jar"_s));
        QCOMPARE(report[u"notRun"_s].toInt(), 1);
        QCOMPARE(report[u"files"_s][0][u"outcome"_s].toString(), u"not run"_s);
        // What runs nothing needs nothing.
        QCOMPARE(sandbox.runProgram(program, {u"--list"_s, u"a.css"_s}).status, 0);
        QCOMPARE(sandbox.runProgram(program, {u"--dry-run"_s, u"a.css"_s}).status, 0);
    }

    void installedLayout()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        sandbox.add(u"usr/bin/x"_s, "");
        sandbox.add(u"usr/share/brevant/x"_s, "");
        QVERIFY(QFile::copy(cliProgram(), sandbox.path(u"usr/bin/brevant-cli"_s)));
        QVERIFY(QFile::link(toolsFolder(), sandbox.path(u"usr/share/brevant/lib"_s)));
        // Through a link too, as in a folder of one's own on the search path.
        QVERIFY(QFile::link(u"usr/bin/brevant-cli"_s, sandbox.path(u"linked"_s)));
        for (const QString &program : {u"usr/bin/brevant-cli"_s, u"linked"_s}) {
            const Ended ended = sandbox.runProgram(sandbox.path(program), {u"--dry-run"_s, u"a.css"_s});
            QVERIFY2(ended.out.startsWith("cd " +
                                          QFile::encodeName(sandbox.path(u"usr/share/brevant/lib"_s)) + "\n"),
                     ended.out);
        }
        QCOMPARE(sandbox.runProgram(sandbox.path(u"linked"_s), {u"a.css"_s}).status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), QByteArray("a{b:c}"));
    }

    void noJavaAtAll()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        const Ended ended = runWithJava(sandbox, u"/dev/null"_s, {u"a.css"_s});
        QCOMPARE(ended.err, "brevant-cli: " + noJava + "\n");
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 3);
    }

    void javaThatCannotBeStarted()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        sandbox.add(u"b.css"_s, "a { b : c ; }");
        const QString java = addScript(sandbox, u"java"_s, "#!/nonexistent/interpreter\n");
        const Ended ended = runWithJava(sandbox, java, {u"a.css"_s, u"b.css"_s});
        QCOMPARE(ended.status, 3);
        QVERIFY2((ended.out + ended.err).contains("Java could not be started: "), ended.out + ended.err);
        const QByteArray where = QFile::encodeName(sandbox.path(u"a.css"_s));
        QVERIFY2(ended.out.endsWith("Stopped before " + where + "; 2 files not minified.\n"), ended.out);
        // An error is told to the quiet as well, and to the report.
        const Ended quiet =
            runWithJava(sandbox, java, {u"--quiet"_s, u"--report"_s, u"r.json"_s, u"a.css"_s});
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QVERIFY(report[u"reason"_s].toString().startsWith(u"Java could not be started: "_s));
        QCOMPARE(quiet.status, 3);
        QCOMPARE(quiet.out, QByteArray());
        QVERIFY2(quiet.err.startsWith("brevant-cli: Java could not be started: "), quiet.err);
    }

    void compressorKilled()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.css"_s, "a { b : c ; }"));
        const QString java = addScript(sandbox, u"java"_s, "#!/bin/sh\necho part >\"$5\"\nkill -9 $$\n");
        const Ended ended = runWithJava(sandbox, java, {u"a.css"_s});
        QCOMPARE(ended.err, "Failed: " + path + ": the compressor was ended by signal 9\n");
        QCOMPARE(ended.status, 1);
        QCOMPARE(sandbox.read(u"a.min.css"_s), QByteArray("part\n"));
    }

    void statusZeroIsNotEnough()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.css"_s, "a { b : c ; }"));
        const auto failure = [&](const QByteArray &lines) {
            return runWithJava(sandbox, addScript(sandbox, u"java"_s, "#!/bin/sh\n" + lines), {u"a.css"_s})
                .err;
        };
        QCOMPARE(failure("exit 0\n"), "Failed: " + path + ": the compressor wrote no output\n");
        QCOMPARE(failure(": >\"$5\"\n"), "Failed: " + path + ": the compressor left an empty output\n");
        QCOMPARE(failure("echo x >\"$5\"; exit 3\n"),
                 "Failed: " + path + ": the compressor ended with status 3\n");
        QCOMPARE(failure("echo x >\"$5\"\n"), QByteArray());
        QCOMPARE(failure("exit 0\n"),
                 "Failed: " + path + ": the compressor wrote no output\n"); // a stale one
    }

    void whatTheCompressorInherits()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        Sandbox sandbox;
        sandbox.environment.insert(u"BREVANT_TEST_VARIABLE"_s, u"two\nlines"_s);
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        const QString java = addScript(sandbox, u"java"_s,
                                       "#!/bin/sh\n"
                                       "env -0 | sort -z >\"$5\"\n"
                                       "echo; pwd; for n in 0 1 2; do readlink /proc/$$/fd/$n; done\n"
                                       "echo words >&2\n");
        const Ended ended = runWithJava(sandbox, java, {u"a.css"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, QByteArray("words\n"));
        const QList<QByteArray> lines = ended.out.split('\n');
        QCOMPARE(QString::fromUtf8(lines.value(1)), toolsFolder());
        QCOMPARE(lines.value(2), QByteArray("/dev/null")); // what brevant-cli itself was given
        QVERIFY2(lines.value(3).startsWith("pipe:"), lines.value(3));
        QVERIFY2(lines.value(4).startsWith("pipe:") && lines.value(4) != lines.value(3), lines.value(4));

        QStringList expected = sandbox.environment.toStringList();
        QStringList given;
        for (const QByteArray &variable : sandbox.read(u"a.min.css"_s).split('\0')) {
            if (!variable.isEmpty())
                given << QString::fromUtf8(variable);
        }
        // The shells in between set these.
        const QRegularExpression ofTheShell(u"^(_|PWD|OLDPWD|SHLVL)="_s);
        QCOMPARE(given.filter(u"BREVANT_TEST_VARIABLE="_s),
                 QStringList{u"BREVANT_TEST_VARIABLE=two\nlines"_s});
        for (QStringList *list : {&expected, &given}) {
            list->removeIf([&](const QString &variable) { return ofTheShell.match(variable).hasMatch(); });
            list->sort();
        }
        QCOMPARE(given, expected);
    }

private:
    QString m_noNamespace;
};

BREVANT_TEST(tst_BrevantCliTools, QCoreApplication)
#include "tst_BrevantCliTools.moc"
