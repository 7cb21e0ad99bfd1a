// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "files/RawBytes.h"
#include "settings/Encodings.h"
#include "settings/SettingsKeys.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using Action = CommandLine::Action;

class tst_CommandLine final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void options_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Action>("action");
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QString>("settingsFile");
        QTest::addColumn<QString>("reportFile");
        QTest::addColumn<bool>("quiet");

        const QString none;
        const QStringList a{u"a"_s};
        QTest::newRow("one path") << a << Action::Minify << a << none << none << false;
        QTest::newRow("paths keep their order")
            << QStringList{u"b"_s, u"a"_s, u"b"_s} << Action::Minify << QStringList{u"b"_s, u"a"_s, u"b"_s}
            << none << none << false;
        QTest::newRow("list") << QStringList{u"--list"_s, u"a"_s} << Action::List << a << none << none
                              << false;
        QTest::newRow("dry run") << QStringList{u"--dry-run"_s, u"a"_s} << Action::DryRun << a << none << none
                                 << false;
        QTest::newRow("behind the path")
            << QStringList{u"a"_s, u"--list"_s} << Action::List << a << none << none << false;
        QTest::newRow("quiet") << QStringList{u"--quiet"_s, u"a"_s} << Action::Minify << a << none << none
                               << true;
        QTest::newRow("settings") << QStringList{u"--settings"_s, u"s.json"_s, u"a"_s} << Action::Minify << a
                                  << u"s.json"_s << none << false;
        QTest::newRow("settings with a sign") << QStringList{u"--settings=s=1.json"_s, u"a"_s}
                                              << Action::Minify << a << u"s=1.json"_s << none << false;
        QTest::newRow("report") << QStringList{u"--report"_s, u"r.json"_s, u"a"_s} << Action::Minify << a
                                << none << u"r.json"_s << false;
        QTest::newRow("all at once") << QStringList{u"--quiet"_s,  u"--settings"_s, u"s"_s,
                                                    u"--report"_s, u"r"_s,          u"a"_s}
                                     << Action::Minify << a << u"s"_s << u"r"_s << true;
        QTest::newRow("two dashes") << QStringList{u"--quiet"_s, u"--"_s, u"-x.css"_s, u"--list"_s, u"--"_s}
                                    << Action::Minify << QStringList{u"-x.css"_s, u"--list"_s, u"--"_s}
                                    << none << none << true;
        QTest::newRow("help") << QStringList{u"--help"_s} << Action::Help << QStringList() << none << none
                              << false;
        QTest::newRow("short help") << QStringList{u"-h"_s} << Action::Help << QStringList() << none << none
                                    << false;
        QTest::newRow("help wins") << QStringList{u"--version"_s, u"--list"_s, u"--dry-run"_s, u"--help"_s}
                                   << Action::Help << QStringList() << none << none << false;
        QTest::newRow("version") << QStringList{u"--version"_s} << Action::Version << QStringList() << none
                                 << none << false;
    }

    void options()
    {
        QFETCH(QStringList, arguments);
        const CommandLine line = parseCommandLine(arguments);
        QCOMPARE(line.error, QString());
        QTEST(line.action, "action");
        QTEST(line.paths, "paths");
        QTEST(line.settingsFile, "settingsFile");
        QTEST(line.reportFile, "reportFile");
        QTEST(line.quiet, "quiet");
        QVERIFY(line.settings.empty());
    }

    void jobs()
    {
        QCOMPARE(parseCommandLine({u"a"_s}).jobs, 0);
        QCOMPARE(parseCommandLine({u"--jobs"_s, u"1"_s, u"a"_s}).jobs, 1);
        QCOMPARE(parseCommandLine({u"--jobs=256"_s, u"a"_s}).jobs, 256);
    }

    void check()
    {
        QVERIFY(!parseCommandLine({u"a"_s}).check);
        QVERIFY(parseCommandLine({u"--check"_s, u"a"_s}).check);
    }

    void also()
    {
        QCOMPARE(parseCommandLine({u"a"_s}).also, QStringList());
        QCOMPARE(parseCommandLine({u"--also"_s, u"mjs,svg"_s, u"--also=htm"_s, u"a"_s}).also,
                 QStringList({u"mjs"_s, u"svg"_s, u"htm"_s}));
    }

    void files()
    {
        const CommandLine line = parseCommandLine({u"--exclude=a"_s, u"--exclude=b/"_s, u"--include=c"_s,
                                                   u"--gitignore"_s, u"--sort"_s, u"--files-from"_s, u"-"_s,
                                                   u"-0"_s, u"--shard=2/3"_s, u"--list"_s, u"--print0"_s});
        QCOMPARE(line.error, QString());
        QVERIFY(line.exclude.matches("a", false) && line.exclude.matches("b", true) &&
                !line.exclude.matches("c", false));
        QVERIFY(line.include.matches("c", false));
        QVERIFY(line.gitignore && line.sort && line.nulls && line.print0);
        QCOMPARE(line.filesFrom, u"-"_s);
        QCOMPARE(line.shard.number, 2);
        QCOMPARE(line.shard.count, 3);
    }

    void shortWays()
    {
        using Settings = decltype(CommandLine::settings);
        const CommandLine line = parseCommandLine(
            {u"--set=gzipCheckerKeyString=false"_s, u"--gzip"_s, u"--brotli"_s, u"--source-maps"_s,
             u"--compressors=modern"_s, u"--suffix"_s, u"-m"_s, u"--set=suffixKeyString=.n"_s, u"a"_s});
        QCOMPARE(line.error, QString());
        QCOMPARE(line.settings, (Settings{{gzipCheckerKeyString, false},
                                          {gzipCheckerKeyString, true},
                                          {brotliCheckerKeyString, true},
                                          {sourceMapCheckerKeyString, true},
                                          {compressorsKeyString, u"modern"_s},
                                          {suffixSwitcherKeyString, true},
                                          {suffixKeyString, u"-m"_s},
                                          {suffixKeyString, u".n"_s}}));
        QVERIFY(line.sourceMaps);
        QVERIFY(!parseCommandLine({u"--set=sourceMapCheckerKeyString=true"_s, u"a"_s}).sourceMaps);
    }

    void wrongUses_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");

        const QString noPath = u"no file or folder is named"_s;
        QTest::newRow("nothing") << QStringList() << noPath;
        QTest::newRow("no path") << QStringList{u"--quiet"_s} << noPath;
        QTest::newRow("nothing behind the dashes") << QStringList{u"--list"_s, u"--"_s} << noPath;
        QTest::newRow("list and dry run") << QStringList{u"--list"_s, u"--dry-run"_s, u"a"_s}
                                          << u"--list and --dry-run cannot be used together"_s;
        QTest::newRow("report of a list") << QStringList{u"--list"_s, u"--report"_s, u"r"_s, u"a"_s}
                                          << u"--report needs a run, which --list and --dry-run are not"_s;
        QTest::newRow("check of a list") << QStringList{u"--list"_s, u"--check"_s, u"a"_s}
                                         << u"--check needs a run, which --list and --dry-run are not"_s;
        QTest::newRow("check of a dry run") << QStringList{u"--check"_s, u"--dry-run"_s, u"a"_s}
                                            << u"--check needs a run, which --list and --dry-run are not"_s;
        QTest::newRow("report of a dry run") << QStringList{u"--dry-run"_s, u"--report"_s, u"r"_s, u"a"_s}
                                             << u"--report needs a run, which --list and --dry-run are not"_s;
        QTest::newRow("setting that is not UTF-8")
            << QStringList{u"--set"_s, RawBytes::decoded("suffixKeyString=\xE9"), u"a"_s}
            << u"--set: \"suffixKeyString=%1\" is not valid UTF-8"_s.arg(QChar(0xdce9));
        QTest::newRow("empty settings file")
            << QStringList{u"--settings"_s, u""_s, u"a"_s} << u"--settings needs the name of a file"_s;
        for (const QString &number : {u""_s, u"0"_s, u"-1"_s, u"257"_s, u"two"_s, u"2x"_s, u" 2"_s, u"+2"_s,
                                      u"1.5"_s, u"99999999999"_s})
            QTest::addRow("jobs \"%s\"", qPrintable(number))
                << QStringList{u"--jobs="_s + number, u"a"_s}
                << u"--jobs takes a number from 1 to 256, not \"%1\""_s.arg(number);
        for (const auto &[value, unknown] : {std::pair(u""_s, u""_s), std::pair(u"svg,ts"_s, u"ts"_s),
                                             std::pair(u"mjs,"_s, u""_s), std::pair(u"css"_s, u"css"_s)})
            QTest::addRow("also \"%s\"", qPrintable(value))
                << QStringList{u"--also="_s + value, u"a"_s}
                << u"--also takes some of mjs,cjs,htm,svg, not \"%1\""_s.arg(unknown);
        for (const QString &part : {u""_s, u"0/3"_s, u"3/2"_s, u"a/b"_s, u"1"_s, u"1/"_s, u"/2"_s, u"1/2/3"_s,
                                    u"-1/2"_s, u"1/ 2"_s, u"1/99999999999"_s})
            QTest::addRow("shard \"%s\"", qPrintable(part))
                << QStringList{u"--shard="_s + part, u"a"_s}
                << u"--shard takes K/N with K from 1 to N, as in 1/2, not \"%1\""_s.arg(part);
        QTest::newRow("zero bytes without a list")
            << QStringList{u"--print0"_s, u"a"_s} << u"--print0 needs --list"_s;
        QTest::newRow("zero bytes in no list") << QStringList{u"-0"_s, u"a"_s} << u"-0 needs --files-from"_s;
        QTest::newRow("two lists")
            << QStringList{u"--files-from=a"_s, u"--files-from=b"_s}
            << u"--files-from can be given once; join the lists and give - for standard input"_s;
        QTest::newRow("list without a name")
            << QStringList{u"--files-from="_s} << u"--files-from needs the name of a file"_s;
        QTest::newRow("glob that is not closed")
            << QStringList{u"--exclude=a[b"_s, u"a"_s}
            << u"--exclude: \"a[b\" has a [ without its ]; write \\[ for one in the name"_s;
        QTest::newRow("empty glob")
            << QStringList{u"--include="_s, u"a"_s}
            << u"--include: \"\" matches nothing; write the name of a file or folder"_s;
        QTest::newRow("empty suffix")
            << QStringList{u"--suffix="_s, u"a"_s} << u"--suffix needs a text; --no-suffix is for none"_s;
        QTest::newRow("unknown compressors") << QStringList{u"--compressors=yui"_s, u"a"_s}
                                             << u"--compressors takes classic or modern, not \"yui\""_s;
        QTest::newRow("a text and a list")
            << QStringList{u"--stdin=css"_s, u"--list"_s} << u"--stdin and --list cannot be used together"_s;
        for (const QString &option :
             {u"--exclude=a"_s, u"--files-from=-"_s, u"--gzip"_s, u"--source-maps"_s, u"--suffix=-m"_s,
              u"--jobs=2"_s, u"--check"_s, u"--report=-"_s, u"--also=svg"_s})
            QTest::addRow("a text and %s", qPrintable(option))
                << QStringList{u"--stdin"_s, u"css"_s, option}
                << u"--stdin and %1 cannot be used together"_s.arg(option.section(u'=', 0, 0));
        QTest::newRow("a text and a path") << QStringList{u"--stdin"_s, u"css"_s, u"a.css"_s}
                                           << u"--stdin reads standard input; leave out a.css, or --stdin"_s;
        QTest::newRow("a text of no kind")
            << QStringList{u"--stdin="_s}
            << u"--stdin takes one of css, js, html, phtml, php, mjs, cjs, htm, svg, not \"\""_s;
        QTest::newRow("empty report file")
            << QStringList{u"--report="_s, u"a"_s} << u"--report needs the name of a file"_s;
    }

    void wrongUses()
    {
        QFETCH(QStringList, arguments);
        const CommandLine line = parseCommandLine(arguments);
        QTEST(line.error.isEmpty() ? missingPathError(line) : line.error, "expected");
    }

    void namesWhatItDoesNotKnow_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");

        QTest::newRow("long option") << QStringList{u"--bogus"_s, u"a"_s} << u"bogus"_s;
        QTest::newRow("short option") << QStringList{u"-z"_s, u"a"_s} << u"z"_s;
        QTest::newRow("beginning of an option") << QStringList{u"--dry"_s, u"a"_s} << u"dry"_s;
        QTest::newRow("set without a value") << QStringList{u"a"_s, u"--set"_s} << u"--set"_s;
        QTest::newRow("settings without a value") << QStringList{u"a"_s, u"--settings"_s} << u"--settings"_s;
        QTest::newRow("report without a value") << QStringList{u"a"_s, u"--report"_s} << u"--report"_s;
        for (const QString &option : {u"--exclude"_s, u"--include"_s, u"--files-from"_s, u"--shard"_s})
            QTest::addRow("%s without a value", qPrintable(option)) << QStringList{u"a"_s, option} << option;
        QTest::newRow("all with a value") << QStringList{u"--all=a"_s, u"a"_s} << u"--all"_s;
        QTest::newRow("list with a value") << QStringList{u"--list=a"_s, u"a"_s} << u"--list"_s;
        QTest::newRow("not saved by help") << QStringList{u"--help"_s, u"--bogus"_s} << u"bogus"_s;
    }

    void namesWhatItDoesNotKnow()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        const QString error = parseCommandLine(arguments).error;
        QVERIFY2(error.contains(named), qPrintable(error));
    }

    void settingValues_data()
    {
        QTest::addColumn<QString>("assignment");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");

        const QString gzip = gzipCheckerKeyString;
        QTest::newRow("true") << u"gzipCheckerKeyString=true"_s << gzip << QJsonValue(true);
        QTest::newRow("false") << u"gzipCheckerKeyString=false"_s << gzip << QJsonValue(false);
        const QString suffix = suffixKeyString;
        QTest::newRow("text") << u"suffixKeyString=-min"_s << suffix << QJsonValue(u"-min"_s);
        QTest::newRow("zeros as typed") << u"suffixKeyString=007"_s << suffix << QJsonValue(u"007"_s);
        QTest::newRow("fraction as typed") << u"suffixKeyString=1.50"_s << suffix << QJsonValue(u"1.50"_s);
        QTest::newRow("true as a text") << u"suffixKeyString=true"_s << suffix << QJsonValue(u"true"_s);
        QTest::newRow("empty text") << u"suffixKeyString="_s << suffix << QJsonValue(u""_s);
        QTest::newRow("sign in the text") << u"suffixKeyString==a=b"_s << suffix << QJsonValue(u"=a=b"_s);
        QTest::newRow("blanks stay") << u"suffixKeyString= a "_s << suffix << QJsonValue(u" a "_s);
        QTest::newRow("column") << u"lineBreakKeyString=080"_s << QString(lineBreakKeyString)
                                << QJsonValue(u"080"_s);
        QTest::newRow("folder") << u"selectedFolderKeyString=/ä b"_s << QString(selectedFolderKeyString)
                                << QJsonValue(u"/ä b"_s);
        for (const Encoding &encoding : allEncodings) {
            QTest::addRow("%s", encoding.name.data())
                << u"selectedEncodingKeyString="_s + encoding.name << QString(selectedEncodingKeyString)
                << QJsonValue(QString(encoding.name));
        }
    }

    void settingValues()
    {
        QFETCH(QString, assignment);
        for (const QStringList &arguments :
             {QStringList{u"--set"_s, assignment, u"a"_s}, QStringList{u"a"_s, u"--set="_s + assignment}}) {
            const CommandLine line = parseCommandLine(arguments);
            QCOMPARE(line.error, QString());
            QCOMPARE(line.settings.size(), 1U);
            const auto &[key, value] = line.settings.front();
            QTEST(QString(key), "key");
            QTEST(value, "value");
            QCOMPARE(line.paths, QStringList{u"a"_s});
        }
    }

    void wrongSettings_data()
    {
        QTest::addColumn<QString>("assignment");
        QTest::addColumn<QString>("expected");

        QTest::newRow("no sign") << u"gzipCheckerKeyString"_s
                                 << u"--set takes KEY=VALUE, not \"gzipCheckerKeyString\""_s;
        QTest::newRow("empty") << u""_s << u"--set takes KEY=VALUE, not \"\""_s;
        QTest::newRow("unknown key") << u"nosuch=1"_s << u"--set: there is no setting \"nosuch\""_s;
        QTest::newRow("no key") << u"=1"_s << u"--set: there is no setting \"\""_s;
        QTest::newRow("other case") << u"suffixkeystring=x"_s
                                    << u"--set: there is no setting \"suffixkeystring\""_s;
        QTest::newRow("blank before")
            << u" suffixKeyString=x"_s << u"--set: there is no setting \" suffixKeyString\""_s;
        for (const char *value : {"1", "0", "yes", "", "TRUE", " true", "on", "nan"}) {
            const QString text = QString::fromLatin1(value);
            QTest::addRow("boolean '%s'", value)
                << u"gzipCheckerKeyString="_s + text
                << u"--set: gzipCheckerKeyString takes true or false, not \"%1\""_s.arg(text);
        }
    }

    void wrongSettings()
    {
        QFETCH(QString, assignment);
        QTEST(parseCommandLine({u"--set"_s, assignment, u"a"_s}).error, "expected");
    }

    void unknownEncodingNamesTheKnown()
    {
        for (const QString &name : {u"utf8"_s, u"UTF-8"_s, u""_s, u"latin1"_s}) {
            const QString error =
                parseCommandLine({u"--set"_s, u"selectedEncodingKeyString="_s + name, u"a"_s}).error;
            QVERIFY2(error.startsWith(
                         u"--set: there is no encoding \"%1\"; there are utf-8, gb2312, "_s.arg(name)),
                     qPrintable(error));
            QVERIFY2(error.endsWith(u", iso-8859-1, iso-8859-15"_s), qPrintable(error));
        }
    }

    void everyKeyCanBeSet()
    {
        QStringList arguments{u"a"_s};
        QStringList expected;
        for (const SettingKey &setting : allSettingKeys) {
            const bool isBoolean = setting.type == SettingType::Boolean;
            const bool isFamily = setting.key == compressorsKeyString;
            arguments << u"--set"_s
                      << setting.key + (isBoolean  ? u"=true"_s
                                        : isFamily ? u"=modern"_s
                                                   : u"=gbk"_s);
            expected << setting.key;
        }
        QStringList actual;
        const CommandLine line = parseCommandLine(arguments);
        for (const auto &[key, value] : line.settings)
            actual << key;
        QCOMPARE(line.error, QString());
        QVERIFY(expected.size() >= 18);
        QCOMPARE(actual, expected);
    }

    void settingsKeepTheirOrder()
    {
        const CommandLine line =
            parseCommandLine({u"--set"_s, u"suffixKeyString=1"_s, u"a"_s,
                              u"--set=gzipCheckerKeyString=true"_s, u"--set"_s, u"suffixKeyString=2"_s});
        QStringList actual;
        for (const auto &[key, value] : line.settings)
            actual << key + u"="_s + value.toVariant().toString();
        QCOMPARE(actual, (QStringList{u"suffixKeyString=1"_s, u"gzipCheckerKeyString=true"_s,
                                      u"suffixKeyString=2"_s}));
    }
};

BREVANT_TEST(tst_CommandLine, QCoreApplication)
#include "tst_CommandLine.moc"
