// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { color : red ; }\n");
const QByteArray cssMinified("a{color:red}");

} // namespace

/// How paths are typed and what files are called.
class tst_BrevantCliNames final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void typedPaths_data()
    {
        QTest::addColumn<QStringList>("typed");
        QTest::addColumn<QStringList>("entries"); // behind the working folder

        const QStringList top{u"/a.css"_s};
        const QStringList both{u"/a.css"_s, u"/sub/b.css"_s};
        const QStringList below{u"/sub/b.css"_s};
        QTest::newRow("name") << QStringList{u"a.css"_s} << top;
        QTest::newRow("dot and name") << QStringList{u"./a.css"_s} << top;
        QTest::newRow("dots and name") << QStringList{u"././a.css"_s} << top;
        QTest::newRow("double separator") << QStringList{u".//a.css"_s} << top;
        QTest::newRow("dot") << QStringList{u"."_s} << both;
        QTest::newRow("dot and separator") << QStringList{u"./"_s} << both;
        QTest::newRow("dots") << QStringList{u"./."_s} << both;
        QTest::newRow("folder") << QStringList{u"sub"_s} << below;
        QTest::newRow("folder and separator") << QStringList{u"sub/"_s} << below;
        QTest::newRow("folder and dot") << QStringList{u"./sub/"_s} << below;
        QTest::newRow("up and down") << QStringList{u"../site/a.css"_s} << QStringList{u"/../site/a.css"_s};
        QTest::newRow("from the root")
            << QStringList{u"@/sub/b.css"_s, u"@/a.css"_s} << QStringList{u"/sub/b.css"_s, u"/a.css"_s};
    }

    void typedPaths()
    {
        QFETCH(QStringList, typed);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"sub/b.css"_s, css);
        typed.replaceInStrings(u"@"_s, sandbox.path());
        QStringList entries;
        const Ended ended = sandbox.run(QStringList{u"--list"_s} + typed);
        for (const QByteArray &line : ended.out.split('\n').first(ended.out.count('\n'))) {
            const QString entry = QString::fromUtf8(line.split('\t').first());
            QVERIFY2(entry.startsWith(sandbox.path()), line);
            entries << entry.sliced(sandbox.path().size());
        }
        if (typed.size() == 1)
            entries.sort(); // within a folder the order is the file system's
        QTEST(entries, "entries");
    }

    void samePathTypedTwice()
    {
        const Sandbox sandbox;
        const QString path = sandbox.add(u"sub/a.css"_s, css);
        const Ended ended =
            sandbox.run({u"--list"_s, u"sub/a.css"_s, u"./sub/a.css"_s, path, u"sub"_s, u"sub/"_s, u"."_s});
        QCOMPARE(ended.out.count('\n'), 1);
    }

    void folderThroughALink()
    {
        const Sandbox sandbox;
        sandbox.add(u"real/a.css"_s, css);
        QVERIFY(QFile::link(u"real"_s, sandbox.path(u"linked"_s)));
        QCOMPARE(sandbox.run({u"--list"_s, u"."_s}).out.count('\n'), 1); // not followed below a folder
        QVERIFY(sandbox.run({u"--list"_s, u"real"_s}).out.contains("/real/a.css\t"));
    }

    void awkwardNames()
    {
        const QStringList names{u"a b.css"_s,        u"it's.css"_s,        u"\"q\".css"_s, u"$HOME.css"_s,
                                u"two\nlines.css"_s, u"übel.css"_s,        u"日本.css"_s,  u"100%1.css"_s,
                                u"*?[a].css"_s,      u"back\\slash.css"_s, u".css.css"_s,  u"@x.css"_s};
        const Sandbox sandbox;
        QStringList expected;
        for (const QString &name : names) {
            sandbox.add(u"in/"_s + name, css);
            expected << name << name.chopped(4) + u".min.css"_s;
        }
        const Ended ended = sandbox.run({u"in"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QVERIFY(ended.out.contains("/in/two\\nlines.css -> "));
        QVERIFY(ended.out.contains("/in/übel.css -> "));
        QVERIFY(ended.out.contains("/in/100%1.css -> "));
        QCOMPARE(ended.out.count('\n'), names.size() + 4); // no name makes a line of its own
        const auto files = tree(sandbox.path(u"in"_s));
        expected.sort();
        QCOMPARE(files.keys(), expected);
        for (const QString &name : names)
            QCOMPARE(files[name.chopped(4) + u".min.css"_s], cssMinified);
    }

    void awkwardNamesWithGzip()
    {
        const Sandbox sandbox;
        sandbox.add(u"a b's\n$x.css"_s, css);
        QCOMPARE(sandbox.run({u"--set"_s, u"gzipCheckerKeyString=true"_s, u"."_s}).status, 0);
        QCOMPARE(decompressed(sandbox.path(u"a b's\n$x.min.css.gz"_s)), cssMinified);
        QCOMPARE(tree(sandbox.path()).size(), 3);
    }

    void nothingOfANameReachesTheTerminal_data()
    {
        QTest::addColumn<QStringList>("arguments"); // "@" is the name

        QTest::newRow("run") << QStringList{u"@.css"_s};
        QTest::newRow("list") << QStringList{u"--list"_s, u"@.css"_s};
        QTest::newRow("dry run") << QStringList{u"--dry-run"_s, u"@.css"_s};
        QTest::newRow("missing") << QStringList{u"@"_s};
        QTest::newRow("option") << QStringList{u"--@"_s, u"@.css"_s};
        QTest::newRow("setting") << QStringList{u"--set"_s, u"@=1"_s, u"@.css"_s};
        QTest::newRow("settings file") << QStringList{u"--settings"_s, u"@"_s, u"@.css"_s};
        QTest::newRow("report") << QStringList{u"--report"_s, u"@/@"_s, u"@.css"_s};
    }

    void nothingOfANameReachesTheTerminal()
    {
        QFETCH(QStringList, arguments);
        const Sandbox sandbox;
        const QString name = u"a\x1b[31m\u202eb"_s;
        sandbox.add(name + u".css"_s, css);
        const Ended ended = sandbox.run(arguments.replaceInStrings(u"@"_s, name));
        const QByteArray text = ended.out + ended.err;
        QVERIFY2(text.contains("[31m"), text);
        QVERIFY2(!text.contains('\x1b') && !text.contains("\u202e"), text);
    }

    void namesThatAreNotUtf8()
    {
        const Sandbox sandbox;
        sandbox.add(u"good.css"_s, css);
        sandbox.add(u"caf?.css"_s, css); // what Qt makes of such a name
        const auto run = [&](const QString &arguments) {
            return sandbox.runShell(
                u"touch \"$(printf 'caf\\351.css')\" && mkdir -p \"$(printf 'd\\377')\" &&"
                "touch \"$(printf 'd\\377')/a.js\" && \"$CLI\" "_s +
                arguments);
        };
        const QString name = u"\"$(printf 'caf\\351.css')\""_s;
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const QByteArray words =
            ": not minified: its path is not valid UTF-8 and cannot be handed to a compressor\n";

        const Ended named = run(u"--report r.json good.css "_s + name);
        QCOMPARE(named.err, "Failed: " + folder + "/caf\\xE9.css" + words);
        QCOMPARE(named.status, 1);
        QCOMPARE(sandbox.read(u"good.min.css"_s), cssMinified);
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        const QJsonObject failed = report[u"files"_s][1].toObject();
        QCOMPARE(failed[u"source"_s].toString(), sandbox.path(u"caf\\xE9.css"_s));
        QCOMPARE(": " + failed[u"reason"_s].toString().toUtf8() + "\n", words);

        const QByteArray inFolder = folder + "/d\\xFF/a.js" + words;
        const Ended listed = run(u"--list "_s + name + u" good.css d*"_s);
        QCOMPARE(listed.err, "brevant-cli: " + folder + "/caf\\xE9.css" + words + "brevant-cli: " + inFolder);
        QCOMPARE(listed.out, folder + "/good.css\t" + folder + "/good.min.css\n");
        QCOMPARE(listed.status, 1);

        const Ended found = run(u"."_s);
        QVERIFY2(found.err.contains("Failed: " + folder + "/caf\\xE9.css" + words), found.err);
        QVERIFY2(found.err.contains("Failed: " + inFolder), found.err);
        QCOMPARE(found.status, 1);
        QCOMPARE(sandbox.read(u"caf?.min.css"_s), cssMinified);

        const Ended missing = run(u"\"$(printf 'no\\351.css')\""_s);
        QCOMPARE(missing.err, QByteArray("brevant-cli: no\\xE9.css does not exist\n"));
        QCOMPARE(missing.status, 2);
    }

    void leadingDash()
    {
        const Sandbox sandbox;
        sandbox.add(u"-x.css"_s, css);
        sandbox.add(u"--list"_s, "");
        sandbox.add(u"-y.css"_s, css);
        QCOMPARE(sandbox.run({u"-x.css"_s}).status, 2);
        QCOMPARE(sandbox.run({u"./-x.css"_s, u"--"_s, u"-y.css"_s, u"--list"_s}).status, 0);
        QCOMPARE(sandbox.read(u"-x.min.css"_s), cssMinified);
        QCOMPARE(sandbox.read(u"-y.min.css"_s), cssMinified);
    }

    void plainEnvironment()
    {
        Sandbox sandbox;
        sandbox.environment.remove(u"LANG"_s);
        sandbox.environment.insert(u"LC_ALL"_s, u"C"_s);
        sandbox.add(u"a b.css"_s, css);
        const Ended ended = sandbox.run({u"a b.css"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a b.min.css"_s), cssMinified);
    }

    void plainEnvironmentAndUmlauts()
    {
        // What Java makes of the name in this environment is up to Java; what we make of it is not.
        Sandbox sandbox;
        sandbox.environment.remove(u"LANG"_s);
        sandbox.environment.insert(u"LC_ALL"_s, u"C"_s);
        const QString source = sandbox.add(u"übel.css"_s, css);
        const QByteArray folder = QFile::encodeName(sandbox.path());
        QCOMPARE(sandbox.run({u"--list"_s, u"."_s}).out, folder + "/übel.css\t" + folder + "/übel.min.css\n");

        static_cast<void>(
            sandbox.runShell(u"cd \"$2\" && /usr/bin/java -jar yuicompressor-2.4.8.jar \"$1/übel.css\""
                             " -o \"$1/bare.css\" --charset utf-8"_s,
                             {sandbox.path(), toolsFolder()}));
        const bool javaCan = sandbox.has(u"bare.css"_s);
        QVERIFY(QFile::remove(sandbox.path(u"bare.css"_s)) || !javaCan);
        const Ended ended = sandbox.run({u"übel.css"_s});
        QCOMPARE(ended.status, javaCan ? 0 : 1);
        QCOMPARE(sandbox.has(u"übel.min.css"_s), javaCan);
        QCOMPARE(ended.err.contains("Failed: " + QFile::encodeName(source) + ": "), !javaCan);
    }

    void otherFolderThanTheTools()
    {
        // The compressors run elsewhere; a relative path must mean the same for them.
        const Sandbox sandbox;
        sandbox.add(u"deep/er/a.html"_s, "<p>a</p> <p>b</p>");
        QCOMPARE(sandbox.runShell(u"cd deep/er && \"$CLI\" ../er/a.html"_s).status, 0);
        QCOMPARE(sandbox.read(u"deep/er/a.min.html"_s), QByteArray("<p>a</p><p>b</p>"));
    }
};

BREVANT_TEST(tst_BrevantCliNames, QCoreApplication)
#include "tst_BrevantCliNames.moc"
