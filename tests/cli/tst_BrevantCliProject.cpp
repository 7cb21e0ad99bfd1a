// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/MountNamespace.h"
#include "tests/cli/ProjectFixture.h"

#include <QDir>
#include <QTest>

#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// brevant-cli where a folder has a project file.
class tst_BrevantCliProject final : public QObject, ProjectFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }

    void itNamesThePaths()
    {
        write("{\"paths\": [\"src\"], \"sort\": true}");
        QCOMPARE(listed({}), (QStringList{u"src/a.css"_s, u"src/deep/b.css"_s}));
        QCOMPARE(listed({u"vendor"_s}), QStringList(u"vendor/c.css"_s));
        m_sandbox->add(u"list"_s, "vendor/c.css\n");
        QCOMPARE(listed({u"--files-from"_s, u"list"_s}), QStringList(u"vendor/c.css"_s));
        // From below it is the same project.
        QCOMPARE(listed({}, u"vendor"_s), (QStringList{u"src/a.css"_s, u"src/deep/b.css"_s}));
        const Ended none = m_sandbox->run({u"--list"_s, u"--no-project"_s});
        QCOMPARE(none.err, "brevant-cli: no file or folder is named\nTry: brevant-cli --help\n");
        QCOMPARE(none.status, 2);
    }

    void withoutPaths()
    {
        write("{}");
        const Ended ended = m_sandbox->run({});
        QCOMPARE(ended.status, 2);
        QVERIFY(ended.err.contains("name one, or add \"paths\" to brevant.json\n"));
    }

    void patternsCountFromItsFolder()
    {
        write("{\"paths\": [\".\"], \"sort\": true, \"exclude\": [\"src/deep/\"]}");
        QCOMPARE(listed({}, u"src"_s), (QStringList{u"src/a.css"_s, u"vendor/c.css"_s}));
        // Those of the command line count from the working folder, and leave out more.
        QCOMPARE(listed({u"--exclude"_s, u"/a.css"_s, u"."_s}, u"src"_s), QStringList());
        QCOMPARE(listed({u"."_s}, u"src"_s), QStringList(u"src/a.css"_s));
        write("{\"paths\": [\".\"], \"include\": [\"vendor/\"]}");
        QCOMPARE(listed({}, u"src"_s), QStringList(u"vendor/c.css"_s));
        QCOMPARE(listed({u"--include"_s, u"b.css"_s}, u"src"_s), QStringList(u"src/deep/b.css"_s));
    }

    void aTreeOfOutputs()
    {
        m_sandbox->add(u"src/pic.png"_s, "png");
        write("{\"paths\": [\"src\"], \"outDir\": \"dist\", \"copyRest\": true,"
              " \"settings\": {\"suffixSwitcherKeyString\": false}}");
        QCOMPARE(m_sandbox->run({}).status, 0);
        QCOMPARE(m_sandbox->read(u"dist/deep/b.css"_s), "a{color:red}");
        QCOMPARE(m_sandbox->read(u"dist/pic.png"_s), "png");
        QVERIFY(m_sandbox->read(u"src/a.css"_s) == css);
        // One file of it has the same place as in a run over all.
        QCOMPARE(outputOf({u"deep/b.css"_s}, u"src"_s), u"dist/deep/b.css"_s);
        // The command line says something else.
        QCOMPARE(outputOf({u"--out-dir"_s, u"other"_s, u"vendor/c.css"_s}), u"other/c.css"_s);
        QCOMPARE(
            outputOf({u"--set"_s, u"sameFolderKeyString=true"_s, u"--suffix"_s, u"-m"_s, u"vendor/c.css"_s}),
            u"vendor/c-m.css"_s);
    }

    void bothFamiliesInOneRun()
    {
        if (const QString missing = missingCompressors(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        m_sandbox->add(u"src/new.js"_s, "const f = () => 1;\n");
        m_sandbox->add(u"vendor/old.js"_s, "var a = true;\n");
        write("{\"paths\": [\".\"], \"sort\": true, \"settings\": {\"compressorsKeyString\": \"modern\"},"
              " \"overrides\": [{\"files\": [\"vendor/**\"], \"settings\": {\"compressorsKeyString\":"
              " \"classic\", \"suffixKeyString\": \"-old\", \"gzipCheckerKeyString\": true}}]}");
        const Ended ended = m_sandbox->run({});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(m_sandbox->read(u"src/new.min.js"_s), "const f=()=>1;");
        QCOMPARE(m_sandbox->read(u"vendor/old-old.js"_s), "var a=true;");
        QVERIFY(m_sandbox->has(u"vendor/c-old.css.gz"_s) && !m_sandbox->has(u"src/a.min.css.gz"_s));
        // Outputs are known as such the next time, each by its own suffix.
        QCOMPARE(listed({}), (QStringList{u"src/a.css"_s, u"src/deep/b.css"_s, u"src/new.js"_s,
                                          u"vendor/c.css"_s, u"vendor/old.js"_s}));
        const QByteArray commands = m_sandbox->run({u"--dry-run"_s}).out;
        QVERIFY(commands.contains("yuicompressor") && commands.contains("esbuild"));
    }

    void outputsInPlaceNeedTheCommandLine_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no suffix") << QByteArray("\"settings\": {\"suffixSwitcherKeyString\": false}");
        QTest::newRow("empty suffix") << QByteArray("\"settings\": {\"suffixKeyString\": \"\"}");
        QTest::newRow("override") << QByteArray("\"overrides\": [{\"files\": [\"a.css\"], \"settings\":"
                                                " {\"suffixSwitcherKeyString\": false}}]");
        QTest::newRow("folder") << QByteArray("\"settings\": {\"sameFolderKeyString\": false, "
                                              "\"selectedFolderKeyString\": \"src\","
                                              " \"suffixSwitcherKeyString\": false}");
        QTest::newRow("tree") << QByteArray("\"outDir\": \"src\", \"settings\":"
                                            " {\"suffixSwitcherKeyString\": false}");
    }

    void outputsInPlaceNeedTheCommandLine()
    {
        QFETCH(QByteArray, text);
        write("{\"paths\": [\"src\"], " + text + "}");
        const QStringList before = tree(m_sandbox->path()).keys();
        for (const QStringList &arguments : {QStringList(), QStringList(u"src/a.css"_s)}) {
            const Ended ended = m_sandbox->run(arguments);
            QCOMPARE(ended.status, 2);
            QVERIFY2(ended.err.contains("written over") || ended.err.contains("--out-dir"),
                     ended.err.constData());
        }
        QCOMPARE(m_sandbox->read(u"src/a.css"_s), css);
        QCOMPARE(tree(m_sandbox->path()).keys(), before);
    }

    void outputsInPlaceWhereTheyAreMeant()
    {
        write("{\"paths\": [\"src\"], \"settings\": {\"suffixSwitcherKeyString\": false}}");
        QCOMPARE(m_sandbox->run({u"--no-suffix"_s}).status, 0);
        QCOMPARE(m_sandbox->read(u"src/a.css"_s), "a{color:red}");
        // The user's own choice is nothing of the project's.
        write("{\"paths\": [\"vendor\"]}");
        m_sandbox->add(u"../home/config/brevant/settings.json"_s, "{\"suffixSwitcherKeyString\": false}");
        QCOMPARE(m_sandbox->run({}).status, 0);
        QCOMPARE(m_sandbox->read(u"vendor/c.css"_s), "a{color:red}");
    }

    void linksThatLeadOut_data()
    {
        QTest::addColumn<QString>("link");
        for (const char *link :
             {"src/a.min.css", "src/a.min.css.br", "src/a.min.css.gz", "src/a.min.css.map"})
            QTest::newRow(link) << QString::fromLatin1(link);
    }

    void linksThatLeadOut()
    {
        QFETCH(QString, link);
        const QString victim = m_sandbox->add(u"../home/profile"_s, "mine\n");
        QVERIFY(QFile::link(victim, m_sandbox->path(link)));
        write("{\"paths\": [\"src\"], \"settings\": {\"compressorsKeyString\": \"modern\","
              "\"brotliCheckerKeyString\": true, \"sourceMapCheckerKeyString\": true}}");
        const Ended ended = m_sandbox->run({});
        QCOMPARE(ended.status, 1);
        QVERIFY2(
            ended.err.contains(m_sandbox->path(link).toUtf8() + " is a link that leads out of the folder"),
            ended.err.constData());
        QCOMPARE(readFile(victim), "mine\n");
        // Nor into what git runs or reads.
        QVERIFY(QFile::remove(m_sandbox->path(link)) && QDir(m_sandbox->path()).mkdir(u".git"_s) &&
                QFile::link(m_sandbox->add(u".git/config"_s, "mine\n"), m_sandbox->path(link)));
        QCOMPARE(m_sandbox->run({}).status, 1);
        QCOMPARE(m_sandbox->read(u".git/config"_s), "mine\n");
        QVERIFY(m_sandbox->has(u"src/deep/b.min.css"_s));
        // One that stays inside is followed, as always.
        QVERIFY(QFile::remove(m_sandbox->path(link)) &&
                QFile::link(m_sandbox->add(u"vendor/there"_s, "a"), m_sandbox->path(link)));
        QCOMPARE(m_sandbox->run({}).status, 0);
    }

    /// What is in it is not for everybody who gets the outputs.
    void sourcesThatLeadOut()
    {
        const QString secret = m_sandbox->add(u"../home/secret.css"_s, "a { b : c }");
        QVERIFY(QFile::link(secret, m_sandbox->path(u"src/link.css"_s)) &&
                QFile::link(m_sandbox->path(u"vendor/c.css"_s), m_sandbox->path(u"src/inside.css"_s)));
        write("{\"paths\": [\"src\"]}");
        const Ended ended = m_sandbox->run({});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("src/link.css: not minified: it is a link that leads out of the folder"),
                 ended.err.constData());
        QVERIFY(!m_sandbox->has(u"src/link.min.css"_s));
        QVERIFY(m_sandbox->has(u"src/inside.min.css"_s));
        QVERIFY(QFile::remove(m_sandbox->path(u"src/inside.min.css"_s)));
        QCOMPARE(m_sandbox->run({u"--no-project"_s, u"src"_s}).status, 0);
    }

    /// As $PWD spells it below a home folder that is a link.
    void anotherWayIntoIt()
    {
        const QString way = m_sandbox->home() + u"/way"_s;
        QVERIFY(QFile::link(m_sandbox->path(), way));
        write("{\"paths\": [\"src\"], \"outDir\": \"dist\", \"exclude\": [\"src/deep/\"], \"overrides\":"
              " [{\"files\": [\"src/*\"], \"settings\": {\"suffixKeyString\": \"-own\"}}]}");
        for (const QString &path : {way, way + u"/./src/.."_s, u"../vendor/.."_s})
            QCOMPARE(column(1, {path, u"--sort"_s}, u"src"_s),
                     (QStringList{u"dist/a-own.css"_s, u"dist/vendor/c.min.css"_s}));
        QCOMPARE(outputOf({u"../vendor"_s}, u"src"_s), u"dist/c.min.css"_s);
        QVERIFY(m_sandbox->run({u"--show-settings"_s, way + u"/src/a.css"_s}).out.contains("-own"));
        const QString profile = m_sandbox->add(u"../home/profile"_s, "mine\n");
        QVERIFY(QFile::link(profile, m_sandbox->path(u"vendor/c.min.css"_s)));
        write("{}");
        QCOMPARE(m_sandbox->run({way + u"/vendor"_s}).status, 1);
        QCOMPARE(readFile(profile), "mine\n");
        // What is above it is not of the project.
        const QString above = m_sandbox->add(u"../home/above.css"_s, css);
        QCOMPARE(m_sandbox->run({QDir(m_sandbox->path()).relativeFilePath(above)}).status, 0);
    }

    void refusedOnes()
    {
        QVERIFY(QFile::link(u"src/other.json"_s, m_sandbox->path(projectFile)));
        m_sandbox->add(u"src/other.json"_s, "{\"paths\": [\".\"]}");
        for (const QStringList &arguments : {QStringList(), QStringList(u"src"_s)}) {
            const Ended ended = m_sandbox->run(arguments);
            QCOMPARE(ended.status, 2);
            QCOMPARE(ended.err,
                     "brevant-cli: " + m_sandbox->path(projectFile).toUtf8() +
                         " is a link, which a project file must not be; --no-project goes without it\n");
        }
        QCOMPARE(m_sandbox->run({u"--no-project"_s, u"--list"_s, u"src"_s}).status, 0);
    }

    /// As that of temporary files is.
    void aFolderOfEverybody()
    {
        write("{\"paths\": [\".\"]}");
        QVERIFY(setMode(m_sandbox->path(), 01777));
        QCOMPARE(m_sandbox->run({u"--list"_s}).status, 0);
        QCOMPARE(m_sandbox->runShell(u"cd src && exec \"$CLI\" --list"_s).status, 2);
    }

    void aFileSystemBorder()
    {
        if (const QString reason = noMountNamespace(); !reason.isEmpty())
            QSKIP(qPrintable(reason));
        write("{\"paths\": [\".\"]}");
        const QStringList arguments{u"--list"_s};
        const QString below = u"cd src"_s;
        QCOMPARE(runMounted(*m_sandbox, below, arguments).status, 0);
        const Ended ended = runMounted(*m_sandbox, u"mount -t tmpfs none src && cd src"_s, arguments);
        QCOMPARE(ended.err, "brevant-cli: no file or folder is named\nTry: brevant-cli --help\n");
    }

    void noHome()
    {
        write("{\"paths\": [\"vendor\"]}");
        for (const QString &name : {u"HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_STATE_HOME"_s})
            m_sandbox->environment.remove(name);
        const Ended ended = m_sandbox->run({u"--no-user-settings"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QVERIFY(m_sandbox->has(u"vendor/c.min.css"_s));
    }

    void standardInput()
    {
        write("{\"paths\": [\"gone\"], \"also\": [\"svg\"], \"settings\": {\"compressorsKeyString\": "
              "\"modern\"}}");
        const Ended ended = m_sandbox->runShell(u"echo 'let a = 1' | \"$CLI\" --stdin js"_s);
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.out, "let a=1;");
    }

    void whatIsUpToDateIsKnownThere()
    {
        write("{\"paths\": [\"src\"], \"settings\": {\"compressorsKeyString\": \"modern\"}}");
        QCOMPARE(runIn(u"vendor"_s, {u"--changed"_s}).status, 0);
        QVERIFY(m_sandbox->has(u".brevant-cache.json"_s) && !m_sandbox->has(u"vendor/.brevant-cache.json"_s));
        QVERIFY(!runIn(u"src"_s, {u"--changed"_s}).out.contains("Minified"));
        // Only what other settings concern is made anew.
        write("{\"paths\": [\"src\"], \"settings\": {\"compressorsKeyString\": \"modern\"}, \"overrides\":"
              "[{\"files\": [\"deep/\"], \"settings\": {\"lineBreakSwitcherKeyString\": true}}]}");
        const QByteArray out = m_sandbox->run({u"--changed"_s}).out;
        QVERIFY2(out.contains("deep/b.css") && !out.contains("a.css"), out.constData());
    }

    void aReportOverIt()
    {
        write("{\"paths\": [\"src\"]}");
        const Ended ended = m_sandbox->run({u"--report"_s, projectFile});
        QCOMPARE(ended.status, 2);
        QVERIFY(ended.err.contains("would be written over " + m_sandbox->path(projectFile).toUtf8()));
    }

    void initWritesOne()
    {
        const Ended ended = m_sandbox->run({u"--init"_s});
        QCOMPARE(ended.status, 0);
        const QByteArray text = "{\n    \"paths\": [\"src\"],\n    \"exclude\": [\"*.min.*\", \"vendor/\"],\n"
                                "    \"outDir\": \"dist\"\n}\n";
        QCOMPARE(m_sandbox->read(projectFile), text);
        QCOMPARE(ended.out, "Wrote " + m_sandbox->path(projectFile).toUtf8() + ":\n\n" + text +
                                "\nNext: brevant-cli --list\n");
        QCOMPARE(m_sandbox->run({}).status, 0);
        QVERIFY(m_sandbox->has(u"dist/deep/b.min.css"_s));
        const Ended again = m_sandbox->run({u"--init"_s});
        QCOMPARE(again.status, 2);
        QCOMPARE(again.err, "brevant-cli: " + m_sandbox->path(projectFile).toUtf8() +
                                " is there already; change it, or remove it first\n");
        QCOMPARE(m_sandbox->read(projectFile), text);
    }

    void initInARepository()
    {
        QVERIFY(QDir(m_sandbox->path()).mkdir(u".git"_s) &&
                QDir(m_sandbox->path(u"src"_s)).removeRecursively());
        QCOMPARE(m_sandbox->run({u"--init"_s}).status, 0);
        QCOMPARE(m_sandbox->read(projectFile),
                 "{\n    \"paths\": [\".\"],\n    \"exclude\": [\"*.min.*\", \"vendor/\"],\n"
                 "    \"gitignore\": true,\n    \"outDir\": \"dist\"\n}\n");
    }
};

BREVANT_TEST(tst_BrevantCliProject, QCoreApplication)
#include "tst_BrevantCliProject.moc"
