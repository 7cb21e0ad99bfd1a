// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"
#include "engine/originals/PutBack.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"
#include "tests/engine/LeftCopy.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <functional>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;
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

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(missing)");
}

struct stat statusOf(const QString &path)
{
    struct stat status {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

QByteArray attributeOf(const QString &path, const char *name)
{
    QByteArray value(1000, Qt::Uninitialized);
    const ssize_t size = ::getxattr(QFile::encodeName(path).constData(), name, value.data(),
                                    static_cast<std::size_t>(value.size()));
    return size < 0 ? QByteArrayLiteral("(none)") : value.first(size);
}

bool setAttribute(const QString &path, const char *name, const QByteArray &value)
{
    return ::setxattr(QFile::encodeName(path).constData(), name, value.constData(),
                      static_cast<std::size_t>(value.size()), 0) == 0;
}

class Results final : public RunObserver {
public:
    void entryStarted(const EntryStart &start) override
    {
        if (onRow)
            onRow(start.index);
    }
    void entryEnded(const EntryResult &result) override { all.push_back(result); }

    std::vector<EntryResult> all;
    std::function<void(int)> onRow;
};

/// Works as a user without rights while it lives.
class AsUser final {
public:
    explicit AsUser(uid_t user) { m_done = ::seteuid(user) == 0; }
    ~AsUser() { [[maybe_unused]] const int back = ::seteuid(0); }
    AsUser(const AsUser &) = delete;
    AsUser &operator=(const AsUser &) = delete;
    [[nodiscard]] bool isDone() const { return m_done; }

private:
    bool m_done;
};

} // namespace

/// What a run leaves of the files it was not to change, and of all that belongs to one besides its content.
class tst_Untouched final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<SettingsStore>(path(u"settings.json"_s));
        m_settings->registerDefaults(registeredDefaults());
        m_settings->setOverride(false, suffixSwitcherKeyString);
        for (const QString &name : {u"lib"_s, u"site"_s, u"out"_s})
            QDir(m_folder->path()).mkdir(name);
        m_tools = Tools::inResources(m_folder->path());
        m_tools.java = QStringLiteral(STUB_JAVA);
        m_originals = path(u"originals"_s);
        m_tools.originals = {m_originals};
        m_queue.clear();
        m_display.onRow = {};
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
        QCOMPARE(bytesOf(source), text);
        verifyDressed(source);
        QCOMPARE(bytesOf(gzipCopy), gzipped);
        verifyDressed(gzipCopy);
        if (hasOtherName) {
            QCOMPARE(bytesOf(other), text);
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
        QCOMPARE(bytesOf(source), "minified " + QFile::encodeName(source));
        const struct stat now = statusOf(QFileInfo(source).canonicalFilePath());
        QCOMPARE(now.st_mode, before.st_mode);
        QCOMPARE(now.st_uid, before.st_uid);
        QCOMPARE(now.st_gid, before.st_gid);
        QCOMPARE(attributeOf(source, "user.mine"), m_hasAttributes ? "yes"_ba : "(none)"_ba);
        QCOMPARE(attributeOf(source, "system.posix_acl_access"), m_hasLists ? accessList : "(none)"_ba);
        QVERIFY(now.st_mtim.tv_sec > before.st_mtim.tv_sec);
    }

