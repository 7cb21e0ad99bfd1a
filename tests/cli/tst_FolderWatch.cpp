// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FolderWatch.h"

#include "cli/ChangedPaths.h"
#include "cli/OwnOutputs.h"
#include "files/RawBytes.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTest>

#include <algorithm>

using namespace brevant;
using namespace brevant::test;

/// What --watch is made of: changes in folders, sets of changed paths, and outputs of its own.
class tst_FolderWatch final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesAndFolders()
    {
        const Fixture fixture;
        QVERIFY(writeFile(fixture.path(u"a.css"_s), "a"));
        FolderWatch watch;
        watch.add(fixture.path());
        watch.add(fixture.path());
        QCOMPARE(watch.error(), QString());
        QCOMPARE(watch.count(), 1);
        QCOMPARE(eventsOf(watch), QStringList());
        QVERIFY(writeFile(fixture.path(u"a.css"_s), "b"));
        QVERIFY(replaceFile(fixture.path(u"a.css"_s), "c"));
        QVERIFY(QFile::remove(fixture.path(u"a.css"_s)));
        QVERIFY(QDir(fixture.path()).mkdir(u"sub"_s));
        QCOMPARE(eventsOf(watch), QStringList({fixture.path(u"a.css"_s), fixture.path(u"a.css.new"_s),
                                               fixture.path(u"sub"_s) + u'/'}));
        QVERIFY(writeFile(fixture.path(u"sub/b.css"_s), "b")); // not watched yet
        QCOMPARE(eventsOf(watch), QStringList());
    }

    void fileIsToldOfOnceItIsWritten()
    {
        const Fixture fixture;
        FolderWatch watch;
        watch.add(fixture.path());
        QFile file(fixture.path(u"a.css"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(eventsOf(watch), QStringList());
        file.close();
        QCOMPARE(eventsOf(watch), QStringList(file.fileName()));
        QVERIFY(makeHardLink(file.fileName(), fixture.path(u"b.css"_s)));
        QVERIFY(makeLink(u"a.css"_s, fixture.path(u"c.css"_s)));
        QCOMPARE(eventsOf(watch), QStringList({fixture.path(u"b.css"_s), fixture.path(u"c.css"_s)}));
    }

    void foldersThatGo()
    {
        const Fixture fixture;
        QVERIFY(QDir(fixture.path()).mkpath(u"one/two/three"_s));
        FolderWatch watch;
        for (const QString &name : {u"one"_s, u"one/two"_s, u"one/two/three"_s})
            watch.add(fixture.path(name));
        QVERIFY(QDir(fixture.path()).rename(u"one/two"_s, u"one/other"_s));
        const QStringList renamed{fixture.path(u"one/other"_s) + u'/', fixture.path(u"one/two"_s) + u'/'};
        QCOMPARE(eventsOf(watch), renamed);
        QCOMPARE(watch.count(), 1);
        QVERIFY(writeFile(fixture.path(u"one/other/three/a.css"_s), "a"));
        QCOMPARE(eventsOf(watch), QStringList());
        watch.add(fixture.path(u"one/other"_s));
        QVERIFY(writeFile(fixture.path(u"one/other/a.css"_s), "a"));
        QCOMPARE(eventsOf(watch), QStringList(fixture.path(u"one/other/a.css"_s)));
        QVERIFY(QDir(fixture.path(u"one"_s)).removeRecursively());
        QVERIFY(eventsOf(watch).contains(fixture.path(u"one"_s) + u'/'));
        QCOMPARE(watch.count(), 0);
    }

    void whatCannotBeWatched()
    {
        const Fixture fixture;
        FolderWatch watch;
        watch.add(fixture.path(u"gone"_s));
        QCOMPARE(watch.count(), 0);
        QVERIFY(writeFile(fixture.path(u"a.css"_s), "a"));
        watch.add(fixture.path(u"a.css"_s)); // that is, its folder
        QCOMPARE(watch.count(), 1);
        QCOMPARE(watch.error(), QString());
        QVERIFY(watch.watches(fixture.path()));
        QVERIFY(watch.watches(fixture.path() + u"/."_s));
        QVERIFY(!watch.watches(QDir(fixture.path()).filePath(u".."_s)));
    }

    void namesThatAreNotUtf8()
    {
        const Fixture fixture;
        const QString folder = fixture.path() + u'/' + RawBytes::decoded("f\xE9");
        QCOMPARE(::mkdir(RawBytes::encoded(folder).constData(), 0700), 0);
        FolderWatch watch;
        watch.add(folder);
        const QString file = folder + u'/' + RawBytes::decoded("\xE9.css");
        const int opened = ::open(RawBytes::encoded(file).constData(), O_CREAT | O_WRONLY, 0600);
        QVERIFY(opened >= 0);
        ::close(opened);
        QCOMPARE(eventsOf(watch), QStringList(file));
        QCOMPARE(::unlink(RawBytes::encoded(file).constData()), 0);
        QCOMPARE(::rmdir(RawBytes::encoded(folder).constData()), 0);
    }

    void changedPaths()
    {
        ChangedPaths changed;
        QVERIFY(changed.isEmpty());
        for (const QString &path : {u"/w/a.css"_s, u"/w/sub/b.css"_s, u"/w/new"_s, u"/w/new/x/c.css"_s})
            changed.add(path);
        QVERIFY(changed.hold(u"/w/a.css"_s) && changed.hold(u"/w/new/y/z"_s));
        QVERIFY(!changed.hold(u"/w"_s) && !changed.hold(u"/w/newer"_s) && !changed.hold(u"/w/sub"_s));
        const auto below = [&](const QString &top) {
            QStringList folders = changed.foldersBelow(top);
            folders.sort();
            return folders;
        };
        QCOMPARE(below(u"/w"_s), QStringList({u"/w"_s, u"/w/sub"_s}));
        QCOMPARE(below(u"/w//"_s), QStringList({u"/w//"_s, u"/w/sub"_s}));
        QCOMPARE(below(u"/w/sub"_s), QStringList(u"/w/sub"_s));
        QCOMPARE(below(u"/w/new/x"_s), QStringList(u"/w/new/x"_s));
        QCOMPARE(below(u"/w/a.css"_s), QStringList(u"/w/a.css"_s));
        QCOMPARE(below(u"/wide"_s), QStringList());
    }

    void ownOutputs()
    {
        const Fixture fixture;
        const QString source = fixture.path(u"a.css"_s);
        const QString output = fixture.path(u"a.min.css"_s);
        QVERIFY(writeFile(source, "a"));
        OwnOutputs own;
        own.add(output, source); // which is not there
        QVERIFY(!own.hold(output));
        QVERIFY(writeFile(output, "a"));
        own.add(output, source);
        QVERIFY(own.hold(output) && own.hold(output, source));
        QVERIFY(!own.hold(output, fixture.path(u"b.css"_s)) && !own.hold(source));
        ChangedPaths changed;
        changed.add(fixture.path());
        QVERIFY(own.takeOrphans(changed).empty());
        QVERIFY(QFile::remove(source));
        ChangedPaths others;
        others.add(fixture.path(u"b.css"_s));
        QVERIFY(own.takeOrphans(others).empty());
        const auto orphans = own.takeOrphans(changed);
        QCOMPARE(orphans.size(), 1U);
        QCOMPARE(orphans[0].file, output);
        QCOMPARE(orphans[0].source, source);
        QVERIFY(!own.hold(output));

        own.add(output, source);
        QVERIFY(replaceFile(output, "a"));
        QVERIFY(!own.hold(output));
        QVERIFY(own.takeOrphans(changed).empty());
    }

private:
    class Fixture {
    public:
        [[nodiscard]] QString path(const QString &name = QString()) const
        {
            const QString top = QDir(m_folder.path()).canonicalPath();
            return name.isEmpty() ? top : top + u'/' + name;
        }

    private:
        QTemporaryDir m_folder;
    };

    /// The paths that there is something new of, each once and in order; folders with "/" behind them.
    static QStringList eventsOf(FolderWatch &watch)
    {
        QStringList paths;
        if (!watch.read([&](const FolderEvent &event) {
                paths.append(event.isFolder ? event.path + u'/' : event.path);
            }))
            return {u"too many"_s};
        paths.sort();
        paths.removeDuplicates();
        return paths;
    }
};

BREVANT_TEST(tst_FolderWatch, QCoreApplication)
#include "tst_FolderWatch.moc"
