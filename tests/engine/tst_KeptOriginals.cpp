// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"
#include "tests/TestClass.h"
#include "tests/engine/KeptTest.h"

#include <QCryptographicHash>

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;

/// Which originals are kept, and for how long.
class tst_KeptOriginals final : public KeptTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUpKept(); }

    void aReplacedSourceIsKept()
    {
        const QString source = addMarked(u"a.css"_s);
        const EntryResult result = minify(source);
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(readFile(source), "minified " + QFile::encodeName(source));
        QCOMPARE(readFile(result.original), "copy"_ba);
        QCOMPARE(result.basis->original, result.original);
        QCOMPARE(statusOf(result.original).st_mode & 07777U, 0600U);
        QCOMPARE(statusOf(result.original).st_mtim.tv_sec, times[1].tv_sec);
        QCOMPARE(leftInFolder().size(), 2);
        const auto record = OriginalRecord::fromBytes(readFile(recordOf(result.original)));
        QVERIFY(record);
        QCOMPARE(record->path, QFile::encodeName(source));
        QCOMPARE(record->mode, 0604U);
        QCOMPARE(record->modified.tv_nsec, times[1].tv_nsec);
        QCOMPARE(record->written.size(), 32);
    }

    void aStartLeavesThemAlone()
    {
        const QString source = add(u"a.css"_s, "copy");
        const EntryResult result = minify(source);
        for (const QByteArray &now : {readFile(source), ""_ba, "newer"_ba}) {
            QVERIFY(writeFile(source, now));
            QCOMPARE(putBackAfterInterruption(m_tools.originals), QStringList());
            QCOMPARE(readFile(source), now);
        }
        QVERIFY(QFile::remove(source));
        QCOMPARE(putBackAfterInterruption(m_tools.originals), QStringList());
        QVERIFY(!QFile::exists(source));
        QVERIFY(KeptOriginals::isThere(result.original));
    }

    void onlyWhatIsReplaced_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<bool>("inPlace");
        QTest::newRow("off") << "copy"_ba << false << true;
        QTest::newRow("beside the source") << "copy"_ba << true << false;
        QTest::newRow("failed") << "cut 1"_ba << true << true;
        QTest::newRow("empty") << "empty"_ba << true << true;
    }

    void onlyWhatIsReplaced()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isOn);
        QFETCH(bool, inPlace);
        m_settings->setOverride(isOn, keepOriginalsCheckerKeyString);
        m_settings->setOverride(!inPlace, suffixSwitcherKeyString);
        const EntryResult result = minify(add(u"a.css"_s, text));
        QCOMPARE(result.original, QString());
        QCOMPARE(result.notKept, QString());
        QCOMPARE(leftInFolder(), QStringList());
    }

    void modernSources_data()
    {
        QTest::addColumn<int>("names");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("isKept");
        QTest::newRow("replaced") << 1 << "tr -d ' '"_ba << true;
        QTest::newRow("written into") << 2 << "tr -d ' '"_ba << true;
        QTest::newRow("failed") << 1 << "exit 1"_ba << false;
        QTest::newRow("no smaller") << 1 << "cat"_ba << false;
        QTest::newRow("changed meanwhile") << 1 << "echo newer >%1; tr -d ' '"_ba << false;
    }

    void modernSources()
    {
        QFETCH(int, names);
        QFETCH(QByteArray, script);
        const QByteArray text("a { b : c }");
        const QString source = addMarked(u"a.css"_s, text);
        if (names > 1)
            QVERIFY(makeHardLink(source, path(u"out/b.css"_s)));
        const QString esbuild =
            add(u"../esbuild"_s, "#!/bin/sh\n" + script.replace("%1", QFile::encodeName(source)) + "\n");
        QVERIFY(setMode(esbuild, 0700));
        m_settings->setOverride(u"modern"_s, compressorsKeyString);
        m_settings->setOverride(esbuild, esbuildPathKeyString);
        const EntryResult result = minify(source);
        QTEST(!result.original.isEmpty(), "isKept");
        QCOMPARE(leftInFolder().size(), result.original.isEmpty() ? 0 : 2);
        QCOMPARE(result.outcome == Outcome::Done && readFile(source) == "a{b:c}", !result.original.isEmpty());
        if (result.original.isEmpty())
            return;
        QCOMPARE(readFile(result.original), text);
        const auto record = OriginalRecord::fromBytes(readFile(recordOf(result.original)));
        QVERIFY(record);
        QCOMPARE(record->written, QCryptographicHash::hash("a{b:c}", QCryptographicHash::Sha256));
        QCOMPARE(record->mode, 0604U);
    }

    void notInTheTerminal()
    {
        const std::vector<EntryResult> results = run(QStringList{add(u"a.css"_s, "copy")});
        QCOMPARE(results.front().outcome, Outcome::Done);
        QCOMPARE(results.front().original, QString());
        QCOMPARE(leftInFolder(), QStringList());
    }

    void theNextRunDropsThem()
    {
        const QString kept = minify(add(u"a.css"_s, "copy")).original;
        {
            const KeptOriginals::Use use(*m_kept, {kept});
            m_kept->dropForRun();
            QVERIFY(KeptOriginals::isThere(kept));
            QCOMPARE(leftInFolder().size(), 2);
        }
        m_kept->dropForRun();
        QVERIFY(!KeptOriginals::isThere(kept));
        QCOMPARE(leftInFolder(), QStringList());
    }

    void aRunKeepsItsOwnWhileAnotherBegins()
    {
        FileQueue queue;
        for (const QString &name : {u"a.css"_s, u"b.css"_s})
            queue.append(add(name, "copy"));
        KeptOriginals::Use use(*m_kept);
        MinifyJob job(queue, *m_settings, m_tools, m_observer, m_stop);
        job.keepOriginals(use);
        m_observer.onStatus = [this](const QString &) { m_kept->dropForRun(); };
        job.run();
        QCOMPARE(m_observer.results.size(), 2U);
        for (const EntryResult &result : m_observer.results)
            QVERIFY(KeptOriginals::isThere(result.original));
    }

    void sevenDays_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<bool>("isDropped");
        QTest::newRow("six") << 6 << false;
        QTest::newRow("eight") << 8 << true;
        QTest::newRow("a clock that was put back") << -2 << false;
    }

    void sevenDays()
    {
        QFETCH(int, days);
        const QString kept = minify(add(u"a.css"_s, "copy")).original;
        setAge(recordOf(kept), days);
        m_kept->dropOld();
        QTEST(leftInFolder().isEmpty(), "isDropped");
    }

    void aContentWithoutItsRecordGoes()
    {
        const QString kept = minify(add(u"a.css"_s, "copy")).original;
        QVERIFY(QFile::remove(recordOf(kept)));
        m_kept->dropOld();
        QCOMPARE(leftInFolder(), QStringList());
    }

    void thoseOfAnotherProgram()
    {
        auto other = std::make_unique<KeptOriginals>(m_tools);
        const QString kept = minify(add(u"a.css"_s, "copy"), *other).original;
        setAge(recordOf(kept), 8);
        m_kept->dropForRun();
        m_kept->dropOld();
        QVERIFY(KeptOriginals::isThere(kept)); // it runs
        other.reset();
        m_kept->dropForRun();
        QCOMPARE(leftInFolder(), QStringList());
    }

    void noMoreThanThereIsRoomFor()
    {
        const QByteArray text = "copy" + QByteArray(30'000, ' ');
        m_kept = std::make_unique<KeptOriginals>(m_tools, 65'000);
        KeptOriginals::Use run(*m_kept);
        QVERIFY(KeptOriginals::isThere(minify(add(u"a.css"_s, text)).original));
        const EntryResult second = minify(add(u"b.css"_s, text));
        QVERIFY(KeptOriginals::isThere(second.original));
        const EntryResult third = minify(add(u"c.css"_s, text));
        QCOMPARE(third.outcome, Outcome::Done);
        QCOMPARE(third.original, QString());
        QVERIFY2(third.notKept.startsWith(u"its original was not kept, as all originals together would take"),
                 qPrintable(third.notKept));
        QCOMPARE(leftInFolder().size(), 4);
        // What another program has left counts, too.
        KeptOriginals other(m_tools, 65'000);
        other.dropForRun();
        QVERIFY(!minify(add(u"d.css"_s, text), other).notKept.isEmpty());
        m_kept->dropForRun();
        QVERIFY(KeptOriginals::isThere(minify(add(u"e.css"_s, text)).original));
    }

    void whatCannotBeKeptIsSaid()
    {
        const QString source = add(u"a.css"_s, "copy");
        KeptOriginals::Use use(*m_kept);
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(writeFile(source, "output"));
        QVERIFY(QDir().rename(m_originals, m_originals + u" moved"_s) && writeFile(m_originals, "no folder"));
        EntryResult result;
        result.outcome = Outcome::Done;
        copy.finish(result, false, &use);
        QCOMPARE(result.outcome, Outcome::Done);
        QCOMPARE(result.original, QString());
        QVERIFY2(result.notKept.startsWith(u"its original could not be kept: "), qPrintable(result.notKept));
        QCOMPARE(readFile(source), "output"_ba);
    }

    void withoutASafetyCopyThatIsSaid()
    {
        const QString source = add(u"a.css"_s, "copy");
        KeptOriginals::Use use(*m_kept);
        SafetyCopy copy({}, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(writeFile(source, "output"));
        EntryResult result;
        result.outcome = Outcome::Done;
        copy.finish(result, false, &use);
        QCOMPARE(result.original, QString());
        QCOMPARE(result.notKept, u"its original could not be kept: there was no safety copy of it"_s);
    }

    void whatIsNotOursStays()
    {
        const QString target = add(u"precious.css"_s, "precious");
        QVERIFY(KeptOriginals::isThere(minify(add(u"a.css"_s, "copy")).original));
        m_kept->dropForRun();
        const QStringList names{u"mine.kept"_s, u"a-b.source.kept"_s, u"kept-x-a.css"_s};
        for (const QString &name : names)
            QVERIFY(writeFile(m_originals + u'/' + name, "x"));
        QVERIFY(makeLink(target, m_originals + u"/1-a-b.source.kept"_s));
        QVERIFY(QDir(m_originals).mkdir(u"1-a-c.source.kept"_s));
        m_kept->dropForRun();
        for (const QString &name : names)
            QCOMPARE(readFile(m_originals + u'/' + name), "x"_ba);
        QCOMPARE(readFile(target), "precious"_ba);
        QVERIFY(!QFileInfo(m_originals + u"/1-a-b.source.kept"_s).isSymLink());
    }
};

BREVANT_TEST(tst_KeptOriginals, QCoreApplication)
#include "tst_KeptOriginals.moc"
