// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputClaims.h"
#include "cli/ParallelRun.h"
#include "engine/JobDisplay.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <system_error>
#include <thread>

#include <pthread.h>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

class RecordingDisplay final : public JobDisplay {
public:
    QStringList calls;
    std::vector<EntryResult> results;
    std::function<void(const QString &)> onText;

    void lockControls() override { calls.append(u"lock"_s); }
    void setStatusText(const QString &text) override
    {
        calls.append(text);
        if (onText)
            onText(text);
    }
    void selectRow(int row) override { calls.append(u"row %1"_s.arg(row)); }
    void deselectRows() override { calls.append(u"deselect"_s); }
    void playDoneSound() override {}
    void unlockControls() override { calls.append(u"unlock"_s); }
    void entryEnded(const EntryResult &result) override
    {
        calls.append(u"ended"_s);
        results.push_back(result);
    }
};

/// While it lives, no thread can be started: none finds room for its stack.
class NoThreads final {
public:
    NoThreads()
    {
        ::pthread_getattr_default_np(&m_before);
        pthread_attr_t attributes = m_before;
        constexpr std::size_t moreThanThereIs = std::size_t{1} << 47;
        ::pthread_attr_setstacksize(&attributes, moreThanThereIs);
        ::pthread_setattr_default_np(&attributes);
    }
    ~NoThreads() { ::pthread_setattr_default_np(&m_before); }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_before{};
};

} // namespace

