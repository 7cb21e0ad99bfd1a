// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RunOrder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

/// Pairs of a source and an output, as names in the test's folder.
using Pairs = QList<std::pair<QString, QString>>;

class tst_RunOrder final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"a.css", "b.css", "c.css"}) {
            QFile file(m_folder.filePath(QLatin1StringView(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QFile::link(u"a.css"_s, m_folder.filePath(u"soft.css"_s)));
        QCOMPARE(::link(QFile::encodeName(m_folder.filePath(u"a.css"_s)).constData(),
                        QFile::encodeName(m_folder.filePath(u"hard.css"_s)).constData()),
                 0);
        QVERIFY(QFile::link(u"."_s, m_folder.filePath(u"here"_s)));
    }

    void waits_data()
    {
        QTest::addColumn<Pairs>("entries");
        QTest::addColumn<QString>("rounds"); // which may start together, if all before have ended
        QTest::newRow("none") << Pairs{} << u""_s;
        QTest::newRow("free") << Pairs{{u"a.css"_s, u"a.min.css"_s},
                                       {u"b.css"_s, u"b.min.css"_s},
                                       {u"c.css"_s, u"c.min.css"_s}}
                              << u"0 1 2"_s;
        QTest::newRow("in place") << Pairs{{u"a.css"_s, u"a.css"_s}, {u"b.css"_s, u"b.css"_s}} << u"0 1"_s;
        QTest::newRow("one output") << Pairs{{u"a.css"_s, u"o/x.css"_s},
                                             {u"b.css"_s, u"o/x.css"_s},
                                             {u"c.css"_s, u"o/x.css"_s}}
                                    << u"0|1|2"_s;
        QTest::newRow("one output, two spellings")
            << Pairs{{u"a.css"_s, u"o/x.css"_s}, {u"b.css"_s, u"o//x.css"_s}} << u"0|1"_s;
        QTest::newRow("capitals") << Pairs{{u"a.css"_s, u"x.css"_s}, {u"b.css"_s, u"X.css"_s}} << u"0|1"_s;
        QTest::newRow("output is a later source")
            << Pairs{{u"a.css"_s, u"b.css"_s}, {u"b.css"_s, u"x.css"_s}, {u"c.css"_s, u"y.css"_s}}
            << u"0 2|1"_s;
        QTest::newRow("output is an earlier source")
            << Pairs{{u"b.css"_s, u"x.css"_s}, {u"a.css"_s, u"b.css"_s}} << u"0|1"_s;
        QTest::newRow("round and round")
            << Pairs{{u"a.css"_s, u"b.css"_s}, {u"b.css"_s, u"c.css"_s}, {u"c.css"_s, u"a.css"_s}}
            << u"0|1|2"_s;
        QTest::newRow("one source by two names")
            << Pairs{{u"a.css"_s, u"x.css"_s}, {u"soft.css"_s, u"y.css"_s}} << u"0 1"_s;
        QTest::newRow("over a link") << Pairs{{u"a.css"_s, u"a.css"_s},
                                              {u"soft.css"_s, u"y.css"_s},
                                              {u"b.css"_s, u"z.css"_s}}
                                     << u"0 2|1"_s;
        QTest::newRow("over a hard link")
            << Pairs{{u"hard.css"_s, u"x.css"_s}, {u"a.css"_s, u"a.css"_s}} << u"0|1"_s;
        QTest::newRow("through a folder's link")
            << Pairs{{u"a.css"_s, u"new.css"_s}, {u"b.css"_s, u"here/new.css"_s}} << u"0|1"_s;
        QTest::newRow("colon") << Pairs{{u"a.css"_s, u"o:o/x.css"_s}, {u"soft.css"_s, u"y.css"_s}}
                               << u"0|1"_s;
        QTest::newRow("no output") << Pairs{{u"a.css"_s, u""_s}, {u"soft.css"_s, u""_s}} << u"0 1"_s;
    }

    void waits()
    {
        QFETCH(Pairs, entries);
        std::vector<PlannedEntry> planned;
        for (const auto &[source, output] : entries) {
            planned.push_back({m_folder.filePath(source), std::nullopt});
            if (!output.isEmpty())
                planned.back().output = m_folder.path() + u'/' + output;
        }
        RunOrder order(planned);
        QStringList rounds;
        while (!order.isAllTaken()) {
            QStringList round;
            while (const std::optional<int> entry = order.takeNext())
                round.append(QString::number(*entry));
            QVERIFY2(!round.isEmpty(), "the rest waits for nothing");
            for (const QString &entry : round)
                order.finished(entry.toInt());
            rounds.append(round.join(u' '));
        }
        QCOMPARE(order.takeNext(), std::nullopt);
        QTEST(rounds.join(u'|'), "rounds");
    }

private:
    const QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_RunOrder)
#include "tst_RunOrder.moc"
