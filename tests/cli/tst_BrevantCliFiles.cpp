// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QFile>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Which files are taken and left out by the options for it, in which order, and in which part.
class tst_BrevantCliFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rules_data()
    {
        QTest::addColumn<QStringList>("there");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("files");

        const QStringList tree{u"w/a.css"_s, u"w/b.js"_s, u"w/d/a.css"_s, u"w/d/e/c.css"_s};
        const auto row = [&](const char *name, const QStringList &arguments, const QStringList &files) {
            QTest::newRow(name) << tree << arguments << files;
        };
        row("name", {u"--exclude"_s, u"a.css"_s, u"w"_s}, {u"w/b.js"_s, u"w/d/e/c.css"_s});
        row("wildcard", {u"--exclude=*.css"_s, u"w"_s}, {u"w/b.js"_s});
        row("taken back", {u"--exclude=*.css"_s, u"--exclude=!c.css"_s, u"w"_s},
            {u"w/b.js"_s, u"w/d/e/c.css"_s});
        row("folder", {u"--exclude=d/"_s, u"w"_s}, {u"w/a.css"_s, u"w/b.js"_s});
        row("nothing is taken back below a folder", {u"--exclude=d/"_s, u"--exclude=!c.css"_s, u"w"_s},
            {u"w/a.css"_s, u"w/b.js"_s});
        row("from the working folder", {u"--exclude=/w/d/*.css"_s, u"w"_s},
            {u"w/a.css"_s, u"w/b.js"_s, u"w/d/e/c.css"_s});
        row("through the parent folder", {u"--exclude=/w/d"_s, u"w/../w/"_s},
            {u"w/../w/a.css"_s, u"w/../w/b.js"_s});
        row("anchored elsewhere", {u"--exclude=/d"_s, u"w"_s}, tree);
        row("named itself", {u"--exclude=a.css"_s, u"w/a.css"_s, u"w/b.js"_s}, {u"w/b.js"_s});
        row("named in an excluded folder", {u"--exclude=d"_s, u"w/d/e"_s, u"w/b.js"_s}, {u"w/b.js"_s});
        row("all but some", {u"--exclude=*"_s, u"--exclude=!/w/"_s, u"--exclude=!*.js"_s, u"."_s},
            {u"w/b.js"_s});
        row("include", {u"--include=*.js"_s, u"w"_s}, {u"w/b.js"_s});
        row("include folder", {u"--include=e/"_s, u"w"_s}, {u"w/d/e/c.css"_s});
        row("two includes", {u"--include=*.js"_s, u"--include=/w/d/*"_s, u"w"_s},
            {u"w/b.js"_s, u"w/d/a.css"_s, u"w/d/e/c.css"_s});
        row("include and exclude", {u"--include=*.css"_s, u"--exclude=d"_s, u"w"_s}, {u"w/a.css"_s});

        const QStringList foreign{u"w/a.css"_s, u"w/node_modules/b.css"_s, u"w/d/.git/c.css"_s,
                                  u"w/.hg/d.css"_s, u"w/.svn/e.css"_s};
        const auto foreignRow = [&](const char *name, const QStringList &arguments,
                                    const QStringList &files) {
            QTest::newRow(name) << foreign << arguments << files;
        };
        foreignRow("folders of others", {u"w"_s}, {u"w/a.css"_s});
        foreignRow("all", {u"--all"_s, u"w"_s}, foreign);
        foreignRow("folder of others that is named", {u"w/node_modules"_s, u"w/.svn/e.css"_s},
                   {u"w/node_modules/b.css"_s, u"w/.svn/e.css"_s});
        const QStringList outside{u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s,
                                  u"selectedFolderKeyString=w/out"_s};
        QTest::newRow("folder of the outputs")
            << QStringList{u"w/a.css"_s, u"w/out/a.min.css"_s, u"w/d/out/c.css"_s}
            << outside + QStringList{u"w"_s} << QStringList{u"w/a.css"_s, u"w/d/out/c.css"_s};
        QTest::newRow("folder of the outputs that is named")
            << QStringList{u"w/out/a.css"_s} << outside + QStringList{u"w/out"_s}
            << QStringList{u"w/out/a.css"_s};
        QTest::newRow("folder named like a file")
            << QStringList{u"w/lib.js/a.css"_s, u"w/b.css"_s} << QStringList{u"--exclude=lib.js/"_s, u"w"_s}
            << QStringList{u"w/b.css"_s};
        QTest::newRow("letters beyond ASCII")
            << QStringList{u"w/ä b'\".css"_s, u"w/a.css"_s} << QStringList{u"--exclude=ä*"_s, u"w"_s}
            << QStringList{u"w/a.css"_s};
    }

    void rules()
    {
        QFETCH(QStringList, there);
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, files);
        const Sandbox sandbox;
        for (const QString &name : there)
            sandbox.add(name, "");
        const Ended ended = sandbox.run(QStringList{u"--list"_s, u"--print0"_s} + arguments);
        QCOMPARE(ended.err, QByteArray());
        QStringList found = names(sandbox, ended.out);
        found.sort();
        files.sort();
        QCOMPARE(found, files);
    }

    void rulesOutsideTheWorkingFolder()
    {
        const Sandbox sandbox;
        sandbox.add(u"w/d/a.css"_s, "");
        sandbox.add(u"w/d/b.css"_s, "");
        sandbox.add(u"other/c"_s, "");
        const Ended ended = sandbox.runShell(
            u"cd other; \"$CLI\" --list --print0 --exclude /d/a.css ../w; \"$CLI\" --list --exclude b.css ../w/d/b.css"_s);
        QCOMPARE(ended.out, QFile::encodeName(sandbox.path(u"other/../w/d/b.css"_s)) + '\0');
        QVERIFY2(ended.err.contains("some are left out (--exclude)"), ended.err);
    }

    void rulesAtTheRoot()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "");
        const QString path = sandbox.path(u"a.css"_s);
        const QString script = u"cd /; \"$CLI\" --list --exclude '%1' \"${1#/}\""_s;
        QCOMPARE(sandbox.runShell(script.arg(path), {path}).out, QByteArray());
        QVERIFY(sandbox.runShell(script.arg(u"/a.css"_s), {path}).out.contains(path.toUtf8()));
    }

    void namesThatAreNotUtf8()
    {
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(
            u"mkdir w; cd w; touch a.css \"$(printf 'b\\351.css')\"\n"
            "\"$CLI\" --list --print0 . | tr '\\0' '\\n'\n"
            "\"$CLI\" --list --exclude \"$(printf '\\351.css')\" --exclude '*\\b*' . 2>&1 | wc -l\n"
            "\"$CLI\" --list --exclude \"$(printf '?\\351.css')\" . 2>&1 | wc -l"_s);
        QCOMPARE(ended.out, QFile::encodeName(sandbox.path(u"w/./a.css"_s)).replace("/./", "/") + "\n1\n1\n");
        QCOMPARE(ended.err.count('\n'), 1);
    }

    void ordered()
    {
        const Sandbox sandbox;
        const QStringList sorted{u"B.css"_s,    u"a-b.css"_s, u"a.css"_s,      u"a/b.css"_s,
                                 u"a\nb.css"_s, u"aa.css"_s,  u"\uffee.css"_s, u"\U00010000.css"_s};
        QStringList inBytes = sorted;
        std::ranges::sort(inBytes, {}, QFile::encodeName);
        QVERIFY(inBytes != sorted);
        for (const QString &name : sorted)
            sandbox.add(name, "");
        const Ended ended = sandbox.run({u"--list"_s, u"--print0"_s, u"--sort"_s, u"a.css"_s, u"."_s});
        QCOMPARE(names(sandbox, ended.out), inBytes);
    }

    void lists_data()
    {
        QTest::addColumn<QString>(
            "script"); // which runs "$CLI" in a folder with a.css, w/b.css and "new\nline.css"
        QTest::addColumn<QStringList>("files");
        const QStringList both{u"a.css"_s, u"w/b.css"_s};
        QTest::newRow("lines") << u"printf 'a.css\\nw' >l; $CLI --list --print0 --files-from l"_s << both;
        QTest::newRow("empty lines")
            << u"printf '\\na.css\\n\\nw\\n\\n' >l; $CLI --list --print0 --files-from l"_s << both;
        QTest::newRow("standard input")
            << u"printf 'a.css\\nw/b.css\\n' | $CLI --list --print0 --files-from -"_s << both;
        QTest::newRow("zero bytes")
            << u"printf 'new\\nline.css\\0a.css' | $CLI --list --print0 --files-from - -0"_s
            << QStringList{u"new\nline.css"_s, u"a.css"_s};
        QTest::newRow("paths too") << u"echo w | $CLI --list --print0 a.css --files-from -"_s << both;
        QTest::newRow("from itself")
            << u"$CLI --list --print0 --sort . | $CLI --list --print0 -0 --files-from=-"_s
            << QStringList{u"a.css"_s, u"new\nline.css"_s, u"w/b.css"_s};
        QTest::newRow("one file twice")
            << u"printf 'a.css\\na.css\\n./a.css\\n' | $CLI --list --print0 --files-from -"_s
            << QStringList{u"a.css"_s};
        QTest::newRow("an output that is named")
            << u"touch a.min.css; printf 'a.css\\na.min.css\\n' | $CLI --list --print0 --files-from -"_s
            << QStringList{u"a.css"_s, u"a.min.css"_s};
    }

    void lists()
    {
        QFETCH(QString, script);
        const Sandbox sandbox;
        for (const QString &name : {u"a.css"_s, u"w/b.css"_s, u"new\nline.css"_s})
            sandbox.add(name, "");
        const Ended ended = sandbox.runShell(script);
        QCOMPARE(ended.err, QByteArray());
        const QStringList found = names(sandbox, ended.out);
        QTEST(found, "files");
    }

    void emptyList()
    {
        const Sandbox sandbox;
        const Ended ended = sandbox.runShell(u": | \"$CLI\" --files-from -"_s);
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.err.startsWith("Nothing to minify"), ended.err);
    }

    void wrongLists_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QByteArray>("error");
        QTest::newRow("missing") << u"$CLI --files-from no.txt"_s
                                 << QByteArray(
                                        "--files-from: no.txt cannot be read: No such file or directory");
        QTest::newRow("folder") << u"$CLI --files-from ."_s << QByteArray("--files-from: . cannot be read: ");
        QTest::newRow("zero bytes") << u"printf 'a\\0b' | $CLI --files-from -"_s
                                    << QByteArray("--files-from: - holds zero bytes; add -0\n");
        QTest::newRow("one that never ends")
            << u"$CLI --files-from /dev/zero -0"_s
            << QByteArray("--files-from: /dev/zero is longer than 100 MB; name folders, or divide it\n");
        QTest::newRow("entry that is not there")
            << u"echo b.css | $CLI --files-from -"_s << QByteArray("b.css does not exist\n");
    }

    void wrongLists()
    {
        QFETCH(QString, script);
        QFETCH(QByteArray, error);
        const Ended ended = Sandbox().runShell(script);
        QVERIFY2(ended.err.startsWith("brevant-cli: " + error), ended.err);
        QCOMPARE(ended.err.count('\n'), 1);
        QCOMPARE(ended.status, 2);
    }

    void shards_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {2, 3, 7})
            QTest::addRow("%d parts", count) << count;
    }

    void shards()
    {
        QFETCH(int, count);
        const Sandbox here;
        const Sandbox elsewhere; // the same files, made in another order
        for (int i = 0; i < 60; ++i) {
            here.add(u"w/%1.css"_s.arg(i), QByteArray(i * i, 'a'));
            elsewhere.add(u"w/%1.css"_s.arg(59 - i), QByteArray((59 - i) * (59 - i), 'a'));
        }
        QStringList together;
        qint64 most = 0;
        qint64 least = 1'000'000;
        for (int part = 1; part <= count; ++part) {
            const QStringList arguments{
                u"--list"_s, u"--print0"_s, u"--sort"_s, u"--shard"_s, u"%1/%2"_s.arg(part).arg(count),
                u"w"_s};
            const QStringList files = names(here, here.run(arguments).out);
            QCOMPARE(names(elsewhere, elsewhere.run(arguments).out), files);
            together += files;
            qint64 size = 0;
            for (const QString &file : files)
                size += here.read(file).size();
            most = std::max(most, size);
            least = std::min(least, size);
        }
        QVERIFY2(most * 95 <= least * 100, qPrintable(u"%1 to %2"_s.arg(least).arg(most)));
        together.sort();
        QStringList whole = names(here, here.run({u"--list"_s, u"--print0"_s, u"w"_s}).out);
        whole.sort();
        QCOMPARE(together, whole);
    }

    void emptyFilesAreSharedToo()
    {
        const Sandbox sandbox;
        for (int i = 0; i < 10; ++i)
            sandbox.add(u"w/%1.css"_s.arg(i), "");
        for (const QString &part : {u"1/2"_s, u"2/2"_s})
            QCOMPARE(sandbox.run({u"--list"_s, u"--shard"_s, part, u"w"_s}).out.count('\n'), 5);
    }

    void theOrderOfTheListDoesNotMatter()
    {
        const Sandbox sandbox;
        QStringList files;
        for (int i = 0; i < 11; ++i) {
            sandbox.add(u"%1.css"_s.arg(i), "a");
            files << u"%1.css"_s.arg(i);
        }
        const auto part = [&] {
            QList<QByteArray> lines =
                sandbox.run(QStringList{u"--list"_s, u"--shard"_s, u"1/3"_s} + files).out.split('\n');
            std::ranges::sort(lines);
            return lines;
        };
        const QList<QByteArray> before = part();
        QCOMPARE(before.size(), 1 + 4); // one is empty
        std::ranges::reverse(files);
        QCOMPARE(part(), before);
    }

    void partWithNothing()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, "");
        const Ended ended = sandbox.run({u"--shard"_s, u"2/2"_s, u"a.css"_s});
        QCOMPARE(ended.err, QByteArray("Nothing to minify: the other parts hold all files.\n"));
        QCOMPARE(ended.status, 0);
    }

private:
    /// What --print0 has printed, relative to the sandbox.
    [[nodiscard]] static QStringList names(const Sandbox &sandbox, const QByteArray &out)
    {
        QStringList names;
        for (const QByteArray &path : out.split('\0').first(out.count('\0')))
            names << QString::fromUtf8(path).sliced(sandbox.path().size() + 1);
        return names;
    }
};

BREVANT_TEST(tst_BrevantCliFiles, QCoreApplication)
#include "tst_BrevantCliFiles.moc"
