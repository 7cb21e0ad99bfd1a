// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QDeadlineTimer>
#include <QTest>

#include <csignal>
#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(QLatin1StringView)

/// Runs with one compressor at a time.
class tst_MinifyJob final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<JobFixture>(); }

    void anEmptyQueueStartsNothing()
    {
        QCOMPARE(m_bench->run(), RunEnd::Completed);
        QCOMPARE(m_bench->observer.calls, QStringList({u"started"_s, u"ended: Well done!"_s}));
        QVERIFY(!m_bench->has(u"log"_s));
    }

    void threeEntriesInTheirOrder()
    {
        for (const QString &name : {u"a.css"_s, u"b.js"_s, u"c.html"_s})
            m_bench->append(name);
        QCOMPARE(m_bench->run(), RunEnd::Completed);
        QCOMPARE(m_bench->observer.calls,
                 QStringList({u"started"_s, u"0/3 a.css: Minified 1 of 3 items."_s, u"a.css ended"_s,
                              u"1/3 b.js: Minified 2 of 3 items."_s, u"b.js ended"_s,
                              u"2/3 c.html: Minified 3 of 3 items."_s, u"c.html ended"_s,
                              u"ended: Well done!"_s}));
        const QString top = m_bench->folder.path();
        const QString yui = call(u"yuicompressor-2.4.8.jar\t%1/%2\t-o\t%1/%3\t--charset\tutf-8"_s);
        QCOMPARE(
            m_bench->log(),
            QStringList({yui.arg(top, u"a.css"_s, u"a.min.css"_s), yui.arg(top, u"b.js"_s, u"b.min.js"_s),
                         call(u"htmlcompressor-1.5.3.jar\t--charset\tutf-8\t--type\thtml\t--compress-js\t"
                              "--compress-css\t--remove-intertag-spaces\t%1/c.html\t-o\t%1/c.min.html"_s)
                             .arg(top)}));
    }

    void failuresChangeNothing()
    {
        for (const char *mode : {"fail", "crash", "silent", "empty"})
            m_bench->append(QLatin1StringView(mode) + u".css"_s, mode);
        m_bench->queue.append(m_bench->path(u"missing.css"_s));
        QCOMPARE(m_bench->run(), RunEnd::Completed);
        QCOMPARE(m_bench->observer.calls.last(), u"ended: Well done!"_s);
        QCOMPARE(m_bench->log().size(), 5);
    }

    void eachEntryByItsOwnSettings()
    {
        m_bench->append(u"a.js"_s);
        m_bench->append(u"vendor-b.js"_s);
        m_bench->append(u"c.js"_s);
        EntrySettings settings(m_bench->settings);
        settings.addRule([](const QString &entry) { return entry.contains("vendor"_L1); },
                         {{suffixKeyString, u"-v"_s},
                          {nomungeSwitcherKeyString, true},
                          {lineBreakSwitcherKeyString, true},
                          {lineBreakKeyString, u"80"_s},
                          {selectedEncodingKeyString, u"gbk"_s},
                          {gzipCheckerKeyString, true}});
        MinifyJob(m_bench->queue, settings, m_bench->tools, m_bench->observer, m_bench->stop).run();
        const QString top = m_bench->folder.path();
        const QString jar = u"yuicompressor-2.4.8.jar"_s;
        const QString plain = call(jar + u"\t%1/%2.js\t-o\t%1/%2.min.js\t--charset\tutf-8"_s);
        QCOMPARE(m_bench->log(),
                 QStringList({plain.arg(top, u"a"_s),
                              call(jar + u"\t--line-break\t80\t--nomunge\t%1/vendor-b.js\t-o\t"
                                         "%1/vendor-b-v.js\t--charset\tgbk"_s)
                                  .arg(top),
                              plain.arg(top, u"c"_s)}));
        QVERIFY(m_bench->has(u"vendor-b-v.js.gz"_s));
        QVERIFY(!m_bench->has(u"a.min.js.gz"_s));
    }

    void undecidedSwitchesStartABareJava()
    {
        m_bench->settings.setOverride(1, nomungeSwitcherKeyString);
        m_bench->append(u"a.js"_s);
        m_bench->append(u"b.css"_s);
        m_bench->run();
        QCOMPARE(m_bench->log().at(0), m_bench->tools.folder);
        QVERIFY(m_bench->log().at(1).contains(u"b.css"_s));
        QVERIFY(!m_bench->has(u"a.min.js"_s));
    }

    void anEntryOfNoKindStartsABareJava()
    {
        m_bench->append(u"notes.txt"_s);
        m_bench->run();
        QCOMPARE(m_bench->log(), QStringList(m_bench->tools.folder));
        QCOMPARE(m_bench->observer.results.front().output, std::nullopt);
    }

    void aDangerousPatternIsNotRun()
    {
        m_bench->settings.setOverride(true, gzipCheckerKeyString);
        for (const QString &suffix : {u":x"_s, u":$0"_s}) {
            m_bench->queue.clear();
            m_bench->append(u"a.css"_s);
            m_bench->append(u"b.html"_s);
            m_bench->settings.setOverride(suffix, suffixKeyString);
            QCOMPARE(m_bench->run(), RunEnd::Completed);
        }
        QCOMPARE(m_bench->log().size(), 3); // the style sheet the first time only
        QCOMPARE(m_bench->observer.results.at(2).outcome, EntryResult::Outcome::Refused);
        QVERIFY(!m_bench->has(u"a:$0.css"_s));
        QVERIFY(!m_bench->has(u"a:$0.css.gz"_s));
        QVERIFY(m_bench->has(u"b:$0.html.gz"_s));
    }

    void anUndecidedSuffixEndsTheFirstList()
    {
        m_bench->settings.setOverride(1, suffixSwitcherKeyString);
        m_bench->append(u"a.css"_s);
        m_bench->run();
        QCOMPARE(m_bench->log(),
                 QStringList(call(u"yuicompressor-2.4.8.jar\t%1/a.css\t-o"_s).arg(m_bench->folder.path())));
    }

    void switchesAreReadForEachFileAndTextsOnce()
    {
        SettingsStore &settings = m_bench->settings;
        settings.setOverride(true, lineBreakSwitcherKeyString);
        m_bench->append(u"a.css"_s);
        m_bench->append(u"b.css"_s);
        beforeTheSecond([&] {
            settings.setOverride(u"80"_s, lineBreakKeyString);
            settings.setOverride(u"gbk"_s, selectedEncodingKeyString);
            settings.setOverride(u"-x"_s, suffixKeyString);
        });
        m_bench->run();
        QCOMPARE(m_bench->log().at(1), call(u"yuicompressor-2.4.8.jar\t--line-break\t500\t%1/b.css\t-o\t"
                                            "%1/b-x.css\t--charset\tutf-8"_s)
                                           .arg(m_bench->folder.path()));
        beforeTheSecond([&] { settings.setOverride(false, lineBreakSwitcherKeyString); });
        m_bench->run();
        QVERIFY(m_bench->log().at(2).contains(u"--line-break\t80"_s));
        QVERIFY(!m_bench->log().at(3).contains(u"--line-break"_s));
    }

    void eachSwitchIsReadForEachFile_data()
    {
        QTest::addColumn<QLatin1StringView>("key");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("trace"); // of the switch that is on
        const auto row = [](QLatin1StringView key, const QString &kind, const QString &trace) {
            QTest::newRow(key.data()) << key << kind << trace;
        };
        row(lineBreakSwitcherKeyString, u"css"_s, u"\t--line-break\t500\t"_s);
        row(nomungeSwitcherKeyString, u"js"_s, u"\t--nomunge\t"_s);
        row(preserveSemiSwitcherKeyString, u"js"_s, u"\t--preserve-semi\t"_s);
        row(disableOptimizationsSwitcherKeyString, u"js"_s, u"\t--disable-optimizations\t"_s);
        row(keepXMLSpaceCheckerKeyString, u"html"_s, u"\t--preserve-intertag-spaces\t"_s);
        row(gzipCheckerKeyString, u"css"_s, u"\tgzip"_s);
    }

    void eachSwitchIsReadForEachFile()
    {
        QFETCH(QLatin1StringView, key);
        QFETCH(QString, kind);
        QFETCH(QString, trace);
        for (const bool turnedOn : {true, false}) { // between the two files
            m_bench->settings.setOverride(!turnedOn, key);
            m_bench->queue.clear();
            for (const QString &name : {u"a."_s, u"b."_s})
                m_bench->append(name + kind);
            beforeTheSecond([&] { m_bench->settings.setOverride(turnedOn, key); });
            m_bench->run();
            QStringList traces = m_bench->log().last(2);
            for (int i = 0; i < 2; ++i) {
                if (QFile::remove(m_bench->path(u"%1.min.css.gz"_s.arg(QChar(u'a' + i)))))
                    traces[i].append(u"\tgzip"_s);
            }
            QCOMPARE(traces.at(0).contains(trace), !turnedOn);
            QCOMPARE(traces.at(1).contains(trace), turnedOn);
        }
    }

    void whatIsAppendedMeanwhileIsWorkedOn()
    {
        m_bench->append(u"a.css"_s);
        m_bench->observer.onStatus = [this](const QString &status) {
            if (status == u"Minified 1 of 1 items.")
                m_bench->append(u"b.css"_s);
        };
        m_bench->run();
        QVERIFY(m_bench->observer.calls.contains(u"1/2 b.css: Minified 2 of 2 items."_s));
        QCOMPARE(m_bench->log().size(), 2);
    }

    void aQueueThatShrinksEndsTheRun()
    {
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            m_bench->append(name);
        beforeTheSecond([this] { m_bench->queue.removeAt({0, 1}); });
        QCOMPARE(m_bench->run(), RunEnd::Completed);
        QCOMPARE(m_bench->log().size(), 2);
        QCOMPARE(m_bench->observer.calls.last(), u"ended: Well done!"_s);
    }

    void aStopEndsTheRunAfterTheFile()
    {
        m_bench->append(u"a.css"_s);
        m_bench->append(u"b.css"_s);
        m_bench->observer.onStatus = [this](const QString &) { m_bench->stop = Stop::AfterFile; };
        QCOMPARE(m_bench->run(), RunEnd::Stopped);
        QCOMPARE(m_bench->observer.calls, QStringList({u"started"_s, u"0/2 a.css: Minified 1 of 2 items."_s,
                                                       u"a.css ended"_s, u"ended: "_s}));
        QVERIFY(m_bench->has(u"a.min.css"_s));
        QVERIFY(!m_bench->has(u"b.min.css"_s));
    }

    void aStopAtOnceEndsTheCompressorAndPutsTheSourceBack()
    {
        m_bench->settings.setOverride(false, suffixSwitcherKeyString);
        m_bench->settings.setOverride(true, gzipCheckerKeyString);
        const QByteArray text = "hollow " + QFile::encodeName(m_bench->add(u"flag"_s));
        const QString hollow = m_bench->append(u"a.css"_s, text);
        std::thread stopper([&] {
            while (QFile(hollow).size() != 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            m_bench->stop = Stop::AtOnce;
        });
        const RunEnd end = m_bench->run();
        stopper.join();
        QCOMPARE(end, RunEnd::Stopped);
        QCOMPARE(m_bench->observer.results.size(), std::size_t(1));
        const EntryResult &result = m_bench->observer.results.front();
        QCOMPARE(result.outcome, EntryResult::Outcome::CompressorKilled);
        QCOMPARE(result.status, SIGKILL);
        QCOMPARE(result.sourceState, EntryResult::Source::PutBack);
        QCOMPARE(readFile(hollow), text);
        QVERIFY(!m_bench->has(u"a.css.gz"_s));
    }

    void withoutJavaTheRunEndsInWords()
    {
        m_bench->tools.java = m_bench->path(u"java"_s);
        m_bench->append(u"a.css"_s);
        m_bench->append(u"b.css"_s);
        QCOMPARE(m_bench->run(), RunEnd::JavaNotStarted);
        QCOMPARE(m_bench->observer.calls,
                 QStringList({u"started"_s, u"0/2 a.css: Minified 1 of 2 items."_s,
                              u"ended: Java was not found at %1."_s.arg(m_bench->tools.java)}));
    }

    void withoutTheToolsFolderTheRunEndsInWords()
    {
        m_bench->tools.folder = m_bench->path(u"nowhere"_s);
        m_bench->append(u"a.css"_s);
        QCOMPARE(m_bench->run(), RunEnd::JavaNotStarted);
        QCOMPARE(m_bench->observer.calls.last(),
                 u"ended: The compressors were not found in %1."_s.arg(m_bench->tools.folder));
    }

    void theJavaIsTheSystems()
    {
        QCOMPARE(Tools::inResources(u"/r"_s).java, u"/usr/bin/java"_s);
        QCOMPARE(Tools::inResources(u"/r"_s).folder, u"/r/lib"_s);
    }

    /// Again and again for as many seconds as BREVANT_THREADS_SECONDS says, and once at least.
    void twoJobsWhileAllIsChanged()
    {
        const QDeadlineTimer end(
            std::chrono::seconds(qEnvironmentVariableIntValue("BREVANT_THREADS_SECONDS")));
        int rounds = 0;
        do {
            changeAllDuringTwoJobs();
            ++rounds;
        } while (!end.hasExpired() && !QTest::currentTestFailed());
        qInfo("%d jobs", 2 * rounds);
    }

private:
    void changeAllDuringTwoJobs()
    {
        FileQueue &queue = m_bench->queue;
        SettingsStore &settings = m_bench->settings;
        for (int i = 0; i < 12; ++i)
            m_bench->append(u"f%1.css"_s.arg(i));
        RecordingObserver first;
        RecordingObserver second;
        std::thread one([&] { MinifyJob(queue, settings, m_bench->tools, first, m_bench->stop).run(); });
        std::thread two([&] { MinifyJob(queue, settings, m_bench->tools, second, m_bench->stop).run(2); });
        for (int i = 0; i < 40; ++i) {
            m_bench->append(u"g%1.js"_s.arg(i));
            queue.removeAt({i % 5});
            settings.setBool(i % 2 == 0, gzipCheckerKeyString);
            settings.setObject(u".m%1"_s.arg(i), suffixKeyString);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        queue.clear();
        one.join();
        two.join();
        for (const RecordingObserver *observer : {&first, &second}) {
            QCOMPARE(observer->calls.first(), u"started"_s);
            QCOMPARE(observer->calls.count(u"started"_s), 1);
            QCOMPARE(observer->calls.last(), u"ended: Well done!"_s);
            QCOMPARE(observer->calls.count(u"ended: Well done!"_s), 1);
        }
    }

    /// A line of the stub's log, with its first arguments.
    [[nodiscard]] QString call(const QString &arguments) const
    {
        return m_bench->tools.folder + u"\t-jar\t"_s + arguments;
    }

    void beforeTheSecond(const std::function<void()> &act) const
    {
        m_bench->observer.onStatus = [act](const QString &status) {
            if (status.startsWith(u"Minified 2"))
                act();
        };
    }

    std::unique_ptr<JobFixture> m_bench;
};

BREVANT_TEST(tst_MinifyJob, QCoreApplication)
#include "tst_MinifyJob.moc"
