// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"
#include "tests/TestClass.h"
#include "tests/engine/SourcesTest.h"

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;
using Source = EntryResult::Source;

namespace {

constexpr uid_t somebodyElse = 65533;

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

/// Sources and copies that belong to other users, or were left by other programs.
class tst_ForeignFiles final : public SourcesTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setUp(u"originals"_s);
        m_settings->setOverride(false, suffixSwitcherKeyString);
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
        QCOMPARE(readFile(source), text);
        const QString lacks = gzip ? u"owner"_s : u"times"_s;
        QCOMPARE(result.notes.size(), 1);
        QVERIFY2(result.notes.first().startsWith(source + u" was put back, but not its "_s + lacks) &&
                     result.notes.first().endsWith(u"(Operation not permitted)."_s),
                 qPrintable(result.notes.first()));
        QCOMPARE(QDir(m_originals).entryList({u"*.original"_s}), QStringList());
    }

    void whatAnotherProgramLeft()
    {
        // It was killed, and so was its compressor later: the source is put back before it is minified.
        const QString source = add(u"a.css"_s, "copy");
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        const EntryResult result = run({source}).front();
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(readFile(source), "minified " + QFile::encodeName(source));
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
        QCOMPARE(readFile(source), "cut 1"_ba);
        QCOMPARE(
            result.notes,
            QStringList{u"The safety copies of this run are in %1: %2 takes none (Not a directory)."_s.arg(
                m_originals, path(u"state/originals"_s))});
        // Left by a program that was killed, it is found there too.
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        QCOMPARE(putBackAfterInterruption(m_tools.originals).size(), 2); // and that the other is no folder
        QCOMPARE(readFile(source), "cut 1"_ba);
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
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        add(u"a.css"_s, "");
        const QString copy = m_originals + u'/' + QDir(m_originals).entryList({u"*.original"_s}).value(0);
        const QString planted = wholeFolder ? m_originals : copy;
        QCOMPARE(::chown(QFile::encodeName(planted).constData(), somebodyElse, somebodyElse), 0);
        const QString sentence =
            wholeFolder ? u"The safety copies in %1 are not looked at: %1 belongs to another user."_s
                        : u"The safety copy %1 is not used, as it may be somebody else's."_s;
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList{sentence.arg(planted)});
        QCOMPARE(readFile(source), QByteArray());
        QVERIFY(QFile::exists(copy));
        if (wholeFolder) {
            add(u"a.css"_s, "copy");
            QCOMPARE(run({source}).front().outcome, Outcome::NotSafe);
            QCOMPARE(readFile(source), "copy"_ba);
        }
    }

    void noSpecialBitsFromARecord()
    {
        const QString source = add(u"a.css"_s, "copy");
        QCOMPARE(::chmod(QFile::encodeName(source).constData(), 06755), 0);
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        QVERIFY(QFile::remove(source));
        QCOMPARE(putBackAfterInterruption({m_originals}).size(), 1);
        QCOMPARE(statusOf(source).st_mode & 07777U, 0755U);
    }
};

BREVANT_TEST(tst_ForeignFiles, QCoreApplication)
#include "tst_ForeignFiles.moc"
