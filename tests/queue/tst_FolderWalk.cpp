// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FolderWalk.h"
#include "tests/TestClass.h"
#include "tests/settings/TestFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>

#include <dirent.h>
#include <sys/inotify.h>

using namespace brevant;
using namespace brevant::test;

class tst_FolderWalk final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void yieldsEverything();
    void orderIsThatOfTheFileSystem();
    void folderBeforeItsContents();
    void linksToFolders();
    void topLinkIsFollowed();
    void nothingBelow_data();
    void nothingBelow();
    void pipeIsNotOpened();
    void oddNames();
    void unreadableFolders();
    void vanishingEntries();
    void folderBecomesALink();
    void entriesAddedMeanwhile();
    void deeperThanAnyPath();
    void deepBranchVanishes_data();
    void deepBranchVanishes();
    void manyFoldersSideBySide();

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

namespace {

/// The same walk in its simplest form, for trees that a path can name.
void plainWalk(const QString &folder, const QString &prefix, QStringList &paths)
{
    DIR *open = ::opendir(QFile::encodeName(folder).constData());
    if (open == nullptr)
        return;
    while (const dirent *entry = ::readdir(open)) {
        const QString name = QFile::decodeName(entry->d_name);
        if (name == u'.' || name == QLatin1StringView(".."))
            continue;
        paths << prefix + name;
        const QString path = folder + u'/' + name;
        if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
            plainWalk(path, prefix + name + u'/', paths);
    }
    ::closedir(open);
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

void tst_FolderWalk::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_FolderWalk::yieldsEverything()
{
    make({QStringLiteral("b.css"), QStringLiteral("sub/a.js"), QStringLiteral("sub/deep/.hidden.css"),
          QStringLiteral(".git/c.js"), QStringLiteral(".profile"), QStringLiteral("notes.txt")});
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("empty/folder")));
    const QStringList expected{QStringLiteral(".git"),
                               QStringLiteral(".git/c.js"),
                               QStringLiteral(".profile"),
                               QStringLiteral("b.css"),
                               QStringLiteral("empty"),
                               QStringLiteral("empty/folder"),
                               QStringLiteral("notes.txt"),
                               QStringLiteral("sub"),
                               QStringLiteral("sub/a.js"),
                               QStringLiteral("sub/deep"),
                               QStringLiteral("sub/deep/.hidden.css")};
    QCOMPARE(walkedSorted(), expected);
}

void tst_FolderWalk::orderIsThatOfTheFileSystem()
{
    for (int i = 0; i < 60; ++i)
        make({QStringLiteral("%1.css").arg((i * 37) % 60), QStringLiteral("f%1/g%2/x.js").arg(i % 7).arg(i)});
    QStringList expected;
    plainWalk(m_folder->path(), QString(), expected);
    QVERIFY(expected.size() > 180);
    QStringList sorted = expected;
    sorted.sort();
    if (sorted == expected)
        qWarning("this file system happens to sort, so nothing is shown here");
    QCOMPARE(walked(m_folder->path()), expected);
}

void tst_FolderWalk::folderBeforeItsContents()
{
    make({QStringLiteral("a/b/c/d.css")});
    const QStringList expected{QStringLiteral("a"), QStringLiteral("a/b"), QStringLiteral("a/b/c"),
                               QStringLiteral("a/b/c/d.css")};
    QCOMPARE(walked(m_folder->path()), expected);
    QCOMPARE(walked(m_folder->path() + u'/'), expected);
}

void tst_FolderWalk::linksToFolders()
{
    make({QStringLiteral("sub/a.css")});
    QVERIFY(makeLink(QStringLiteral("sub"), at(QStringLiteral("theme.css"))));
    QVERIFY(makeLink(QStringLiteral(".."), at(QStringLiteral("sub/loop"))));
    QVERIFY(makeLink(m_folder->path(), at(QStringLiteral("sub/loop2"))));
    QVERIFY(makeLink(QStringLiteral("self"), at(QStringLiteral("self"))));
    QVERIFY(makeLink(QStringLiteral("sub/a.css"), at(QStringLiteral("file.css"))));
    QVERIFY(makeLink(QStringLiteral("nowhere"), at(QStringLiteral("dangling.css"))));
    const QStringList expected{QStringLiteral("dangling.css"), QStringLiteral("file.css"),
                               QStringLiteral("self"),         QStringLiteral("sub"),
                               QStringLiteral("sub/a.css"),    QStringLiteral("sub/loop"),
                               QStringLiteral("sub/loop2"),    QStringLiteral("theme.css")};
    QCOMPARE(walkedSorted(), expected);
}

void tst_FolderWalk::topLinkIsFollowed()
{
    make({QStringLiteral("sub/a.css")});
    QVERIFY(makeLink(QStringLiteral("sub"), at(QStringLiteral("link"))));
    QCOMPARE(walked(at(QStringLiteral("link"))), QStringList{QStringLiteral("a.css")});
    QCOMPARE(walked(at(QStringLiteral("link/"))), QStringList{QStringLiteral("a.css")});
}

