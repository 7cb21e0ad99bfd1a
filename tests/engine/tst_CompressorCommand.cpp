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

/// Settings in memory alone.
class Settings final {
public:
    /// "10?1": line break on, nomunge off, preserve-semi undecided, disable-optimizations on.
    explicit Settings(const QByteArray &switches = {}, bool keepsSpace = false)
    {
        constexpr QLatin1StringView keys[] = {lineBreakSwitcherKeyString, nomungeSwitcherKeyString,
                                              preserveSemiSwitcherKeyString,
                                              disableOptimizationsSwitcherKeyString};
        set(500, lineBreakKeyString);
        set(u"utf-8"_s, selectedEncodingKeyString);
        set(keepsSpace, keepXMLSpaceCheckerKeyString);
        for (qsizetype i = 0; i < switches.size(); ++i)
            set(switches[i] == '?' ? QJsonValue(1) : QJsonValue(switches[i] == '1'), keys[i]);
    }

    void set(const QJsonValue &value, QLatin1StringView key) { m_store.setOverride(value, key); }
    [[nodiscard]] const SettingsStore &store() const { return m_store; }

private:
    QTemporaryDir m_folder;
    SettingsStore m_store{m_folder.filePath(u"settings.json"_s)};
};

QStringList words(const char *line)
{
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

QStringList lineFor(const QString &entry, const Settings &settings)
{
    return CompressorCommand(settings.store()).arguments(entry, u"/w/o"_s);
}

} // namespace

class tst_CompressorCommand final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholeLines_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QByteArray>("switches");
        QTest::addColumn<bool>("keepsSpace");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *entry, const char *output, const char *switches, bool keep,
                            const char *line) {
            QTest::addRow("%s L,N,S,D=%s K=%d", entry, switches, keep)
                << QString::fromUtf8(entry) << QString::fromUtf8(output) << QByteArray(switches) << keep
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
        QFETCH(QByteArray, switches);
        QFETCH(bool, keepsSpace);
        const Settings settings(switches, keepsSpace);
        QTEST(CompressorCommand(settings.store()).arguments(entry, output), "expected");
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
        Settings settings("1000");
        std::optional<QString> output = u"/w/o"_s;
        if (absent == u"output")
            output.reset();
        else // what is neither text nor number counts as not set
            settings.set(true, absent == u"encoding" ? selectedEncodingKeyString : lineBreakKeyString);
        QTEST(CompressorCommand(settings.store()).arguments(entry, output), "expected");
    }

    void textsArePassedAsTheyStand()
    {
        Settings settings("1000");
        settings.set(u"eighty columns"_s, lineBreakKeyString);
        settings.set(QString(), selectedEncodingKeyString);
        QCOMPARE(CompressorCommand(settings.store()).arguments(u"/w/a \"b\".css"_s, u"/o u t"_s),
                 QStringList({u"-jar"_s, u"yuicompressor-2.4.8.jar"_s, u"--line-break"_s, u"eighty columns"_s,
                              u"/w/a \"b\".css"_s, u"-o"_s, u"/o u t"_s, u"--charset"_s, QString()}));
    }

    void switchesAreReadStrictly_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<char>("strict");
        QTest::addColumn<bool>("flag");
        QTest::newRow("true") << QJsonValue(true) << '1' << true;
        QTest::newRow("false") << QJsonValue(false) << '0' << false;
        QTest::newRow("1") << QJsonValue(1) << '?' << true;
        QTest::newRow("0") << QJsonValue(0) << '?' << false;
        QTest::newRow("text") << QJsonValue(u"true"_s) << '?' << true;
        QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << '?' << false;
    }

    void switchesAreReadStrictly()
    {
        QFETCH(QJsonValue, stored);
        QFETCH(char, strict);
        QFETCH(bool, flag);
        const QLatin1StringView keys[] = {lineBreakSwitcherKeyString, nomungeSwitcherKeyString,
                                          preserveSemiSwitcherKeyString,
                                          disableOptimizationsSwitcherKeyString};
        for (int i = 0; i < 4; ++i) {
            // One key holds what is stored, the others are off.
            Settings settings;
            for (int other = 0; other < 4; ++other)
                settings.set(other == i ? stored : QJsonValue(false), keys[other]);
            QByteArray same("0000");
            same[i] = strict;
            QCOMPARE(lineFor(u"/w/a.js"_s, settings), lineFor(u"/w/a.js"_s, Settings(same)));
            QCOMPARE(lineFor(u"/w/a.js"_s, settings).isEmpty(), strict == '?');
        }
        Settings settings("0000");
        settings.set(stored, keepXMLSpaceCheckerKeyString);
        QCOMPARE(lineFor(u"/w/a.html"_s, settings).contains(u"--preserve-intertag-spaces"_s), flag);
        settings.set(stored, selectedEncodingKeyString);
        QCOMPARE(lineFor(u"/w/a.html"_s, settings).contains(u"--type"_s),
                 stored.isString() || stored.isDouble());
    }

    void everyOptionHasItsKey()
    {
        const QTemporaryDir folder;
        SettingsStore settings(folder.filePath(u"settings.json"_s));
        settings.registerDefaults(registeredDefaults());
        const std::pair<QLatin1StringView, QString> switches[] = {
            {lineBreakSwitcherKeyString, u" --line-break 500"_s},
            {nomungeSwitcherKeyString, u" --nomunge"_s},
            {preserveSemiSwitcherKeyString, u" --preserve-semi"_s},
            {disableOptimizationsSwitcherKeyString, u" --disable-optimizations"_s},
        };
        const CompressorCommand command(settings);
        const auto line = [](const CompressorCommand &of) {
            return of.arguments(u"/w/a.js"_s, u"/w/o"_s).join(u' ');
        };
        const QString plain = u"-jar yuicompressor-2.4.8.jar%1 /w/a.js -o /w/o --charset %2"_s;
        QCOMPARE(line(command), plain.arg(QString(), u"utf-8"_s));
        for (const auto &[key, argument] : switches) {
            settings.setOverride(true, key);
            QCOMPARE(line(command), plain.arg(argument, u"utf-8"_s));
            settings.setOverride(false, key);
            QCOMPARE(line(command), plain.arg(QString(), u"utf-8"_s));
        }
        settings.setOverride(true, lineBreakSwitcherKeyString);
        settings.setOverride(72, lineBreakKeyString);
        settings.setOverride(u"gbk"_s, selectedEncodingKeyString);
        // Read at the start of a run alone.
        QCOMPARE(line(command), plain.arg(u" --line-break 500"_s, u"utf-8"_s));
        QCOMPARE(line(CompressorCommand(settings)), plain.arg(u" --line-break 72"_s, u"gbk"_s));
    }

    void argumentsEndAtTheFirstAbsentValue()
    {
        QCOMPARE(upToAbsent({u"-f"_s, QString(), u"-f"_s}), QStringList({u"-f"_s, QString(), u"-f"_s}));
        QCOMPARE(upToAbsent({u"a"_s, std::nullopt, u"b"_s, u"c"_s}), QStringList({u"a"_s}));
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
