// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PlannedOutputs.h"
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QTest>

#include <utime.h>

using namespace brevant;
using namespace brevant::test;

namespace {

using Kind = PlannedProblem::Kind;

/// Settings by their keys.
using Settings = QList<std::pair<QLatin1StringView, QJsonValue>>;

/// A file: its name and its text. A text of "-" makes none, one of "/" a folder.
using File = std::pair<QString, QByteArray>;

QString nameOf(Kind kind)
{
    switch (kind) {
    case Kind::CannotBeRead:
        return u"cannot be read"_s;
    case Kind::NotUtf8Path:
        return u"not UTF-8"_s;
    case Kind::NoOutput:
        return u"no output"_s;
    case Kind::BadSetting:
        return u"bad setting"_s;
    case Kind::OddColumn:
        return u"odd column"_s;
    case Kind::ColonInOutput:
        return u"colon"_s;
    case Kind::FolderNotWritable:
        return u"folder"_s;
    case Kind::OutputNotWritable:
        return u"output"_s;
    case Kind::NotValid:
        return u"not valid"_s;
    case Kind::ReplacesItself:
        return u"itself"_s;
    case Kind::ReplacesSource:
        return u"source"_s;
    case Kind::ReplacedByOther:
        return u"replaced by"_s;
    case Kind::SameOutput:
        return u"same as"_s;
    case Kind::SlashInSuffix:
        return u"slash"_s;
    case Kind::OutputIsNewer:
        return u"newer"_s;
    }
    return {};
}

/// "fail: not valid 3, newer", or "ready".
QString inWords(const PlannedFile &file)
{
    const QString state = file.state() == PlannedFile::State::WillFail   ? u"fail"_s
                          : file.state() == PlannedFile::State::TakeCare ? u"care"_s
                          : file.state() == PlannedFile::State::Checking ? u"checking"_s
                                                                         : u"ready"_s;
    QStringList said;
    for (const PlannedProblem &problem : file.problems)
        said.append(nameOf(problem.kind) + (problem.row >= 0 ? u" %1"_s.arg(problem.row) : QString()) +
                    (problem.kind == Kind::NotValid ? u" %1"_s.arg(problem.byte) : QString()));
    return said.isEmpty() ? state : state + u": "_s + said.join(u", "_s);
}

} // namespace

