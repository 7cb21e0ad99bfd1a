// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"
#include "tests/TestClass.h"
#include "tests/engine/CopiesTest.h"

#include <QTest>

#include <array>
#include <csignal>
#include <functional>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

/// As on a full disk: no file may become longer than `most` bytes while this is there.
class NoRoom final {
public:
    explicit NoRoom(rlim_t most)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{most, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~NoRoom() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    NoRoom(const NoRoom &) = delete;
    NoRoom &operator=(const NoRoom &) = delete;

private:
    rlimit m_before{};
};

} // namespace

/// What the next start does with the copies of programs that ended amid a run.
class tst_InterruptedRuns final : public CopiesTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }

    void sources_data()
    {
        QTest::addColumn<QByteArray>("now"); // null: none is there
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QString>("sentence"); // its end, %1 being the kept file; empty: none
        const QString putBack = u" was lost when a run was cut short, and has been put back."_s;
        const QString kept = u" was cut short; what it was before is kept as %1."_s;
        QTest::newRow("missing") << QByteArray() << original << putBack;
        QTest::newRow("empty") << QByteArray("") << original << putBack;
        QTest::newRow("minified") << QByteArray("a{b:c}") << QByteArray("a{b:c}") << kept;
        QTest::newRow("longer") << original + "more" << original + "more" << kept;
        QTest::newRow("beginning") << original.first(4) << original.first(4) << kept;
        QTest::newRow("untouched") << original << original << QString();
    }

    void sources()
    {
        QFETCH(QByteArray, now);
        QFETCH(QString, sentence);
        leaveCopy();
        if (now.isNull())
            QVERIFY(QFile::remove(m_source));
        else
            write(m_source, now);
        const QStringList sentences = putBackAfterInterruption({m_originals});
        QTEST(readFile(m_source), "left");
        const QStringList files = leftInFolder();
        QCOMPARE(sentences.size(), sentence.isEmpty() ? 0 : 1);
        if (sentence.contains(u"%1"_s)) {
            QCOMPARE(files.size(), 1);
            QVERIFY(files.first().endsWith(u"-a.css"_s));
            QCOMPARE(readFile(m_originals + u'/' + files.first()), original);
            sentence = sentence.arg(m_originals + u'/' + files.first());
        } else {
            QCOMPARE(files, QStringList());
        }
        if (!sentence.isEmpty()) {
            QVERIFY2(sentences.first().contains(m_source), qPrintable(sentences.first()));
            QVERIFY2(sentences.first().endsWith(sentence), qPrintable(sentences.first()));
        }
        // Said once, and nothing happens to the source any more.
        write(m_source, QByteArray());
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList());
        QCOMPARE(readFile(m_source), QByteArray());
    }

    void attributes_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("missing") << false;
        QTest::newRow("empty") << true;
    }

    void attributes()
    {
        QFETCH(bool, isThere);
        const std::array<timespec, 2> times{timespec{1'000'000'000, 123'456'789},
                                            timespec{1'000'000'001, 987'654'321}};
        const QByteArray name = QFile::encodeName(m_source);
        QCOMPARE(::chmod(name.constData(), 0640), 0);
        QCOMPARE(::utimensat(AT_FDCWD, name.constData(), times.data(), 0), 0);
        const QString other = path(u"site/other.css"_s);
        if (isThere)
            QCOMPARE(::link(name.constData(), QFile::encodeName(other).constData()), 0);
        leaveCopy();
        const struct stat before = statusOf(m_source);
        if (isThere)
            QCOMPARE(::truncate(name.constData(), 0), 0);
        else
            QVERIFY(QFile::remove(m_source));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        const struct stat after = statusOf(m_source);
        QCOMPARE(after.st_mode, before.st_mode);
        QCOMPARE(after.st_uid, before.st_uid);
        QCOMPARE(after.st_mtim.tv_sec, times[1].tv_sec);
        QCOMPARE(after.st_mtim.tv_nsec, times[1].tv_nsec);
        QCOMPARE(after.st_atim.tv_nsec, times[0].tv_nsec);
        if (isThere) {
            QCOMPARE(after.st_ino, before.st_ino);
            QCOMPARE(readFile(other), original);
        }
    }

    void aLinkAndItsTarget()
    {
        const QString link = path(u"site/link.css"_s);
        QVERIFY(QFile::link(u"a.css"_s, link));
        leaveCopy(link);
        QVERIFY(QFile::remove(m_source) && QFile::remove(link));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readFile(link), original);
        QVERIFY(!QFileInfo(m_source).isSymLink());
    }

    void whatIsInUseIsLeftAlone()
    {
        std::optional<LeftCopy> copy(std::in_place, m_source, m_originals);
        QVERIFY(copy->isFilled());
        write(m_source, QByteArray());
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList());
        QCOMPARE(readFile(m_source), QByteArray());
        QCOMPARE(leftInFolder().size(), 1);
        copy.reset();
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(readFile(m_source), original);
    }

    void cutShortWhilePuttingBack()
    {
        {
            LeftCopy copy(m_source, m_originals);
            QVERIFY(copy.isFilled());
            QVERIFY(copy.slot().markPuttingBack());
        }
        write(m_source, original.first(4));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(readFile(m_source), original);
        QCOMPARE(leftInFolder(), QStringList());
    }

    void whatCannotBePutBackIsTriedAgain()
    {
        leaveCopy();
        QVERIFY(QDir(path(u"site"_s)).removeRecursively());
        for (int start = 0; start < 2; ++start) {
            const QStringList sentences = putBackAfterInterruption({m_originals});
            QCOMPARE(sentences.size(), 1);
            QVERIFY2(sentences.first().contains(u"cannot be put back now: No such file"),
                     qPrintable(sentences.first()));
        }
        QVERIFY(QDir(m_folder->path()).mkdir(u"site"_s));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(readFile(m_source), original);
    }

    void noRoom_data()
    {
        QTest::addColumn<QByteArray>("now"); // null: none is there
        QTest::addColumn<QString>("sentence");
        QTest::newRow("missing") << QByteArray() << u"cannot be put back now: File too large"_s;
        QTest::newRow("empty") << QByteArray("") << u"cannot be put back now: File too large"_s;
        QTest::newRow("minified") << QByteArray("a{b:c}") << u"cannot be taken out: File too large"_s;
    }

    void noRoom()
    {
        QFETCH(QByteArray, now);
        QFETCH(QString, sentence);
        leaveCopy();
        if (now.isNull())
            QVERIFY(QFile::remove(m_source));
        else
            write(m_source, now);
        const QStringList site = QDir(path(u"site"_s)).entryList(QDir::AllEntries | QDir::Hidden);
        const QStringList copies = leftInFolder();
        for (int start = 0; start < 2; ++start) {
            const QStringList sentences = [&] {
                const NoRoom limit(4);
                return putBackAfterInterruption({m_originals});
            }();
            QCOMPARE(sentences.size(), 1);
            QVERIFY2(sentences.first().contains(sentence), qPrintable(sentences.first()));
            // Nothing is half done: neither beside the source nor beside the copy.
            QCOMPARE(QDir(path(u"site"_s)).entryList(QDir::AllEntries | QDir::Hidden), site);
            QCOMPARE(leftInFolder(), copies);
            if (!now.isNull())
                QCOMPARE(readFile(m_source), now);
        }
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(readFile(now.isEmpty() ? m_source : m_originals + u'/' + leftInFolder().first()), original);
    }

    void whatIsNoFileNow()
    {
        leaveCopy();
        QVERIFY(QFile::remove(m_source));
        QCOMPARE(::mkfifo(QFile::encodeName(m_source).constData(), 0600), 0);
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QVERIFY(S_ISFIFO(statusOf(m_source).st_mode));
        QCOMPARE(leftInFolder().size(), 1);
    }

    void unusedAndForeignFiles()
    {
        {
            QString error;
            std::optional<PrivateFolder> folder = PrivateFolder::open(m_originals, error, true);
            QVERIFY(folder && OriginalSlot::makeIn(*folder));
        }
        write(m_originals + u"/empty.original"_s, QByteArray());
        QVERIFY(QFile::setPermissions(m_originals + u"/empty.original"_s, QFile::ReadOwner));
        write(m_originals + u"/notes"_s, "mine");
        QVERIFY(QFile::link(m_source, m_originals + u"/link.original"_s));
        QVERIFY(QDir(m_originals).mkdir(u"folder.original"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(m_originals + u"/fifo.original"_s).constData(), 0600), 0);
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList());
        QCOMPARE(leftInFolder(),
                 QStringList({u"fifo.original"_s, u"folder.original"_s, u"link.original"_s, u"notes"_s}));
        QCOMPARE(readFile(m_source), original);
        QCOMPARE(putBackAfterInterruption({path(u"nowhere"_s)}), QStringList());
    }
};

BREVANT_TEST(tst_InterruptedRuns, QCoreApplication)
#include "tst_InterruptedRuns.moc"
