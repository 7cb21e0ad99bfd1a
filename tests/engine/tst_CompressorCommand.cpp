// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CompressorCommand.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/TestClass.h"

#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

/// "10?1": line break on, nomunge off, preserve-semi undecided, disable-optimizations on.
CompressorOptions options(const char *switches, bool keepSpace = false)
{
    const auto state = [](char c) {
        return c == '1' ? SwitchState::On : c == '0' ? SwitchState::Off : SwitchState::Undecided;
    };
    CompressorOptions result;
    result.lineBreakColumn = u"500"_s;
    result.encoding = u"utf-8"_s;
    result.lineBreak = state(switches[0]);
    result.nomunge = state(switches[1]);
    result.preserveSemi = state(switches[2]);
    result.disableOptimizations = state(switches[3]);
    result.keepXMLSpace = keepSpace;
    return result;
}

QStringList words(const char *line)
{
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

class tst_CompressorCommand final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholeLines_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("output");
        QTest::addColumn<CompressorOptions>("with");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *entry, const char *output, const char *switches, bool keep,
                            const char *line) {
            QTest::addRow("%s L,N,S,D=%s K=%d", entry, switches, keep)
                << QString::fromUtf8(entry) << QString::fromUtf8(output) << options(switches, keep)
                << words(line);
        };
        const auto css = [&](const char *switches, const char *line) {
            row("/w/a.css", "/w/a.min.css", switches, false, line);
        };
        const auto js = [&](const char *switches, const char *line) {
            row("/w/a.js", "/w/a.min.js", switches, false, line);
        };

        const char *plainCss = "-jar yuicompressor-2.4.8.jar /w/a.css -o /w/a.min.css --charset utf-8";
        const char *brokenCss =
            "-jar yuicompressor-2.4.8.jar --line-break 500 /w/a.css -o /w/a.min.css --charset utf-8";
        for (const char *any : {"0000", "0001", "0010", "0011", "0100", "0101", "0110", "0111", "0???"})
            css(any, plainCss);
        for (const char *any : {"1000", "1001", "1010", "1011", "1100", "1101", "1110", "1111", "1???"})
            css(any, brokenCss);
        css("?000", "");

        js("0000", "-jar yuicompressor-2.4.8.jar /w/a.js -o /w/a.min.js --charset utf-8");
        js("0001",
           "-jar yuicompressor-2.4.8.jar --disable-optimizations /w/a.js -o /w/a.min.js --charset utf-8");
        js("0010", "-jar yuicompressor-2.4.8.jar --preserve-semi /w/a.js -o /w/a.min.js --charset utf-8");
        js("0011", "-jar yuicompressor-2.4.8.jar --preserve-semi --disable-optimizations /w/a.js -o "
                   "/w/a.min.js --charset utf-8");
        js("0100", "-jar yuicompressor-2.4.8.jar --nomunge /w/a.js -o /w/a.min.js --charset utf-8");
        js("0101", "-jar yuicompressor-2.4.8.jar --nomunge --disable-optimizations /w/a.js -o /w/a.min.js "
                   "--charset utf-8");
        js("0110",
           "-jar yuicompressor-2.4.8.jar --nomunge --preserve-semi /w/a.js -o /w/a.min.js --charset utf-8");
        js("0111", "-jar yuicompressor-2.4.8.jar --nomunge --preserve-semi --disable-optimizations /w/a.js "
                   "-o /w/a.min.js --charset utf-8");
        js("1000", "-jar yuicompressor-2.4.8.jar --line-break 500 /w/a.js -o /w/a.min.js --charset utf-8");
        js("1001", "-jar yuicompressor-2.4.8.jar --line-break 500 --disable-optimizations /w/a.js -o "
                   "/w/a.min.js --charset utf-8");
        js("1010", "-jar yuicompressor-2.4.8.jar --line-break 500 --preserve-semi /w/a.js -o /w/a.min.js "
                   "--charset utf-8");
        js("1011", "-jar yuicompressor-2.4.8.jar --line-break 500 --preserve-semi --disable-optimizations "
                   "/w/a.js -o /w/a.min.js --charset utf-8");
        js("1100",
           "-jar yuicompressor-2.4.8.jar --line-break 500 --nomunge /w/a.js -o /w/a.min.js --charset utf-8");
        js("1101", "-jar yuicompressor-2.4.8.jar --line-break 500 --nomunge --disable-optimizations /w/a.js "
                   "-o /w/a.min.js --charset utf-8");
        js("1110", "-jar yuicompressor-2.4.8.jar --line-break 500 --nomunge --preserve-semi /w/a.js -o "
                   "/w/a.min.js --charset utf-8");
        js("1111", "-jar yuicompressor-2.4.8.jar --line-break 500 --nomunge --preserve-semi "
                   "--disable-optimizations /w/a.js -o /w/a.min.js --charset utf-8");
        for (const char *undecided : {"?000", "0?00", "00?0", "000?", "1?11", "11?1", "111?", "?111"})
            js(undecided, "");
        row("/w/App.JS", "/w/App.min.js", "0000", false,
            "-jar yuicompressor-2.4.8.jar /w/App.JS -o /w/App.min.js --charset utf-8");

        for (const char *kind : {"html", "phtml", "php", "HTML"}) {
            const QByteArray entry = QByteArray("/w/a.") + kind;
            const QByteArray output = QByteArray("/w/a.min.") + QByteArray(kind).toLower();
            const QByteArray head =
                "-jar htmlcompressor-1.5.3.jar --charset utf-8 --type html --compress-js --compress-css ";
            for (const char *any : {"0000", "1111", "????"}) {
                row(entry, output, any, false, head + "--remove-intertag-spaces " + entry + " -o " + output);
                row(entry, output, any, true, head + "--preserve-intertag-spaces " + entry + " -o " + output);
            }
        }
        row("/w/a.txt", "/w/a.min.css", "0000", false, "");
        row("/w/Makefile", "/w/a.min.css", "1111", true, "");
        row("/w/.css", "/w/a.min.css", "0000", false, "");
    }

    void wholeLines()
    {
        QFETCH(QString, entry);
        QFETCH(QString, output);
        QFETCH(CompressorOptions, with);
        QFETCH(QStringList, expected);
        QCOMPARE(compressorArguments(entry, output, with), expected);
    }

    void absentValuesEndTheList_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("absent");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("css, no output")
            << "/w/a.css"
            << "output" << words("-jar yuicompressor-2.4.8.jar --line-break 500 /w/a.css -o");
        QTest::newRow("html, no output")
            << "/w/a.html"
            << "output"
            << words("-jar htmlcompressor-1.5.3.jar --charset utf-8 --type html --compress-js "
                     "--compress-css --remove-intertag-spaces /w/a.html -o");
        QTest::newRow("js, no encoding")
            << "/w/a.js"
            << "encoding" << words("-jar yuicompressor-2.4.8.jar --line-break 500 /w/a.js -o /w/o --charset");
        QTest::newRow("php, no encoding") << "/w/a.php"
                                          << "encoding" << words("-jar htmlcompressor-1.5.3.jar --charset");
        QTest::newRow("css, no column") << "/w/a.css"
                                        << "column" << words("-jar yuicompressor-2.4.8.jar --line-break");
        QTest::newRow("html, no column")
            << "/w/a.html"
            << "column"
            << words("-jar htmlcompressor-1.5.3.jar --charset utf-8 --type html --compress-js "
                     "--compress-css --remove-intertag-spaces /w/a.html -o /w/o");
    }

    void absentValuesEndTheList()
    {
        QFETCH(QString, entry);
        QFETCH(QString, absent);
        CompressorOptions with = options("1000");
        std::optional<QString> output = u"/w/o"_s;
        if (absent == u"output")
            output.reset();
        else if (absent == u"encoding")
            with.encoding.reset();
        else
            with.lineBreakColumn.reset();
        QTEST(compressorArguments(entry, output, with), "expected");
    }

    void textsArePassedAsTheyStand()
    {
        CompressorOptions with = options("1000");
        with.lineBreakColumn = u"eighty columns"_s;
        with.encoding = QString();
        QCOMPARE(compressorArguments(u"/w/a \"b\".css"_s, u"/o u t"_s, with),
                 QStringList({u"-jar"_s, u"yuicompressor-2.4.8.jar"_s, u"--line-break"_s, u"eighty columns"_s,
                              u"/w/a \"b\".css"_s, u"-o"_s, u"/o u t"_s, u"--charset"_s, QString()}));
    }

    void switchesAreReadStrictly_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<SwitchState>("strict");
        QTest::addColumn<bool>("flag");
        QTest::newRow("true") << QJsonValue(true) << SwitchState::On << true;
        QTest::newRow("false") << QJsonValue(false) << SwitchState::Off << false;
        QTest::newRow("1") << QJsonValue(1) << SwitchState::Undecided << true;
        QTest::newRow("0") << QJsonValue(0) << SwitchState::Undecided << false;
        QTest::newRow("text") << QJsonValue(u"true"_s) << SwitchState::Undecided << true;
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << SwitchState::Undecided << false;
    }

    void switchesAreReadStrictly()
    {
        QFETCH(QJsonValue, stored);
        QFETCH(SwitchState, strict);
        QFETCH(bool, flag);
        const QTemporaryDir folder;
        SettingsStore settings(folder.filePath(u"settings.json"_s));
        if (!stored.isUndefined()) {
            for (const SettingKey &setting : allSettingKeys)
                settings.setOverride(stored, setting.key);
        }
        const CompressorOptions read = CompressorOptions::atStartOfRun(settings);
        QCOMPARE(read.lineBreak, strict);
        QCOMPARE(read.nomunge, strict);
        QCOMPARE(read.preserveSemi, strict);
        QCOMPARE(read.disableOptimizations, strict);
        QCOMPARE(read.keepXMLSpace, flag);
        QCOMPARE(read.encoding.has_value(), stored.isString() || stored.isDouble());
    }

    void everyOptionHasItsKey()
    {
        const QTemporaryDir folder;
        SettingsStore settings(folder.filePath(u"settings.json"_s));
        settings.registerDefaults(registeredDefaults());
        const std::pair<QLatin1StringView, SwitchState CompressorOptions::*> switches[] = {
            {lineBreakSwitcherKeyString, &CompressorOptions::lineBreak},
            {nomungeSwitcherKeyString, &CompressorOptions::nomunge},
            {preserveSemiSwitcherKeyString, &CompressorOptions::preserveSemi},
            {disableOptimizationsSwitcherKeyString, &CompressorOptions::disableOptimizations},
        };
        CompressorOptions read = CompressorOptions::atStartOfRun(settings);
        QCOMPARE(read.lineBreakColumn, u"500"_s);
        QCOMPARE(read.encoding, u"utf-8"_s);
        for (const auto &[key, member] : switches) {
            QCOMPARE(read.*member, SwitchState::Off);
            settings.setOverride(true, key);
            for (const auto &[otherKey, other] : switches) {
                const CompressorOptions now = CompressorOptions::atStartOfRun(settings);
                QCOMPARE(now.*other, key == otherKey ? SwitchState::On : SwitchState::Off);
            }
            settings.setOverride(false, key);
        }
        settings.setOverride(72, lineBreakKeyString);
        settings.setOverride(u"gbk"_s, selectedEncodingKeyString);
        read.readSwitches(settings);
        QCOMPARE(read.lineBreakColumn, u"500"_s); // read at the start of a run alone
        read = CompressorOptions::atStartOfRun(settings);
        QCOMPARE(read.lineBreakColumn, u"72"_s);
        QCOMPARE(read.encoding, u"gbk"_s);
    }

    void patterns_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<bool>("taken");
        QTest::addColumn<bool>("dangerous");
        const auto row = [](const char *output, bool taken, bool dangerous) {
            QTest::newRow(output) << QString::fromLatin1(output) << taken << dangerous;
        };
        row("/w/a.min.css", false, false);
        row("/w/(a)$1\\.css", false, false);
        row("/w/a:min.css", true, false);
        row("/w:x/a.min.css", true, false);
        row("/w:x/(a).css", true, false); // what is put in is no pattern
        row("/w/a:$1.css", true, true);
        row("/w/a:b:$1.css", true, true);
        row("/w/a:b\\c.css", true, true);
        for (const char sign : QByteArray("\\^$|?*+()[]{}"))
            row(QByteArray("/w" + QByteArray(1, sign) + ":a.css").constData(), true, true);
    }

    void patterns()
    {
        QFETCH(QString, output);
        for (const char *entry : {"/w/a.css", "/w/a.JS"}) {
            QTEST(isTakenForPattern(QString::fromLatin1(entry), output), "taken");
            QTEST(isDangerousPattern(QString::fromLatin1(entry), output), "dangerous");
        }
        for (const char *entry : {"/w/a.html", "/w/a.phtml", "/w/a.php", "/w/notes.txt"}) {
            QVERIFY(!isTakenForPattern(QString::fromLatin1(entry), output));
            QVERIFY(!isDangerousPattern(QString::fromLatin1(entry), output));
        }
    }
};

BREVANT_TEST(tst_CompressorCommand, brevant::test::NoApplication)
#include "tst_CompressorCommand.moc"