class tst_PlannedOutputs final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrong_data()
    {
        QTest::addColumn<Settings>("settings");
        QTest::addColumn<QList<File>>("files");
        QTest::addColumn<QStringList>("modern");
        QTest::addColumn<QStringList>("classic");
        const auto row = [](const char *name, const Settings &settings, const QList<File> &files,
                            const QStringList &modern, const QStringList &classic = {}) {
            QTest::newRow(name) << settings << files << modern << (classic.isEmpty() ? modern : classic);
        };
        row("nothing", {}, {{u"a.css"_s, "a"}, {u"b.js"_s, "b"}, {u"c.html"_s, "c"}},
            {u"ready"_s, u"ready"_s, u"ready"_s});
        row("no file", {}, {{u"a.css"_s, "-"}, {u"b.css"_s, "/"}},
            {u"fail: cannot be read"_s, u"fail: cannot be read"_s});
        row("in place", {{suffixSwitcherKeyString, false}}, {{u"a.css"_s, "a"}, {u"b.js"_s, "b"}},
            {u"care: itself"_s, u"care: itself"_s});
        row("not UTF-8", {}, {{u"a.css"_s, "a{}\xE9"}, {u"b.css"_s, "\xEF\xBB\xBF\xC3\xA9"}},
            {u"fail: not valid 3"_s, u"ready"_s}, {u"care: not valid 3"_s, u"ready"_s});
        row("not GBK", {{selectedEncodingKeyString, u"gbk"_s}},
            {{u"a.css"_s, "ab\xFF"}, {u"b.css"_s, "\xC4\xE3"}}, {u"fail: not valid 2"_s, u"ready"_s},
            {u"care: not valid 2"_s, u"ready"_s});
        row("not UTF-8, for Java alone Western", {{selectedEncodingKeyString, u"iso-8859-1"_s}},
            {{u"a.css"_s, "a{}\xE9"}}, {u"fail: not valid 3"_s}, {u"ready"_s});
        row("another's source", {}, {{u"a.css"_s, "a"}, {u"b.css"_s, "b"}, {u"a.min.css"_s, "c"}},
            {u"care: source 2"_s, u"ready"_s, u"care: replaced by 0"_s});
        row("one output", {{sameFolderKeyString, false}},
            {{u"x/a.css"_s, "a"}, {u"y/a.css"_s, "b"}, {u"b.css"_s, "b"}, {u"z/a.css"_s, "c"}},
            {u"care: same as 3"_s, u"care: same as 3"_s, u"ready"_s, u"care: same as 1"_s});
        row("output is a folder", {}, {{u"a.css"_s, "a"}, {u"a.min.css"_s, "/"}},
            {u"fail: output, source 1"_s, u"fail: cannot be read, replaced by 0"_s});
        row("suffix with a slash", {{suffixKeyString, u"/s"_s}},
            {{u"a.css"_s, "a"}, {u"a/x.html"_s, "a"}}, // "a" is there for "a/s.css"
            {u"care: slash"_s, u"fail: folder, slash"_s}, {u"care: slash"_s, u"care: slash"_s});
        row("slash that is not used", {{suffixKeyString, u"/s"_s}, {suffixSwitcherKeyString, false}},
            {{u"a.css"_s, "a"}}, {u"care: itself"_s});
        row("column", {{lineBreakSwitcherKeyString, true}, {lineBreakKeyString, u"8o"_s}},
            {{u"a.css"_s, "a"}, {u"b.js"_s, "b"}, {u"c.html"_s, "c"}},
            {u"fail: odd column"_s, u"fail: odd column"_s, u"ready"_s});
        row("negative column", {{lineBreakSwitcherKeyString, true}, {lineBreakKeyString, u"-1"_s}},
            {{u"a.css"_s, "a"}}, {u"fail: odd column"_s}, {u"ready"_s});
        row("column with a space", {{lineBreakSwitcherKeyString, true}, {lineBreakKeyString, u"80 "_s}},
            {{u"a.css"_s, "a"}}, {u"fail: odd column"_s});
        row("column that is not used", {{lineBreakKeyString, u"8o"_s}}, {{u"a.css"_s, "a"}}, {u"ready"_s});
        row("undecided switch", {{nomungeSwitcherKeyString, 1}}, {{u"a.js"_s, "a"}, {u"b.css"_s, "b"}},
            {u"fail: bad setting"_s, u"ready"_s});
        row("undecided suffix", {{suffixSwitcherKeyString, 1}}, {{u"a.css"_s, "a"}}, {u"fail: no output"_s});
        row("colon", {}, {{u"a:b.css"_s, "a"}, {u"a:b.html"_s, "a"}}, {u"ready"_s, u"ready"_s},
            {u"fail: colon"_s, u"ready"_s});
    }

    void whatIsWrong()
    {
        QFETCH(const QList<File>, files);
        QFETCH(const Settings, settings);
        JobFixture bench;
        bench.settings.setOverride(bench.path(u"out"_s), selectedFolderKeyString);
        QDir(bench.path({})).mkdir(u"out"_s);
        for (const auto &[key, value] : settings)
            bench.settings.setOverride(value, key);
        std::vector<QString> sources;
        for (const auto &[name, text] : files) {
            const QString path = bench.path(name);
            QVERIFY(QDir().mkpath(text == "/" ? path : QFileInfo(path).path()));
            QVERIFY(text == "/" || text == "-" || writeFile(path, text));
            sources.push_back(path);
        }
        for (const char *family : {"modern", "classic"}) {
            bench.settings.setOverride(QLatin1StringView(family), compressorsKeyString);
            QStringList said;
            for (const PlannedFile &file : planOf(bench, sources))
                said.append(inWords(file));
            QTEST(said, family);
        }
    }

    void outputsOlderAndNewer()
    {
        JobFixture bench;
        const std::vector<QString> sources{bench.add(u"a.css"_s), bench.add(u"b.css"_s)};
        QVERIFY(setTime(sources[0], 1000) && setTime(bench.add(u"a.min.css"_s), 1001));
        QVERIFY(setTime(sources[1], 1000) && setTime(bench.add(u"b.min.css"_s), 1000));
        QCOMPARE(inWords(planOf(bench, sources).at(0)), u"ready: newer"_s);
        QCOMPARE(inWords(planOf(bench, sources).at(1)), u"ready"_s);
        QVERIFY(writeFile(sources[0], "a{}\xE9") && setTime(sources[0], 1000));
        QCOMPARE(inWords(planOf(bench, sources).at(0)), u"care: not valid 3, newer"_s);
    }

    void aRelativeFolder_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<bool>("isFromTools");
        QTest::newRow("classic") << u"classic"_s << true;
        QTest::newRow("modern") << u"modern"_s << false;
    }

    /// What is planned is where the run writes to.
    void aRelativeFolder()
    {
        QFETCH(const QString, family);
        QFETCH(const bool, isFromTools);
        JobFixture bench;
        const QString name = QFileInfo(bench.path({})).fileName(); // not in our working folder by chance
        bench.settings.setOverride(family, compressorsKeyString);
        bench.settings.setOverride(false, sameFolderKeyString);
        bench.settings.setOverride(name, selectedFolderKeyString);
        const std::vector<QString> sources{bench.append(u"a.css"_s)};
        QCOMPARE(inWords(planOf(bench, sources).at(0)), u"fail: folder"_s);
        const QString folder = isFromTools ? QDir(bench.tools.folder).filePath(name) : name;
        QVERIFY(QDir().mkdir(folder));
        const PlannedFile file = planOf(bench, sources).at(0);
        QCOMPARE(inWords(file), u"ready"_s);
        QCOMPARE(file.output, folder + u"/a.min.css"_s);
        if (isFromTools) {
            bench.run();
            QVERIFY(QFile::exists(file.output));
        }
        QVERIFY(QDir(folder).removeRecursively());
    }

    void rights()
    {
        const OrdinaryUser user;
        const auto folder = user.makeFolder();
        if (!folder)
            QSKIP("no ordinary user here");
        JobFixture bench;
        const QString locked = folder->filePath(u"locked"_s);
        QVERIFY(QDir().mkdir(locked));
        const std::vector<QString> sources{folder->filePath(u"a.css"_s), locked + u"/b.css"_s,
                                           locked + u"/c.css"_s};
        for (const QString &source : sources)
            QVERIFY(writeFile(source, "a"));
        QVERIFY(writeFile(locked + u"/c.min.css"_s, "c"));
        QVERIFY(setMode(sources[0], 0) && setMode(locked, 0500));
        QVERIFY(setTime(locked + u"/c.min.css"_s, 1000));
        const std::vector<PlannedFile> files = planOf(bench, sources);
        QVERIFY(setMode(locked, 0700));
        QCOMPARE(inWords(files.at(0)), u"fail: cannot be read"_s);
        QCOMPARE(files.at(0).problems.front().words, qt_error_string(EACCES));
        QCOMPARE(inWords(files.at(1)), u"fail: folder"_s);
        QCOMPARE(inWords(files.at(2)), u"ready"_s); // it is written into
    }

    void filesByTwoNames()
    {
        JobFixture bench;
        const QString source = bench.add(u"a.css"_s);
        QVERIFY(makeLink(source, bench.path(u"a.min.css"_s)));
        QVERIFY(makeLink(source, bench.path(u"b.css"_s)));
        const std::vector<PlannedFile> files = planOf(bench, {source, bench.path(u"b.css"_s)});
        QCOMPARE(inWords(files.at(0)), u"care: itself"_s);
        QCOMPARE(inWords(files.at(1)), u"ready"_s);
    }

    void allAreToldOfBeforeTheDiskIsAsked()
    {
        JobFixture bench;
        QList<std::pair<int, QStringList>> told;
        planOutputs({bench.path(u"none.css"_s), bench.add(u"a.css"_s)}, bench.settings, {}, {},
                    [&told](int first, const std::vector<PlannedFile> &files) {
                        QStringList said;
                        for (const PlannedFile &file : files)
                            said.append(QFileInfo(file.output).fileName() + u' ' + inWords(file));
                        told.append({first, said});
                    });
        QCOMPARE(told.first(),
                 std::pair(0, QStringList({u"none.min.css checking"_s, u"a.min.css checking"_s})));
        QCOMPARE(told.last().second.last(), u"a.min.css ready"_s);
        QCOMPARE(planOf(bench, {bench.path(u"a.css"_s)}).at(0).size, 4);
    }

    void aStopIsObeyed()
    {
        JobFixture bench;
        std::stop_source stop;
        int calls = 0;
        planOutputs({bench.add(u"a.css"_s)}, bench.settings, {}, stop.get_token(),
                    [&](int, const std::vector<PlannedFile> &) {
                        ++calls;
                        stop.request_stop();
                    });
        QCOMPARE(calls, 1);
        planOutputs({bench.add(u"a.css"_s)}, bench.settings, {}, stop.get_token(),
                    [&calls](int, const std::vector<PlannedFile> &) { ++calls; });
        QCOMPARE(calls, 1);
    }

private:
    static bool setTime(const QString &path, time_t seconds)
    {
        const utimbuf times{seconds, seconds};
        return ::utime(QFile::encodeName(path).constData(), &times) == 0;
    }

    /// The files as they are told of last.
    static std::vector<PlannedFile> planOf(const JobFixture &bench, const std::vector<QString> &sources)
    {
        std::vector<PlannedFile> all(sources.size());
        planOutputs(sources, bench.settings, bench.tools.folder, {},
                    [&all](int first, const std::vector<PlannedFile> &files) {
                        std::ranges::copy(files, all.begin() + first);
                    });
        return all;
    }
};

BREVANT_TEST(tst_PlannedOutputs, QCoreApplication)
#include "tst_PlannedOutputs.moc"
