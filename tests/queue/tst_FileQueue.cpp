// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileQueue.h"
#include "tests/TestClass.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <limits>
#include <set>
#include <thread>

using namespace brevant;
using namespace Qt::StringLiterals;

using Entries = std::vector<QString>;

namespace {

FileQueue &fill(FileQueue &queue, int count)
{
    for (int i = 0; i < count; ++i)
        queue.append(u"/x/%1.css"_s.arg(i));
    return queue;
}

} // namespace

class tst_FileQueue final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginsEmpty()
    {
        const FileQueue queue;
        QVERIFY(queue.isEmpty());
        QCOMPARE(queue.count(), 0);
        QVERIFY(queue.entries().empty());
        QCOMPARE(queue.indexOf(QString()), -1);
    }

    void keepsTheOrder()
    {
        FileQueue queue;
        Entries expected;
        for (const char *path : {"/z.css", "/a.css", "/m/b.js", "/m/a.js"}) {
            expected.push_back(QString::fromLatin1(path));
            QVERIFY(queue.append(expected.back()));
        }
        QVERIFY(!queue.append(u"/a.css"_s)); // keeps its place
        QCOMPARE(queue.entries(), expected);
        QCOMPARE(queue.count(), 4);
        QVERIFY(!queue.isEmpty());
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(queue.entryAt(i), std::optional(expected[static_cast<std::size_t>(i)]));
            QCOMPARE(queue.indexOf(expected[static_cast<std::size_t>(i)]), i);
        }
    }

    void entriesDifferAsTexts_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::newRow("case of the folder") << u"/x/a.css"_s << u"/X/a.css"_s;
        QTest::newRow("case of the name") << u"/x/a.css"_s << u"/x/A.css"_s;
        QTest::newRow("unicode forms") << u"/x/\u00fc.css"_s << u"/x/u\u0308.css"_s;
        QTest::newRow("double separator") << u"/x/a.css"_s << u"/x//a.css"_s;
        QTest::newRow("separator at the end") << u"/x/a.css"_s << u"/x/a.css/"_s;
        QTest::newRow("dots") << u"/x/a.css"_s << u"/x/./a.css"_s;
        QTest::newRow("tilde") << u"~/a.css"_s << u"/root/a.css"_s;
        QTest::newRow("blank") << u"/x/a.css"_s << u"/x/a.css "_s;
        QTest::newRow("empty") << QString() << u"/"_s;
    }

    void entriesDifferAsTexts()
    {
        QFETCH(QString, one);
        QFETCH(QString, other);
        FileQueue queue;
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(queue.append(one), round == 0);
            QCOMPARE(queue.append(other), round == 0);
        }
        const Entries expected{one, other}; // as delivered
        QCOMPARE(queue.entries(), expected);
        QCOMPARE(queue.indexOf(one), 0);
        QCOMPARE(queue.indexOf(other), 1);
    }

    void removeAt_data()
    {
        QTest::addColumn<std::vector<int>>("indexes");
        QTest::addColumn<std::vector<int>>("left");
        using Indexes = std::vector<int>;
        QTest::newRow("first and third") << Indexes{0, 2} << Indexes{1, 3};
        QTest::newRow("in falling order") << Indexes{2, 0} << Indexes{1, 3};
        QTest::newRow("one twice") << Indexes{1, 1} << Indexes{0, 2, 3};
        QTest::newRow("last") << Indexes{3} << Indexes{0, 1, 2};
        QTest::newRow("all") << Indexes{0, 1, 2, 3} << Indexes{};
        QTest::newRow("none") << Indexes{} << Indexes{0, 1, 2, 3};
        QTest::newRow("out of range") << Indexes{-1, 4, 1000000} << Indexes{0, 1, 2, 3};
        QTest::newRow("some out of range") << Indexes{4, 3, -1} << Indexes{0, 1, 2};
    }

    void removeAt()
    {
        QFETCH(std::vector<int>, indexes);
        QFETCH(std::vector<int>, left);
        FileQueue queue;
        fill(queue, 4).removeAt(indexes);
        Entries expected;
        for (const int index : left)
            expected.push_back(u"/x/%1.css"_s.arg(index));
        QCOMPARE(queue.entries(), expected);
        QCOMPARE(queue.count(), static_cast<int>(left.size()));
        for (int i = 0; i < 4; ++i) {
            const auto found = std::find(left.begin(), left.end(), i);
            const int index = found == left.end() ? -1 : static_cast<int>(found - left.begin());
            QCOMPARE(queue.indexOf(u"/x/%1.css"_s.arg(i)), index);
        }
    }

    void removedMayComeBack()
    {
        FileQueue queue;
        fill(queue, 3).removeAt({0});
        QVERIFY(queue.append(u"/x/0.css"_s));
        const Entries expected{u"/x/1.css"_s, u"/x/2.css"_s, u"/x/0.css"_s};
        QCOMPARE(queue.entries(), expected);
    }

    /// By as many bits as the queue tells them apart by at first. Some 80,000 tries find such a pair.
    void pathsOfOneHash()
    {
        QHash<quint32, QString> seen;
        Entries pair;
        for (int i = 0; pair.empty(); ++i) {
            const QString path = u"/x/%1.css"_s.arg(i);
            QString &before = seen[static_cast<quint32>(qHash(path))];
            if (!before.isEmpty())
                pair = {before, path};
            before = path;
        }
        FileQueue queue;
        QVERIFY(queue.append(pair[0]));
        QCOMPARE(queue.indexOf(pair[1]), -1);
        QVERIFY(queue.append(pair[1]));
        QVERIFY(!queue.append(pair[0]));
        QVERIFY(!queue.append(pair[1]));
        QCOMPARE(queue.entries(), pair);
        QCOMPARE(queue.indexOf(pair[0]), 0);
        QCOMPARE(queue.indexOf(pair[1]), 1);
        queue.removeAt({0});
        QCOMPARE(queue.indexOf(pair[0]), -1);
        QCOMPARE(queue.indexOf(pair[1]), 0);
    }

    void clear()
    {
        FileQueue queue;
        fill(queue, 3).clear();
        QVERIFY(queue.isEmpty());
        QCOMPARE(queue.indexOf(u"/x/0.css"_s), -1);
        QVERIFY(queue.append(u"/x/0.css"_s));
        QCOMPARE(queue.count(), 1);
    }

    void outOfRange()
    {
        FileQueue queue;
        fill(queue, 2);
        for (const int index :
             {-1, 2, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
            QVERIFY(!queue.entryAt(index).has_value());
    }

    void agreesWithAPlainList()
    {
        QRandomGenerator random(20260101);
        FileQueue queue;
        Entries plain;
        for (int step = 0; step < 4000; ++step) {
            const QString path = u"/x/%1.css"_s.arg(random.bounded(700));
            const auto found = std::find(plain.begin(), plain.end(), path);
            QCOMPARE(queue.indexOf(path),
                     found == plain.end() ? -1 : static_cast<int>(found - plain.begin()));
            QCOMPARE(queue.append(path), found == plain.end());
            if (found == plain.end())
                plain.push_back(path);
            if (step % 40 == 39) {
                const int first = random.bounded(static_cast<int>(plain.size()));
                const int last = random.bounded(static_cast<int>(plain.size()));
                queue.removeAt({first, last});
                plain.erase(plain.begin() + std::max(first, last));
                if (first != last)
                    plain.erase(plain.begin() + std::min(first, last));
            }
            if (step % 1500 == 1499) {
                queue.clear();
                plain.clear();
            }
        }
        QVERIFY(plain.size() > 300);
        QCOMPARE(queue.entries(), plain);
    }

    void manyThreads()
    {
        FileQueue queue;
        std::atomic<int> appended = 0;
        std::atomic<bool> stop = false;
        std::thread reader([&] { // what a running job does
            while (!stop) {
                for (int i = 0; i < queue.count(); ++i) {
                    if (const std::optional<QString> entry = queue.entryAt(i);
                        entry && !entry->startsWith(u'/'))
                        ++appended; // never: makes the count wrong
                }
            }
        });
        std::thread remover([&] {
            while (!stop) {
                queue.removeAt({0});
                if (queue.indexOf(u"/x/1.css"_s) >= 500)
                    ++appended;
            }
        });
        std::vector<std::thread> writers;
        for (int writer = 0; writer < 3; ++writer) {
            writers.emplace_back([&] { // all the same paths, so that each is there once at any time
                for (int i = 0; i < 500; ++i)
                    queue.append(u"/x/%1.css"_s.arg(i));
            });
        }
        for (std::thread &writer : writers)
            writer.join();
        stop = true;
        reader.join();
        remover.join();
        QCOMPARE(appended.load(), 0);
        const Entries entries = queue.entries();
        QCOMPARE(std::set<QString>(entries.begin(), entries.end()).size(), entries.size());

        // Each path enters once, whoever brings it.
        queue.clear();
        writers.clear();
        for (int writer = 0; writer < 4; ++writer) {
            writers.emplace_back([&] {
                for (int i = 0; i < 500; ++i)
                    appended += queue.append(u"/y/%1.css"_s.arg(i)) ? 1 : 0;
            });
        }
        for (std::thread &writer : writers)
            writer.join();
        QCOMPARE(appended.load(), 500);
        QCOMPARE(queue.count(), 500);
    }
};

BREVANT_TEST(tst_FileQueue, QCoreApplication)
#include "tst_FileQueue.moc"
