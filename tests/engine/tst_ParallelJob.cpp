// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/NoThreads.h"
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QTest>

#include <algorithm>
#include <system_error>
#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Runs with several compressors at once.
class tst_ParallelJob final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<JobFixture>();
        qputenv("BREVANT_STUB_ENDS", "1");
    }
    void cleanup() { qunsetenv("BREVANT_STUB_ENDS"); }

    void allAtOnceAndShownInOrder()
    {
        // The first waits for the last to be done: that can only be if they run at the same time.
        const QString flag = m_bench->add(u"flag"_s, "here");
        m_bench->append(u"a.css"_s, "wait " + QFile::encodeName(flag));
        m_bench->append(u"b.css"_s, "fail");
        m_bench->append(u"c.js"_s, "copy");
        std::thread last([&] {
            while (!m_bench->has(u"c.min.js"_s))
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            QFile::remove(flag);
        });
        QCOMPARE(m_bench->run(2), RunEnd::Completed);
        last.join();
        QCOMPARE(
            m_bench->observer.calls,
            QStringList({u"started"_s, u"0/3 a.css: Minified 1 of 3 items."_s, u"a.css ended"_s,
                         u"1/3 b.css: Minified 2 of 3 items."_s, u"b.css ended"_s,
                         u"2/3 c.js: Minified 3 of 3 items."_s, u"c.js ended"_s, u"ended: Well done!"_s}));
        QCOMPARE(m_bench->observer.results.size(), std::size_t(3));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_bench->observer.results.at(i).source, m_bench->queue.entryAt(i));
        QCOMPARE(m_bench->observer.results.at(1).outcome, EntryResult::Outcome::CompressorFailed);
        QCOMPARE(m_bench->observer.results.at(2).outcome, EntryResult::Outcome::Done);
    }

    void neverMoreThanAsked_data()
    {
        QTest::addColumn<int>("jobs");
        for (const int jobs : {1, 2, 3, 50})
            QTest::addRow("%d", jobs) << jobs;
    }

    void neverMoreThanAsked()
    {
        QFETCH(int, jobs);
        for (int i = 0; i < 20; ++i)
            m_bench->append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(m_bench->run(jobs), RunEnd::Completed);
        QVERIFY(mostAtOnce() <= jobs);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(20));
        for (const EntryResult &result : m_bench->observer.results)
            QCOMPARE(result.outcome, EntryResult::Outcome::Done);
    }

    void settingsAreReadForEachFile_data()
    {
        QTest::addColumn<bool>("threads");
        QTest::newRow("several at once") << true;
        QTest::newRow("no threads to be had") << false;
    }

    void settingsAreReadForEachFile()
    {
        QFETCH(bool, threads);
        const QString flag = m_bench->add(u"flag"_s, "here");
        m_bench->append(u"a.css"_s, "wait " + QFile::encodeName(flag));
        m_bench->append(u"b.css"_s, "wait " + QFile::encodeName(flag));
        m_bench->append(u"c.css"_s, "copy");
        m_bench->observer.onStatus = [&](const QString &status) {
            if (status != u"Minified 1 of 3 items.")
                return;
            m_bench->settings.setOverride(u"-x"_s, suffixKeyString);
            QFile::remove(flag);
        };
        const std::optional<NoThreads> none = threads ? std::nullopt : std::make_optional<NoThreads>();
        QCOMPARE(m_bench->run(2), RunEnd::Completed);
        QVERIFY(m_bench->has(u"c-x.css"_s));
        QVERIFY(!m_bench->has(u"c.min.css"_s));
    }

    void withoutThreads()
    {
        const NoThreads none;
        QVERIFY_THROWS_EXCEPTION(std::system_error, std::thread([] {}).join());
        for (int i = 0; i < 3; ++i)
            m_bench->append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(m_bench->run(2), RunEnd::Completed);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(3));
        QCOMPARE(m_bench->observer.calls.count(u"started"_s), 1);
        QCOMPARE(m_bench->observer.calls.last(), u"ended: Well done!"_s);
    }

    void whatIsRefusedIsNotRun()
    {
        m_bench->settings.setOverride(true, gzipCheckerKeyString);
        for (int i = 0; i < 6; ++i)
            m_bench->append(u"%1.css"_s.arg(i), "copy");
        QStringList asked;
        const Refusal refusal = [&](const QString &source, const std::optional<QString> &output) {
            asked << source << *output;
            return source.endsWith(u"/2.css") ? u"so be it"_s : QString();
        };
        QCOMPARE(m_bench->run(3, refusal), RunEnd::Completed);
        QStringList expected; // in the order of the list
        for (int i = 0; i < 6; ++i)
            expected << m_bench->path(u"%1.css"_s.arg(i)) << m_bench->path(u"%1.min.css"_s.arg(i));
        QCOMPARE(asked, expected);
        for (std::size_t i = 0; i < 6; ++i)
            QCOMPARE(m_bench->observer.results.at(i).reason(),
                     i == 2 ? u"not minified: so be it"_s : QString());
        QVERIFY(!m_bench->has(u"2.min.css"_s));
        QVERIFY(!m_bench->has(u"2.min.css.gz"_s));
        QVERIFY(m_bench->has(u"3.min.css.gz"_s));
    }

    void inPlaceWithSafetyCopies()
    {
        m_bench->settings.setOverride(false, suffixSwitcherKeyString);
        for (int i = 0; i < 20; ++i)
            m_bench->append(u"%1.css"_s.arg(i), i % 2 == 0 ? "cut 1" : "copy");
        QCOMPARE(m_bench->run(4), RunEnd::Completed);
        for (int i = 0; i < 20; ++i) {
            const EntryResult &result = m_bench->observer.results.at(static_cast<std::size_t>(i));
            QCOMPARE(result.sourceState,
                     i % 2 == 0 ? EntryResult::Source::PutBack : EntryResult::Source::Safe);
            QCOMPARE(readFile(result.source),
                     i % 2 == 0 ? "cut 1"_ba : "minified " + QFile::encodeName(result.source));
        }
        QCOMPARE(QDir(m_bench->tools.originals.first()).entryList({u"*.original"_s}, QDir::Files),
                 QStringList());
    }

    void aStopLetsTheRunningOnesFinish()
    {
        const QString flag = m_bench->add(u"flag"_s, "here");
        for (const char *name : {"a.css", "b.css", "c.css", "d.css"})
            m_bench->append(QString::fromLatin1(name), "wait " + QFile::encodeName(flag));
        std::thread stopper([&] {
            while (m_bench->log().size() < 2)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            m_bench->stop = Stop::AfterFile;
            QFile::remove(flag);
        });
        const RunEnd end = m_bench->run(2);
        stopper.join();
        QCOMPARE(end, RunEnd::Stopped);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(2));
        for (const EntryResult &result : m_bench->observer.results)
            QCOMPARE(result.outcome, EntryResult::Outcome::Done);
        QVERIFY(m_bench->has(u"b.min.css"_s));
        QVERIFY(!m_bench->has(u"c.min.css"_s));
        QCOMPARE(m_bench->observer.calls.last(2), QStringList({u"b.css ended"_s, u"ended: "_s}));
    }

    void aStopAtOnceEndsAllAndPutsTheirSourcesBack()
    {
        m_bench->settings.setOverride(false, suffixSwitcherKeyString);
        const QByteArray text = "hollow " + QFile::encodeName(m_bench->add(u"flag"_s, "here"));
        const QStringList sources{m_bench->append(u"a.css"_s, text), m_bench->append(u"b.css"_s, text)};
        m_bench->append(u"c.css"_s, "copy");
        std::thread stopper([&] {
            while (QFile(sources[0]).size() != 0 || QFile(sources[1]).size() != 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            m_bench->stop = Stop::AtOnce;
        });
        const RunEnd end = m_bench->run(2);
        stopper.join();
        QCOMPARE(end, RunEnd::Stopped);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(2));
        for (const EntryResult &result : m_bench->observer.results) {
            QCOMPARE(result.outcome, EntryResult::Outcome::CompressorKilled);
            QCOMPARE(result.sourceState, EntryResult::Source::PutBack);
            QCOMPARE(readFile(result.source), text);
        }
    }

    void anEmptyQueue()
    {
        QCOMPARE(m_bench->run(4), RunEnd::Completed);
        QCOMPARE(m_bench->observer.calls, QStringList({u"started"_s, u"ended: Well done!"_s}));
    }

    void withoutJavaTheRunEndsInWords()
    {
        m_bench->tools.java = m_bench->path(u"java"_s);
        for (int i = 0; i < 8; ++i)
            m_bench->append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(m_bench->run(3), RunEnd::JavaNotStarted);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(0));
        QCOMPARE(m_bench->observer.calls.last(),
                 u"ended: Java was not found at %1."_s.arg(m_bench->tools.java));
    }

private:
    /// How many compressors ran at the same time.
    [[nodiscard]] int mostAtOnce() const
    {
        int now = 0;
        int most = 0;
        for (const QString &line : m_bench->log()) {
            now += line.startsWith(u"ended\t") ? -1 : 1;
            most = std::max(most, now);
        }
        return most;
    }

    std::unique_ptr<JobFixture> m_bench;
};

BREVANT_TEST(tst_ParallelJob, QCoreApplication)
#include "tst_ParallelJob.moc"