void tst_FolderWalk::nothingBelow_data()
{
    QTest::addColumn<QString>("top");
    QTest::newRow("plain file") << QStringLiteral("%1/a.css");
    QTest::newRow("plain file, as a folder") << QStringLiteral("%1/a.css/");
    QTest::newRow("missing") << QStringLiteral("%1/none");
    QTest::newRow("below a file") << QStringLiteral("%1/a.css/b");
    QTest::newRow("empty folder") << QStringLiteral("%1/empty");
    QTest::newRow("dangling link") << QStringLiteral("%1/dangling");
    QTest::newRow("link to itself") << QStringLiteral("%1/self");
    QTest::newRow("too long") << QStringLiteral("%1/") + QString(5000, u'x');
    QTest::newRow("empty path") << QString();
}

void tst_FolderWalk::nothingBelow()
{
    QFETCH(QString, top);
    make({QStringLiteral("a.css")});
    QVERIFY(QDir().mkdir(at(QStringLiteral("empty"))));
    QVERIFY(makeLink(QStringLiteral("nowhere"), at(QStringLiteral("dangling"))));
    QVERIFY(makeLink(QStringLiteral("self"), at(QStringLiteral("self"))));
    QCOMPARE(walked(top.startsWith(u'%') ? top.arg(m_folder->path()) : top), QStringList());
}

