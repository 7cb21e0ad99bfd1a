// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FolderWalk.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>

#include <sys/inotify.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// The same walk in its simplest form, for trees that a path can name.
QStringList plainWalk(const QString &top)
{
    const std::filesystem::path folder(top.toStdString());
    QStringList paths;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder))
        paths << QString::fromStdString(entry.path().lexically_relative(folder).string());
    return paths;
}

/// Makes folders named `name` inside each other, as deep as asked, then a file in the deepest.
bool makeDeep(const QString &top, const char *name, int depth, const char *file)
{
    int folder = ::open(QFile::encodeName(top).constData(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth && folder >= 0; ++i) {
        const int next =
            ::mkdirat(folder, name, 0700) == 0 ? ::openat(folder, name, O_RDONLY | O_DIRECTORY) : -1;
        ::close(folder);
        folder = next;
    }
    if (folder < 0)
        return false;
    const int descriptor = ::openat(folder, file, O_CREAT | O_WRONLY, 0600);
    ::close(folder);
    return descriptor >= 0 && ::close(descriptor) == 0;
}

} // namespace

class tst_FolderWalk final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void yieldsEverything()
    {
        make({u"b.css"_s, u"sub/a.js"_s, u"sub/deep/.hidden.css"_s, u".git/c.js"_s, u".profile"_s,
              u"notes.txt"_s});
        QVERIFY(QDir(m_folder->path()).mkpath(u"empty/folder"_s));
        const QString expected =
            u".git .git/c.js .profile b.css empty empty/folder notes.txt sub sub/a.js sub/deep "
            "sub/deep/.hidden.css"_s;
        QCOMPARE(walkedSorted().join(u' '), expected);
    }

    void orderIsThatOfTheFileSystem()
    {
        for (int i = 0; i < 60; ++i)
            make({u"%1.css"_s.arg((i * 37) % 60), u"f%1/g%2/x.js"_s.arg(i % 7).arg(i)});
        const QStringList expected = plainWalk(m_folder->path());
        QVERIFY(expected.size() > 180);
        QStringList sorted = expected;
        sorted.sort();
        if (sorted == expected)
            qWarning("this file system happens to sort, so nothing is shown here");
        QCOMPARE(walked(m_folder->path()), expected);
    }

    void folderBeforeItsContents()
    {
        make({u"a/b/c/d.css"_s});
        const QStringList expected{u"a"_s, u"a/b"_s, u"a/b/c"_s, u"a/b/c/d.css"_s};
        QCOMPARE(walked(m_folder->path()), expected);
        QCOMPARE(walked(m_folder->path() + u'/'), expected);
    }

    void linksToFolders()
    {
        make({u"sub/a.css"_s});
        QVERIFY(makeLink(u"sub"_s, at(u"theme.css"_s)));
        QVERIFY(makeLink(u".."_s, at(u"sub/loop"_s)));
        QVERIFY(makeLink(m_folder->path(), at(u"sub/loop2"_s)));
        QVERIFY(makeLink(u"self"_s, at(u"self"_s)));
        QVERIFY(makeLink(u"sub/a.css"_s, at(u"file.css"_s)));
        QVERIFY(makeLink(u"nowhere"_s, at(u"dangling.css"_s)));
        const QStringList expected{u"dangling.css"_s, u"file.css"_s, u"self"_s,      u"sub"_s,
                                   u"sub/a.css"_s,    u"sub/loop"_s, u"sub/loop2"_s, u"theme.css"_s};
        QCOMPARE(walkedSorted(), expected);
    }

    void topLinkIsFollowed()
    {
        make({u"sub/a.css"_s});
        QVERIFY(makeLink(u"sub"_s, at(u"link"_s)));
        QCOMPARE(walked(at(u"link"_s)), QStringList{u"a.css"_s});
        QCOMPARE(walked(at(u"link/"_s)), QStringList{u"a.css"_s});
    }

    void nothingBelow_data()
    {
        QTest::addColumn<QString>("top");
        QTest::newRow("plain file") << u"%1/a.css"_s;
        QTest::newRow("plain file, as a folder") << u"%1/a.css/"_s;
        QTest::newRow("missing") << u"%1/none"_s;
        QTest::newRow("below a file") << u"%1/a.css/b"_s;
        QTest::newRow("empty folder") << u"%1/empty"_s;
        QTest::newRow("dangling link") << u"%1/dangling"_s;
        QTest::newRow("link to itself") << u"%1/self"_s;
        QTest::newRow("too long") << u"%1/"_s + QString(5000, u'x');
        QTest::newRow("empty path") << QString();
    }

    void nothingBelow()
    {
        QFETCH(QString, top);
        make({u"a.css"_s});
        QVERIFY(QDir().mkdir(at(u"empty"_s)));
        QVERIFY(makeLink(u"nowhere"_s, at(u"dangling"_s)));
        QVERIFY(makeLink(u"self"_s, at(u"self"_s)));
        QCOMPARE(walked(top.startsWith(u'%') ? top.arg(m_folder->path()) : top), QStringList());
    }

    void pipeIsNotOpened()
    {
        const QString pipe = at(u"x.css"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        // Times of access do not change when a pipe is opened, so it is watched for that.
        const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        QVERIFY(::inotify_add_watch(watch, QFile::encodeName(pipe).constData(), IN_OPEN) >= 0);
        QCOMPARE(walked(m_folder->path()), QStringList{u"x.css"_s});
        QCOMPARE(walked(pipe), QStringList()); // as the top itself it does not block
        std::array<char, 4096> events{};
        const ssize_t length = ::read(watch, events.data(), events.size());
        ::close(watch);
        QCOMPARE(length, ssize_t{-1});
    }

    void oddNames()
    {
        QStringList names{u"new\nline.css"_s,
                          u"qu'o\"te.css"_s,
                          u"\u00fc.css"_s,
                          u"u\u0308.css"_s,
                          u" blank .css"_s,
                          u"back\\slash.css"_s,
                          u"-dash.css"_s,
                          u"...css"_s,
                          u"\u65e5\u672c.css"_s,
                          u"\U0001F600.js"_s,
                          u"\uFEFF\uFEFFmark\uFEFF.js"_s,
                          QString(251, u'n') + ".css"_L1};
        for (const QString &name : names)
            QVERIFY(writeFile(at(name), ""));
        names.sort();
        QCOMPARE(walkedSorted(), names);
    }

    void unreadableFolders()
    {
        m_folder.reset();
        const OrdinaryUser user;
        m_folder = user.makeFolder();
        if (!m_folder)
            QSKIP("no ordinary user can have a folder here");
        make({u"locked/a.css"_s, u"listed/sub/b.css"_s, u"open/c.css"_s});
        QVERIFY(setMode(at(u"locked"_s), 0));
        QVERIFY(setMode(at(u"listed"_s), 0400)); // its names can be read, and no more
        const QStringList paths = walkedSorted();
        const QStringList locked = walked(at(u"locked"_s));
        QStringList told;
        for (const char *top : {"", "locked", "open/c.css", "missing"}) {
            walkFolder(
                at(QLatin1StringView(top)), [](const QString &) {},
                [&](const QString &path, int error) { told << path + u' ' + QString::number(error); });
        }
        told.sort();
        QVERIFY(setMode(at(u"locked"_s), 0700));
        QVERIFY(setMode(at(u"listed"_s), 0700));
        m_folder.reset();
        const QStringList expected{u"listed"_s, u"listed/sub"_s, u"locked"_s, u"open"_s, u"open/c.css"_s};
        QCOMPARE(paths, expected);
        QCOMPARE(locked, QStringList());
        const QString denied = u" %1"_s.arg(EACCES);
        QCOMPARE(told, QStringList({denied, u"listed/sub"_s + denied, u"locked"_s + denied}));
    }

    void vanishingEntries()
    {
        for (int i = 0; i < 10; ++i)
            make({u"f%1/a.css"_s.arg(i), u"f%1/sub/b.css"_s.arg(i)});
        QStringList top;
        walkFolder(m_folder->path(), [&](const QString &path) {
            if (path.contains(u'/'))
                QFAIL("a folder that is gone has contents");
            top << path;
            QVERIFY(QDir(at(path)).removeRecursively());
        });
        QCOMPARE(top.size(), 10);
    }

    void folderBecomesALink()
    {
        make({u"walked/sub/a.css"_s, u"elsewhere/secret.css"_s});
        QStringList paths;
        walkFolder(at(u"walked"_s), [&](const QString &path) {
            paths << path;
            if (path == "sub"_L1) {
                QVERIFY(QDir(at(u"walked/sub"_s)).removeRecursively());
                QVERIFY(makeLink(at(u"elsewhere"_s), at(u"walked/sub"_s)));
            }
        });
        QCOMPARE(paths, QStringList{u"sub"_s});
    }

    void entriesAddedMeanwhile()
    {
        make({u"a.css"_s});
        int visits = 0;
        walkFolder(m_folder->path(), [&](const QString &) {
            ++visits;
            QVERIFY(writeFile(at(u"new%1.css"_s.arg(visits)), ""));
        });
        QVERIFY(visits < 100); // it comes to an end
    }

    void deeperThanAnyPath()
    {
        constexpr int depth = 3000;
        QVERIFY(makeDeep(m_folder->path(), "ab", depth, "last.css"));
        make({u"zz/beside.css"_s, u"aa/beside.css"_s}); // one of them comes after the way back
        QStringList paths = walked(m_folder->path());
        std::error_code error; // QTemporaryDir cannot name what is that deep
        std::filesystem::remove_all(std::filesystem::path(at(u"ab"_s).toStdString()), error);
        QVERIFY(!error);

        QCOMPARE(paths.size(), depth + 5);
        for (const char *name : {"zz", "zz/beside.css", "aa", "aa/beside.css"})
            QVERIFY(paths.removeOne(QString::fromLatin1(name)));
        const QString deepest = u"ab/"_s.repeated(depth) + "last.css"_L1;
        QVERIFY(deepest.size() > PATH_MAX);
        QCOMPARE(paths.last(), deepest);
        for (int i = 0; i < depth; ++i)
            QCOMPARE(paths[i], deepest.left(3 * i + 2));
    }

    void deepBranchVanishes_data()
    {
        QTest::addColumn<bool>("moved");
        QTest::newRow("removed") << false;
        QTest::newRow("moved") << true;
    }

    void deepBranchVanishes()
    {
        QFETCH(bool, moved);
        // Deeper than the folders that are kept open, so that the way back leads through what is gone.
        constexpr int depth = 100;
        for (const int left : {0, 1, 20, 60, 98}) {
            init();
            // So many neighbours, older and younger, that some of them are met on the way back.
            QStringList neighbours;
            for (int i = 0; i < 10; ++i)
                neighbours << QString::number(i) << u"%1/x.css"_s.arg(i);
            make(neighbours.mid(0, 10).filter(u".css"_s));
            QVERIFY(makeDeep(m_folder->path(), "ab", depth, "last.css"));
            make(neighbours.mid(10).filter(u".css"_s));
            for (int i = 1; i <= left; ++i) {
                for (int file = 0; file < 6; ++file)
                    neighbours << u"ab/"_s.repeated(i) + u"%1.css"_s.arg(file);
            }
            make(neighbours.mid(20));
            const QTemporaryDir elsewhere;
            const QString branch = at(u"ab/"_s.repeated(left) + "ab"_L1);
            QStringList paths;
            walkFolder(m_folder->path(), [&](const QString &path) {
                paths << path;
                if (path.endsWith("last.css"_L1)) {
                    if (moved)
                        QVERIFY(QDir().rename(branch, elsewhere.filePath(u"ab"_s)));
                    else
                        QVERIFY(QDir(branch).removeRecursively());
                }
            });
            for (const QString &neighbour : neighbours)
                QVERIFY2(paths.contains(neighbour), qPrintable(neighbour));
            QCOMPARE(paths.size(), neighbours.size() + depth + 1);
        }
    }

    void manyFoldersSideBySide()
    {
        // Far more than may be open at once, and none is left open.
        for (int i = 0; i < 200; ++i)
            QVERIFY(QDir().mkdir(at(QString::number(i))));
        QVERIFY(makeDeep(at(u"0"_s), "d", 80, "x.css"));
        const auto openCount = [] { return QDir(u"/proc/self/fd"_s).count(); };
        const auto before = openCount();
        auto most = before;
        walkFolder(m_folder->path(), [&](const QString &) { most = std::max(most, openCount()); });
        QCOMPARE(openCount(), before);
        QVERIFY(most - before <= 40);
    }

private:
    [[nodiscard]] QString at(const QString &name) const { return m_folder->filePath(name); }
    void make(const QStringList &files) const
    {
        for (const QString &file : files) {
            QVERIFY(QDir().mkpath(QFileInfo(at(file)).path()));
            QVERIFY(writeFile(at(file), ""));
        }
    }
    [[nodiscard]] static QStringList walked(const QString &top)
    {
        QStringList paths;
        walkFolder(top, [&paths](const QString &path) { paths << path; });
        return paths;
    }
    [[nodiscard]] QStringList walkedSorted() const
    {
        QStringList paths = walked(m_folder->path());
        paths.sort();
        return paths;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

BREVANT_TEST(tst_FolderWalk, QCoreApplication)
#include "tst_FolderWalk.moc"
