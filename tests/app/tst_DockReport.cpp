// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DesktopFixture.h"
#include "tests/TestClass.h"

using namespace brevant;
using namespace Qt::StringLiterals;

/// What a dock is told of runs: the progress, beside the badge.
class tst_DockReport final : public DesktopFixture {
    Q_OBJECT

private Q_SLOTS:
    void progressOfARun()
    {
        filled({"copy", "fail", "copy", "copy"});
        run();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"0.25"_s, u"0.5"_s, u"0.75"_s, u"gone"_s}));
        QCOMPARE(m_dock->badges, QStringList{u"4"_s}); // beside it, and not touched
        run();
        QCOMPARE(m_dock->progress.size(), 10);
    }

    void eachChangeOfASettingTellsTheBadgeOnce()
    {
        AppFixture &app = filled({"copy", "copy", "copy"});
        for (const bool isOn : {false, true})
            app.settings.setBool(isOn, badgeCheckerKeyString);
        app.settings.setObject(u"-small"_s, suffixKeyString);
        letAllArrive();
        QCOMPARE(m_dock->badges, QStringList({u"3"_s, u"gone"_s, u"3"_s, u"3"_s}));
    }

    void onlyWholePercentsAreTold()
    {
        AppFixture &app = filled({});
        for (int done = 0; done < 10'000; ++done)
            app.desktopReport.setProgress(1, done, 10'000);
        app.desktopReport.runEnded(1, {});
        QTRY_COMPARE(m_dock->progress.value(m_dock->progress.size() - 1), u"gone"_s);
        QCOMPARE(m_dock->progress.size(), 101);
        QCOMPARE(m_dock->progress.at(99), u"0.99"_s);
    }

    void theLastOfSeveralRunsTakesItAway()
    {
        AppFixture &app = filled({});
        DesktopReport &news = app.desktopReport;
        news.setProgress(1, 0, 4);
        news.setProgress(1, 3, 4);
        news.setProgress(2, 0, 6);
        news.runEnded(1, {});
        news.setProgress(2, 5, 6);
        news.runEnded(2, {});
        letAllArrive();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"0.75"_s, u"0.3"_s, u"0.4"_s, u"0.9"_s, u"gone"_s}));
    }

    void aListThatIsClearedMeanwhile()
    {
        AppFixture &app = filled({});
        app.desktopReport.setProgress(1, 0, 0);
        app.desktopReport.setProgress(1, 3, 2);
        app.desktopReport.runEnded(1, {});
        letAllArrive();
        QCOMPARE(m_dock->progress, QStringList({u"0"_s, u"1"_s, u"gone"_s}));
    }
};

BREVANT_TEST(tst_DockReport, QApplication)
#include "tst_DockReport.moc"
