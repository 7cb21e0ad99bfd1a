// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Tools.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/MountNamespace.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant;
using namespace brevant::test;

/// The modern compressors in the terminal.
class tst_BrevantCliModern final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Tools tools;
        tools.programs = QFileInfo(cliProgram()).dir().filePath(u"libexec"_s);
        if (const QString missing = tools.missingModern(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }

    void minifiesEveryKind()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { width: calc(100% + 30px) }\n");
        sandbox.add(u"b.js"_s, "export const f = (value) => value?.x ?? 1 ;\n");
        sandbox.add(u"c.html"_s, "<p>  <a>x</a>  <a>y</a>\n");
        sandbox.add(u"d.php"_s, "<p>  <?php b() ?>\n  x\n");
        sandbox.add(u"e.phtml"_s, "<p>  <?= 1 ?>\n");
        const Ended ended = run(sandbox, {u"--set"_s, u"enablePHPCheckerKeyString=true"_s, u"."_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "a{width:calc(100% + 30px)}"_ba);
        QCOMPARE(sandbox.read(u"b.min.js"_s), "export const f=o=>o?.x??1;"_ba);
        QCOMPARE(sandbox.read(u"c.min.html"_s), "<p><a>x</a> <a>y</a>"_ba);
        QCOMPARE(sandbox.read(u"d.min.php"_s), "<p><?php b() ?> x"_ba);
        QCOMPARE(sandbox.read(u"e.min.phtml"_s), "<p><?= 1 ?>"_ba);
        QCOMPARE(QDir(sandbox.path()).entryList(QDir::Files | QDir::Hidden).size(), 10);
    }

    void takesShortWaysForSettings()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { width: calc(100% + 30px) }\n");
        const QStringList brotli = m_hasBrotli ? QStringList{u"--brotli"_s} : QStringList();
        const Ended ended = sandbox.run(QStringList{u"--compressors"_s, u"modern"_s, u"--suffix"_s, u"-m"_s,
                                                    u"--gzip"_s, u"--source-maps"_s, u"a.css"_s} +
                                        brotli);
        QCOMPARE(ended.status, 0);
        QVERIFY(sandbox.read(u"a-m.css"_s).startsWith("a{width:calc(100% + 30px)}"));
        QStringList names{u"a-m.css"_s, u"a-m.css.gz"_s, u"a-m.css.map"_s, u"a.css"_s};
        if (m_hasBrotli)
            names.insert(1, u"a-m.css.br"_s);
        QCOMPARE(QDir(sandbox.path()).entryList(QDir::Files, QDir::Name), names);
    }

    void classicMakesNoSourceMaps()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b: c }\n");
        const Ended ended = sandbox.run({u"--source-maps"_s, u"a.css"_s});
        QCOMPARE(ended.status, 2);
        QCOMPARE(ended.err,
                 "brevant-cli: --source-maps needs the modern compressors: add --compressors modern\n"_ba);
    }

    void minifiesMoreKindsWhereAsked()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.mjs"_s, "export const  a = 1 ;\n");
        sandbox.add(u"b.cjs"_s, "exports.b  =  1 ;\n");
        sandbox.add(u"c.htm"_s, "<p>  x\n");
        sandbox.add(u"d.svg"_s, "<svg xmlns=\"http://www.w3.org/2000/svg\">\n <path d=\"M 0 0\"/> </svg>\n");
        sandbox.add(u"e.css"_s, "a { b : c }\n");
        QCOMPARE(run(sandbox, {u"--also"_s, u"mjs,cjs,svg"_s, u"--also=htm"_s, u"."_s}).status, 0);
        QCOMPARE(sandbox.read(u"a.min.mjs"_s), "export const a=1;"_ba);
        QCOMPARE(sandbox.read(u"b.min.cjs"_s), "exports.b=1;"_ba);
        QCOMPARE(sandbox.read(u"c.min.htm"_s), "<p>x"_ba);
        QCOMPARE(sandbox.read(u"d.min.svg"_s),
                 "<svg xmlns=\"http://www.w3.org/2000/svg\"><path d=\"M0 0\"/></svg>"_ba);
        QVERIFY(sandbox.has(u"e.min.css"_s));
        // A second run passes their outputs over, and without the option they are of no kind.
        const auto listed = [&sandbox](const QStringList &also) {
            return run(sandbox, also + QStringList{u"--list"_s, u"."_s}).out.count('\n');
        };
        QCOMPARE(listed({u"--also"_s, u"mjs,cjs,htm,svg"_s}), 5);
        QCOMPARE(listed({}), 1);
    }

    void moreKindsAreForModern()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.mjs"_s, "export const  a = 1 ;\n");
        const Ended ended = sandbox.run({u"--also"_s, u"mjs"_s, u"a.mjs"_s});
        QCOMPARE(ended.err, "brevant-cli: --also needs the modern compressors: add --set "
                            "compressorsKeyString=modern\n"_ba);
        QCOMPARE(ended.status, 2);
        QVERIFY(!sandbox.has(u"a.min.mjs"_s));
        sandbox.add(u"s.json"_s, "{\"compressorsKeyString\": \"modern\"}");
        QCOMPARE(sandbox.run({u"--settings"_s, u"s.json"_s, u"--also"_s, u"mjs"_s, u"a.mjs"_s}).status, 0);
        QCOMPARE(sandbox.read(u"a.min.mjs"_s), "export const a=1;"_ba);
    }

    /// The settings file may be changed during the run, here by the compressor of the first file.
    void moreKindsStayWithModern()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        sandbox.add(u"b.svg"_s, "<svg>  </svg>");
        const QString program = addScript(
            sandbox, u"esbuild"_s, "#!/bin/sh\ncat; echo '{}' >"_ba + sandbox.path(u"s.json"_s).toUtf8());
        sandbox.add(u"s.json"_s, "{\"compressorsKeyString\": \"modern\", \"esbuildPathKeyString\": \"" +
                                     program.toUtf8() + "\"}");
        const QStringList also{u"--also"_s, u"svg"_s, u"--jobs"_s, u"1"_s};
        QCOMPARE(sandbox.run(QStringList{u"--settings"_s, u"s.json"_s} + also + QStringList(u"."_s)).status,
                 0);
        QCOMPARE(sandbox.read(u"s.json"_s), "{}\n"_ba);
        QCOMPARE(sandbox.read(u"b.min.svg"_s), "<svg/>"_ba);
    }

    void needsNoJava()
    {
        if (const QString why = noMountNamespace(); !why.isEmpty())
            QSKIP(qPrintable(why));
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        const QString java = addScript(sandbox, u"java"_s, "#!/nonexistent/interpreter\n");
        const Ended ended = runWithJava(sandbox, java, modern({u"a.css"_s}));
        QCOMPARE(ended.err, ""_ba);
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "a{b:c}"_ba);
    }

    void onlyTheWordModernChoosesIt()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { width: calc(100% + 30px) }");
        for (const QByteArray &stored : {"\"Modern\""_ba, "true"_ba, "1"_ba, "\"\""_ba, "null"_ba}) {
            sandbox.add(u"s.json"_s, "{\"compressorsKeyString\": " + stored + '}');
            const Ended ended = sandbox.run({u"--settings"_s, u"s.json"_s, u"--dry-run"_s, u"a.css"_s});
            QVERIFY2(ended.out.contains("/usr/bin/java -jar "), ended.out);
        }
        sandbox.add(u"s.json"_s, "{\"compressorsKeyString\": \"modern\"}");
        const Ended ended = sandbox.run({u"--settings"_s, u"s.json"_s, u"--dry-run"_s, u"a.css"_s});
        QVERIFY2(!ended.out.contains("java"), ended.out);
        // What it prints does the same when a shell runs it.
        QCOMPARE(sandbox.runShell(QString::fromUtf8(ended.out)).status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "a{width:calc(100% + 30px)}\n"_ba);
    }

    void aDryRunPrintsWhatARunDoes()
    {
        const Sandbox sandbox;
        sandbox.add(u"ascii.css"_s, "a::before { content: \"\\f101\" }");
        sandbox.add(u"order.css"_s, "a { margin: 0; margin-block: 1em; margin-left: 2px }");
        sandbox.add(u"umlaut.js"_s, "use( \"\xC3\xA4\" )");
        QCOMPARE(run(sandbox, {u"."_s}).status, 0);
        const Ended printed = run(sandbox, {u"--set"_s, u"suffixKeyString=-printed"_s, u"--set"_s,
                                            u"filterCheckerKeyString=true"_s, u"--dry-run"_s, u"."_s});
        QCOMPARE(sandbox.runShell(QString::fromUtf8(printed.out)).status, 0);
        for (const QString &name : {u"ascii%1.css"_s, u"order%1.css"_s, u"umlaut%1.js"_s})
            QCOMPARE(sandbox.read(name.arg(u"-printed")), sandbox.read(name.arg(u".min")) + '\n');
    }

    void whatADryRunPrintsKeepsSources()
    {
        const Sandbox sandbox;
        sandbox.add(u"a b.css"_s, "a { b : c }");
        sandbox.add(u"c.css"_s, "a { b : c");
        const Ended ended =
            run(sandbox, {u"--set"_s, u"suffixSwitcherKeyString=false"_s, u"--dry-run"_s, u"."_s});
        static_cast<void>(sandbox.runShell(QString::fromUtf8(ended.out)));
        QCOMPARE(sandbox.read(u"a b.css"_s), "a{b:c}\n"_ba);
        QCOMPARE(sandbox.read(u"c.css"_s), "a { b : c"_ba);
        QVERIFY(run(sandbox, {u"--set"_s, u"lineBreakSwitcherKeyString=true"_s, u"--set"_s,
                              u"lineBreakKeyString=x"_s, u"--dry-run"_s, u"c.css"_s})
                    .out.startsWith('#'));
    }

    /// What is written into, as it has two names, and finds no room is put back.
    void anOutputThatDoesNotFitIsPutBack()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b: \"" + QByteArray(1'000'000, 'x') + "\" }");
        sandbox.add(u"a.min.css"_s, "old");
        QVERIFY(makeHardLink(sandbox.path(u"a.min.css"_s), sandbox.path(u"a.min.css.other"_s)));
        const Ended ended =
            sandbox.runShell(u"ulimit -f 512; exec \"$CLI\" --set compressorsKeyString=modern a.css"_s);
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("the output could not be written: File too large"), ended.err);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "old"_ba);
        QCOMPARE(sandbox.read(u"a.min.css.other"_s), "old"_ba);
    }

    void saysWhatIsMissing()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c }");
        QVERIFY(QDir(sandbox.path()).mkpath(u"app/libexec"_s));
        QVERIFY(QFile::copy(cliProgram(), sandbox.path(u"app/brevant-cli"_s)));
        Ended ended = sandbox.runProgram(sandbox.path(u"app/brevant-cli"_s), modern({u"a.css"_s}));
        QCOMPARE(ended.err,
                 "brevant-cli: The modern compressor " + sandbox.path(u"app/libexec/esbuild"_s).toUtf8() +
                     " is missing. Install Brevant again, or fetch it with: scripts/fetch-compressors\n");
        QCOMPARE(ended.out, ""_ba);
        QCOMPARE(ended.status, 3);
        ended = run(sandbox, {u"--set"_s, u"esbuildPathKeyString=/nowhere/esbuild"_s, u"a.css"_s});
        QVERIFY2(ended.err.startsWith("brevant-cli: The modern compressor /nowhere/esbuild is missing."),
                 ended.err);
        QCOMPARE(ended.status, 3);
    }

    void tellsOfFailures()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c");
        sandbox.add(u"b.js"_s, "foo(;\nvar 1;\n");
        sandbox.add(u"c.html"_s, "<p>  x");
        const Ended ended = run(sandbox, {u"--report"_s, u"r.json"_s, u"."_s});
        QCOMPARE(ended.status, 1);
        const QByteArray where = sandbox.path().toUtf8();
        QVERIFY2(ended.err.contains("Failed: " + where +
                                    "/a.css: line 1, column 10: Expected \"}\" to go with \"{\""),
                 ended.err);
        QVERIFY2(ended.err.contains("Failed: " + where + "/b.js: line 1, column 5: Unexpected \";\""),
                 ended.err);
        QVERIFY(!sandbox.has(u"a.min.css"_s) && !sandbox.has(u"b.min.js"_s) && sandbox.has(u"c.min.html"_s));
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"files"_s][1][u"messages"_s][0].toObject(),
                 QJsonObject({{u"kind"_s, u"error"_s},
                              {u"text"_s, u"Unexpected \";\""_s},
                              {u"line"_s, 1},
                              {u"column"_s, 5}}));
    }

    void saysWhenASourceDoesNotGetSmaller()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a{b:c}");
        const Ended ended = run(sandbox, {u"a.css"_s});
        QVERIFY2(ended.out.contains(
                     "6 -> 6 bytes; not smaller when minified, so the output is the source as it is\n"),
                 ended.out);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "a{b:c}"_ba);
    }

    void replacesSources()
    {
        const Sandbox sandbox;
        const QStringList inPlace{u"--set"_s, u"suffixSwitcherKeyString=false"_s, u"."_s};
        sandbox.add(u"a.css"_s, "a { b : c }");
        sandbox.add(u"b.css"_s, "a { b : c");
        sandbox.add(u"c.css"_s, "a { b : c }");
        QVERIFY(makeHardLink(sandbox.path(u"c.css"_s), sandbox.path(u"c.css.other"_s)));
        QCOMPARE(run(sandbox, inPlace).status, 1);
        QCOMPARE(sandbox.read(u"a.css"_s), "a{b:c}"_ba);
        QCOMPARE(sandbox.read(u"b.css"_s), "a { b : c"_ba);
        QCOMPARE(sandbox.read(u"c.css"_s), "a{b:c}"_ba);
        QCOMPARE(sandbox.read(u"c.css.other"_s), "a{b:c}"_ba);
        QCOMPARE(QDir(sandbox.path()).entryList(QDir::Files | QDir::Hidden).size(), 4);
    }

    void makesCopiesAndMaps()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, "var  a = 1 ;\n");
        QStringList arguments{u"--set"_s,    u"gzipCheckerKeyString=true"_s,
                              u"--set"_s,    u"sourceMapCheckerKeyString=true"_s,
                              u"--report"_s, u"r.json"_s};
        const Ended withBrotli =
            run(sandbox, arguments + QStringList{u"--set"_s, u"brotliCheckerKeyString=true"_s, u"a.js"_s});
        if (m_hasBrotli) {
            QCOMPARE(withBrotli.status, 0);
            QVERIFY(sandbox.has(u"a.min.js.br"_s));
        } else {
            QCOMPARE(withBrotli.status, 3);
            QCOMPARE(withBrotli.err,
                     "brevant-cli: Brotli copies need /usr/bin/brotli. Install it, on Debian with: "
                     "sudo apt install brotli\n"_ba);
            QCOMPARE(run(sandbox, arguments + QStringList(u"a.js"_s)).status, 0);
        }
        QCOMPARE(sandbox.read(u"a.min.js"_s), "var a=1;\n//# sourceMappingURL=a.min.js.map"_ba);
        QCOMPARE(decompressed(sandbox.path(u"a.min.js.gz"_s)), sandbox.read(u"a.min.js"_s));
        QCOMPARE(QJsonDocument::fromJson(sandbox.read(u"a.min.js.map"_s))[u"sources"_s].toArray(),
                 QJsonArray{u"a.js"_s});
    }

    void aReportIsNotWrittenOverWhatIsMadeBesideAnOutput()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.js"_s, "a ( ) ;");
        for (const QString &name : {u"a.min.js.map"_s, u"a.min.js.br"_s, u"a.min.js.gz"_s})
            QCOMPARE(run(sandbox, {u"--report"_s, name, u"a.js"_s}).status, 2);
    }

    void classicMakesBrotliCopiesToo()
    {
        if (!m_hasBrotli)
            QSKIP("brotli is not installed");
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "a { b : c ; }");
        const Ended ended = sandbox.run({u"--set"_s, u"brotliCheckerKeyString=true"_s, u"a.css"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.min.css"_s), "a{b:c}"_ba);
        QVERIFY(sandbox.has(u"a.min.css.br"_s));
    }

private:
    static QStringList modern(const QStringList &arguments)
    {
        return QStringList{u"--set"_s, u"compressorsKeyString=modern"_s} + arguments;
    }
    static Ended run(const Sandbox &sandbox, const QStringList &arguments)
    {
        return sandbox.run(modern(arguments));
    }

    const bool m_hasBrotli = Tools::hasBrotli();
};

BREVANT_TEST(tst_BrevantCliModern, QCoreApplication)
#include "tst_BrevantCliModern.moc"
