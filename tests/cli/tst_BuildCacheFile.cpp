// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CachedSite.h"

#include <QFileInfo>
#include <QTest>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;

/// What stands in the file, and whose it is.
class tst_BuildCacheFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatCounts_data()
    {
        using Change = std::function<QByteArray(const QByteArray &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("isUsed");
        const auto add = [](const char *name, bool isUsed, const Change &change) {
            QTest::newRow(name) << change << isUsed;
        };
        const auto with = [](const QByteArray &before, const QByteArray &after) {
            return [=](QByteArray text) { return text.replace(before, after); };
        };
        add("as it was", true, [](const QByteArray &text) { return text; });
        add("empty", false, [](const QByteArray &) { return QByteArray(); });
        add("zeros", false, [](const QByteArray &text) { return QByteArray(text.size(), '\0'); });
        add("no JSON", false, [](const QByteArray &) { return "a{b:c}"_ba; });
        add("other JSON", false, [](const QByteArray &) { return "[1, 2]\n"_ba; });
        add("deep JSON", false, [](const QByteArray &) { return QByteArray(100'000, '['); });
        add("newer", false, with("\"version\": 1,", "\"version\": 2,"));
        add("cut within a line", false, [](const QByteArray &text) { return text.chopped(20); });
        add("cut behind a line", true, [](const QByteArray &text) { return text.chopped(4); });
        add("a line of nonsense more", true, with("{\n\"", "{\n\"\\u12\xff\": [\"\", \"],\n\""));
        add("a number too large", false, with("13 ", "99999999999999999999 "));
        add("a negative number", false, with("13 ", "-13 "));
        add("nothing but the source", false,
            [](const QByteArray &text) { return text.first(text.indexOf("\", \"6 ")) + "\"]\n}}\n"; });
        add("nothing of the output itself", false, [](const QByteArray &text) {
            const qsizetype output = text.indexOf("\", \"6 ");
            return text.first(output) + text.sliced(text.indexOf("\", \"gz "));
        });
    }

    void whatCounts()
    {
        QFETCH(std::function<QByteArray(const QByteArray &)>, change);
        const CachedSite site;
        QVERIFY(writeFile(site.path(), change(readFile(site.path()))));
        QTEST(site.isUpToDate(), "isUsed");
        site.make();
        QVERIFY(site.isUpToDate());
        QCOMPARE(site.names(), QStringList{u"a.min.css"_s});
    }

    void tooLarge()
    {
        const CachedSite site;
        QCOMPARE(::truncate(QFile::encodeName(site.path()).constData(), 1'000'000'000'000), 0);
        QVERIFY(!site.isUpToDate());
        QVERIFY(
            BuildCache(site.folder()).error().endsWith(u".brevant-cache.json is not used: it is too large"));
        site.make();
        QVERIFY(site.isUpToDate());
    }

    void links()
    {
        const CachedSite site;
        const QByteArray text = readFile(site.path());
        QVERIFY(QFile::rename(site.path(), site.path(u"other"_s)));
        QVERIFY(makeLink(u"other"_s, site.path()));
        QVERIFY(BuildCache(site.folder()).error().endsWith(u"is not used: it is a link"));
        QVERIFY(!site.isUpToDate());
        site.make();
        QCOMPARE(readFile(site.path(u"other"_s)), text);
        QVERIFY(QFileInfo(site.path()).isSymLink());
    }

    void noFiles()
    {
        const CachedSite site;
        QVERIFY(QFile::remove(site.path()));
        QCOMPARE(::mkfifo(QFile::encodeName(site.path()).constData(), 0600), 0);
        QVERIFY(BuildCache(site.folder()).error().endsWith(u"is not used: it is no file"));
        site.make();
        QVERIFY(!site.isUpToDate());
        QVERIFY(S_ISFIFO(statusOf(site.path()).st_mode));
    }

    void ofAnotherUser()
    {
        const CachedSite site;
        if (::chown(QFile::encodeName(site.path()).constData(), 1, 1) != 0)
            QSKIP("only root can give files away");
        const QByteArray text = readFile(site.path());
        QVERIFY(BuildCache(site.folder()).error().endsWith(u"is not used: it belongs to another user"));
        site.make();
        QVERIFY(!site.isUpToDate());
        QCOMPARE(readFile(site.path()), text);
    }

    void readOnlyFolder()
    {
        const OrdinaryUser user;
        if (!user.isReady())
            QSKIP("cannot become an ordinary user here");
        const CachedSite site;
        BuildCache cache(site.folder());
        const MadeOutput other{site.source, site.output, {}, "another"};
        cache.begin(other);
        cache.made(other);
        QVERIFY(setMode(site.folder(), 0500));
        const QString error = cache.save();
        QVERIFY(setMode(site.folder(), 0700));
        QCOMPARE(error, site.path() + " cannot be written: Permission denied"_L1);
        QVERIFY(site.isUpToDate()); // as it was
    }
};

BREVANT_TEST(tst_BuildCacheFile, QCoreApplication)
#include "tst_BuildCacheFile.moc"
