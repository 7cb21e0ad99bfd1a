// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QHash>
#include <QRegularExpression>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// One program that was executed, as the kernel was asked to.
struct Execution {
    QString folder; ///< empty: the one of brevant-cli
    QString program;
    QStringList arguments; ///< the program's own name first
    bool operator==(const Execution &) const = default;
};

/// Text written as "\x41\x42".
QString fromHex(const QString &text)
{
    QString digits = text;
    digits.remove(u"\\x"_s);
    return QString::fromUtf8(QByteArray::fromHex(digits.toLatin1()));
}

/// The executions in a trace with all strings in hexadecimal digits, in their order.
QList<Execution> executions(const QString &trace)
{
    static const QRegularExpression call(
        u"^(\\d+) +(chdir|execve)\\(\"([^\"]*)\"(\\.*)(?:, \\[([^]]*)\\](\\.*))?"_s);
    static const QRegularExpression string(u"\"([^\"]*)\"(\\.*)"_s);
    QHash<QString, QString> folders;
    QList<Execution> list;
    for (const QString &line : trace.split(u'\n')) {
        const QRegularExpressionMatch match = call.match(line);
        if (!match.hasMatch())
            continue;
        const QString process = match.captured(1);
        if (match.captured(2) == u"chdir") {
            folders[process] = fromHex(match.captured(3));
            continue;
        }
        Execution execution{folders.value(process), fromHex(match.captured(3)), {}};
        for (const QRegularExpressionMatch &argument : string.globalMatch(match.captured(5)))
            execution.arguments << fromHex(argument.captured(1)) + argument.captured(2);
        list << execution;
    }
    return list;
}

/// One command as a text that reads well in a failed comparison.
QStringList shown(const QList<Execution> &list)
{
    QStringList texts;
    for (const Execution &execution : list)
        texts << u"%1: %2 <%3>"_s.arg(execution.folder, execution.program, execution.arguments.join(u"> <"));
    return texts;
}

Execution java(const QStringList &arguments)
{
    return {toolsFolder(), u"/usr/bin/java"_s, QStringList{u"/usr/bin/java"_s} + arguments};
}

/// The command of the compressor for CSS and JavaScript; `options` stand before the source.
Execution yui(const QStringList &options, const QString &source, const QString &output,
              const QString &encoding = u"utf-8"_s)
{
    return java(QStringList{u"-jar"_s, u"yuicompressor-2.4.8.jar"_s} + options +
                QStringList{source, u"-o"_s, output, u"--charset"_s, encoding});
}

Execution html(const QString &spaces, const QString &source, const QString &output,
               const QString &encoding = u"utf-8"_s)
{
    return java({u"-jar"_s, u"htmlcompressor-1.5.3.jar"_s, u"--charset"_s, encoding, u"--type"_s, u"html"_s,
                 u"--compress-js"_s, u"--compress-css"_s, spaces, source, u"-o"_s, output});
}

QList<Execution> gzip(const QString &output)
{
    const auto step = [](const QStringList &command) { return Execution{{}, command.first(), command}; };
    return {step({u"/usr/bin/gzip"_s, u"-f"_s, output}),
            step({u"/bin/cp"_s, u"-f"_s, output + u".gz"_s, output + u".brevantgziptemp"_s}),
            step({u"/usr/bin/gzip"_s, u"-f"_s, u"-d"_s, u"-S"_s, u"brevantgziptemp"_s,
                  output + u".brevantgziptemp"_s}),
            step({u"/bin/mv"_s, u"-f"_s, output + u"."_s, output})};
}

QStringList settings(const QStringList &assignments)
{
    QStringList options;
    for (const QString &assignment : assignments)
        options << u"--set"_s << assignment;
    return options;
}

} // namespace

