// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/DurableFile.h"
#include "tests/TestClass.h"
#include "tests/settings/TestFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/wait.h>

using namespace brevant;
using namespace brevant::test;

class tst_DurableFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void makesANewFile();
    void replacesTheWholeFile();
    void keepsTheMode_data();
    void keepsTheMode();
    void newFileHonoursTheUmask();
    void keepsTheOwner();
    void followsLinks_data();
    void followsLinks();
    void linkLoopIsAnError();
    void targetStaysUntilTheCommit();
    void droppedWithoutCommit();
    void killedWithoutCommit();
    void writesInPieces();
    void failures_data();
    void failures();
    void folderThatCannotBeWritten();
    void oddNames_data();
    void oddNames();
    void commitWithoutWriteMakesAnEmptyFile();
    void pipeIsNoTarget();

private:
    [[nodiscard]] QString at(QLatin1StringView name) const { return m_folder->filePath(name); }
    /// Every entry of the folder, hidden ones included.
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_DurableFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_DurableFile::makesANewFile()
{
    QCOMPARE(DurableFile::replace(at(QLatin1StringView("new")), "text"), QString());
    QCOMPARE(readFile(at(QLatin1StringView("new"))), QByteArray("text"));
    QCOMPARE(names(), QStringList{QStringLiteral("new")});
}

void tst_DurableFile::replacesTheWholeFile()
{
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "a long text that was here before"));
    QCOMPARE(DurableFile::replace(path, "short"), QString());
    QCOMPARE(readFile(path), QByteArray("short"));
    QCOMPARE(names(), QStringList{QStringLiteral("file")});
}

void tst_DurableFile::keepsTheMode_data()
{
    QTest::addColumn<uint>("mode");
    for (const uint mode : {0600U, 0640U, 0644U, 0666U, 0444U, 0755U, 0700U})
        QTest::addRow("%o", mode) << mode;
}

void tst_DurableFile::keepsTheMode()
{
    QFETCH(uint, mode);
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    QVERIFY(setMode(path, mode));
    QCOMPARE(DurableFile::replace(path, "new"), QString());
    QCOMPARE(modeOf(path), mode);
}

void tst_DurableFile::newFileHonoursTheUmask()
{
    const mode_t before = ::umask(027);
    const QString error = DurableFile::replace(at(QLatin1StringView("new")), "text");
    ::umask(before);
    QCOMPARE(error, QString());
    QCOMPARE(modeOf(at(QLatin1StringView("new"))), mode_t{0640});
}

void tst_DurableFile::keepsTheOwner()
{
    if (::geteuid() != 0)
        QSKIP("only root may give a file to another owner");
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    QCOMPARE(::chown(QFile::encodeName(path).constData(), 1234, 2345), 0);
    QVERIFY(setMode(path, 04711)); // the owner changes first, which would take such bits away
    QCOMPARE(DurableFile::replace(path, "new"), QString());
    struct stat status {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_uid, uid_t{1234});
    QCOMPARE(status.st_gid, gid_t{2345});
    QCOMPARE(modeOf(path), mode_t{04711});
}

void tst_DurableFile::followsLinks_data()
{
    QTest::addColumn<QStringList>("links"); // target and name of each, the last is written through
    QTest::addColumn<bool>("targetExists");
    QTest::addColumn<QString>("target");
    const QString file = QStringLiteral("sub/file");
    QTest::newRow("relative") << QStringList{file, QStringLiteral("link")} << true << file;
    QTest::newRow("absolute") << QStringList{QStringLiteral("%1/sub/file"), QStringLiteral("link")} << true
                              << file;
    QTest::newRow("in another folder")
        << QStringList{QStringLiteral("../sub/file"), QStringLiteral("other/link")} << true << file;
    QTest::newRow("chain") << QStringList{QStringLiteral("file"),       QStringLiteral("sub/one"),
                                          QStringLiteral("../sub/one"), QStringLiteral("other/two"),
                                          QStringLiteral("other/two"),  QStringLiteral("three")}
                           << true << file;
    QTest::newRow("dangling") << QStringList{file, QStringLiteral("link")} << false << file;
    QTest::newRow("dangling chain") << QStringList{QStringLiteral("file"), QStringLiteral("sub/one"),
                                                   QStringLiteral("sub/one"), QStringLiteral("two")}
                                    << false << file;
}

