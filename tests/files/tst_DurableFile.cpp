// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/DurableFile.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/file.h>
#include <sys/wait.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

class tst_DurableFile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void makesANewFile()
    {
        QCOMPARE(DurableFile::replace(at("new"_L1), "text"), QString());
        QCOMPARE(readFile(at("new"_L1)), QByteArray("text"));
        QCOMPARE(names(), QStringList{u"new"_s});
    }

    void replacesTheWholeFile()
    {
        const QString path = at("file"_L1);
        QVERIFY(writeFile(path, "a long text that was here before"));
        QCOMPARE(DurableFile::replace(path, "short"), QString());
        QCOMPARE(readFile(path), QByteArray("short"));
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    void keepsTheMode_data()
    {
        QTest::addColumn<uint>("mode");
        for (const uint mode : {0600U, 0640U, 0644U, 0666U, 0444U, 0755U, 0700U})
            QTest::addRow("%o", mode) << mode;
    }

    void keepsTheMode()
    {
        QFETCH(uint, mode);
        const QString path = at("file"_L1);
        QVERIFY(writeFile(path, "old"));
        QVERIFY(setMode(path, mode));
        QCOMPARE(DurableFile::replace(path, "new"), QString());
        QCOMPARE(modeOf(path), mode);
    }

    void newFileHonoursTheUmask()
    {
        const mode_t before = ::umask(027);
        const QString error = DurableFile::replace(at("new"_L1), "text");
        ::umask(before);
        QCOMPARE(error, QString());
        QCOMPARE(modeOf(at("new"_L1)), mode_t{0640});
    }

    void keepsTheOwner()
    {
        if (::geteuid() != 0)
            QSKIP("only root may give a file to another owner");
        const QString path = at("file"_L1);
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

    void followsLinks_data()
    {
        QTest::addColumn<QStringList>("links"); // target and name of each, the last is written through
        QTest::addColumn<bool>("targetExists");
        QTest::addColumn<QString>("target");
        const QString file = u"sub/file"_s;
        QTest::newRow("relative") << QStringList{file, u"link"_s} << true << file;
        QTest::newRow("absolute") << QStringList{u"%1/sub/file"_s, u"link"_s} << true << file;
        QTest::newRow("in another folder") << QStringList{u"../sub/file"_s, u"other/link"_s} << true << file;
        QTest::newRow("chain") << QStringList{u"file"_s,      u"sub/one"_s,   u"../sub/one"_s,
                                              u"other/two"_s, u"other/two"_s, u"three"_s}
                               << true << file;
        QTest::newRow("dangling") << QStringList{file, u"link"_s} << false << file;
        QTest::newRow("dangling chain")
            << QStringList{u"file"_s, u"sub/one"_s, u"sub/one"_s, u"two"_s} << false << file;
    }

    void followsLinks()
    {
        QFETCH(QStringList, links);
        QFETCH(bool, targetExists);
        QFETCH(QString, target);
        const QDir folder(m_folder->path());
        QVERIFY(folder.mkdir(u"sub"_s));
        QVERIFY(folder.mkdir(u"other"_s));
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

    void linkLoopIsAnError()
    {
        QVERIFY(makeLink(u"b"_s, at("a"_L1)));
        QVERIFY(makeLink(u"a"_s, at("b"_L1)));
        QVERIFY(!DurableFile::replace(at("a"_L1), "text").isEmpty());
        QVERIFY(QFileInfo(at("a"_L1)).isSymLink());
        QVERIFY(QFileInfo(at("b"_L1)).isSymLink());
        QCOMPARE(names().size(), 2);
    }

    void targetStaysUntilTheCommit()
    {
        const QString path = at("file"_L1);
        QVERIFY(writeFile(path, "old"));
        DurableFile file(path);
        QVERIFY(file.write("new"));
        QCOMPARE(readFile(path), QByteArray("old"));
        QVERIFY(file.commit());
        QCOMPARE(readFile(path), QByteArray("new"));
    }

    void droppedWithoutCommit()
    {
        const QString path = at("file"_L1);
        QVERIFY(writeFile(path, "old"));
        {
            DurableFile file(path);
            QVERIFY(file.write("new"));
        }
        QCOMPARE(readFile(path), QByteArray("old"));
        QCOMPARE(names(), QStringList{u"file"_s});
    }

    void killedWithoutCommit()
    {
        const int probe = ::open(QFile::encodeName(m_folder->path()).constData(), O_TMPFILE | O_WRONLY, 0600);
        if (probe < 0)
            QSKIP("files without a name cannot be made here");
        ::close(probe);
        const QString path = at("file"_L1);
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
        QCOMPARE(names(), QStringList{u"file"_s});
        QCOMPARE(readFile(path), QByteArray("old"));
    }

    void writesInPieces()
    {
        const QByteArray large(3 << 20, 'x');
        DurableFile file(at("file"_L1));
        QVERIFY(file.write("head"));
        QVERIFY(file.write(large));
        QVERIFY(file.write(QByteArrayView()));
        QVERIFY(file.write("tail"));
        QVERIFY(file.commit());
        QCOMPARE(readFile(at("file"_L1)), "head" + large + "tail");
    }

    void failures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("target is a folder") << u"folder"_s;
        QTest::newRow("folder is missing") << u"none/file"_s;
        QTest::newRow("folder is a file") << u"plain/file"_s;
        QTest::newRow("name of 256 bytes") << QString(256, u'n');
        QTest::newRow("link to a folder") << u"link"_s;
    }

    void failures()
    {
        QFETCH(QString, name);
        QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s));
        QVERIFY(writeFile(at("plain"_L1), "plain"));
        QVERIFY(makeLink(u"folder"_s, at("link"_L1)));
        const QStringList before = names();

        DurableFile file(m_folder->filePath(name));
        QVERIFY(!(file.write("text") && file.commit()));
        QVERIFY(!file.errorText().isEmpty());
        QVERIFY(!DurableFile::replace(m_folder->filePath(name), "text").isEmpty());
        QCOMPARE(names(), before);
        QVERIFY(QDir(at("folder"_L1)).isEmpty());
        QVERIFY(QFileInfo(at("link"_L1)).isSymLink());
        QCOMPARE(readFile(at("plain"_L1)), QByteArray("plain"));
    }

    void folderThatCannotBeWritten()
    {
        m_folder.reset();
        const OrdinaryUser user;
        m_folder = user.makeFolder();
        if (!m_folder)
            QSKIP("no ordinary user can have a folder here");
        const QString path = at("file"_L1);
        QVERIFY(writeFile(path, "old"));
        QVERIFY(setMode(m_folder->path(), 0555));
        const QString error = DurableFile::replace(path, "new");
        QVERIFY(setMode(m_folder->path(), 0755));
        QVERIFY(!error.isEmpty());
        QCOMPARE(readFile(path), QByteArray("old"));
        QCOMPARE(names(), QStringList{u"file"_s});
        m_folder.reset();
    }

    void oddNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("255 bytes") << QString(255, u'n');
        QTest::newRow("255 bytes of UTF-8") << QString(85, QChar(0x20ac));
        QTest::newRow("newline") << u"one\ntwo"_s;
        QTest::newRow("quotes") << u"a'b\"c$d`e"_s;
        QTest::newRow("umlaut") << u"\u00fcber"_s;
        QTest::newRow("begins with a dash") << u"-rf"_s;
    }

    void oddNames()
    {
        QFETCH(QString, name);
        const QString path = m_folder->filePath(name);
        QCOMPARE(DurableFile::replace(path, "one"), QString());
        QCOMPARE(DurableFile::replace(path, "two"), QString());
        QCOMPARE(readFile(path), QByteArray("two"));
        QCOMPARE(names(), QStringList{name});
    }

    void theNextClearsAwayWhatAKilledOneLeft_data()
    {
        QTest::addColumn<bool>("lives");
        QTest::newRow("killed") << false;
        QTest::newRow("at work") << true;
    }

    /// Between its temporary name and its place a file keeps that name for good when its program is killed.
    void theNextClearsAwayWhatAKilledOneLeft()
    {
        QFETCH(const bool, lives);
        QVERIFY(writeFile(at("file"_L1), "old"));
        QCOMPARE(DurableFile::replace(at("file"_L1), "one"), QString());
        const QByteArray hash = QCryptographicHash::hash("file", QCryptographicHash::Sha1);
        const QString left =
            m_folder->filePath(u".brevant-%1.tmp"_s.arg(QString::fromLatin1(hash.first(8).toHex())));
        QVERIFY(writeFile(left, "left"));
        QFile writer(left);
        QVERIFY(writer.open(QIODevice::ReadOnly));
        QCOMPARE(::flock(writer.handle(), lives ? LOCK_EX : LOCK_UN), 0);
        QCOMPARE(DurableFile::replace(at("file"_L1), "two"), QString());
        QCOMPARE(readFile(at("file"_L1)), "two"_ba);
        QCOMPARE(names().size(), lives ? 2 : 1);
    }

    void commitWithoutWriteMakesAnEmptyFile()
    {
        DurableFile file(at("file"_L1));
        QVERIFY(file.commit());
        QCOMPARE(readFile(at("file"_L1)), QByteArray());
    }

    void pipeIsNoTarget()
    {
        const QString path = at("pipe"_L1);
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!DurableFile::replace(path, "text").isEmpty());
        struct stat status {};
        QCOMPARE(::lstat(QFile::encodeName(path).constData(), &status), 0);
        QVERIFY(S_ISFIFO(status.st_mode));
        QCOMPARE(names().size(), 1);
    }

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

BREVANT_TEST(tst_DurableFile, QCoreApplication)
#include "tst_DurableFile.moc"
