// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Stop.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace std::chrono_literals;

class tst_Stop final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void signalsWithinAMomentAreOneRequest()
    {
        StopCount count;
        const StopCount::Clock::time_point start = StopCount::Clock::now();
        QCOMPARE(count.add(start), 1);
        for (const auto later : {0ms, 1ms, 300ms, 499ms})
            QCOMPARE(count.add(start + later), 0);
        // Counted from the request, not from its last signal: who goes on pressing is heard.
        QCOMPARE(count.add(start + 500ms), 2);
        QCOMPARE(count.add(start + 501ms), 0);
        QCOMPARE(count.add(start + 1h), 3);
    }
};

BREVANT_TEST(tst_Stop, QCoreApplication)
#include "tst_Stop.moc"
