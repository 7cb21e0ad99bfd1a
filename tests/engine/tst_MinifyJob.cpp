// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryResult.h"
#include "engine/JobDisplay.h"
#include "engine/MinifyJob.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

using namespace brevant;

Q_DECLARE_METATYPE(QLatin1StringView)

namespace {

/// Writes down every call, and can do something of its own when a text is shown.
class RecordingDisplay final : public JobDisplay {
public:
    QStringList calls;
    std::vector<EntryResult> results;
    QStringList progress;
    std::function<void(const QString &)> onText;

    void lockControls() override { calls.append(QStringLiteral("lock")); }
    void setStatusText(const QString &text) override
    {
        calls.append(text);
        if (onText)
            onText(text);
    }
    void selectRow(int row) override { calls.append(QStringLiteral("row %1").arg(row)); }
    void setProgress(int done, int count) override
    {
        progress.append(QStringLiteral("%1/%2 after %3 calls").arg(done).arg(count).arg(calls.size()));
    }
    void deselectRows() override { calls.append(QStringLiteral("deselect")); }
    void loadDoneSound() override { calls.append(QStringLiteral("load")); }
    void playDoneSound() override { calls.append(QStringLiteral("sound")); }
    void unlockControls() override { calls.append(QStringLiteral("unlock")); }
    void entryEnded(const EntryResult &result) override { results.push_back(result); }
};

} // namespace

