// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/engine/modern/ModernFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <functional>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

using Change = std::function<void(SettingsStore &)>;

/// What an esbuild of the user's own is, for tests: a shell script.
QString writeProgram(const QTemporaryDir &folder, const QByteArray &script)
{
    const QString path = folder.filePath(u"program"_s);
    return writeFile(path, "#!/bin/sh\ncat > /dev/null\n" + script) && setMode(path, 0755) ? path : QString();
}

} // namespace

class tst_ModernCompressor final : public QObject, ModernFixture {
    Q_OBJECT

private Q_SLOTS:
    void switchesBecomeArguments_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("more");
        QTest::addColumn<QStringList>("fewer");

        const auto on = [](QLatin1StringView key) {
            return Change([key](SettingsStore &settings) { settings.setBool(true, key); });
        };
        const Change none = [](SettingsStore &) {};
        QTest::newRow("defaults, style sheet") << u"a.css"_s << none << QStringList() << QStringList();
        QTest::newRow("defaults, script") << u"a.js"_s << none << QStringList() << QStringList();
        QTest::newRow("line break, style sheet") << u"a.css"_s << on(lineBreakSwitcherKeyString)
                                                 << QStringList(u"--line-limit=500"_s) << QStringList();
        QTest::newRow("line break, script") << u"a.js"_s << on(lineBreakSwitcherKeyString)
                                            << QStringList(u"--line-limit=500"_s) << QStringList();
        QTest::newRow("names, script") << u"a.js"_s << on(nomungeSwitcherKeyString) << QStringList()
                                       << QStringList(u"--minify-identifiers"_s);
        QTest::newRow("optimizations, script") << u"a.js"_s << on(disableOptimizationsSwitcherKeyString)
                                               << QStringList() << QStringList(u"--minify-syntax"_s);
        QTest::newRow("names, style sheet")
            << u"a.css"_s << on(nomungeSwitcherKeyString) << QStringList() << QStringList();
        QTest::newRow("optimizations, style sheet")
            << u"a.css"_s << on(disableOptimizationsSwitcherKeyString) << QStringList() << QStringList();
        QTest::newRow("semicolons, script")
            << u"a.js"_s << on(preserveSemiSwitcherKeyString) << QStringList() << QStringList();
        QTest::newRow("source map, script") << u"a.js"_s << on(sourceMapCheckerKeyString)
                                            << QStringList(u"--sourcemap=inline"_s) << QStringList();
        QTest::newRow("source map, page")
            << u"a.html"_s << on(sourceMapCheckerKeyString) << QStringList() << QStringList();
        QTest::newRow("spaces, page") << u"a.html"_s << on(keepXMLSpaceCheckerKeyString)
                                      << QStringList(u"--keep-whitespace"_s) << QStringList();
        QTest::newRow("comments, page") << u"a.html"_s << on(keepCommentsCheckerKeyString)
                                        << QStringList(u"--keep-comments"_s) << QStringList();
        QTest::newRow("names, page") << u"a.html"_s << on(nomungeSwitcherKeyString)
                                     << QStringList(u"--keep-names"_s) << QStringList();
        QTest::newRow("line break, page")
            << u"a.html"_s << on(lineBreakSwitcherKeyString) << QStringList() << QStringList();
    }

    void switchesBecomeArguments()
    {
        QFETCH(const QString, name);
        QFETCH(const Change, change);
        QFETCH(const QStringList, more);
        QFETCH(const QStringList, fewer);
        const FileKind &kind = *kindOf(name);
        const QStringList before = modernFilter(kind, optionsAfter(kind, {}), tools).arguments;
        QStringList after = modernFilter(kind, optionsAfter(kind, change), tools).arguments;
        for (const QString &argument : more)
            QCOMPARE(after.removeAll(argument), 1);
        for (const QString &argument : fewer)
            after.append(argument);
        after.sort();
        QStringList sorted = before;
        sorted.sort();
        QCOMPARE(after, sorted);
    }

    void settingsThatSayNothingOfUseAreRefused_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("error");

        const auto odd = [](QLatin1StringView key, const QJsonValue &value) {
            return Change([key, value](SettingsStore &settings) { settings.setObject(value, key); });
        };
        const auto column = [](const QString &text) {
            return Change([text](SettingsStore &settings) {
                settings.setBool(true, lineBreakSwitcherKeyString);
                settings.setObject(text, lineBreakKeyString);
            });
        };
        const QString neither = u"the setting %1 is neither true nor false"_s;
        const QString noNumber = u"the setting lineBreakKeyString is \"%1\", which is no number of columns"_s;
        QTest::newRow("line break is a number")
            << u"a.css"_s << odd(lineBreakSwitcherKeyString, 1) << neither.arg(lineBreakSwitcherKeyString);
        QTest::newRow("line break is a text") << u"a.js"_s << odd(lineBreakSwitcherKeyString, u"true"_s)
                                              << neither.arg(lineBreakSwitcherKeyString);
        QTest::newRow("names is a number")
            << u"a.js"_s << odd(nomungeSwitcherKeyString, 0) << neither.arg(nomungeSwitcherKeyString);
        QTest::newRow("names, of a style sheet")
            << u"a.css"_s << odd(nomungeSwitcherKeyString, 0) << QString();
        QTest::newRow("names, of a page") << u"a.html"_s << odd(nomungeSwitcherKeyString, 0) << QString();
        QTest::newRow("optimizations is a text")
            << u"a.js"_s << odd(disableOptimizationsSwitcherKeyString, u""_s)
            << neither.arg(disableOptimizationsSwitcherKeyString);
        QTest::newRow("semicolons, of no use")
            << u"a.js"_s << odd(preserveSemiSwitcherKeyString, 1) << QString();
        QTest::newRow("column is a word") << u"a.css"_s << column(u"many"_s) << noNumber.arg(u"many"_s);
        QTest::newRow("column is empty") << u"a.css"_s << column(u""_s) << noNumber.arg(u""_s);
        QTest::newRow("column is negative") << u"a.js"_s << column(u"-1"_s) << noNumber.arg(u"-1"_s);
        QTest::newRow("column of a page") << u"a.html"_s << column(u"many"_s) << QString();
        QTest::newRow("relative esbuild") << u"a.js"_s << odd(esbuildPathKeyString, u"bin/esbuild"_s)
                                          << u"the setting esbuildPathKeyString is no absolute path"_s;
        QTest::newRow("empty esbuild, as good as none")
            << u"a.js"_s << odd(esbuildPathKeyString, u""_s) << QString();
    }

    void settingsThatSayNothingOfUseAreRefused()
    {
        QFETCH(const QString, name);
        QFETCH(const Change, change);
        QFETCH(const QString, error);
        const ModernOptions options = optionsAfter(*kindOf(name), change);
        QCOMPARE(options.error, error);
        if (!error.isEmpty())
            QCOMPARE(minify(name, "a { b: c }", options).error, error);
    }

    void textsComeBackInTheirCharacterSet_data()
    {
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("output");

        QTest::newRow("UTF-8") << u"utf-8"_s << u"a.css"_s << "a { b: \"語\" }"_ba
                               << "a{b:\"語\"}"_ba;
        QTest::newRow("UTF-8 with a mark") << u"utf-8"_s << u"a.css"_s
                                           << "\xEF\xBB\xBF"
                                              "a { b: c }"_ba
                                           << "\xEF\xBB\xBF"
                                              "a{b:c}"_ba;
        QTest::newRow("UTF-8 page with a mark") << u"utf-8"_s << u"a.html"_s << "\xEF\xBB\xBF<p>  a"_ba
                                                << "\xEF\xBB\xBF<p>a"_ba;
        QTest::newRow("GB 18030 with a mark") << u"gb18030"_s << u"a.css"_s
                                              << "\x84\x31\x95\x33"
                                                 "a { b: c }"_ba
                                              << "\x84\x31\x95\x33"
                                                 "a{b:c}"_ba;
        QTest::newRow("Shift JIS") << u"shift-jis"_s << u"a.js"_s << "a = \"\x8C\xEA\" ;"_ba
                                   << "a=\"\x8C\xEA\";"_ba;
        QTest::newRow("ISO 2022 JP") << u"iso-2022-jp"_s << u"a.css"_s << "a { b: \"\x1B$B8l\x1B(B\" }"_ba
                                     << "a{b:\"\x1B$B8l\x1B(B\"}"_ba;
        QTest::newRow("script escaped")
            << u"gbk"_s << u"a.js"_s << "a  =  \"\\u{1F600}\"    ;  b  =  \"\xB0\xA1\";"_ba
            << "a=\"\\u{1F600}\",b=\"\\u554A\";"_ba;
        QTest::newRow("style sheet escaped")
            << u"big5"_s << u"a.css"_s << "a  {  content:  \"\\1F600 \"  }"_ba
            << "a{content:\"\\1f600\"}"_ba;
    }

    void textsComeBackInTheirCharacterSet()
    {
        QFETCH(const QString, encoding);
        QFETCH(const QString, name);
        QFETCH(const QByteArray, source);
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        const ModernResult result = minify(name, source, inEncoding(encoding));
        QCOMPARE(result.error, QString());
        QTEST(result.output, "output");
    }

    void textsThatCannotBeMinifiedAreRefused_data()
    {
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("error");

        QTest::newRow("invalid UTF-8") << u"utf-8"_s << u"a.css"_s << "a { b: \"\xFF\" }"_ba
                                       << u"the source is not valid UTF-8 at byte 8"_s;
        QTest::newRow("invalid behind a mark") << u"utf-8"_s << u"a.css"_s << "\xEF\xBB\xBF\xC3"_ba
                                               << u"the source is not valid UTF-8 at byte 3"_s;
        QTest::newRow("invalid Big5")
            << u"big5"_s << u"a.js"_s << "a = \"\xFF\""_ba << u"the source is not valid Big5 at byte 5"_s;
        QTest::newRow("NUL in a page")
            << u"utf-8"_s << u"a.html"_s << "<p>  a\0b"_ba << u"the text holds a NUL at byte 6"_s;
        QTest::newRow("broken style sheet")
            << u"utf-8"_s << u"a.css"_s << "a { b: c"_ba
            << u"line 1, column 9: Expected \"}\" to go with \"{\" [css-syntax-error]"_s;
        QTest::newRow("broken script")
            << u"utf-8"_s << u"a.js"_s << "\n\nfoo(;"_ba << u"line 3, column 5: Unexpected \";\""_s;
        QTest::newRow("broken script in a page")
            << u"utf-8"_s << u"a.html"_s << "<p>\n<script>foo(}</script>"_ba
            << u"line 2, column 13: unexpected } in expression"_s;
    }

    void textsThatCannotBeMinifiedAreRefused()
    {
        QFETCH(const QString, encoding);
        QFETCH(const QString, name);
        QFETCH(const QByteArray, source);
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        QTEST(minify(name, source, inEncoding(encoding)).error, "error");
    }

    void sourcesThatDoNotGetSmallerAreKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");

        QTest::newRow("minified already") << u"a.css"_s << "a{b:c}"_ba;
        QTest::newRow("with a line feed less") << u"a.js"_s << "a()"_ba;
        QTest::newRow("page") << u"a.html"_s << "<p>a"_ba;
        QTest::newRow("empty style sheet") << u"a.css"_s << ""_ba;
        QTest::newRow("empty page") << u"a.html"_s << ""_ba;
        QTest::newRow("empty PHP") << u"a.php"_s << ""_ba;
        QTest::newRow("only a mark") << u"a.html"_s << "\xEF\xBB\xBF"_ba;
    }

    void sourcesThatDoNotGetSmallerAreKept()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, source);
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        ModernOptions options;
        options.makeSourceMap = !name.endsWith(u"l"_s) && !name.endsWith(u"p"_s);
        const ModernResult result = minify(name, source, options);
        QCOMPARE(result.error, QString());
        QVERIFY(result.isSource);
        QCOMPARE(result.output, source);
        QCOMPARE(result.sourceMap, ""_ba);
    }

    void blankTextsBecomeEmpty()
    {
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        for (const QString &name : {u"a.css"_s, u"a.js"_s, u"a.html"_s, u"a.php"_s}) {
            const ModernResult result = minify(name, " \n ");
            QCOMPARE(result.error, QString());
            QCOMPARE(result.output, ""_ba);
        }
    }

    void sourceMapsLeadToTheSource()
    {
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        ModernOptions options;
        options.makeSourceMap = true;
        const QByteArray source = "const one = 1;\nexport function add(value) { return value + one }\n";
        const ModernResult result = minify(u"a b.js"_s, source, options);
        QCOMPARE(result.output,
                 "const o=1;export function add(n){return n+1}\n//# sourceMappingURL=a%20b.js.map"_ba);
        const QJsonObject map = QJsonDocument::fromJson(result.sourceMap).object();
        QCOMPARE(map.value("version"_L1).toInt(), 3);
        QCOMPARE(map.value("file"_L1).toString(), u"a b.js"_s);
        QCOMPARE(map.value("sources"_L1).toArray(), QJsonArray{u"../src/a%20b.js"_s});
        QCOMPARE(map.value("sourcesContent"_L1).toArray(), QJsonArray{QString::fromUtf8(source)});
        QVERIFY(!map.value("mappings"_L1).toString().isEmpty());
    }

    void warningsStayWithTheResult()
    {
        BREVANT_SKIP_WITHOUT_MODERN(tools);
        const ModernResult result = minify(u"a.css"_s, "a { colr: red }");
        QCOMPARE(result.error, QString());
        QCOMPARE(result.output, "a{colr:red}"_ba);
        QCOMPARE(result.messages.inWords(),
                 u"line 1, column 5: \"colr\" is not a known CSS property [unsupported-css-property]"_s);
    }

    void aProgramOfTheUsersOwnIsRun()
    {
        const QTemporaryDir folder;
        ModernOptions options;
        options.esbuild = writeProgram(folder, "echo own");
        QCOMPARE(minify(u"a.css"_s, "a { b: c }", options).output, "own"_ba);
        options.esbuild = writeProgram(folder, "exit 4");
        QCOMPARE(minify(u"a.css"_s, "a { b: c }", options).error, u"program ended with status 4"_s);
        options.esbuild = writeProgram(folder, "kill -11 $$");
        QCOMPARE(minify(u"a.css"_s, "a { b: c }", options).error, u"program was ended by signal 11"_s);
        options.encoding = TextEncoding::Gbk;
        options.esbuild = writeProgram(folder, "printf '\\303\\251\\303\\204'");
        QCOMPARE(minify(u"a.css"_s, "a { b: c }", options).error,
                 u"the result has a character that is not in GBK"_s);
        options.esbuild = folder.filePath(u"none"_s);
        QCOMPARE(minify(u"a.css"_s, "a { b: c }", options).error,
                 u"the modern compressor %1 is missing"_s.arg(options.esbuild));
    }

private:
    static ModernOptions inEncoding(const QString &name)
    {
        ModernOptions options;
        options.encoding = textEncodingNamed(name);
        return options;
    }

    static ModernOptions optionsAfter(const FileKind &kind, const Change &change)
    {
        const QTemporaryDir folder;
        SettingsStore settings(folder.filePath(u"settings.json"_s));
        settings.registerDefaults(registeredDefaults());
        if (change)
            change(settings);
        return ModernOptions::forKind(kind, settings, settings.stringForKey(lineBreakKeyString),
                                      settings.stringForKey(selectedEncodingKeyString));
    }
};

BREVANT_TEST(tst_ModernCompressor, QCoreApplication)
#include "tst_ModernCompressor.moc"
