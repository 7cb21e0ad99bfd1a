// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/SourcesTest.h"

#include <thread>

using namespace brevant;
using namespace brevant::test;
using Outcome = EntryResult::Outcome;
using Source = EntryResult::Source;

/// Runs, and starts, that are at work on the same source.
class tst_SafetyCopyTurns final : public SourcesTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(u"originals"_s); }

    void runsTakeTurns_data()
    {
        QTest::addColumn<QString>("name"); // of the same file
        QTest::addColumn<Danger>("danger");
        QTest::newRow("its name") << u"a.css"_s << Danger::Replaced;
        QTest::newRow("a link") << u"link.css"_s << Danger::Replaced;
        QTest::newRow("a hard link") << u"hard.css"_s << Danger::Replaced;
        QTest::newRow("only read") << u"a.css"_s << Danger::None;
    }

    void runsTakeTurns()
    {
        QFETCH(QString, name);
        QFETCH(Danger, danger);
        const QString source = add(u"a.css"_s, "copy");
        const QString another = add(u"b.css"_s, "copy");
        const QByteArray bytes = QFile::encodeName(source);
        const QString again = path(u"site/"_s + name);
        QVERIFY(QFile::link(source, path(u"site/link.css"_s)));
        QCOMPARE(::link(bytes.constData(), QFile::encodeName(path(u"site/hard.css"_s)).constData()), 0);
        SafetyCopy first(m_tools.originals, m_stop);
        QCOMPARE(first.make(source, Danger::Replaced), QString());
        QVERIFY(QFile::remove(source)); // as gzip does for a moment
        SafetyCopy second(m_tools.originals, m_stop);
        std::atomic<bool> hasBegun = false;
        std::atomic<bool> firstEnds = false;
        bool wasInTurn = false;
        QString error;
        std::thread thread([&] {
            hasBegun = true;
            error = second.make(again, danger);
            wasInTurn = firstEnds;
        });
        while (!hasBegun)
            std::this_thread::yield();
        EntryResult result;
        for (int i = 0; i < 20; ++i) { // nobody waits for the turn with another source
            SafetyCopy other(m_tools.originals, m_stop);
            QCOMPARE(other.make(another, Danger::Replaced), QString());
            other.finish(result, false);
        }
        firstEnds = true;
        first.finish(result, false);
        thread.join();
        QVERIFY(wasInTurn);
        QCOMPARE(error, QString());
        if (danger == Danger::None)
            return;
        QCOMPARE(::truncate(QFile::encodeName(again).constData(), 0), 0);
        second.finish(result, false);
        QCOMPARE(readFile(again), "copy"_ba);
    }

    void whatAnotherStartPutsBackIsWaitedFor_data()
    {
        QTest::addColumn<Danger>("danger");
        QTest::newRow("in danger") << Danger::Replaced;
        QTest::newRow("only read") << Danger::None;
    }

    void whatAnotherStartPutsBackIsWaitedFor()
    {
        QFETCH(Danger, danger);
        const QString source = add(u"a.css"_s, "copy");
        const QString another = add(u"b.css"_s, "copy");
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        QCOMPARE(::truncate(QFile::encodeName(source).constData(), 0), 0);
        QString error;
        QStringList refused;
        std::optional<PrivateFolder> folder = PrivateFolder::open(m_originals, error);
        QVERIFY(folder);
        QCOMPARE(OriginalSlot::leftIn(*folder, refused).size(), 1U); // locked by this start now
        SafetyCopy copy(m_tools.originals, m_stop);
        QByteArray now;
        std::thread thread([&] {
            error = copy.make(source, danger);
            now = readFile(source);
        });
        for (int i = 0; i < 20; ++i) { // time enough to go on with the empty file
            SafetyCopy other(m_tools.originals, m_stop);
            QCOMPARE(other.make(another, Danger::Replaced), QString());
        }
        folder.reset();
        thread.join();
        QCOMPARE(error, QString());
        QCOMPARE(now, "copy"_ba);
    }

    void aStopEndsTheWait_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("in danger") << u"site/a.css"_s;
        QTest::newRow("only read") << u"site/a.min.css"_s;
    }

    void aStopEndsTheWait()
    {
        QFETCH(QString, output);
        const QString source = add(u"a.css"_s, "copy");
        SafetyCopy first(m_tools.originals, m_stop);
        QCOMPARE(first.make(source, Danger::Replaced), QString());
        m_stop = Stop::AfterFile;
        const EntryResult result = run(source, path(output));
        m_stop = Stop::No;
        QCOMPARE(result.reason(), u"not minified, as another run is at work on it"_s);
        QCOMPARE(readFile(source), "copy"_ba);
    }

    void oneThatIsExchangedTakesATurnAndNoCopy()
    {
        const QString source = add(u"a.css"_s, "copy");
        SafetyCopy first(m_tools.originals, m_stop);
        QCOMPARE(first.make(source, Danger::Exchanged), QString());
        QCOMPARE(leftInFolder(), QStringList());
        m_stop = Stop::AfterFile;
        SafetyCopy second(m_tools.originals, m_stop);
        QCOMPARE(second.make(source, Danger::Replaced), u"another run is at work on it"_s);
        EntryResult result;
        first.finish(result, false);
        QCOMPARE(second.make(source, Danger::Exchanged), QString());
        second.finish(result, false);
        // Where no turn can be taken it goes without.
        SafetyCopy third({u"/proc/none"_s}, m_stop);
        QCOMPARE(third.make(source, Danger::Exchanged), QString());
        m_stop = Stop::No;
    }

    void whatSomebodyChangedBeforeAnythingWasWrittenStays()
    {
        const QString source = add(u"a.css"_s, "copy");
        SafetyCopy copy(m_tools.originals, m_stop);
        QCOMPARE(copy.make(source, Danger::Replaced), QString());
        QVERIFY(writeFile(source, "newer"));
        EntryResult result;
        result.outcome = Outcome::NotMinified;
        result.isUntouched = true;
        copy.finish(result, false);
        QCOMPARE(readFile(source), "newer"_ba);
        QCOMPARE(result.sourceState, Source::Safe);
    }

    void whatCannotBePutBackIsNotRun_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("in danger") << u"site/sub/a.css"_s;
        QTest::newRow("only read") << u"site/a.min.css"_s;
    }

    void whatCannotBePutBackIsNotRun()
    {
        QFETCH(QString, output);
        QDir site(path(u"site"_s));
        QVERIFY(site.mkdir(u"sub"_s));
        const QString source = add(u"sub/a.css"_s, "copy");
        QVERIFY(LeftCopy(source, m_originals).isFilled());
        QVERIFY(QFile::remove(source));
        QVERIFY(site.rmdir(u"sub"_s));
        const EntryResult result = run(source, path(output));
        QCOMPARE(result.reason(), u"not minified, as it was lost when a run was cut short, and cannot be put "
                                  "back now"_s);
        QCOMPARE(result.notes.size(), 1);
        QVERIFY(site.mkdir(u"sub"_s));
        QCOMPARE(run(source, path(output)).outcome, Outcome::Done);
    }
};

BREVANT_TEST(tst_SafetyCopyTurns, QCoreApplication)
#include "tst_SafetyCopyTurns.moc"