class tst_MinifyJob final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<SettingsStore>(m_folder->filePath(QStringLiteral("settings.json")));
        m_settings->registerDefaults(registeredDefaults());
        m_queue.clear();
        m_display = std::make_unique<RecordingDisplay>();
        QDir(m_folder->path()).mkdir(QStringLiteral("lib"));
        m_tools = Tools::inResources(m_folder->path());
        m_tools.java = QStringLiteral(STUB_JAVA);
        m_log = m_folder->filePath(QStringLiteral("log"));
        qputenv("BREVANT_STUB_LOG", m_log.toUtf8());
    }

    void anEmptyQueueStartsNothing()
    {
        QCOMPARE(run(), MinifyJob::End::Completed);
        QCOMPARE(m_display->calls, words({"lock", "deselect", "load", "sound", "Well done!", "unlock"}));
        QVERIFY(!QFile::exists(m_log));
    }

    void threeEntriesInTheirOrder()
    {
        for (const char *name : {"a.css", "b.js", "c.html"})
            m_queue.append(source(name));
        QCOMPARE(run(), MinifyJob::End::Completed);
        QCOMPARE(m_display->calls, words({"lock", "Minified 1 of 3 items.", "row 0", "Minified 2 of 3 items.",
                                          "row 1", "Minified 3 of 3 items.", "row 2", "deselect", "load",
                                          "sound", "Well done!", "unlock"}));
        // Told before each entry, and before its other calls.
        QCOMPARE(m_display->progress, words({"0/3 after 1 calls", "1/3 after 3 calls", "2/3 after 5 calls"}));
        const QString lib = m_tools.folder;
        const QString top = m_folder->path();
        QCOMPARE(
            log(),
            QStringList({
                lib + QStringLiteral(
                          "\t-jar\tyuicompressor-2.4.8.jar\t%1/a.css\t-o\t%1/a.min.css\t--charset\tutf-8")
                          .arg(top),
                lib + QStringLiteral(
                          "\t-jar\tyuicompressor-2.4.8.jar\t%1/b.js\t-o\t%1/b.min.js\t--charset\tutf-8")
                          .arg(top),
                lib + QStringLiteral(
                          "\t-jar\thtmlcompressor-1.5.3.jar\t--charset\tutf-8\t--type\thtml\t--compress-js\t"
                          "--compress-css\t--remove-intertag-spaces\t%1/c.html\t-o\t%1/c.min.html")
                          .arg(top),
            }));
    }

    void failuresChangeNothing()
    {
        for (const char *mode : {"fail", "crash", "silent", "empty"})
            m_queue.append(source((QByteArray(mode) + ".css").constData(), mode));
        m_queue.append(m_folder->filePath(QStringLiteral("missing.css")));
        QCOMPARE(run(), MinifyJob::End::Completed);
        QCOMPARE(m_display->calls.last(), QStringLiteral("unlock"));
        QVERIFY(m_display->calls.contains(QStringLiteral("Well done!")));
        QCOMPARE(log().size(), 5);
    }

    void soundIsTestedStrictly_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("plays");
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("false") << QJsonValue(false) << false;
        QTest::newRow("1") << QJsonValue(1) << false;
        QTest::newRow("text") << QJsonValue(QStringLiteral("true")) << false;
    }

    void soundIsTestedStrictly()
    {
        QFETCH(QJsonValue, stored);
        m_settings->setOverride(stored, soundCheckerKeyString);
        run();
        QTEST(m_display->calls.contains(QStringLiteral("sound")), "plays");
        QVERIFY(m_display->calls.contains(QStringLiteral("load"))); // in any case
    }

    void undecidedSwitchesStartABareJava()
    {
        m_settings->setOverride(1, nomungeSwitcherKeyString);
        m_queue.append(source("a.js"));
        m_queue.append(source("b.css"));
        run();
        QCOMPARE(log().at(0), m_tools.folder);
        QVERIFY(log().at(1).contains(QStringLiteral("b.css")));
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("a.min.js"))));
    }

    void anEntryOfNoKindStartsABareJava()
    {
        m_queue.append(source("notes.txt"));
        run();
        QCOMPARE(log(), QStringList(m_tools.folder));
        QCOMPARE(m_display->results.front().output, std::nullopt);
    }

    void aDangerousPatternIsNotRun()
    {
        m_settings->setOverride(true, gzipCheckerKeyString);
        for (const char *suffix : {":x", ":$0"}) {
            m_queue.clear();
            m_queue.append(source("a.css"));
            m_queue.append(source("b.html"));
            m_settings->setOverride(QString::fromLatin1(suffix), suffixKeyString);
            QCOMPARE(run(), MinifyJob::End::Completed);
        }
        QCOMPARE(log().size(), 3); // the style sheet the first time only
        QCOMPARE(m_display->results.at(2).outcome, EntryResult::Outcome::Refused);
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("a:$0.css"))));
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("a:$0.css.gz"))));
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("b:$0.html.gz"))));
    }

    void anUndecidedSuffixEndsTheFirstList()
    {
        m_settings->setOverride(1, suffixSwitcherKeyString);
        m_queue.append(source("a.css"));
        run();
        QCOMPARE(log(),
                 QStringList(
                     m_tools.folder +
                     QStringLiteral("\t-jar\tyuicompressor-2.4.8.jar\t%1/a.css\t-o").arg(m_folder->path())));
    }

    void switchesAreReadForEachFileAndTextsOnce()
    {
        m_settings->setOverride(true, lineBreakSwitcherKeyString);
        m_queue.append(source("a.css"));
        m_queue.append(source("b.css"));
        m_display->onText = [this](const QString &text) {
            if (text.startsWith(QStringLiteral("Minified 2"))) {
                m_settings->setOverride(QStringLiteral("80"), lineBreakKeyString);
                m_settings->setOverride(QStringLiteral("gbk"), selectedEncodingKeyString);
                m_settings->setOverride(QStringLiteral("-x"), suffixKeyString);
            }
        };
        run();
        QCOMPARE(
            log().at(1),
            m_tools.folder +
                QStringLiteral("\t-jar\tyuicompressor-2.4.8.jar\t--line-break\t500\t%1/b.css\t-o\t%1/b-x.css"
                               "\t--charset\tutf-8")
                    .arg(m_folder->path()));
        m_display->onText = [this](const QString &text) {
            if (text.startsWith(QStringLiteral("Minified 2")))
                m_settings->setOverride(false, lineBreakSwitcherKeyString);
        };
        run();
        QVERIFY(log().at(2).contains(QStringLiteral("--line-break\t80")));
        QVERIFY(!log().at(3).contains(QStringLiteral("--line-break")));
    }

    void eachSwitchIsReadForEachFile_data()
    {
        QTest::addColumn<QLatin1StringView>("key");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("trace"); // of the switch that is on
        const auto row = [](QLatin1StringView key, const char *kind, const char *trace) {
            QTest::newRow(key.data()) << key << QString::fromLatin1(kind) << QString::fromLatin1(trace);
        };
        row(lineBreakSwitcherKeyString, "css", "\t--line-break\t500\t");
        row(nomungeSwitcherKeyString, "js", "\t--nomunge\t");
        row(preserveSemiSwitcherKeyString, "js", "\t--preserve-semi\t");
        row(disableOptimizationsSwitcherKeyString, "js", "\t--disable-optimizations\t");
        row(keepXMLSpaceCheckerKeyString, "html", "\t--preserve-intertag-spaces\t");
        row(gzipCheckerKeyString, "css", "\tgzip");
        row(soundCheckerKeyString, "css", "\tsound"); // read at the end of the run
    }

    void eachSwitchIsReadForEachFile()
    {
        QFETCH(QLatin1StringView, key);
        QFETCH(QString, kind);
        QFETCH(QString, trace);
        for (const bool turnedOn : {true, false}) { // between the two files
            m_settings->setOverride(!turnedOn, key);
            m_queue.clear();
            for (const char *name : {"a.", "b."})
                m_queue.append(source((name + kind.toLatin1()).constData()));
            m_display->calls.clear();
            m_display->onText = [this, key, turnedOn](const QString &text) {
                if (text.startsWith(QStringLiteral("Minified 2")))
                    m_settings->setOverride(turnedOn, key);
            };
            run();
            QStringList traces = log().last(2);
            for (int i = 0; i < 2; ++i) {
                if (QFile::remove(m_folder->filePath(QStringLiteral("%1.min.css.gz").arg(QChar(u'a' + i)))))
                    traces[i].append(QStringLiteral("\tgzip"));
            }
            if (m_display->calls.contains(QStringLiteral("sound")))
                traces[1].append(QStringLiteral("\tsound"));
            QCOMPARE(traces.at(1).contains(trace), turnedOn);
            if (key != soundCheckerKeyString)
                QCOMPARE(traces.at(0).contains(trace), !turnedOn);
        }
    }

    void whatIsAppendedMeanwhileIsWorkedOn()
    {
        m_queue.append(source("a.css"));
        m_display->onText = [this](const QString &text) {
            if (text == u"Minified 1 of 1 items.")
                m_queue.append(source("b.css"));
        };
        run();
        QVERIFY(m_display->calls.contains(QStringLiteral("Minified 2 of 2 items.")));
        QCOMPARE(log().size(), 2);
    }

    void aQueueThatShrinksEndsTheRun()
    {
        for (const char *name : {"a.css", "b.css", "c.css"})
            m_queue.append(source(name));
        m_display->onText = [this](const QString &text) {
            if (text.startsWith(QStringLiteral("Minified 2")))
                m_queue.removeAt({0, 1});
        };
        QCOMPARE(run(), MinifyJob::End::Completed);
        QCOMPARE(log().size(), 2);
        QVERIFY(m_display->calls.contains(QStringLiteral("Well done!")));
    }

    void aStopEndsTheRunAfterTheFile()
    {
        m_queue.append(source("a.css"));
        m_queue.append(source("b.css"));
        std::atomic<Stop> stop = Stop::No;
        m_display->onText = [&stop](const QString &) { stop = Stop::AfterFile; };
        QCOMPARE(MinifyJob(m_queue, *m_settings, m_tools, *m_display).run(stop), MinifyJob::End::Stopped);
        QCOMPARE(m_display->calls, words({"lock", "Minified 1 of 2 items.", "row 0", "deselect", "unlock"}));
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("a.min.css"))));
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("b.min.css"))));
    }

    void aStopAtOnceEndsTheCompressorAndPutsTheSourceBack()
    {
        m_settings->setOverride(false, suffixSwitcherKeyString);
        m_settings->setOverride(true, gzipCheckerKeyString);
        m_tools.originals = {m_folder->filePath(QStringLiteral("originals"))};
        const QByteArray text = "hollow " + QFile::encodeName(source("flag"));
        const QString hollow = source("a.css", text.constData());
        m_queue.append(hollow);
        std::atomic<Stop> stop = Stop::No;
        std::thread stopper([&] {
            while (QFile(hollow).size() != 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            stop = Stop::AtOnce;
        });
        const MinifyJob::End end = MinifyJob(m_queue, *m_settings, m_tools, *m_display).run(stop);
        stopper.join();
        QCOMPARE(end, MinifyJob::End::Stopped);
        QCOMPARE(m_display->results.size(), std::size_t(1));
        QCOMPARE(m_display->results.at(0).outcome, EntryResult::Outcome::CompressorKilled);
        QCOMPARE(m_display->results.at(0).status, SIGKILL);
        QCOMPARE(m_display->results.at(0).sourceState, EntryResult::Source::PutBack);
        QFile file(hollow);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text);
        QVERIFY(!QFile::exists(hollow + QStringLiteral(".gz")));
    }

    void withoutJavaTheRunEndsInWords()
    {
        m_tools.java = m_folder->filePath(QStringLiteral("java"));
        m_queue.append(source("a.css"));
        m_queue.append(source("b.css"));
        QCOMPARE(run(), MinifyJob::End::JavaNotStarted);
        QCOMPARE(m_display->calls,
                 QStringList({QStringLiteral("lock"), QStringLiteral("Minified 1 of 2 items."),
                              QStringLiteral("row 0"), QStringLiteral("deselect"),
                              QStringLiteral("Java was not found at %1.").arg(m_tools.java),
                              QStringLiteral("unlock")}));
    }

    void withoutTheToolsFolderTheRunEndsInWords()
    {
        m_tools.folder = m_folder->filePath(QStringLiteral("nowhere"));
        m_queue.append(source("a.css"));
        QCOMPARE(run(), MinifyJob::End::JavaNotStarted);
        QVERIFY(m_display->calls.contains(
            QStringLiteral("The compressors were not found in %1.").arg(m_tools.folder)));
        QCOMPARE(m_display->calls.last(), QStringLiteral("unlock"));
    }

    void theJavaIsTheSystems()
    {
        QCOMPARE(Tools::inResources(QStringLiteral("/r")).java, QStringLiteral("/usr/bin/java"));
        QCOMPARE(Tools::inResources(QStringLiteral("/r")).folder, QStringLiteral("/r/lib"));
    }

    void outcomes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<EntryResult::Outcome>("outcome");
        QTest::addColumn<int>("status");
        using enum EntryResult::Outcome;
        QTest::newRow("done") << "a.css" << QByteArray("copy") << Done << 0;
        QTest::newRow("much output") << "a.css" << QByteArray("flood") << Done << 0;
        QTest::newRow("status") << "a.css" << QByteArray("fail") << CompressorFailed << 3;
        QTest::newRow("signal") << "a.js" << QByteArray("crash") << CompressorKilled << 9;
        QTest::newRow("no output") << "a.html" << QByteArray("silent") << NoOutput << 0;
        QTest::newRow("empty output") << "a.css" << QByteArray("empty") << EmptyOutput << 0;
    }

    void outcomes()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        QFETCH(EntryResult::Outcome, outcome);
        m_queue.append(source(name.toUtf8().constData(), text.constData()));
        const int errors = ::dup(STDERR_FILENO); // which the stub inherits, and floods
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        ::dup2(nowhere, STDERR_FILENO);
        run();
        ::dup2(errors, STDERR_FILENO);
        ::close(errors);
        ::close(nowhere);
        const EntryResult &result = m_display->results.at(0);
        QCOMPARE(result.outcome, outcome);
        QTEST(result.status, "status");
        QCOMPARE(result.reason().isEmpty(), outcome == EntryResult::Outcome::Done);
        QCOMPARE(result.sizeBefore, std::optional<qint64>(text.size()));
        if (outcome == EntryResult::Outcome::Done)
            QCOMPARE(result.sizeAfter, std::optional<qint64>(QFileInfo(*result.output).size()));
        QVERIFY(result.seconds > 0);
    }

    void anOutputFromBeforeIsNone()
    {
        m_queue.append(source("a.css", "silent"));
        source("a.min.css", "old");
        run();
        QCOMPARE(m_display->results.at(0).outcome, EntryResult::Outcome::NoOutput);
    }

    void gzipIsReadAsATruthValue_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("made");
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("1") << QJsonValue(1) << true;
        QTest::newRow("0") << QJsonValue(0) << false;
        QTest::newRow("false") << QJsonValue(false) << false;
    }

    void gzipIsReadAsATruthValue()
    {
        QFETCH(QJsonValue, stored);
        QFETCH(bool, made);
        const QString copy = m_folder->filePath(QStringLiteral("a.min.css.gz"));
        m_settings->setOverride(stored, gzipCheckerKeyString);
        m_queue.append(source("a.css"));
        if (!made)
            source("a.min.css.gz", "from before");
        run();
        QCOMPARE(m_display->results.at(0).outcome, EntryResult::Outcome::Done);
        QCOMPARE(m_display->results.at(0).gzipSize.has_value(), made);
        QVERIFY(QFile::exists(m_folder->filePath(QStringLiteral("a.min.css"))));
        QFile file(copy);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll() == "from before", !made);
    }

    void aGzipCopyThatFailsIsSeen()
    {
        m_settings->setOverride(true, gzipCheckerKeyString);
        QDir(m_folder->path()).mkdir(QStringLiteral("a.min.css.gz")); // gzip cannot replace a folder
        m_queue.append(source("a.css"));
        run();
        QCOMPARE(m_display->results.at(0).outcome, EntryResult::Outcome::NoGzipCopy);
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
        for (int i = 0; i < 12; ++i)
            m_queue.append(source(QByteArray("f" + QByteArray::number(i) + ".css").constData()));
        std::atomic<Stop> stop = Stop::No;
        RecordingDisplay first;
        RecordingDisplay second;
        std::thread one([&] { MinifyJob(m_queue, *m_settings, m_tools, first).run(stop); });
        std::thread two([&] { MinifyJob(m_queue, *m_settings, m_tools, second).run(stop); });
        for (int i = 0; i < 40; ++i) {
            m_queue.append(source(QByteArray("g" + QByteArray::number(i) + ".js").constData()));
            m_queue.removeAt({i % 5});
            m_settings->setBool(i % 2 == 0, gzipCheckerKeyString);
            m_settings->setObject(QStringLiteral(".m%1").arg(i), suffixKeyString);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        m_queue.clear();
        one.join();
        two.join();
        for (const RecordingDisplay *display : {&first, &second}) {
            QCOMPARE(display->calls.first(), QStringLiteral("lock"));
            QCOMPARE(display->calls.last(), QStringLiteral("unlock"));
            QCOMPARE(display->calls.count(QStringLiteral("unlock")), 1);
            QCOMPARE(display->calls.count(QStringLiteral("Well done!")), 1);
        }
    }

    static QStringList words(std::initializer_list<const char *> list)
    {
        QStringList result;
        for (const char *word : list)
            result.append(QString::fromUtf8(word));
        return result;
    }

    QString source(const char *name, const char *text = "copy") const
    {
        const QString path = m_folder->filePath(QString::fromUtf8(name));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
        return path;
    }

    MinifyJob::End run()
    {
        const std::atomic<Stop> stop = Stop::No;
        return MinifyJob(m_queue, *m_settings, m_tools, *m_display).run(stop);
    }

    [[nodiscard]] QStringList log() const
    {
        QFile file(m_log);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<RecordingDisplay> m_display;
    FileQueue m_queue;
    Tools m_tools;
    QString m_log;
};

BREVANT_TEST(tst_MinifyJob, QCoreApplication)
#include "tst_MinifyJob.moc"