/// Which programs a run executes, in which folder and with which arguments, as the kernel sees it.
class tst_Trace final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        const Ended probe =
            m_sandbox.runProgram(u"/usr/bin/strace"_s, {u"-f"_s, u"-e"_s, u"trace=execve"_s, u"/bin/true"_s});
        if (probe.status != 0)
            QSKIP("strace cannot trace a process here");
        const QByteArray js("function f(first) { return first + 1 ; }\n");
        m_sandbox.add(u"a b.css"_s, "a { b : c ; }");
        m_sandbox.add(u"a.JS"_s, js);
        m_sandbox.add(u"b.js"_s, js);
        for (const QString &name : {u"a.html"_s, u"a.phtml"_s, u"a.php"_s})
            m_sandbox.add(name, "<p>a</p> <p>b</p>");
        m_sandbox.add(u"out/x"_s, "");
    }

    void everyKind()
    {
        const auto path = [&](const QString &name) { return m_sandbox.path(name); };
        const QStringList files{u"a b.css"_s, u"a.JS"_s, u"a.html"_s, u"a.phtml"_s, u"a.php"_s};
        const QList<Execution> expected{
            yui({}, path(u"a b.css"_s), path(u"a b.min.css"_s)),
            yui({}, path(u"a.JS"_s), path(u"a.min.js"_s)),
            html(u"--remove-intertag-spaces"_s, path(u"a.html"_s), path(u"a.min.html"_s)),
            html(u"--remove-intertag-spaces"_s, path(u"a.phtml"_s), path(u"a.min.phtml"_s)),
            html(u"--remove-intertag-spaces"_s, path(u"a.php"_s), path(u"a.min.php"_s)),
        };
        QCOMPARE(shown(traced(settings({u"enablePHPCheckerKeyString=true"_s}) + files)), shown(expected));
    }

    void switchesOfJavaScript_data()
    {
        QTest::addColumn<QStringList>("on");
        QTest::addColumn<QStringList>("options");

        const QString lineBreak = u"lineBreakSwitcherKeyString=true"_s;
        const QString nomunge = u"nomungeSwitcherKeyString=true"_s;
        const QString semi = u"preserveSemiSwitcherKeyString=true"_s;
        const QString optimizations = u"disableOptimizationsSwitcherKeyString=true"_s;
        QTest::newRow("line break") << QStringList{lineBreak} << QStringList{u"--line-break"_s, u"500"_s};
        QTest::newRow("nomunge") << QStringList{nomunge} << QStringList{u"--nomunge"_s};
        QTest::newRow("semicolons") << QStringList{semi} << QStringList{u"--preserve-semi"_s};
        QTest::newRow("optimizations")
            << QStringList{optimizations} << QStringList{u"--disable-optimizations"_s};
        QTest::newRow("two") << QStringList{optimizations, nomunge}
                             << QStringList{u"--nomunge"_s, u"--disable-optimizations"_s};
        QTest::newRow("all") << QStringList{optimizations, semi, nomunge, lineBreak,
                                            u"lineBreakKeyString=007"_s}
                             << QStringList{u"--line-break"_s, u"007"_s, u"--nomunge"_s, u"--preserve-semi"_s,
                                            u"--disable-optimizations"_s};
    }

    void switchesOfJavaScript()
    {
        QFETCH(QStringList, on);
        QFETCH(QStringList, options);
        const QList<Execution> expected{
            yui(options, m_sandbox.path(u"b.js"_s), m_sandbox.path(u"b.min.js"_s))};
        QCOMPARE(shown(traced(settings(on) + QStringList{u"b.js"_s})), shown(expected));
    }

    void switchesThatTouchOneKindOnly()
    {
        const QStringList on =
            settings({u"lineBreakSwitcherKeyString=true"_s, u"lineBreakKeyString=80"_s,
                      u"nomungeSwitcherKeyString=true"_s, u"preserveSemiSwitcherKeyString=true"_s,
                      u"disableOptimizationsSwitcherKeyString=true"_s, u"keepXMLSpaceCheckerKeyString=true"_s,
                      u"selectedEncodingKeyString=gbk"_s});
        const QList<Execution> expected{
            yui({u"--line-break"_s, u"80"_s}, m_sandbox.path(u"a b.css"_s), m_sandbox.path(u"a b.min.css"_s),
                u"gbk"_s),
            html(u"--preserve-intertag-spaces"_s, m_sandbox.path(u"a.html"_s),
                 m_sandbox.path(u"a.min.html"_s), u"gbk"_s),
        };
        QCOMPARE(shown(traced(on + QStringList{u"a b.css"_s, u"a.html"_s})), shown(expected));
    }

    void undecidedSwitches_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QString>("file");
        QTest::newRow("line break, css")
            << QByteArray(R"({"lineBreakSwitcherKeyString": 1})") << u"a b.css"_s;
        QTest::newRow("nomunge, js") << QByteArray(R"({"nomungeSwitcherKeyString": "true"})") << u"b.js"_s;
        QTest::newRow("optimizations, js")
            << QByteArray(R"({"disableOptimizationsSwitcherKeyString": 0})") << u"b.js"_s;
        QTest::newRow("suffix") << QByteArray(
                                       R"({"suffixSwitcherKeyString": 1, "gzipCheckerKeyString": true})")
                                << u"a.html"_s;
    }

    void undecidedSwitches()
    {
        // Java would be started with nothing to do, or with no output to write.
        QFETCH(QByteArray, settings);
        QFETCH(QString, file);
        m_sandbox.add(u"undecided.json"_s, settings);
        QCOMPARE(shown(traced({u"--settings"_s, u"undecided.json"_s, file})), QStringList());
    }

    void otherFolderAndGzip()
    {
        const QString folder = m_sandbox.path(u"out"_s);
        const QStringList options =
            settings({u"sameFolderKeyString=false"_s, u"selectedFolderKeyString="_s + folder,
                      u"suffixKeyString=-m"_s, u"gzipCheckerKeyString=true"_s});
        const QString first = folder + u"/a b-m.css"_s;
        const QString second = folder + u"/a-m.html"_s;
        const QList<Execution> expected =
            QList<Execution>{yui({}, m_sandbox.path(u"a b.css"_s), first)} + gzip(first) +
            QList<Execution>{html(u"--remove-intertag-spaces"_s, m_sandbox.path(u"a.html"_s), second)} +
            gzip(second);
        QCOMPARE(shown(traced(options + QStringList{u"a b.css"_s, u"a.html"_s})), shown(expected));
        QCOMPARE(decompressed(first + u".gz"_s), QByteArray("a{b:c}"));
    }

private:
    /// What `brevant-cli arguments` executes, itself left out.

    QList<Execution> traced(const QStringList &arguments) const
    {
        const QStringList options{
            u"-f"_s, u"--seccomp-bpf"_s,     u"-q"_s, u"-xx"_s, u"-s"_s, u"4096"_s, u"-o"_s, u"trace"_s,
            u"-e"_s, u"trace=execve,chdir"_s};
        static_cast<void>(m_sandbox.runProgram(u"/usr/bin/strace"_s,
                                               options + QStringList{u"--"_s, cliProgram()} + arguments));
        QList<Execution> list = executions(QString::fromUtf8(m_sandbox.read(u"trace"_s)));
        if (!list.isEmpty() && list.first().program == cliProgram())
            list.removeFirst();
        return list;
    }

    const Sandbox m_sandbox;
};

BREVANT_TEST(tst_Trace, QCoreApplication)
#include "tst_Trace.moc"
