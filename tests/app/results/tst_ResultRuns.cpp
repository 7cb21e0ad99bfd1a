// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunMaker.h"
#include "tests/TestClass.h"

#include <QSignalSpy>

using namespace brevant;
using namespace brevant::test;
using State = ResultRow::State;

/// What is remembered of runs, and who is told when.
class tst_ResultRuns final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRunGrows()
    {
        ResultRuns runs;
        QSignalSpy added(&runs, &ResultRuns::rowAdded);
        QSignalSpy changed(&runs, &ResultRuns::rowChanged);
        QSignalSpy ended(&runs, &ResultRuns::ended);
        runs.start(7, u"Classic compressors"_s);
        QVERIFY(runs.isAnyRunning());
        runs.startFile(7, u"/w/a.css"_s, 2);
        const auto run = runs.find(7);
        QCOMPARE(run->rows.front().state, State::Running);
        QCOMPARE(run->expected, 2);
        runs.endFile(7, row(State::Done, u"/w/a.css"_s, 10, 5));
        QCOMPARE(run->rows.front().state, State::Done);
        runs.end(7, {});
        QVERIFY(!runs.isAnyRunning());
        QCOMPARE(added, (QList<QVariantList>{{7, 0}}));
        QCOMPARE(changed, (QList<QVariantList>{{7, 0}}));
        QCOMPARE(ended, QList<QVariantList>{{7}});
    }

    void twoAtOnceAreToldApart()
    {
        ResultRuns runs;
        runs.start(1, u"one"_s);
        runs.start(2, u"two"_s);
        runs.startFile(1, u"/w/a.css"_s, 1);
        runs.startFile(2, u"/w/b.css"_s, 1);
        runs.endFile(1, row(State::Done, u"/w/a.css"_s));
        runs.end(1, {});
        QVERIFY(runs.isAnyRunning());
        QCOMPARE(runs.find(1)->rows.front().source, u"/w/a.css"_s);
        QCOMPARE(runs.find(2)->rows.front().state, State::Running);
    }

    void whatARunHasNotComeToIsNotRun()
    {
        ResultRuns runs;
        runs.start(1, u"one"_s);
        runs.startFile(1, u"/w/a.css"_s, 3);
        RunEnding ending;
        ending.notRun = {u"/w/b.css"_s, u"/w/c.css"_s};
        ending.reason = u"no Java"_s;
        runs.end(1, ending);
        const auto run = runs.find(1);
        QStringList found;
        for (const ResultRow &made : run->rows)
            found.append(made.source + u' ' + stateText(made.state));
        QCOMPARE(found, QStringList({u"/w/a.css Not run"_s, u"/w/b.css Not run"_s, u"/w/c.css Not run"_s}));
        QCOMPARE(run->reason, u"no Java"_s);
    }

    void tenAreRemembered()
    {
        ResultRuns runs;
        runs.start(1, u"goes on"_s);
        for (int number = 2; number <= 12; ++number)
            addRun(runs, number, {});
        QStringList numbers;
        for (const auto &run : runs.all())
            numbers.append(QString::number(run->number));
        QCOMPARE(numbers.join(u' '), u"1 4 5 6 7 8 9 10 11 12"_s);
        QVERIFY(!runs.find(2));
        runs.startFile(2, u"/w/late.css"_s, 1); // whoever is forgotten may still tell
        runs.endFile(2, row(State::Done, u"/w/late.css"_s));
        runs.end(2, {});
    }

    void aStartIsARunOfSentences()
    {
        ResultRuns runs;
        using Kind = StartNews::Kind;
        runs.addStart({{Kind::PutBack, u"/w/a.css"_s, u"/w/a.css was lost, and has been put back."_s},
                       {Kind::Kept, u"/w/b.css"_s, u"It is kept as /w/kept."_s},
                       {Kind::Failed, {}, u"The safety copy /w/c cannot be read now."_s}});
        const auto run = runs.all().front();
        QCOMPARE(run->rows.at(0).source, u"/w/a.css"_s);
        QCOMPARE(run->rows.at(1).state, State::Skipped);
        QCOMPARE(run->rows.at(2).state, State::Failed);
        QVERIFY(run->isOfStart());
        QVERIFY(!runs.isAnyRunning());
        QCOMPARE(run->rows.front().state, State::PutBack);
        QCOMPARE(messageText(run->rows.front()), u"/w/a.css was lost, and has been put back."_s);
    }
};

BREVANT_TEST(tst_ResultRuns, QCoreApplication)
#include "tst_ResultRuns.moc"