    void somebodyElsesFile_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("gzip");
        QTest::newRow("cut") << QByteArray("cut 1") << false;
        QTest::newRow("empty") << QByteArray("empty") << false;
        QTest::newRow("empty, gzip") << QByteArray("empty") << true;
    }

    void somebodyElsesFile()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, gzip);
        if (::geteuid() != 0)
            QSKIP("only root has files of two users");
        const QString source = add(u"a.css"_s, text);
        QCOMPARE(::chmod(QFile::encodeName(source).constData(), 0666), 0);
        for (const QString &folder : {m_folder->path(), path(u"site"_s)})
            QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
        m_settings->setOverride(gzip, gzipCheckerKeyString);
        const EntryResult result = [&] {
            const AsUser user(somebodyElse);
            return user.isDone() ? run({source}).front() : EntryResult();
        }();
        QCOMPARE(result.sourceState, Source::PutBack);
        QCOMPARE(bytesOf(source), text);
        const QString lacks = gzip ? u"owner"_s : u"times"_s;
        QCOMPARE(result.notes.size(), 1);
        QVERIFY2(result.notes.first().startsWith(source + u" was put back, but not its "_s + lacks) &&
                     result.notes.first().endsWith(u"(Operation not permitted)."_s),
                 qPrintable(result.notes.first()));
        QCOMPARE(QDir(m_originals).entryList({u"*.original"_s}), QStringList());
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
        QCOMPARE(bytesOf(source),
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
            QCOMPARE(bytesOf(m_originals + u'/' + kept.first()), "copy, the second"_ba);
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
        m_display.onRow = [this](int row) {
            if (row == 1)
                m_settings->setOverride(QString(), suffixKeyString);
        };
        const std::vector<EntryResult> results = run({first, second});
        QCOMPARE(results.size(), std::size_t(2));
        QCOMPARE(results[0].notes, QStringList());
        QCOMPARE(results[1].outcome, Outcome::Done);
        const QStringList kept = QDir(m_originals).entryList({u"kept-*"_s});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(bytesOf(m_originals + u'/' + kept.first()), "copy"_ba);
        QCOMPARE(results[1].notes,
                 QStringList{
                     u"%1 was replaced by its output, as the settings were changed during the run; what it "
                     "was before is kept as %2/%3."_s.arg(second, m_originals, kept.first())});
        // One that replaces its sources from the start keeps nothing.
        m_display.onRow = {};
        QCOMPARE(run({first}).front().notes, QStringList());
    }

    void whatAnotherProgramLeft()
    {
        // It was killed, and so was its compressor later: the source is put back before it is minified.
        const QString source = add(u"a.css"_s, "copy");
        QVERIFY(brevant::test::LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        const EntryResult result = run({source}).front();
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(bytesOf(source), "minified " + QFile::encodeName(source));
        QCOMPARE(result.sizeBefore, std::optional<qint64>(4));
        QCOMPARE(result.notes,
                 QStringList{source + u" was lost when a run was cut short, and has been put back."_s});
        QCOMPARE(QDir(m_originals).entryList({u"*.original"_s}), QStringList());
    }

    void whereTheFolderTakesNoCopy()
    {
        const QString source = add(u"a.css"_s, "cut 1");
        add(u"../state"_s, "a file");
        m_tools.originals = {path(u"state/originals"_s), m_originals};
        const EntryResult result = run({source}).front();
        QCOMPARE(result.sourceState, Source::PutBack);
        QCOMPARE(bytesOf(source), "cut 1"_ba);
        QCOMPARE(
            result.notes,
            QStringList{u"The safety copies of this run are in %1: %2 takes none (Not a directory)."_s.arg(
                m_originals, path(u"state/originals"_s))});
        // Left by a program that was killed, it is found there too.
        QVERIFY(brevant::test::LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        QCOMPARE(putBackAfterInterruption(m_tools.originals).size(), 2); // and that the other is no folder
        QCOMPARE(bytesOf(source), "cut 1"_ba);
    }

    void somebodyElsesCopies_data()
    {
        QTest::addColumn<bool>("wholeFolder");
        QTest::newRow("folder") << true;
        QTest::newRow("file") << false;
    }

    void somebodyElsesCopies()
    {
        QFETCH(bool, wholeFolder);
        if (::geteuid() != 0)
            QSKIP("only root has files of two users");
        const QString source = add(u"a.css"_s, "copy");
        QVERIFY(brevant::test::LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        const QString copy = m_originals + u'/' + QDir(m_originals).entryList({u"*.original"_s}).value(0);
        const QString planted = wholeFolder ? m_originals : copy;
        QCOMPARE(::chown(QFile::encodeName(planted).constData(), somebodyElse, somebodyElse), 0);
        const QString sentence =
            wholeFolder ? u"The safety copies in %1 are not looked at: %1 belongs to another user."_s
                        : u"The safety copy %1 is not used, as it may be somebody else's."_s;
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList{sentence.arg(planted)});
        QCOMPARE(bytesOf(source), QByteArray());
        QVERIFY(QFile::exists(copy));
        if (wholeFolder) {
            add(u"a.css"_s, "copy");
            QCOMPARE(run({source}).front().outcome, Outcome::NotSafe);
            QCOMPARE(bytesOf(source), "copy"_ba);
        }
    }

    void noSpecialBitsFromARecord()
    {
        const QString source = add(u"a.css"_s, "copy");
        QCOMPARE(::chmod(QFile::encodeName(source).constData(), 06755), 0);
        QVERIFY(brevant::test::LeftCopy(source, m_originals).isFilled());
        QVERIFY(QFile::remove(source));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(statusOf(source).st_mode & 07777U, 0755U);
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    QString add(const QString &name, const QByteArray &text) const
    {
        const QString file = QDir::cleanPath(path(u"site/"_s + name));
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(text) != text.size())
            qFatal("%s", qPrintable(file));
        return file;
    }

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

    std::vector<EntryResult> run(const QStringList &entries)
    {
        m_queue.clear();
        m_display.all.clear();
        for (const QString &entry : entries)
            m_queue.append(entry);
        const std::atomic<Stop> stop = Stop::No;
        MinifyJob(m_queue, *m_settings, m_tools, m_display, stop).run();
        return m_display.all.empty() ? std::vector<EntryResult>(1) : m_display.all;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    FileQueue m_queue;
    Results m_display;
    QString m_originals;
    Tools m_tools;
    bool m_hasAttributes = false;
    bool m_hasLists = false;
};

BREVANT_TEST(tst_Untouched, QCoreApplication)
#include "tst_Untouched.moc"