class tst_ParallelRun final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<SettingsStore>(path(u"settings.json"_s));
        m_settings->registerDefaults(registeredDefaults());
        m_queue.clear();
        m_display = std::make_unique<RecordingDisplay>();
        QDir(m_folder->path()).mkdir(u"lib"_s);
        m_tools = Tools::inResources(m_folder->path());
        m_tools.java = QStringLiteral(STUB_JAVA);
        m_tools.originals = {path(u"originals"_s)};
        qputenv("BREVANT_STUB_LOG", QFile::encodeName(path(u"log"_s)));
        qputenv("BREVANT_STUB_ENDS", "1");
    }

    void allAtOnceAndShownInOrder()
    {
        // The first waits for the last to be done: that can only be if they run at the same time.
        const QString flag = add(u"flag"_s, "here");
        append(u"a.css"_s, "wait " + QFile::encodeName(flag));
        append(u"b.css"_s, "fail");
        append(u"c.js"_s, "copy");
        std::thread last([&] {
            while (!QFile::exists(path(u"c.min.js"_s)))
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            QFile::remove(flag);
        });
        QCOMPARE(run(2), MinifyJob::End::Completed);
        last.join();
        QCOMPARE(m_display->calls, QStringList({u"lock"_s, u"Minified 1 of 3 items."_s, u"row 0"_s,
                                                u"ended"_s, u"Minified 2 of 3 items."_s, u"row 1"_s,
                                                u"ended"_s, u"Minified 3 of 3 items."_s, u"row 2"_s,
                                                u"ended"_s, u"deselect"_s, u"Well done!"_s, u"unlock"_s}));
        QCOMPARE(m_display->results.size(), std::size_t(3));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_display->results.at(i).source, m_queue.entryAt(i));
        QCOMPARE(m_display->results.at(1).outcome, EntryResult::Outcome::CompressorFailed);
        QCOMPARE(m_display->results.at(2).outcome, EntryResult::Outcome::Done);
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
            append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(run(jobs), MinifyJob::End::Completed);
        QVERIFY(mostAtOnce() <= jobs);
        QCOMPARE(m_display->results.size(), std::size_t(20));
        for (const EntryResult &result : m_display->results)
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
        const QString flag = add(u"flag"_s, "here");
        append(u"a.css"_s, "wait " + QFile::encodeName(flag));
        append(u"b.css"_s, "copy");
        m_display->onText = [&](const QString &text) {
            if (text != u"Minified 1 of 2 items.")
                return;
            m_settings->setOverride(u"-x"_s, suffixKeyString);
            QFile::remove(flag);
        };
        const std::optional<NoThreads> none = threads ? std::nullopt : std::make_optional<NoThreads>();
        QCOMPARE(run(1), MinifyJob::End::Completed);
        QVERIFY(QFile::exists(path(u"b-x.css"_s)));
        QVERIFY(!QFile::exists(path(u"b.min.css"_s)));
    }

    void settingsThatBecomeUndecided()
    {
        // Each entry would be given the output of the one before.
        const QString flag = add(u"flag"_s, "here");
        append(u"a.css"_s, "wait " + QFile::encodeName(flag));
        append(u"b.css"_s, "copy");
        append(u"c.css"_s, "copy");
        m_display->onText = [&](const QString &text) {
            if (text != u"Minified 1 of 3 items.")
                return;
            m_settings->setOverride(1, suffixSwitcherKeyString);
            QFile::remove(flag);
        };
        const std::atomic<Stop> stop = Stop::No;
        QCOMPARE(
            ParallelRun(m_queue, *m_settings, m_tools, *m_display, refusalFor(m_queue.entries(), *m_settings))
                .run(1, stop),
            MinifyJob::End::Completed);
        for (std::size_t i = 0; i < 3; ++i)
            QCOMPARE(m_display->results.at(i).reason(),
                     i == 0 ? QString()
                            : u"not minified: its output %1 is that of another file in the list"_s.arg(
                                  path(u"a.min.css"_s)));
        QFile output(path(u"a.min.css"_s));
        QVERIFY(output.open(QIODevice::ReadOnly));
        QCOMPARE(output.readAll(), "minified " + QFile::encodeName(path(u"a.css"_s)));
    }

    void withoutThreads()
    {
        const NoThreads none;
        QVERIFY_THROWS_EXCEPTION(std::system_error, std::thread([] {}).join());
        for (int i = 0; i < 3; ++i)
            append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(run(2), MinifyJob::End::Completed);
        QCOMPARE(m_display->results.size(), std::size_t(3));
        QCOMPARE(m_display->calls.count(u"lock"_s), 1);
        QCOMPARE(m_display->calls.last(), u"unlock"_s);
    }

    void whatIsRefusedIsNotRun()
    {
        m_settings->setOverride(true, gzipCheckerKeyString);
        for (int i = 0; i < 6; ++i)
            append(u"%1.css"_s.arg(i), "copy");
        QStringList asked;
        const Refusal refusal = [&](const QString &source, const std::optional<QString> &output) {
            asked << source << *output;
            return source.endsWith(u"/2.css") ? u"so be it"_s : QString();
        };
        const std::atomic<Stop> stop = Stop::No;
        QCOMPARE(ParallelRun(m_queue, *m_settings, m_tools, *m_display, refusal).run(3, stop),
                 MinifyJob::End::Completed);
        QStringList expected; // in the order of the list
        for (int i = 0; i < 6; ++i)
            expected << path(u"%1.css"_s.arg(i)) << path(u"%1.min.css"_s.arg(i));
        QCOMPARE(asked, expected);
        for (std::size_t i = 0; i < 6; ++i)
            QCOMPARE(m_display->results.at(i).reason(), i == 2 ? u"not minified: so be it"_s : QString());
        QVERIFY(!QFile::exists(path(u"2.min.css"_s)));
        QVERIFY(!QFile::exists(path(u"2.min.css.gz"_s)));
        QVERIFY(QFile::exists(path(u"3.min.css.gz"_s)));
    }

    void inPlaceWithSafetyCopies()
    {
        m_settings->setOverride(false, suffixSwitcherKeyString);
        for (int i = 0; i < 20; ++i)
            append(u"%1.css"_s.arg(i), i % 2 == 0 ? "cut 1" : "copy");
        QCOMPARE(run(4), MinifyJob::End::Completed);
        for (int i = 0; i < 20; ++i) {
            const EntryResult &result = m_display->results.at(static_cast<std::size_t>(i));
            QCOMPARE(result.sourceState,
                     i % 2 == 0 ? EntryResult::Source::PutBack : EntryResult::Source::Safe);
            QFile source(result.source);
            QVERIFY(source.open(QIODevice::ReadOnly));
            QCOMPARE(source.readAll(),
                     i % 2 == 0 ? "cut 1"_ba : "minified " + QFile::encodeName(result.source));
        }
        QCOMPARE(QDir(m_tools.originals.first()).entryList({u"*.original"_s}, QDir::Files), QStringList());
    }

    void aStopLetsTheRunningOnesFinish()
    {
        const QString flag = add(u"flag"_s, "here");
        for (const char *name : {"a.css", "b.css", "c.css", "d.css"})
            append(QString::fromLatin1(name), "wait " + QFile::encodeName(flag));
        std::atomic<Stop> stop = Stop::No;
        std::thread stopper([&] {
            while (log().size() < 2)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            stop = Stop::AfterFile;
            QFile::remove(flag);
        });
        const MinifyJob::End end = ParallelRun(m_queue, *m_settings, m_tools, *m_display).run(2, stop);
        stopper.join();
        QCOMPARE(end, MinifyJob::End::Stopped);
        QCOMPARE(m_display->results.size(), std::size_t(2));
        for (const EntryResult &result : m_display->results)
            QCOMPARE(result.outcome, EntryResult::Outcome::Done);
        QVERIFY(QFile::exists(path(u"b.min.css"_s)));
        QVERIFY(!QFile::exists(path(u"c.min.css"_s)));
        QCOMPARE(m_display->calls.mid(m_display->calls.size() - 3),
                 QStringList({u"ended"_s, u"deselect"_s, u"unlock"_s}));
    }

    void aStopAtOnceEndsAllAndPutsTheirSourcesBack()
    {
        m_settings->setOverride(false, suffixSwitcherKeyString);
        const QByteArray text = "hollow " + QFile::encodeName(add(u"flag"_s, "here"));
        const QStringList sources{append(u"a.css"_s, text), append(u"b.css"_s, text)};
        append(u"c.css"_s, "copy");
        std::atomic<Stop> stop = Stop::No;
        std::thread stopper([&] {
            while (QFile(sources[0]).size() != 0 || QFile(sources[1]).size() != 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            stop = Stop::AtOnce;
        });
        const MinifyJob::End end = ParallelRun(m_queue, *m_settings, m_tools, *m_display).run(2, stop);
        stopper.join();
        QCOMPARE(end, MinifyJob::End::Stopped);
        QCOMPARE(m_display->results.size(), std::size_t(2));
        for (const EntryResult &result : m_display->results) {
            QCOMPARE(result.outcome, EntryResult::Outcome::CompressorKilled);
            QCOMPARE(result.sourceState, EntryResult::Source::PutBack);
            QFile source(result.source);
            QVERIFY(source.open(QIODevice::ReadOnly));
            QCOMPARE(source.readAll(), text);
        }
    }

    void anEmptyQueue()
    {
        QCOMPARE(run(4), MinifyJob::End::Completed);
        QCOMPARE(m_display->calls, QStringList({u"lock"_s, u"deselect"_s, u"Well done!"_s, u"unlock"_s}));
    }

    void withoutJavaTheRunEndsInWords()
    {
        m_tools.java = path(u"java"_s);
        for (int i = 0; i < 8; ++i)
            append(u"%1.css"_s.arg(i), "copy");
        QCOMPARE(run(3), MinifyJob::End::JavaNotStarted);
        QCOMPARE(m_display->results.size(), std::size_t(0));
        QCOMPARE(m_display->calls.mid(m_display->calls.size() - 2),
                 QStringList({u"Java was not found at %1."_s.arg(m_tools.java), u"unlock"_s}));
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    QString add(const QString &name, const QByteArray &text) const
    {
        QFile file(path(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
        return file.fileName();
    }

    QString append(const QString &name, const QByteArray &text)
    {
        QString source = add(name, text);
        m_queue.append(source);
        return source;
    }

    MinifyJob::End run(int jobs)
    {
        const std::atomic<Stop> stop = Stop::No;
        return ParallelRun(m_queue, *m_settings, m_tools, *m_display).run(jobs, stop);
    }

    [[nodiscard]] QStringList log() const
    {
        QFile file(path(u"log"_s));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    /// How many compressors ran at the same time.
    [[nodiscard]] int mostAtOnce() const
    {
        int now = 0;
        int most = 0;
        for (const QString &line : log()) {
            now += line.startsWith(u"ended\t") ? -1 : 1;
            most = std::max(most, now);
        }
        return most;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<RecordingDisplay> m_display;
    FileQueue m_queue;
    Tools m_tools;
};

BREVANT_TEST(tst_ParallelRun, QCoreApplication)
#include "tst_ParallelRun.moc"