void tst_DurableFile::followsLinks()
{
    QFETCH(QStringList, links);
    QFETCH(bool, targetExists);
    QFETCH(QString, target);
    const QDir folder(m_folder->path());
    QVERIFY(folder.mkdir(QStringLiteral("sub")));
    QVERIFY(folder.mkdir(QStringLiteral("other")));
    if (targetExists) {
        QVERIFY(writeFile(folder.filePath(target), "old"));
        QVERIFY(setMode(folder.filePath(target), 0604));
    }
    for (qsizetype i = 0; i + 1 < links.size(); i += 2) {
        const QString pointsAt = links[i].startsWith(u'%') ? links[i].arg(m_folder->path()) : links[i];
        QVERIFY(makeLink(pointsAt, folder.filePath(links[i + 1])));
    }
    QCOMPARE(DurableFile::replace(folder.filePath(links.last()), "new"), QString());
    for (qsizetype i = 1; i < links.size(); i += 2)
        QVERIFY2(QFileInfo(folder.filePath(links[i])).isSymLink(), qPrintable(links[i]));
    QVERIFY(!QFileInfo(folder.filePath(target)).isSymLink());
    QCOMPARE(readFile(folder.filePath(target)), QByteArray("new"));
    if (targetExists)
        QCOMPARE(modeOf(folder.filePath(target)), mode_t{0604});
}

void tst_DurableFile::linkLoopIsAnError()
{
    QVERIFY(makeLink(QStringLiteral("b"), at(QLatin1StringView("a"))));
    QVERIFY(makeLink(QStringLiteral("a"), at(QLatin1StringView("b"))));
    QVERIFY(!DurableFile::replace(at(QLatin1StringView("a")), "text").isEmpty());
    QVERIFY(QFileInfo(at(QLatin1StringView("a"))).isSymLink());
    QVERIFY(QFileInfo(at(QLatin1StringView("b"))).isSymLink());
    QCOMPARE(names().size(), 2);
}

void tst_DurableFile::targetStaysUntilTheCommit()
{
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    DurableFile file(path);
    QVERIFY(file.write("new"));
    QCOMPARE(readFile(path), QByteArray("old"));
    QVERIFY(file.commit());
    QCOMPARE(readFile(path), QByteArray("new"));
}

void tst_DurableFile::droppedWithoutCommit()
{
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    {
        DurableFile file(path);
        QVERIFY(file.write("new"));
    }
    QCOMPARE(readFile(path), QByteArray("old"));
    QCOMPARE(names(), QStringList{QStringLiteral("file")});
}

void tst_DurableFile::killedWithoutCommit()
{
    const int probe = ::open(QFile::encodeName(m_folder->path()).constData(), O_TMPFILE | O_WRONLY, 0600);
    if (probe < 0)
        QSKIP("files without a name cannot be made here");
    ::close(probe);
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    const pid_t child = ::fork();
    if (child == 0) {
        DurableFile file(path);
        if (file.write("new") && file.flush())
            ::raise(SIGKILL);
        ::_exit(1);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(names(), QStringList{QStringLiteral("file")});
    QCOMPARE(readFile(path), QByteArray("old"));
}

void tst_DurableFile::writesInPieces()
{
    const QByteArray large(3 << 20, 'x');
    DurableFile file(at(QLatin1StringView("file")));
    QVERIFY(file.write("head"));
    QVERIFY(file.write(large));
    QVERIFY(file.write(QByteArrayView()));
    QVERIFY(file.write("tail"));
    QVERIFY(file.commit());
    QCOMPARE(readFile(at(QLatin1StringView("file"))), "head" + large + "tail");
}

void tst_DurableFile::failures_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("target is a folder") << QStringLiteral("folder");
    QTest::newRow("folder is missing") << QStringLiteral("none/file");
    QTest::newRow("folder is a file") << QStringLiteral("plain/file");
    QTest::newRow("name of 256 bytes") << QString(256, u'n');
    QTest::newRow("link to a folder") << QStringLiteral("link");
}

