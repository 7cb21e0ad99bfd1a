// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PrintedRun.h"
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

class tst_PrintedRun final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void settingsThatBecomeUndecided()
    {
        // Each entry would be given the output of the one before.
        JobFixture bench;
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"c.css"_s})
            bench.append(name);
        bench.observer.onStatus = [&](const QString &status) {
            if (status == u"Minified 2 of 3 items.")
                bench.settings.setOverride(1, suffixSwitcherKeyString);
        };
        QCOMPARE(bench.run(1, refusalFor(bench.queue.entries(), bench.settings)), RunEnd::Completed);
        const QString output = bench.path(u"a.min.css"_s);
        for (std::size_t i = 0; i < 3; ++i)
            QCOMPARE(bench.observer.results.at(i).reason(),
                     i == 0
                         ? QString()
                         : u"not minified: its output %1 is that of another file in the list"_s.arg(output));
        QCOMPARE(readFile(output), "minified " + QFile::encodeName(bench.path(u"a.css"_s)));
    }
};

BREVANT_TEST(tst_PrintedRun, QCoreApplication)
#include "tst_PrintedRun.moc"
