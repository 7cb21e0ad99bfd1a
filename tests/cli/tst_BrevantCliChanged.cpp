// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/ChangedSite.h"

#include <QDir>
#include <QTest>

#include <functional>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// --changed, with the compressors themselves.
class tst_BrevantCliChanged final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void twice_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("classic") << QStringList{};
        QTest::newRow("classic, several at once, with copies")
            << QStringList{u"--gzip"_s, u"--jobs"_s, u"2"_s};
        QTest::newRow("modern") << QStringList{u"--compressors"_s, u"modern"_s};
        QTest::newRow("modern, with copies and maps")
            << QStringList{u"--compressors"_s, u"modern"_s, u"--gzip"_s, u"--source-maps"_s};
        QTest::newRow("a folder of their own") << QStringList{u"--set"_s, u"sameFolderKeyString=false"_s,
                                                              u"--set"_s, u"selectedFolderKeyString=out"_s};
    }

    void twice()
    {
        QFETCH(QStringList, options);
        ChangedSite site;
        site.options = QStringList{u"--changed"_s} + options;
        QVERIFY(QDir().mkdir(site.sandbox.path(u"out"_s)));
        QCOMPARE(site.done(), all);
        const bool isOut = options.contains(u"selectedFolderKeyString=out"_s);
        const QString cache = isOut ? u"out/.brevant-cache.json"_s : u".brevant-cache.json"_s;
        auto tree = brevant::test::tree(site.sandbox.path());
        QCOMPARE(tree.remove(cache), 1); // later it knows the times of files that were too young
        const Ended again = site.run();
        QVERIFY2(again.out.startsWith("3 files unchanged.\n"), again.out);
        QCOMPARE(again.err, QByteArray());
        QCOMPARE(again.status, 0);
        auto treeAfter = brevant::test::tree(site.sandbox.path());
        QCOMPARE(treeAfter.remove(cache), 1);
        QCOMPARE(treeAfter, tree);
    }

    void isNeitherReadNorWrittenOtherwise()
    {
        ChangedSite site;
        site.options = {u"--compressors"_s, u"modern"_s};
        QCOMPARE(site.done(), all);
        QVERIFY(!site.sandbox.has(u".brevant-cache.json"_s));
        QCOMPARE(site.done({u"--changed"_s}), all);
        QCOMPARE(site.done(), all);
    }

    void whatIsChanged_data()
    {
        using Change = std::function<bool(const Sandbox &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("done");
        const auto add = [](const char *name, const QStringList &done, const Change &change) {
            QTest::newRow(name) << change << done;
        };
        const QStringList first{u"a.css"_s};
        const auto path = [](const QString &name) {
            return [=](const Sandbox &sandbox) { return sandbox.path(name); };
        };
        const auto source = path(u"w/a.css"_s);
        const auto output = path(u"w/a.min.css"_s);
        add("source touched", {}, [=](const Sandbox &s) { return replaceFile(source(s), css); });
        add("source", first, [=](const Sandbox &s) { return writeFile(source(s), "a { b : d ; }"); });
        add("output gone", first, [=](const Sandbox &s) { return QFile::remove(output(s)); });
        add("output edited", first, [=](const Sandbox &s) { return writeFile(output(s), "a{b:d}"); });
        add("copy gone", first, [=](const Sandbox &s) { return QFile::remove(output(s) + ".gz"_L1); });
        add("map gone", {u"b.js"_s},
            [=](const Sandbox &s) { return QFile::remove(s.path(u"w/b.min.js.map"_s)); });
        add("cache gone", all,
            [](const Sandbox &s) { return QFile::remove(s.path(u".brevant-cache.json"_s)); });
        add("cache of nonsense", all,
            [](const Sandbox &s) { return writeFile(s.path(u".brevant-cache.json"_s), "{\"version\": 1"); });
        add("another file", {u"\n\u00e4 \"$.css"_s}, [](const Sandbox &s) {
            s.add(u"w/\n\u00e4 \"$.css"_s, css);
            return true;
        });
    }

    void whatIsChanged()
    {
        QFETCH(std::function<bool(const Sandbox &)>, change);
        QFETCH(QStringList, done);
        ChangedSite site;
        site.options << u"--gzip"_s << u"--source-maps"_s;
        site.sandbox.add(u"w/b.js"_s,
                         "var first = 1 ;\n\n\n" + manyFunctions(20)); // so that a map is worth it
        QCOMPARE(site.done(), all);
        QVERIFY(change(site.sandbox));
        QCOMPARE(site.done(), done);
        const auto tree = brevant::test::tree(site.sandbox.path(u"w"_s));
        QCOMPARE(site.done(), QStringList());
        site.options.removeAll(u"--changed"_s);
        QVERIFY(site.done().size() >= all.size());
        QCOMPARE(brevant::test::tree(site.sandbox.path(u"w"_s)), tree);
    }

    void settings_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QStringList>("done");
        const auto set = [](const QString &setting) { return QStringList{u"--set"_s, setting}; };
        QTest::newRow("compressors") << QStringList{u"--compressors"_s, u"classic"_s} << all;
        QTest::newRow("gzip") << QStringList{u"--gzip"_s} << all;
        QTest::newRow("maps") << QStringList{u"--source-maps"_s} << QStringList{u"a.css"_s, u"b.js"_s};
        QTest::newRow("character set") << set(u"selectedEncodingKeyString=big5"_s) << all;
        QTest::newRow("line breaks") << set(u"lineBreakSwitcherKeyString=true"_s)
                                     << QStringList{u"a.css"_s, u"b.js"_s};
        QTest::newRow("names") << set(u"nomungeSwitcherKeyString=true"_s)
                               << QStringList{u"b.js"_s, u"c.html"_s};
        QTest::newRow("comments") << set(u"keepCommentsCheckerKeyString=true"_s) << QStringList{u"c.html"_s};
        QTest::newRow("times") << QStringList{u"--keep-times"_s} << all;
        QTest::newRow("suffix") << QStringList{u"--suffix"_s, u"-x"_s} << all;
        QTest::newRow("what changes no output") << set(u"soundCheckerKeyString=false"_s) << QStringList();
    }

    void settings()
    {
        QFETCH(QStringList, options);
        QFETCH(QStringList, done);
        const ChangedSite site;
        QCOMPARE(site.done(), all);
        if (done.isEmpty() || !options.contains(u"--suffix"_s))
            QCOMPARE(site.done(options), done);
        else
            QVERIFY(site.done(options).contains(u"a.css"_s));
        QCOMPARE(site.done(options), QStringList());
    }

    /// Wherever below its folder it is run; and each file has settings of its own.
    void project()
    {
        const ChangedSite site;
        const auto write = [&site](const QJsonObject &settings) {
            const QJsonObject family{{u"compressorsKeyString"_s, u"modern"_s}};
            const QJsonObject scripts{{u"files"_s, QJsonArray{u"*.js"_s}}, {u"settings"_s, settings}};
            const QJsonObject project{{u"paths"_s, QJsonArray{u"w"_s}},
                                      {u"settings"_s, family},
                                      {u"overrides"_s, QJsonArray{scripts}}};
            site.sandbox.add(u"brevant.json"_s, QJsonDocument(project).toJson());
        };
        const auto run = [&site] { return site.sandbox.runShell(u"cd w && \"$CLI\" --changed"_s).out; };
        write({});
        QVERIFY(run().contains("\n3 files: "));
        QVERIFY(site.sandbox.has(u".brevant-cache.json"_s) && !site.sandbox.has(u"w/.brevant-cache.json"_s));
        QCOMPARE(run(), QByteArray("3 files unchanged.\n"));
        write({{u"nomungeSwitcherKeyString"_s, true}});
        const QByteArray out = run();
        QVERIFY2(out.startsWith("2 files unchanged.\nMinified 1 of 1 items.") && out.contains("/w/b.js -> "),
                 out);
        QCOMPARE(run(), QByteArray("3 files unchanged.\n"));
    }

    void settingsOfTheClassicCompressors()
    {
        ChangedSite site;
        site.options = {u"--changed"_s};
        QCOMPARE(site.done(), all);
        const QStringList semicolons{u"--set"_s, u"preserveSemiSwitcherKeyString=true"_s};
        QCOMPARE(site.done(semicolons), QStringList{u"b.js"_s});
        QCOMPARE(site.done(semicolons), QStringList());
        QCOMPARE(site.done(), QStringList{u"b.js"_s});
    }

    void anotherCompressor()
    {
        const ChangedSite site;
        const QString program = site.sandbox.add(u"esbuild"_s, "#!/bin/sh\nexec cat\n");
        QVERIFY(setMode(program, 0755));
        const QStringList own{u"--set"_s, u"esbuildPathKeyString="_s + program};
        QCOMPARE(site.done(), all);
        QCOMPARE(site.done(own), (QStringList{u"a.css"_s, u"b.js"_s}));
        QVERIFY(replaceFile(program, "#!/bin/sh\nexec cat\n"));
        QVERIFY(setMode(program, 0755));
        QCOMPARE(site.done(own), QStringList());
        QVERIFY(writeFile(program, "#!/bin/sh\nexec tr c d\n"));
        QCOMPARE(site.done(own), (QStringList{u"a.css"_s, u"b.js"_s}));
    }
};

BREVANT_TEST(tst_BrevantCliChanged, QCoreApplication)
#include "tst_BrevantCliChanged.moc"
