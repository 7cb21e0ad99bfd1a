// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CachedSite.h"

#include <QDir>
#include <QJsonArray>
#include <QTest>

#include <functional>

using namespace brevant;
using namespace brevant::test;

class tst_BuildCache final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsKnownAtFirst()
    {
        const QTemporaryDir folder;
        BuildCache cache(folder.path());
        QCOMPARE(cache.error(), QString());
        QVERIFY(!cache.isUpToDate({u"/a.css"_s, u"/a.min.css"_s, {}, "recipe"}));
        QCOMPARE(cache.save(), QString());
        QVERIFY(!QFile::exists(folder.filePath(BuildCache::fileName)));
    }

    void whatWasMadeIsKnown()
    {
        const CachedSite site;
        QVERIFY(site.isUpToDate());
        QVERIFY(site.isUpToDate());
        QCOMPARE(modeOf(site.path()), mode_t(0600));
    }

    void theFile()
    {
        const CachedSite site(u"\u00e4 \"b\", \\ \n"_s);
        QVERIFY(site.isUpToDate());
        const QJsonObject whole = QJsonDocument::fromJson(readFile(site.path())).object();
        QCOMPARE(whole.keys(), (QStringList{u"files"_s, u"version"_s}));
        const QJsonObject outputs = whole[u"files"].toObject();
        QCOMPARE(outputs.keys(), QStringList{u"\u00e4 \"b\", \\ \n.min.css"_s});
        const QJsonArray made = outputs.begin().value().toArray();
        QCOMPARE(made.size(), 5);
        QCOMPARE(made[0].toString(), u"\u00e4 \"b\", \\ \n.css"_s);
        QCOMPARE(made[1].toString(), u"recipe"_s);
        QVERIFY2(made[2].toString().startsWith(u"13 "), qPrintable(made[2].toString()));
        QVERIFY2(made[3].toString().startsWith(u"6 "), qPrintable(made[3].toString()));
        QVERIFY2(made[4].toString().startsWith(u"gz 6 "), qPrintable(made[4].toString()));
    }

    void changes_data()
    {
        using Change = std::function<bool(const CachedSite &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("isUpToDate");
        const auto add = [](const char *name, bool isUpToDate, const Change &change) {
            QTest::newRow(name) << change << isUpToDate;
        };
        add("source touched", true,
            [](const CachedSite &site) { return CachedSite::makeOlder(site.source, 1'100'000'000); });
        add("source the same in another file", true,
            [](const CachedSite &site) { return replaceFile(site.source, sourceText); });
        add("output the same in another file, older than the source", true, [](const CachedSite &site) {
            return replaceFile(site.output, outputText) && CachedSite::makeOlder(site.output, 1000);
        });
        add("source of another size", false,
            [](const CachedSite &site) { return writeFile(site.source, "a { }"); });
        add("source of the same size", false,
            [](const CachedSite &site) { return writeFile(site.source, "a { b : d ; }"); });
        add("source of the same size and time of change", false, [](const CachedSite &site) {
            return writeFile(site.source, "a { b : d ; }") && CachedSite::makeOlder(site.source);
        });
        add("no source", false, [](const CachedSite &site) { return QFile::remove(site.source); });
        add("output edited", false, [](const CachedSite &site) { return writeFile(site.output, "a{b:d}"); });
        add("no output", false, [](const CachedSite &site) { return QFile::remove(site.output); });
        add("a folder in the place of the output", false,
            [](const CachedSite &site) { return QFile::remove(site.output) && QDir().mkdir(site.output); });
        add("copy edited", false,
            [](const CachedSite &site) { return writeFile(site.output + ".gz"_L1, "pocked"); });
        add("no copy", false, [](const CachedSite &site) { return QFile::remove(site.output + ".gz"_L1); });
        add("no record", false, [](const CachedSite &site) { return QFile::remove(site.path()); });
    }

    void changes()
    {
        QFETCH(std::function<bool(const CachedSite &)>, change);
        QFETCH(bool, isUpToDate);
        const CachedSite site;
        QVERIFY(change(site));
        QCOMPARE(site.isUpToDate(), isUpToDate);
        if (!isUpToDate && QFile::exists(site.source) && !QFileInfo(site.output).isDir()) {
            site.make();
            QVERIFY(site.isUpToDate());
        }
    }

    void otherWishes()
    {
        const CachedSite site;
        BuildCache cache(site.folder());
        MadeOutput other = site.wanted();
        other.recipe = "another";
        QVERIFY(!cache.isUpToDate(other));
        other = site.wanted();
        other.source = site.path(u"b.css"_s);
        QVERIFY(writeFile(other.source, sourceText));
        QVERIFY(!cache.isUpToDate(other));
        other = site.wanted();
        other.output = site.path(u"b.min.css"_s);
        QVERIFY(writeFile(other.output, outputText));
        QVERIFY(!cache.isUpToDate(other));
        QVERIFY(cache.isUpToDate(site.wanted()));
    }

    /// What changes while the times stand still must be read.
    void timesThatTellNothing()
    {
        const CachedSite site;
        const QByteArray text = readFile(site.path());
        const QJsonArray made =
            QJsonDocument::fromJson(text).object()[u"files"].toObject().begin().value().toArray();
        // All have just been changed: the source by setting its times.
        for (int file = 2; file < 5; ++file)
            QVERIFY2(made[file].toString().contains(u" 0 0 "), qPrintable(made[file].toString()));
        settle(site);
        const QByteArray settled = readFile(site.path());
        QVERIFY(site.isUpToDate());
        QCOMPARE(readFile(site.path()), settled);
    }

    /// The same inode, size and times stand for the same content: nothing is read then.
    void nothingIsReadWithoutNeed()
    {
        const CachedSite site;
        settle(site);
        const QByteArray hash = BuildCache(site.folder()).hashOf(site.source);
        const QByteArray text = readFile(site.path());
        QVERIFY(text.contains(hash));
        QVERIFY(writeFile(site.path(), QByteArray(text).replace(hash, "x")));
        QVERIFY(site.isUpToDate());
        QVERIFY(CachedSite::makeOlder(site.source));
        QVERIFY(!site.isUpToDate());
    }

    void sourceChangedMeanwhile()
    {
        const CachedSite site;
        BuildCache cache(site.folder());
        cache.begin(site.wanted());
        QVERIFY(writeFile(site.source, "a { b : d ; }"));
        QVERIFY(writeFile(site.output, "a{b:d}"));
        cache.made(site.wanted());
        QCOMPARE(cache.save(), QString());
        QVERIFY(!site.isUpToDate());
    }

    void outputChangedBeforeItIsRecorded()
    {
        const CachedSite site;
        BuildCache cache(site.folder());
        cache.begin(site.wanted());
        QVERIFY(writeFile(site.output, "a{b:e}"));
        cache.made(site.wanted());
        QVERIFY(replaceFile(site.output, "a{b:f}"));
        QCOMPARE(cache.save(), QString());
        QVERIFY(!site.isUpToDate());
    }

    void whatWasNotMade()
    {
        const CachedSite site;
        QVERIFY(writeFile(site.source, "a { b : d ; }"));
        BuildCache cache(site.folder());
        cache.begin(site.wanted());
        QCOMPARE(cache.save(), QString());
        QVERIFY(!site.isUpToDate());
        cache.begin(site.wanted());
        MadeOutput other = site.wanted();
        other.recipe = "changed meanwhile";
        cache.made(other);
        QCOMPARE(cache.save(), QString());
        QVERIFY(!site.isUpToDate() && !BuildCache(site.folder()).isUpToDate(other));
        other = {site.source, site.path(u"b.min.css"_s), {}, "r"};
        cache.begin(other);
        cache.made(other);
        QCOMPARE(cache.save(), QString());
        QCOMPARE(site.names(), QStringList{u"a.min.css"_s});
    }

    void twoProcesses()
    {
        const CachedSite site;
        BuildCache one(site.folder());
        BuildCache other(site.folder());
        const auto record = [&](BuildCache &cache, const QString &name) {
            const MadeOutput wanted{site.source, site.path(name), {}, "r"};
            cache.begin(wanted);
            QVERIFY(writeFile(wanted.output, "x"));
            cache.made(wanted);
        };
        record(one, u"1.css"_s);
        record(other, u"2.css"_s);
        QCOMPARE(one.save(), QString());
        QCOMPARE(other.save(), QString());
        QCOMPARE(site.names(), (QStringList{u"1.css"_s, u"2.css"_s, u"a.min.css"_s}));
        record(one, u"3.css"_s); // after a first time
        QCOMPARE(one.save(), QString());
        QCOMPARE(site.names(), (QStringList{u"1.css"_s, u"2.css"_s, u"3.css"_s, u"a.min.css"_s}));
        for (const QString &name : {u"1.css"_s, u"2.css"_s, u"3.css"_s})
            QVERIFY(one.isUpToDate({site.source, site.path(name), {}, "r"}));
        QVERIFY(QFile::remove(site.path(u"2.css"_s)));
        record(other, u"4.css"_s);
        QCOMPARE(other.save(), QString());
        QCOMPARE(site.names(), (QStringList{u"1.css"_s, u"3.css"_s, u"4.css"_s, u"a.min.css"_s}));
    }

    void movedTogether()
    {
        const QTemporaryDir folder;
        for (const QString &name : {u"here/src"_s, u"here/dist"_s})
            QVERIFY(QDir(folder.path()).mkpath(name));
        const auto wantedIn = [&](const QString &place) {
            return MadeOutput{
                folder.filePath(place + u"/src/a.css"_s), folder.filePath(place + u"/dist/a.css"_s), {}, "r"};
        };
        BuildCache cache(folder.filePath(u"here/dist"_s));
        QVERIFY(writeFile(wantedIn(u"here"_s).source, sourceText));
        cache.begin(wantedIn(u"here"_s));
        QVERIFY(writeFile(wantedIn(u"here"_s).output, outputText));
        cache.made(wantedIn(u"here"_s));
        QCOMPARE(cache.save(), QString());
        QVERIFY(readFile(folder.filePath(u"here/dist/.brevant-cache.json"_s)).contains("[\"../src/a.css\""));
        QVERIFY(QDir(folder.path()).rename(u"here"_s, u"there"_s));
        QVERIFY(BuildCache(folder.filePath(u"there/dist"_s)).isUpToDate(wantedIn(u"there"_s)));
    }

    void spellings()
    {
        const CachedSite site;
        MadeOutput wanted = site.wanted();
        wanted.source = site.path(u"b/../a.css"_s);
        wanted.output = site.folder() + "//./a.min.css"_L1;
        QVERIFY(QDir().mkdir(site.path(u"b"_s)));
        QVERIFY(BuildCache(site.folder()).isUpToDate(wanted));
        // Where that leads elsewhere, the content is another.
        QVERIFY(QDir().rmdir(site.path(u"b"_s)));
        const QTemporaryDir other;
        QVERIFY(QDir(other.path()).mkdir(u"d"_s));
        QVERIFY(makeLink(other.filePath(u"d"_s), site.path(u"b"_s)));
        QVERIFY(!BuildCache(site.folder()).isUpToDate(wanted));
        QVERIFY(writeFile(other.filePath(u"a.css"_s), "a { b : d ; }"));
        QVERIFY(!BuildCache(site.folder()).isUpToDate(wanted));
    }

    void ownFiles()
    {
        const CachedSite site;
        const BuildCache cache(site.folder());
        const QString copy = site.output + ".gz"_L1;
        QCOMPARE(cache.ownFiles(site.source, site.output), (QStringList{site.output, copy}));
        QCOMPARE(cache.ownFiles(site.output, site.output), QStringList());
        QCOMPARE(cache.ownFiles(site.source, site.source), QStringList());
        QVERIFY(QFile::remove(site.source));
        QCOMPARE(cache.ownFiles(site.source, site.output), (QStringList{site.output, copy}));
        QVERIFY(writeFile(site.output, "a{b:d}"));
        QCOMPARE(cache.ownFiles(site.source, site.output), QStringList{copy});
    }

    void hashes()
    {
        const CachedSite site;
        BuildCache cache(site.folder());
        QVERIFY(writeFile(site.path(u"tool"_s), "#!/bin/sh"));
        const QByteArray tool = cache.hashOf(site.path(u"tool"_s));
        QCOMPARE(tool.size(), 43);
        const QByteArray hash = cache.hashOf(site.source);
        QCOMPARE(cache.hashOf(site.path(u"none"_s)), QByteArray());
        QCOMPARE(cache.hashOf(site.folder()), QByteArray());
        QCOMPARE(cache.save(), QString());
        QVERIFY(readFile(site.path()).contains(tool));
        QCOMPARE(BuildCache(site.folder()).hashOf(site.source), hash);
        QVERIFY(cache.hashOf(site.output) != hash);
        QVERIFY(writeFile(site.source, "a { b : d ; }"));
        QVERIFY(BuildCache(site.folder()).hashOf(site.source) != hash);
    }

private:
    /// Waits until the times are old enough to tell something.
    static void settle(const CachedSite &site)
    {
        const auto isSettled = [&site] {
            BuildCache cache(site.folder());
            return cache.isUpToDate(site.wanted()) && cache.save().isEmpty() &&
                   !readFile(site.path()).contains(" 0 0 ");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isSettled(), 20'000);
    }
};

BREVANT_TEST(tst_BuildCache, QCoreApplication)
#include "tst_BuildCache.moc"
