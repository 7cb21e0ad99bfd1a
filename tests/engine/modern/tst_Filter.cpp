// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/Filter.h"
#include "tests/TestClass.h"

#include <QTest>

#include <thread>

using namespace brevant;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using End = FilterRun::End;

/// Runs shell scripts as filters.
class tst_Filter final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endsAsItsProgramDoes_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<End>("end");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("messages");

        QTest::newRow("passes text on") << u"cat"_s << "a\0b\n"_ba << End::Exited << 0 << "a\0b\n"_ba
                                        << ""_ba;
        QTest::newRow("says something") << u"echo m >&2; cat"_s << "x"_ba << End::Exited << 0 << "x"_ba
                                        << "m\n"_ba;
        QTest::newRow("fails") << u"echo m >&2; exit 3"_s << "x"_ba << End::Exited << 3 << ""_ba
                               << "m\n"_ba;
        QTest::newRow("reads nothing")
            << u"exec <&-; echo x"_s << QByteArray(1 << 20, 'x') << End::Cut << 0 << "x\n"_ba
            << ""_ba;
        QTest::newRow("reads nothing and fails")
            << u"exec <&-; exit 3"_s << QByteArray(1 << 20, 'x') << End::Exited << 3 << ""_ba
            << ""_ba;
        QTest::newRow("is killed") << u"kill -9 $$"_s << ""_ba << End::Crashed << 9 << ""_ba
                                   << ""_ba;
        QTest::newRow("leaves a child behind")
            << u"sleep 600 & echo x"_s << ""_ba << End::Exited << 0 << "x\n"_ba
            << ""_ba;
    }

    void endsAsItsProgramDoes()
    {
        QFETCH(const QString, script);
        QFETCH(const QByteArray, input);
        const FilterRun run = runScript(script, input);
        QTEST(run.end, "end");
        QTEST(run.status, "status");
        QTEST(run.output, "output");
        QTEST(run.messages, "messages");
    }

    void passesALongTextBothWays()
    {
        const QByteArray text(20'000'000, 'x');
        const FilterRun run = runScript(u"cat"_s, text);
        QVERIFY(run.isSuccess());
        QVERIFY(run.output == text);
    }

    void isEndedWithItsChildrenWhenLate()
    {
        const FilterRun run = runScript(u"sh -c 'sleep 600; echo late' | cat"_s, "", 100ms);
        QCOMPARE(run.end, End::TooSlow);
        QCOMPARE(run.output, ""_ba);
    }

    void isEndedWhenItWritesTooMuch() { QCOMPARE(runScript(u"yes"_s, "x").end, End::TooLong); }

    void keepsTheFirstMessagesOfAFlood()
    {
        const FilterRun run = runScript(u"echo first >&2; yes message | head -c 100000000 >&2; cat"_s, "x");
        QVERIFY(run.isSuccess());
        QCOMPARE(run.output, "x"_ba);
        QVERIFY(run.messages.startsWith("first\nmessage\n"));
        QCOMPARE(run.messages.size(), 65536);
    }

    void isEndedByAStop()
    {
        std::jthread other([this] {
            std::this_thread::sleep_for(50ms);
            m_stop = Stop::AtOnce;
        });
        QCOMPARE(runScript(u"sleep 600"_s, "").end, End::Stopped);
        other.join();
        m_stop = Stop::AfterFile;
        QVERIFY(runScript(u"cat"_s, "").isSuccess());
        m_stop = Stop::No;
    }

    void saysWhatKeepsItFromStarting()
    {
        const Filter filter{u"/nowhere/filter"_s, {}};
        const FilterRun run = runFilter(filter, "x", m_stop, 60s);
        QCOMPARE(run.end, End::NotStarted);
        QVERIFY2(run.words(filter).startsWith(u"filter could not be started: "),
                 qPrintable(run.words(filter)));
    }

    void runsInTheRootFolder() { QCOMPARE(runScript(u"pwd"_s, "").output, "/\n"_ba); }

    void hasMoreTimeForLongTexts()
    {
        QCOMPARE(timeFor(0), 60s);
        QCOMPARE(timeFor(999'999), 60s);
        QCOMPARE(timeFor(10'000'000), 120s);
    }

private:
    [[nodiscard]] FilterRun runScript(const QString &script, const QByteArray &input,
                                      std::chrono::milliseconds limit = 120s) const
    {
        return runFilter({u"/bin/sh"_s, {u"-c"_s, script}}, input, m_stop, limit);
    }

    std::atomic<Stop> m_stop = Stop::No;
};

BREVANT_TEST(tst_Filter, QCoreApplication)
#include "tst_Filter.moc"
