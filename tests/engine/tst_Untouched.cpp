// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/SourcesTest.h"

#include <array>

#include <sys/xattr.h>

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;
using Source = EntryResult::Source;

namespace {

constexpr uid_t somebodyElse = 65533;

// user:: rw-, user:65533 r--, group:: r--, mask:: r--, other:: ---, as acl(5) has it in an attribute.
const QByteArray accessList = QByteArray::fromHex("02000000"
                                                  "01000600ffffffff"
                                                  "02000400fdff0000"
                                                  "04000400ffffffff"
                                                  "10000400ffffffff"
                                                  "20000000ffffffff");

/// "an older output", as `gzip -n` has it.
const QByteArray gzipped =
    QByteArray::fromHex("1f8b08000000000000034bcc53c8cf49492d52c82f2d29282d01009b810a4a0f000000");

QByteArray attributeOf(const QString &path, const char *name)
{
    QByteArray value(1000, Qt::Uninitialized);
    const ssize_t size = ::getxattr(QFile::encodeName(path).constData(), name, value.data(),
                                    static_cast<std::size_t>(value.size()));
    return size < 0 ? "(none)"_ba : value.first(size);
}

bool setAttribute(const QString &path, const char *name, const QByteArray &value)
{
    return ::setxattr(QFile::encodeName(path).constData(), name, value.constData(),
                      static_cast<std::size_t>(value.size()), 0) == 0;
}

} // namespace

/// What a run leaves of the files it was not to change, and of all that belongs to one besides its content.
class tst_Untouched final : public SourcesTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setUp(u"originals"_s);
        m_settings->setOverride(false, suffixSwitcherKeyString);
        m_observer.onStatus = {};
    }

    void afterAFailure_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("gzip");
        QTest::addColumn<bool>("hasOtherName");
        for (const char *text : {"empty", "cut 1", "overwrite 1", "fail", "delete 0", "crash"}) {
            for (const bool gzip : {false, true}) {
                for (const bool hasOtherName : {false, true})
                    QTest::addRow("%s%s%s", text, gzip ? ", gzip" : "", hasOtherName ? ", another name" : "")
                        << QByteArray(text) << gzip << hasOtherName;
            }
        }
    }

    void afterAFailure()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, gzip);
        QFETCH(bool, hasOtherName);
        const QString source = add(u"a.css"_s, text);
        const QString other = path(u"out/other.css"_s);
        dress(source);
        const QString gzipCopy = add(u"a.css.gz"_s, gzipped);
        dress(gzipCopy);
        if (hasOtherName)
            QVERIFY(QFile::exists(source) &&
                    ::link(QFile::encodeName(source).constData(), QFile::encodeName(other).constData()) == 0);
        const struct stat before = statusOf(source);
        m_settings->setOverride(gzip, gzipCheckerKeyString);

        const EntryResult result = run({source}).front();
        QVERIFY(result.outcome != Outcome::Done);
        QCOMPARE(result.notes, QStringList());
        QCOMPARE(result.gzipSize, std::optional<qint64>());
        QCOMPARE(readFile(source), text);
        verifyDressed(source);
        QCOMPARE(readFile(gzipCopy), gzipped);
        verifyDressed(gzipCopy);
        if (hasOtherName) {
            QCOMPARE(readFile(other), text);
            QCOMPARE(statusOf(source).st_ino, statusOf(other).st_ino);
            QCOMPARE(statusOf(source).st_ino, before.st_ino);
        }
        QCOMPARE(QDir(path(u"site"_s)).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }

    void aFailureMakesNoGzipCopy()
    {
        const QString source = add(u"a.css"_s, "empty");
        m_settings->setOverride(true, gzipCheckerKeyString);
        QCOMPARE(run({source}).front().outcome, Outcome::EmptyOutput);
        QCOMPARE(QDir(path(u"site"_s)).entryList(QDir::Files | QDir::Hidden), QStringList{u"a.css"_s});
    }

    void afterASuccess_data()
    {
        QTest::addColumn<bool>("gzip");
        QTest::addColumn<bool>("byLink");
        QTest::newRow("plain") << false << false;
        QTest::newRow("gzip") << true << false;
        QTest::newRow("a link") << false << true;
        QTest::newRow("a link, gzip") << true << true;
    }

    void afterASuccess()
    {
        QFETCH(bool, gzip);
        QFETCH(bool, byLink);
        QString source = add(u"a.css"_s, "copy");
        dress(source);
        const struct stat before = statusOf(source);
        if (byLink) {
            const QString link = source + u".css"_s;
            QVERIFY(QFile::link(source, link));
            source = link;
        }
        m_settings->setOverride(gzip, gzipCheckerKeyString);
        const EntryResult result = run({source}).front();
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(result.notes, QStringList());
        QCOMPARE(readFile(source), "minified " + QFile::encodeName(source));
        const struct stat now = statusOf(QFileInfo(source).canonicalFilePath());
        QCOMPARE(now.st_mode, before.st_mode);
        QCOMPARE(now.st_uid, before.st_uid);
        QCOMPARE(now.st_gid, before.st_gid);
        QCOMPARE(attributeOf(source, "user.mine"), m_hasAttributes ? "yes"_ba : "(none)"_ba);
        QCOMPARE(attributeOf(source, "system.posix_acl_access"), m_hasLists ? accessList : "(none)"_ba);
        QVERIFY(now.st_mtim.tv_sec > before.st_mtim.tv_sec);
    }

    void asTheCompressorSeesPaths_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<Outcome>("outcome");
        QTest::newRow("empty") << QByteArray("empty") << Outcome::EmptyOutput;
        QTest::newRow("cut") << QByteArray("cut 1") << Outcome::CompressorFailed;
        QTest::newRow("done") << QByteArray("copy") << Outcome::Done;
    }

    void asTheCompressorSeesPaths()
    {
        QFETCH(QByteArray, text);
        // The folder of the outputs counts from that of the compressors, and is that of the sources.
        const QString source = add(u"a.css"_s, text);
        m_settings->setOverride(false, sameFolderKeyString);
        m_settings->setOverride(u"../site"_s, selectedFolderKeyString);
        const EntryResult result = run({source}).front();
        QTEST(result.outcome, "outcome");
        QCOMPARE(readFile(source),
                 result.outcome == Outcome::Done ? "minified " + QFile::encodeName(source) : text);
    }

    void anotherEntryIsReplaced_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("byLink");
        QTest::newRow("done") << QByteArray("copy") << false;
        QTest::newRow("done, under another name") << QByteArray("copy") << true;
        QTest::newRow("emptied") << QByteArray("empty") << false;
    }

    void anotherEntryIsReplaced()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, byLink);
        const QString first = add(u"a.css"_s, text);
        const QString second = add(u"../out/a.css"_s, "copy, the second");
        QString listed = second;
        if (byLink) {
            QVERIFY(QFile::link(path(u"out"_s), path(u"link"_s)));
            listed = path(u"link/a.css"_s);
        }
        m_settings->setOverride(false, sameFolderKeyString);
        m_settings->setOverride(path(u"out"_s), selectedFolderKeyString);
        const EntryResult result = run({first, listed}).front();
        QCOMPARE(result.notes.size(), 1);
        const QStringList kept = QDir(m_originals).entryList({u"kept-*"_s});
        if (text == "copy") {
            QCOMPARE(result.outcome, Outcome::Done);
            QCOMPARE(kept.size(), 1);
            QCOMPARE(readFile(m_originals + u'/' + kept.first()), "copy, the second"_ba);
            QVERIFY2(result.notes.first().endsWith(
                         u"which is in the list too, was replaced by the output of %1; what it was before is "
                         "kept as %2/%3."_s.arg(first, m_originals, kept.first())),
                     qPrintable(result.notes.first()));
        } else {
            QCOMPARE(result.outcome, Outcome::EmptyOutput);
            QVERIFY(result.notes.first().endsWith(u"which is in the list too, was put back."_s));
            QCOMPARE(kept, QStringList());
        }
    }

    void aChangedSuffixAmidTheRun()
    {
        m_settings->setOverride(true, suffixSwitcherKeyString);
        const QString first = add(u"a.css"_s, "copy");
        const QString second = add(u"b.css"_s, "copy");
        m_observer.onStatus = [this](const QString &status) {
            if (status == u"Minified 2 of 2 items.")
                m_settings->setOverride(QString(), suffixKeyString);
        };
        const std::vector<EntryResult> results = run({first, second});
        QCOMPARE(results.size(), std::size_t(2));
        QCOMPARE(results[0].notes, QStringList());
        QCOMPARE(results[1].outcome, Outcome::Done);
        const QStringList kept = QDir(m_originals).entryList({u"kept-*"_s});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(readFile(m_originals + u'/' + kept.first()), "copy"_ba);
        QCOMPARE(results[1].notes,
                 QStringList{
                     u"%1 was replaced by its output, as the settings were changed during the run; what it "
                     "was before is kept as %2/%3."_s.arg(second, m_originals, kept.first())});
        // One that replaces its sources from the start keeps nothing.
        m_observer.onStatus = {};
        QCOMPARE(run({first}).front().notes, QStringList());
    }

