// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Tools.h"
#include "queue/FileKind.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/Pty.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { b : c ; }");

QByteArray sourceOf(const FileKind &kind)
{
    switch (kind.family) {
    case KindFamily::StyleSheet:
        return "a { color : #ff0000 ; }\n";
    case KindFamily::Script:
        return "var first = 1 ; /* two */ var second = first + 1 ;\n";
    case KindFamily::Markup:
        break;
    }
    return kind.extension == u"svg"
               ? "<svg xmlns=\"http://www.w3.org/2000/svg\">\n  <g> <path d=\"M 0 0\"/> </g>\n</svg>\n"
               : "<!DOCTYPE html>\n<p>  one   <!-- two -->  three </p>\n";
}

/// What a text leaves among the temporary files, where a folder for it was.
QStringList leftBehind(const Sandbox &sandbox)
{
    return QDir(sandbox.home()).entryList({u"brevant-*"_s}, QDir::AllEntries | QDir::Hidden | QDir::System);
}

} // namespace

/// --stdin: from standard input to standard output, with nothing else there.
class tst_BrevantCliStdin final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        Tools tools;
        tools.programs = QFileInfo(cliProgram()).dir().filePath(u"libexec"_s);
        m_hasModern = tools.missingModern().isEmpty();
    }

    void makesWhatAFileGives_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("kind");
        for (const FileKind &kind : allFileKinds()) {
            const QString extension = kind.extension.toString();
            if (!kind.isExtra)
                QTest::addRow("classic, %s", qPrintable(extension)) << u"classic"_s << extension;
            if (m_hasModern)
                QTest::addRow("modern, %s", qPrintable(extension)) << u"modern"_s << extension;
        }
    }

    void makesWhatAFileGives()
    {
        QFETCH(QString, family);
        QFETCH(QString, kind);
        const Sandbox sandbox;
        sandbox.add(u"a."_s + kind, sourceOf(*anyKindOf(u"a."_s + kind)));
        QStringList arguments{u"--compressors"_s, family, u"--set=enablePHPCheckerKeyString=true"_s};
        if (family == u"modern")
            arguments << u"--also"_s << u"mjs,cjs,htm,svg"_s;
        QCOMPARE(sandbox.run(arguments << u"a."_s + kind).status, 0);
        const QMap<QString, QByteArray> before = tree(sandbox.path());

        const Ended ended = sandbox.runShell(u"\"$CLI\" --compressors $1 --stdin $2 <a.$2"_s, {family, kind});
        QCOMPARE(ended.out, sandbox.read(u"a.min."_s + kind));
        QVERIFY(!ended.out.isEmpty() && ended.out.size() < sandbox.read(u"a."_s + kind).size());
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(tree(sandbox.path()), before);
        QCOMPARE(leftBehind(sandbox), QStringList());
    }

    void failures_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("said");

        QTest::newRow("script, classic")
            << u"printf 'a();\\n  var = ;\\n' | $CLI --stdin js"_s << 1 << "<stdin>:2:8: error: "_ba;
        QTest::newRow("empty script, classic")
            << u"$CLI --stdin js </dev/null"_s << 1 << "Failed: <stdin>: "_ba;
        QTest::newRow("without end") << u"yes | $CLI --stdin css"_s << 1
                                     << "brevant-cli: standard input is longer than 100 MB\n"_ba;
        QTest::newRow("a folder") << u"$CLI --stdin css <."_s << 1
                                  << "brevant-cli: standard input cannot be read: Is a directory\n"_ba;
        QTest::newRow("no place for the folder") << u"echo 'a{}' | TMPDIR=/proc $CLI --stdin css"_s << 1
                                                 << "brevant-cli: a temporary folder cannot be made: "_ba;
        QTest::newRow("disk of the output full")
            << u"echo 'a { b: c }' | $CLI --stdin css >/dev/full"_s << 1
            << "brevant-cli: standard output cannot be written: No space left on device\n"_ba;
        QTest::newRow("output closed")
            << u"echo 'a { b: c }' | $CLI --stdin css >&-"_s << 1
            << "brevant-cli: standard output cannot be written: Bad file descriptor\n"_ba;
        QTest::newRow("no reader")
            << u"mkfifo p; : <p & exec 3>p; wait; echo 'a { b: c }' | $CLI --stdin css >&3"_s << 1
            << "brevant-cli: standard output cannot be written: Broken pipe\n"_ba;
        QTest::newRow("unknown kind")
            << u"$CLI --stdin scss"_s << 2
            << "brevant-cli: --stdin takes one of css, js, html, phtml, php, mjs, cjs, htm, svg, not \"scss\"\n"_ba;
        QTest::newRow("kind of the other family")
            << u"$CLI --stdin svg"_s << 2
            << "brevant-cli: --stdin svg needs the modern compressors: add --compressors modern\n"_ba;
        if (!m_hasModern)
            return;
        QTest::newRow("script, modern")
            << u"printf 'a();\\n  var = ;\\n' | $CLI --compressors modern --stdin mjs"_s << 1
            << "<stdin>:2:7: error: "_ba;
        QTest::newRow("page, modern")
            << u"printf 'x\\n<script>var = ;</script>' | $CLI --compressors modern --stdin html"_s << 1
            << "<stdin>:2:"_ba;
        QTest::newRow("zero byte, modern")
            << u"printf 'a\\0b' | $CLI --compressors modern --stdin html"_s << 1 << "<stdin>"_ba;
    }

    void failures()
    {
        QFETCH(QString, script);
        QFETCH(QByteArray, said);
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(script);
        QVERIFY2(ended.err.contains(said), ended.err);
        QVERIFY2(!ended.err.contains("/brevant-"), ended.err);
        QCOMPARE(ended.out, QByteArray());
        QTEST(ended.status, "status");
        QCOMPARE(leftBehind(sandbox), QStringList());
    }

    void texts_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QByteArray>("output");

        QTest::newRow("empty") << u"$CLI --stdin css </dev/null"_s << QByteArray();
        QTest::newRow("no standard input") << u"$CLI --stdin css <&-"_s << QByteArray();
        QTest::newRow("in pieces") << u"{ echo 'a {'; echo 'b: c }'; } | $CLI --stdin css"_s << "a{b:c}"_ba;
        QTest::newRow("character set")
            << u"printf 'a { b: \"\\344\" }' | $CLI --set selectedEncodingKeyString=iso-8859-1 --stdin css"_s
            << "a{b:\"\xe4\"}"_ba;
        QTest::newRow("temporary files in a folder with odd names")
            << u"mkdir 'ä:b'; echo 'a { b: c }' | TMPDIR=$PWD/ä:b LC_ALL=C $CLI --stdin css"_s << "a{b:c}"_ba;
        QTest::newRow("temporary files in a folder that is not there")
            << u"echo 'a { b: c }' | TMPDIR=$PWD/no $CLI --stdin css"_s << "a{b:c}"_ba;
        // What is about files and copies is not for a text, even where it names no place for it.
        QTest::newRow("settings about files")
            << u"echo '{\"sameFolderKeyString\": false, \"suffixSwitcherKeyString\": 1, "
               "\"gzipCheckerKeyString\": true, \"filterCheckerKeyString\": true, "
               "\"brotliCheckerKeyString\": true}' >s; echo 'a { b: c }' | "
               "$CLI --settings s --set sameFolderKeyString=false --set suffixSwitcherKeyString=false --stdin css"_s
            << "a{b:c}"_ba;
        QTest::newRow("a large text")
            << u"yes 'a { b: c }' | head -n 900000 | $CLI --stdin css | wc -c"_s << "5400000\n"_ba;
        if (!m_hasModern)
            return;
        QTest::newRow("source maps")
            << u"echo '{\"sourceMapCheckerKeyString\": true, \"compressorsKeyString\": "
               "\"modern\"}' >s; echo 'a { b: c }' | $CLI --settings s --stdin css"_s
            << "a{b:c}"_ba;
        QTest::newRow("options over settings")
            << u"echo '{\"compressorsKeyString\": \"classic\"}' >s; "
               "echo 'let x = 1 ;' | $CLI --settings s --compressors modern --stdin js"_s
            << "let x=1;"_ba;
    }

    void texts()
    {
        QFETCH(QString, script);
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(script);
        QCOMPARE(ended.err, QByteArray());
        QTEST(ended.out, "output");
        QCOMPARE(ended.status, 0);
        QCOMPARE(leftBehind(sandbox), QStringList());
    }

    void warns()
    {
        if (!m_hasModern)
            QSKIP("the modern compressors are missing");
        const Sandbox sandbox;
        const QString script = u"printf '\\na { colr: red }' | $CLI --compressors modern --stdin css"_s;
        const Ended ended = sandbox.runShell(script);
        QCOMPARE(ended.out, "a{colr:red}"_ba);
        QVERIFY2(ended.err.startsWith("<stdin>: line 2, column 5: "), ended.err);
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.runShell(script + u" --quiet"_s).err, QByteArray());
    }

    void readsFromATerminal()
    {
        const Sandbox sandbox;
        Pty terminal(sandbox, {u"--stdin"_s, u"css"_s});
        terminal.type("a { b : c ; }\n\x04");
        QCOMPARE(terminal.waitForEnd(), 0);
        QVERIFY2(terminal.output().endsWith("a{b:c}"), terminal.output());
    }

    void isStoppedWhileItReads()
    {
        const Sandbox sandbox;
        Pty terminal(sandbox, {u"--stdin"_s, u"css"_s});
        const QString program = u"/proc/%1/exe"_s.arg(terminal.processId());
        QVERIFY(terminal.waitUntil([&] { return QFile::symLinkTarget(program) == cliProgram(); }));
        terminal.type("a {\n");
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), -SIGINT); // which the shells count as 130
        QCOMPARE(leftBehind(sandbox), QStringList());
    }

    void isStoppedAtWork()
    {
        const Sandbox sandbox;
        Pty terminal(sandbox, {u"--stdin"_s, u"js"_s});
        terminal.type("var one = 1;\n\x04");
        pid_t java = -1;
        QVERIFY(terminal.waitUntil([&] {
            java = childRunning(terminal.processId(), u"/usr/bin/java"_s);
            return java > 0;
        }));
        QCOMPARE(::kill(java, SIGSTOP), 0); // however fast it is
        QCOMPARE(leftBehind(sandbox).size(), 1);
        terminal.type("\x03");
        QCOMPARE(terminal.waitForEnd(), 130);
        QVERIFY2(!terminal.output().contains("var one=1"), terminal.output());
        QCOMPARE(leftBehind(sandbox), QStringList());
    }

private:
    bool m_hasModern = false;
};

BREVANT_TEST(tst_BrevantCliStdin, QCoreApplication)
#include "tst_BrevantCliStdin.moc"
