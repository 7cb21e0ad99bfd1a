// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/SourcesTest.h"

#include <array>

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;
using Source = EntryResult::Source;

namespace {

const QByteArray newer("newer work");

} // namespace

class tst_SafetyCopy final : public SourcesTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(u"state/brevant/originals"_s); }

    void standardPath_data()
    {
        QTest::addColumn<QByteArray>("state"); // null: not set
        QTest::addColumn<QString>("folder");
        QTest::newRow("not set") << QByteArray() << u"/home/of/me/.local/state/brevant/originals"_s;
        QTest::newRow("empty") << QByteArray("") << u"/home/of/me/.local/state/brevant/originals"_s;
        QTest::newRow("relative") << QByteArray("state") << u"/home/of/me/.local/state/brevant/originals"_s;
        QTest::newRow("set") << QByteArray("/s") << u"/s/brevant/originals"_s;
    }

    void standardPath()
    {
        QFETCH(QByteArray, state);
        const QByteArray oldHome = qgetenv("HOME");
        const QByteArray oldState = qgetenv("XDG_STATE_HOME");
        qputenv("HOME", "/home/of/me");
        if (state.isNull())
            qunsetenv("XDG_STATE_HOME");
        else
            qputenv("XDG_STATE_HOME", state);
        const QString folder = Tools::standardOriginals().first();
        qputenv("HOME", oldHome);
        qputenv("XDG_STATE_HOME", oldState);
        QTEST(folder, "folder");
    }

    void ends_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("inPlace"); // else the output's name holds a ":"
        QTest::addColumn<bool>("gzip");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<Source>("state");
        QTest::addColumn<QByteArray>("left"); // null: the source as it was

        const QByteArray same;
        const QByteArray done("minified %1");
        QTest::newRow("done") << "copy"_ba << true << false << Outcome::Done << Source::Safe << done;
        QTest::newRow("done, gzip") << "copy"_ba << true << true << Outcome::Done << Source::Safe << done;
        QTest::newRow("done, colon") << "copy"_ba << false << false << Outcome::Done << Source::Safe << same;
        QTest::newRow("untouched") << "fail"_ba << true << false << Outcome::CompressorFailed << Source::Safe
                                   << same;
        QTest::newRow("untouched, gzip")
            << "fail"_ba << true << true << Outcome::CompressorFailed << Source::Safe << same;
        QTest::newRow("killed at once")
            << "crash"_ba << true << false << Outcome::CompressorKilled << Source::Safe << same;
        QTest::newRow("empty") << "empty"_ba << true << false << Outcome::EmptyOutput << Source::PutBack
                               << same;
        QTest::newRow("empty, gzip") << "empty"_ba << true << true << Outcome::EmptyOutput << Source::PutBack
                                     << same;
        QTest::newRow("cut") << "cut 1"_ba << true << false << Outcome::CompressorFailed << Source::PutBack
                             << same;
        QTest::newRow("cut, gzip") << "cut 1"_ba << true << true << Outcome::CompressorFailed
                                   << Source::PutBack << same;
        QTest::newRow("killed amid") << "cut -9"_ba << true << false << Outcome::CompressorKilled
                                     << Source::PutBack << same;
        QTest::newRow("overwritten, failed")
            << "overwrite 1"_ba << true << false << Outcome::CompressorFailed << Source::PutBack << same;
        QTest::newRow("overwritten, failed, gzip")
            << "overwrite 1"_ba << true << true << Outcome::CompressorFailed << Source::PutBack << same;
        QTest::newRow("overwritten, killed")
            << "overwrite -9"_ba << true << false << Outcome::CompressorKilled << Source::PutBack << same;
        QTest::newRow("deleted") << "delete 0"_ba << true << false << Outcome::NoOutput << Source::PutBack
                                 << same;
        QTest::newRow("deleted, gzip")
            << "delete 0"_ba << true << true << Outcome::NoOutput << Source::PutBack << same;
        QTest::newRow("newer, failed")
            << "replace 1"_ba << true << false << Outcome::CompressorFailed << Source::Safe << newer;
        QTest::newRow("colon, overwritten")
            << "overwrite 0"_ba << false << false << Outcome::NoOutput << Source::PutBack << same;
        QTest::newRow("colon, overwritten, gzip")
            << "overwrite 0"_ba << false << true << Outcome::NoOutput << Source::PutBack << same;
        QTest::newRow("colon, deleted")
            << "delete 0"_ba << false << false << Outcome::NoOutput << Source::PutBack << same;
        QTest::newRow("colon, newer")
            << "replace 0"_ba << false << false << Outcome::NoOutput << Source::Safe << newer;
    }

    void ends()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, inPlace);
        QFETCH(QByteArray, left);
        const QString source = add(u"a.css"_s, text);
        const QByteArray expected = left.isNull() ? text : left.replace("%1", QFile::encodeName(source));
        const std::array<timespec, 2> times{timespec{1'000'000'000, 123'456'789},
                                            timespec{1'000'000'001, 987'654'321}};
        QCOMPARE(::chmod(QFile::encodeName(source).constData(), 0604), 0);
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(source).constData(), times.data(), 0), 0);
        const struct stat before = statusOf(source);
        QFETCH(bool, gzip);
        m_settings->setOverride(gzip, gzipCheckerKeyString);

        const EntryResult result = run(source, inPlace ? source : path(u"site/a:b.css"_s));
        QTEST(result.outcome, "outcome");
        QTEST(result.sourceState, "state");
        QCOMPARE(readFile(source), expected);
        const struct stat after = statusOf(source);
        if (result.sourceState == Source::PutBack || (expected == text && !gzip)) {
            QCOMPARE(after.st_mode, before.st_mode);
            QCOMPARE(after.st_mtim.tv_sec, times[1].tv_sec);
            QCOMPARE(after.st_mtim.tv_nsec, times[1].tv_nsec);
        }
        if (result.sourceState == Source::PutBack) {
            QVERIFY(result.reason().contains(u"; the source was put back"));
            if (inPlace)
                QCOMPARE(result.sizeAfter, std::optional<qint64>(text.size()));
        }
        const bool isKept = inPlace && text.startsWith("overwrite");
        QCOMPARE(leftInFolder(), isKept ? QStringList{QFileInfo(result.kept).fileName()} : QStringList());
        QCOMPARE(result.kept.isEmpty(), !isKept);
        if (isKept) {
            QVERIFY2(result.reason().endsWith(u", and what was in it is kept as "_s + result.kept),
                     qPrintable(result.reason()));
            QVERIFY(result.kept.endsWith(u"-a.css"));
            QCOMPARE(readFile(result.kept), "minified"_ba);
            QCOMPARE(statusOf(result.kept).st_mode & 07777U, 0600U);
        }
        QCOMPARE(QDir(path(u"site"_s))
                     .entryList({u".*"_s}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList());
    }

    void noCopyWithoutNeed()
    {
        const QString source = add(u"a.css"_s, "copy");
        QCOMPARE(run(source, path(u"site/a.min.css"_s)).outcome, Outcome::Done);
        QCOMPARE(run(source, std::nullopt).outcome, Outcome::CompressorFailed);
        QCOMPARE(run(path(u"site/none.css"_s), path(u"site/none.css"_s)).outcome, Outcome::Done);
        QVERIFY(!QFile::exists(path(u"state"_s)));
    }

    /// Without a folder for copies so far.
    void aSourceThatCannotBeAskedFor()
    {
        const QString loop = path(u"site/loop.css"_s);
        QVERIFY(QFile::link(u"loop.css"_s, loop));
        QCOMPARE(run(loop, loop).outcome, Outcome::NotSafe);
    }

    void theFolderIsPrivate()
    {
        const QString source = add(u"a.css"_s, "copy");
        QCOMPARE(run(source, source).outcome, Outcome::Done);
        for (const QString &name : {u"state"_s, u"state/brevant"_s, u"state/brevant/originals"_s})
            QCOMPARE(statusOf(path(name)).st_mode & 07777U, 0700U);
        QVERIFY(QFile::setPermissions(m_originals, QFile::Permissions(0x7777)));
        QCOMPARE(run(source, source).outcome, Outcome::Done);
        QCOMPARE(statusOf(m_originals).st_mode & 07777U, 0700U);
    }

    void otherNamesOfTheSource_data()
    {
        QTest::addColumn<bool>("symbolic");
        QTest::addColumn<bool>("sourceIsLink"); // else the output is
        QTest::newRow("symbolic link as source") << true << true;
        QTest::newRow("symbolic link as output") << true << false;
        QTest::newRow("hard link") << false << true;
    }

    void otherNamesOfTheSource()
    {
        QFETCH(bool, symbolic);
        QFETCH(bool, sourceIsLink);
        const QString file = add(u"a.css"_s, "cut 1");
        const QString link = path(u"site/link.css"_s);
        const QByteArray target = symbolic ? "a.css"_ba : QFile::encodeName(file);
        QCOMPARE((symbolic ? ::symlink : ::link)(target.constData(), QFile::encodeName(link).constData()), 0);
        const struct stat before = statusOf(file);
        const EntryResult result = sourceIsLink ? run(link, file) : run(file, link);
        QCOMPARE(result.sourceState, Source::PutBack);
        QCOMPARE(readFile(file), "cut 1"_ba);
        QCOMPARE(statusOf(file).st_ino, before.st_ino);
        QCOMPARE(statusOf(file).st_nlink, before.st_nlink);
        QCOMPARE(QFileInfo(link).isSymLink(), symbolic);
    }

    void aDeletedTargetOfALink()
    {
        const QString file = add(u"a.css"_s, "silent");
        const QString link = path(u"site/link.css"_s);
        QVERIFY(QFile::link(u"a.css"_s, link));
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(link, Danger::Replaced), QString());
        QVERIFY(QFile::remove(file) && QFile::remove(link));
        EntryResult result;
        copy.finish(result, false);
        QCOMPARE(result.sourceState, Source::PutBack);
        QCOMPARE(QFile::symLinkTarget(link), file);
        QCOMPARE(readFile(link), "silent"_ba);
    }

    void aLinkAndTheGzipCopy_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isLinkStill");
        QTest::newRow("done") << "copy"_ba << false; // gzip makes a file of it, as it always did
        QTest::newRow("failed") << "fail"_ba << true;
        QTest::newRow("empty") << "empty"_ba << true;
    }

    void aLinkAndTheGzipCopy()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isLinkStill);
        const QString file = add(u"a.css"_s, text);
        const QString link = path(u"site/link.css"_s);
        QVERIFY(QFile::link(u"a.css"_s, link));
        m_settings->setOverride(true, gzipCheckerKeyString);
        const EntryResult result = run(link, link);
        QCOMPARE(result.outcome == Outcome::Done, !isLinkStill);
        QCOMPARE(QFileInfo(link).isSymLink(), isLinkStill);
        QCOMPARE(readFile(file), isLinkStill ? text : "minified " + QFile::encodeName(link));
    }

    void oneCopyAfterAnother()
    {
        // Longer and shorter ones, beyond what is reserved at first.
        for (const qsizetype size : {10, 300'000, 20, 0, 70'000}) {
            const QByteArray text = "cut 1 " + QByteArray(size, 'x');
            const QString source = add(u"a.css"_s, text);
            SafetyCopy copy(m_tools.originals, m_stop);
            for (int round = 0; round < 2; ++round) {
                QCOMPARE(copy.make(source, Danger::Replaced), QString());
                QCOMPARE(::truncate(QFile::encodeName(source).constData(), 3), 0);
                EntryResult result;
                result.outcome = Outcome::CompressorFailed;
                copy.finish(result, false);
                QCOMPARE(result.sourceState, Source::PutBack);
                QVERIFY(readFile(source) == text);
            }
        }
    }

    void withoutACopyNothingIsRun_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("below a file") << u"settings.json/originals"_s;
        QTest::newRow("a file") << u"settings.json"_s;
        QTest::newRow("a kernel's file system") << u"/proc/originals"_s;
    }

    void withoutACopyNothingIsRun()
    {
        QFETCH(QString, folder);
        add(u"../settings.json"_s, "{}");
        m_tools.originals = {folder.startsWith(u'/') ? folder : path(folder)};
        const QString source = add(u"a.css"_s, "copy");
        const EntryResult result = run(source, source);
        QCOMPARE(result.outcome, Outcome::NotSafe);
        QVERIFY2(result.reason().startsWith(u"not minified, as no safety copy of it could be made: "),
                 qPrintable(result.reason()));
        QCOMPARE(readFile(source), "copy"_ba);
        QCOMPARE(run(source, path(u"site/a.min.css"_s)).outcome, Outcome::Done);
    }

    void whatCannotBePutBackStays()
    {
        const QString source = add(u"gone/a.css"_s, "copy");
        const QString next = add(u"b.css"_s, "copy");
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(QDir(path(u"site/gone"_s)).removeRecursively());
        EntryResult result;
        result.outcome = Outcome::CompressorFailed;
        copy.finish(result, false);
        QCOMPARE(result.sourceState, Source::Lost);
        QVERIFY2(result.reason().contains(u"could not be put back (No such file"),
                 qPrintable(result.reason()));
        QCOMPARE(leftInFolder().size(), 1);
        // The next entry gets a copy of its own.
        QCOMPARE(copy.make(next, Danger::Replaced), QString());
        QCOMPARE(leftInFolder().size(), 2);
    }
};

BREVANT_TEST(tst_SafetyCopy, QCoreApplication)
#include "tst_SafetyCopy.moc"
