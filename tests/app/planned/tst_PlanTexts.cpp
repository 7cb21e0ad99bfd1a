// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanTexts.h"
#include "app/planned/RunManner.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;
using Kind = PlannedProblem::Kind;
using Settings = QList<std::pair<QLatin1StringView, QJsonValue>>;

class tst_PlanTexts final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void problems_data()
    {
        QTest::addColumn<PlannedProblem>("problem");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("sentences");
        const auto row = [](const PlannedProblem &problem, const QString &text, const QString &sentences) {
            QTest::newRow(qPrintable(text)) << problem << text << sentences;
        };
        row({.kind = Kind::CannotBeRead, .words = u"Permission denied"_s},
            u"Cannot be read: Permission denied"_s, u"Cannot be read: Permission denied."_s);
        row({.kind = Kind::FolderNotWritable}, u"Folder cannot be written"_s,
            u"The folder /d is missing, or cannot be written to."_s);
        row({.kind = Kind::OutputNotWritable}, u"Output cannot be written"_s,
            u"/d/a.min.css is there, and cannot be written to."_s);
        row({.kind = Kind::ReplacesItself}, u"Replaces its own source"_s, u"Replaces its own source."_s);
        row({.kind = Kind::ReplacesSource, .row = 10}, u"Replaces the source in row 11"_s,
            u"/d/a.min.css is the source in row 11, which is replaced."_s);
        row({.kind = Kind::ReplacedByOther, .row = 1}, u"Replaced by the output of row 2"_s,
            u"The output of row 2 replaces this file before it is minified itself."_s);
        row({.kind = Kind::ReplacedByOther, .row = 7}, u"Replaced by the output of row 8"_s,
            u"The output of row 8 replaces this file after it has been minified."_s);
        row({.kind = Kind::SameOutput, .row = 11}, u"Same output as row 12"_s,
            u"Rows 4 and 12 both go to /d/a.min.css. Row 12 is minified later, so its output stays and that "
            u"of "
            "row 4 is lost. “The same folder as source” in the preferences keeps them apart."_s);
        row({.kind = Kind::SameOutput, .row = 0}, u"Same output as row 1"_s,
            u"Rows 1 and 4 both go to /d/a.min.css. Row 4 is minified later, so its output stays and that of "
            "row 1 is lost. “The same folder as source” in the preferences keeps them apart."_s);
        row({.kind = Kind::OutputIsNewer}, u"Output is newer than the source"_s,
            u"/d/a.min.css was changed after its source. Minify writes it anew."_s);
        row({.kind = Kind::NotValid, .isFatal = true, .byte = 204, .words = u"utf-8"_s},
            u"Not valid in utf-8, at byte 204"_s,
            u"Not valid in utf-8, at byte 204. Modern compressors do not minify such a file."_s);
        row({.kind = Kind::NotValid, .byte = 0, .words = u"gbk"_s}, u"Not valid in gbk, at byte 0"_s,
            u"Not valid in gbk, at byte 0. What is not valid becomes “\uFFFD” in the output."_s);
        row({.kind = Kind::SlashInSuffix}, u"Suffix has a slash"_s,
            u"With a slash, each file goes into a folder of its own, which must exist."_s);
        row({.kind = Kind::OddColumn}, u"Column for line breaks is not a whole number"_s,
            u"Column for line breaks is not a whole number."_s);
        row({.kind = Kind::BadSetting, .words = u"a switch"_s}, u"A switch"_s, u"A switch."_s);
    }

    void problems()
    {
        QFETCH(const PlannedProblem, problem);
        const PlannedFile file{u"/w/a.css"_s, u"/d/a.min.css"_s, 1, true, {problem}};
        QTEST(problemsText(file), "text");
        QTEST(sentencesAbout(file, 3).join(u' '), "sentences");
    }

    void severalProblems()
    {
        const PlannedFile file{u"/w/a.css"_s,
                               u"/w/a.css"_s,
                               1,
                               true,
                               {{.kind = Kind::SlashInSuffix}, {.kind = Kind::ReplacesItself}}};
        QCOMPARE(problemsText(file), u"Suffix has a slash; Replaces its own source"_s);
        QCOMPARE(sentencesAbout(file, 0).size(), 2);
        QCOMPARE(sentencesAbout({u"/w/a.css"_s, u"/w/b"_s, 1, true, {}}, 0), QStringList{u"Goes to /w/b."_s});
    }

    void totals()
    {
        const PlannedFile ready{u"/a"_s, u"/b"_s, 1000, true, {}};
        const PlannedFile care{u"/a"_s, u"/b"_s, 500, true, {{.kind = Kind::ReplacesItself}}};
        const PlannedFile fail{u"/a"_s, u"/b"_s, -1, true, {{.kind = Kind::CannotBeRead, .isFatal = true}}};
        const PlannedFile checking{u"/a"_s, u"/b"_s, -1, false, {}};
        QCOMPARE(totalsText(totalsOf({ready})), u"1 file · 1 kB · 1 ready"_s);
        QCOMPARE(totalsText(totalsOf({ready}), Qt::RightToLeft), // each part is read by itself
                 u"\u200F\u20681 file\u2069 · \u20681 kB\u2069 · \u20681 ready\u2069"_s);
        QCOMPARE(totalsText(totalsOf({ready, fail, care, ready, checking})),
                 u"5 files · 2.5 kB · 2 ready · 1 take care · 1 will fail · 1 checking"_s);
    }

    void manner_data()
    {
        QTest::addColumn<Settings>("settings");
        QTest::addColumn<QString>("manner");
        QTest::addColumn<QString>("tip");
        const Settings folder{{sameFolderKeyString, false},
                              {selectedFolderKeyString, QDir::homePath() + u"/d"_s}};
        const Settings noSuffix{{suffixSwitcherKeyString, false}};
        QTest::newRow("as it comes") << Settings{}
                                     << u"Classic compressors, beside the sources, suffix .min"_s
                                     << u"Writes 9 minified copies beside their sources"_s;
        QTest::newRow("in place") << noSuffix << u"Classic compressors, replacing the sources"_s
                                  << u"Replaces 9 sources"_s;
        QTest::newRow("no text in the suffix")
            << Settings{{suffixKeyString, u""_s}} << u"Classic compressors, replacing the sources"_s
            << u"Replaces 9 sources"_s;
        QTest::newRow("folder") << folder << u"Classic compressors, into ~/d, suffix .min"_s
                                << u"Writes 9 minified copies into ~/d"_s;
        QTest::newRow("folder, no suffix") << folder + noSuffix << u"Classic compressors, into ~/d"_s
                                           << u"Writes 9 minified copies into ~/d"_s;
        QTest::newRow("slash") << Settings{{suffixKeyString, u"/x"_s}}
                               << u"Classic compressors, beside the sources, suffix /x"_s
                               << u"Writes 9 minified copies"_s;
        QTest::newRow("copies")
            << Settings{{compressorsKeyString, u"modern"_s},
                        {gzipCheckerKeyString, true},
                        {brotliCheckerKeyString, true}}
            << u"Modern compressors, beside the sources, suffix .min, with gzip and Brotli copies"_s
            << u"Writes 9 minified copies beside their sources"_s;
    }

    void manner()
    {
        QFETCH(const Settings, settings);
        QFETCH(const QString, manner);
        const QTemporaryDir place;
        SettingsStore store(place.filePath(u"settings.json"_s));
        store.registerDefaults(registeredDefaults());
        for (const auto &[key, value] : settings)
            store.setOverride(value, key);
        QCOMPARE(RunManner(store).ofPlan(), manner + u". Nothing has been written yet."_s);
        QTEST(RunManner(store).ofMinify(9), "tip");
    }

    void oneFileOrNone()
    {
        const QTemporaryDir place;
        SettingsStore store(place.filePath(u"settings.json"_s));
        store.registerDefaults(registeredDefaults());
        QCOMPARE(RunManner(store).ofMinify(0), u"Minify every file in the list"_s);
        QCOMPARE(RunManner(store).ofMinify(1), u"Writes 1 minified copy beside its source"_s);
        store.setOverride(false, suffixSwitcherKeyString);
        QCOMPARE(RunManner(store).ofMinify(1), u"Replaces 1 source"_s);
        store.setOverride(false, sameFolderKeyString);
        store.setOverride(u"/d"_s, selectedFolderKeyString);
        QCOMPARE(RunManner(store).ofMinify(1), u"Writes 1 minified copy into /d"_s);
    }
};

BREVANT_TEST(tst_PlanTexts, QCoreApplication)
#include "tst_PlanTexts.moc"