void tst_DurableFile::failures()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder")));
    QVERIFY(writeFile(at(QLatin1StringView("plain")), "plain"));
    QVERIFY(makeLink(QStringLiteral("folder"), at(QLatin1StringView("link"))));
    const QStringList before = names();

    DurableFile file(m_folder->filePath(name));
    QVERIFY(!(file.write("text") && file.commit()));
    QVERIFY(!file.errorText().isEmpty());
    QVERIFY(!DurableFile::replace(m_folder->filePath(name), "text").isEmpty());
    QCOMPARE(names(), before);
    QVERIFY(QDir(at(QLatin1StringView("folder"))).isEmpty());
    QVERIFY(QFileInfo(at(QLatin1StringView("link"))).isSymLink());
    QCOMPARE(readFile(at(QLatin1StringView("plain"))), QByteArray("plain"));
}

void tst_DurableFile::folderThatCannotBeWritten()
{
    m_folder.reset();
    const OrdinaryUser user;
    if (!user.isReady())
        QSKIP("cannot become an ordinary user here");
    m_folder = std::make_unique<QTemporaryDir>();
    if (!m_folder->isValid())
        QSKIP("an ordinary user may not make a folder here");
    const QString path = at(QLatin1StringView("file"));
    QVERIFY(writeFile(path, "old"));
    QVERIFY(setMode(m_folder->path(), 0555));
    const QString error = DurableFile::replace(path, "new");
    QVERIFY(setMode(m_folder->path(), 0755));
    QVERIFY(!error.isEmpty());
    QCOMPARE(readFile(path), QByteArray("old"));
    QCOMPARE(names(), QStringList{QStringLiteral("file")});
    m_folder.reset();
}

void tst_DurableFile::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("255 bytes") << QString(255, u'n');
    QTest::newRow("255 bytes of UTF-8") << QString(85, QChar(0x20ac));
    QTest::newRow("newline") << QStringLiteral("one\ntwo");
    QTest::newRow("quotes") << QStringLiteral("a'b\"c$d`e");
    QTest::newRow("umlaut") << QStringLiteral("\u00fcber");
    QTest::newRow("begins with a dash") << QStringLiteral("-rf");
}

void tst_DurableFile::oddNames()
{
    QFETCH(QString, name);
    const QString path = m_folder->filePath(name);
    QCOMPARE(DurableFile::replace(path, "one"), QString());
    QCOMPARE(DurableFile::replace(path, "two"), QString());
    QCOMPARE(readFile(path), QByteArray("two"));
    QCOMPARE(names(), QStringList{name});
}

void tst_DurableFile::commitWithoutWriteMakesAnEmptyFile()
{
    DurableFile file(at(QLatin1StringView("file")));
    QVERIFY(file.commit());
    QCOMPARE(readFile(at(QLatin1StringView("file"))), QByteArray());
}

void tst_DurableFile::pipeIsNoTarget()
{
    const QString path = at(QLatin1StringView("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QVERIFY(!DurableFile::replace(path, "text").isEmpty());
    struct stat status {};
    QCOMPARE(::lstat(QFile::encodeName(path).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
    QCOMPARE(names().size(), 1);
}

BREVANT_TEST(tst_DurableFile, QCoreApplication)
#include "tst_DurableFile.moc"