void tst_FolderWalk::pipeIsNotOpened()
{
    const QString pipe = at(QStringLiteral("x.css"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    // Times of access do not change when a pipe is opened, so it is watched for that.
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    QVERIFY(::inotify_add_watch(watch, QFile::encodeName(pipe).constData(), IN_OPEN) >= 0);
    QCOMPARE(walked(m_folder->path()), QStringList{QStringLiteral("x.css")});
    QCOMPARE(walked(pipe), QStringList()); // as the top itself it does not block
    std::array<char, 4096> events{};
    const ssize_t length = ::read(watch, events.data(), events.size());
    ::close(watch);
    QCOMPARE(length, ssize_t{-1});
}

void tst_FolderWalk::oddNames()
{
    QStringList names{QStringLiteral("new\nline.css"),
                      QStringLiteral("qu'o\"te.css"),
                      QStringLiteral("\u00fc.css"),
                      QStringLiteral("u\u0308.css"),
                      QStringLiteral(" blank .css"),
                      QStringLiteral("back\\slash.css"),
                      QStringLiteral("-dash.css"),
                      QStringLiteral("...css"),
                      QStringLiteral("\u65e5\u672c.css"),
                      QStringLiteral("\U0001F600.js"),
                      QStringLiteral("\uFEFF\uFEFFmark\uFEFF.js"),
                      QString(251, u'n') + QLatin1StringView(".css")};
    for (const QString &name : names)
        QVERIFY(writeFile(at(name), ""));
    names.sort();
    QCOMPARE(walkedSorted(), names);
}

void tst_FolderWalk::unreadableFolders()
{
    m_folder.reset();
    const OrdinaryUser user;
    if (!user.isReady())
        QSKIP("cannot become an ordinary user here");
    m_folder = std::make_unique<QTemporaryDir>();
    if (!m_folder->isValid())
        QSKIP("an ordinary user may not make a folder here");
    make({QStringLiteral("locked/a.css"), QStringLiteral("listed/sub/b.css"), QStringLiteral("open/c.css")});
    QVERIFY(setMode(at(QStringLiteral("locked")), 0));
    QVERIFY(setMode(at(QStringLiteral("listed")), 0400)); // its names can be read, and no more
    const QStringList paths = walkedSorted();
    const QStringList locked = walked(at(QStringLiteral("locked")));
    QStringList told;
    for (const char *top : {"", "locked", "open/c.css", "missing"}) {
        walkFolder(
            at(QLatin1StringView(top)), [](const QString &) {},
            [&](const QString &path, int error) { told << path + u' ' + QString::number(error); });
    }
    told.sort();
    QVERIFY(setMode(at(QStringLiteral("locked")), 0700));
    QVERIFY(setMode(at(QStringLiteral("listed")), 0700));
    m_folder.reset();
    const QStringList expected{QStringLiteral("listed"), QStringLiteral("listed/sub"),
                               QStringLiteral("locked"), QStringLiteral("open"),
                               QStringLiteral("open/c.css")};
    QCOMPARE(paths, expected);
    QCOMPARE(locked, QStringList());
    const QString denied = QStringLiteral(" %1").arg(EACCES);
    QCOMPARE(told,
             QStringList({denied, QStringLiteral("listed/sub") + denied, QStringLiteral("locked") + denied}));
}

void tst_FolderWalk::vanishingEntries()
{
    for (int i = 0; i < 10; ++i)
        make({QStringLiteral("f%1/a.css").arg(i), QStringLiteral("f%1/sub/b.css").arg(i)});
    QStringList top;
    walkFolder(m_folder->path(), [&](const QString &path) {
        if (path.contains(u'/'))
            QFAIL("a folder that is gone has contents");
        top << path;
        QVERIFY(QDir(at(path)).removeRecursively());
    });
    QCOMPARE(top.size(), 10);
}

void tst_FolderWalk::folderBecomesALink()
{
    make({QStringLiteral("walked/sub/a.css"), QStringLiteral("elsewhere/secret.css")});
    QStringList paths;
    walkFolder(at(QStringLiteral("walked")), [&](const QString &path) {
        paths << path;
        if (path == QLatin1StringView("sub")) {
            QVERIFY(QDir(at(QStringLiteral("walked/sub"))).removeRecursively());
            QVERIFY(makeLink(at(QStringLiteral("elsewhere")), at(QStringLiteral("walked/sub"))));
        }
    });
    QCOMPARE(paths, QStringList{QStringLiteral("sub")});
}

void tst_FolderWalk::entriesAddedMeanwhile()
{
    make({QStringLiteral("a.css")});
    int visits = 0;
    walkFolder(m_folder->path(), [&](const QString &) {
        ++visits;
        QVERIFY(writeFile(at(QStringLiteral("new%1.css").arg(visits)), ""));
    });
    QVERIFY(visits < 100); // it comes to an end
}

void tst_FolderWalk::deeperThanAnyPath()
{
    constexpr int depth = 3000;
    QVERIFY(makeDeep(m_folder->path(), "ab", depth, "last.css"));
    make({QStringLiteral("zz/beside.css"),
          QStringLiteral("aa/beside.css")}); // one of them comes after the way back
    QStringList paths = walked(m_folder->path());
    std::error_code error; // QTemporaryDir cannot name what is that deep
    std::filesystem::remove_all(std::filesystem::path(at(QStringLiteral("ab")).toStdString()), error);
    QVERIFY(!error);

    QCOMPARE(paths.size(), depth + 5);
    for (const char *name : {"zz", "zz/beside.css", "aa", "aa/beside.css"})
        QVERIFY(paths.removeOne(QString::fromLatin1(name)));
    const QString deepest = QStringLiteral("ab/").repeated(depth) + QLatin1StringView("last.css");
    QVERIFY(deepest.size() > PATH_MAX);
    QCOMPARE(paths.last(), deepest);
    for (int i = 0; i < depth; ++i)
        QCOMPARE(paths[i], deepest.left(3 * i + 2));
}

void tst_FolderWalk::deepBranchVanishes_data()
{
    QTest::addColumn<bool>("moved");
    QTest::newRow("removed") << false;
    QTest::newRow("moved") << true;
}

void tst_FolderWalk::deepBranchVanishes()
{
    QFETCH(bool, moved);
    // Deeper than the folders that are kept open, so that the way back leads through what is gone.
    constexpr int depth = 100;
    for (const int left : {0, 1, 20, 60, 98}) {
        init();
        // So many neighbours, older and younger, that some of them are met on the way back.
        QStringList neighbours;
        for (int i = 0; i < 10; ++i)
            neighbours << QString::number(i) << QStringLiteral("%1/x.css").arg(i);
        make(neighbours.mid(0, 10).filter(QStringLiteral(".css")));
        QVERIFY(makeDeep(m_folder->path(), "ab", depth, "last.css"));
        make(neighbours.mid(10).filter(QStringLiteral(".css")));
        for (int i = 1; i <= left; ++i) {
            for (int file = 0; file < 6; ++file)
                neighbours << QStringLiteral("ab/").repeated(i) + QStringLiteral("%1.css").arg(file);
        }
        make(neighbours.mid(20));
        const QTemporaryDir elsewhere;
        const QString branch = at(QStringLiteral("ab/").repeated(left) + QLatin1StringView("ab"));
        QStringList paths;
        walkFolder(m_folder->path(), [&](const QString &path) {
            paths << path;
            if (path.endsWith(QLatin1StringView("last.css"))) {
                if (moved)
                    QVERIFY(QDir().rename(branch, elsewhere.filePath(QStringLiteral("ab"))));
                else
                    QVERIFY(QDir(branch).removeRecursively());
            }
        });
        for (const QString &neighbour : neighbours)
            QVERIFY2(paths.contains(neighbour), qPrintable(neighbour));
        QCOMPARE(paths.size(), neighbours.size() + depth + 1);
    }
}

void tst_FolderWalk::manyFoldersSideBySide()
{
    // Far more than may be open at once, and none is left open.
    for (int i = 0; i < 200; ++i)
        QVERIFY(QDir().mkdir(at(QString::number(i))));
    QVERIFY(makeDeep(at(QStringLiteral("0")), "d", 80, "x.css"));
    const auto openCount = [] { return QDir(QStringLiteral("/proc/self/fd")).count(); };
    const auto before = openCount();
    auto most = before;
    walkFolder(m_folder->path(), [&](const QString &) { most = std::max(most, openCount()); });
    QCOMPARE(openCount(), before);
    QVERIFY(most - before <= 40);
}

BREVANT_TEST(tst_FolderWalk, QCoreApplication)
#include "tst_FolderWalk.moc"