private:
    /// Gives a file all that it can have besides its content.
    void dress(const QString &file)
    {
        const QByteArray name = QFile::encodeName(file);
        if (::geteuid() == 0)
            QCOMPARE(::chown(name.constData(), somebodyElse, somebodyElse), 0);
        QCOMPARE(::chmod(name.constData(), 0640), 0);
        m_hasAttributes = setAttribute(file, "user.mine", "yes");
        m_hasLists = setAttribute(file, "system.posix_acl_access", accessList);
        const std::array<timespec, 2> times{timespec{1'000'000'000, 123'456'789},
                                            timespec{1'000'000'001, 987'654'321}};
        QCOMPARE(::utimensat(AT_FDCWD, name.constData(), times.data(), 0), 0);
    }

    void verifyDressed(const QString &file) const
    {
        const struct stat now = statusOf(file);
        QCOMPARE(now.st_mode & 07777U, 0640U);
        QCOMPARE(now.st_uid, ::geteuid() == 0 ? somebodyElse : ::geteuid());
        QCOMPARE(now.st_mtim.tv_sec, 1'000'000'001);
        QCOMPARE(now.st_mtim.tv_nsec, 987'654'321);
        QCOMPARE(attributeOf(file, "user.mine"), m_hasAttributes ? "yes"_ba : "(none)"_ba);
        QCOMPARE(attributeOf(file, "system.posix_acl_access"), m_hasLists ? accessList : "(none)"_ba);
    }

    bool m_hasAttributes = false;
    bool m_hasLists = false;
};

BREVANT_TEST(tst_Untouched, QCoreApplication)
#include "tst_Untouched.moc"
