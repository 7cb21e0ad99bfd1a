// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ResultCheck.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

class tst_ResultCheck final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void useStrict_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QList<int>>("lines");
        const QString lost = u"(function(){a()})();"_s;
        const auto row = [](const char *name, const QString &source, const QString &result,
                            const QList<int> &lines) { QTest::newRow(name) << source << result << lines; };
        row("of a function", u"(function () {\n  'use strict';\n  a();\n})();"_s, lost, {2});
        row("after a comment", u"(function () { // a '\n  /* } */ \"use strict\"; a(); })();"_s, lost, {2});
        row("of two", u"function a() { 'use strict' }\nfunction b() { 'use strict' }"_s,
            u"function a(){}function b(){}"_s, {1, 2});
        row("kept", u"(function () { 'use strict'; a(); })();"_s, u"(function(){\"use strict\";a()})();"_s,
            {});
        row("of the script", u"'use strict';\na();"_s, u"a();"_s, {});
        row("no directive", u"a('use strict'); b = 'use strict'; // { 'use strict'\n"_s, u"a();"_s, {});
        row("after regular expressions",
            u"a = b.replace(/[/'\"]/g, c / d); e = f / g; h = /'/;\nfunction i() { 'use strict'; }"_s, lost,
            {2});
        row("after a word", u"function a() { return /'/; }\nfunction i() { 'use strict'; }"_s, lost, {2});
    }

    void useStrict()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, result);
        QFETCH(const QList<int>, lines);
        QList<int> found;
        for (const ResultWarning &warning : checkResult(KindFamily::Script, source, result)) {
            QVERIFY(warning.isNote());
            QCOMPARE(warning.sentence(), u"\"use strict\" lost"_s);
            found.append(warning.line);
        }
        QCOMPARE(found, lines);
    }

    void notSmaller()
    {
        const QList<ResultWarning> expected{{ResultWarning::Kind::NotSmaller}};
        for (const KindFamily family : {KindFamily::StyleSheet, KindFamily::Script, KindFamily::Markup}) {
            QCOMPARE(checkResult(family, u"abc"_s, u"abc"_s), expected);
            QCOMPARE(checkResult(family, u"abc"_s, u"abcd"_s), expected);
            QVERIFY(checkResult(family, u"abc"_s, u"ab"_s).isEmpty());
            QVERIFY(checkResult(family, u""_s, u""_s).isEmpty());
        }
    }

    void summaries()
    {
        using Kind = ResultWarning::Kind;
        QCOMPARE(summaryOf({}), QString());
        QCOMPARE(summaryOf({{Kind::Declaration}}), u"1 declaration damaged"_s);
        QCOMPARE(summaryOf({{Kind::UseStrict}, {Kind::UseStrict}}), u"\"use strict\" lost"_s);
        QCOMPARE(summaryOf({{Kind::Declaration},
                            {Kind::Declaration},
                            {Kind::Statement},
                            {Kind::GluedWords},
                            {Kind::GluedLinks},
                            {Kind::GluedLinks},
                            {Kind::UseStrict},
                            {Kind::NotSmaller}}),
                 u"2 declarations damaged, 1 at-rule lost, links glued together, words glued together, "
                 "not smaller than its source"_s);
    }

    void inWords()
    {
        ResultWarning warning{ResultWarning::Kind::Declaration,
                              3,
                              {u"@media print"_s, u"b"_s},
                              u".a"_s,
                              u"top"_s,
                              u"0s"_s,
                              u"0"_s};
        QCOMPARE(warning.inWords(), u"line 3: declaration changed in @media print, b, .a: top: 0s -> 0"_s);
        warning.after.clear();
        QCOMPARE(warning.inWords(), u"line 3: declaration lost in @media print, b, .a: top: 0s"_s);
        warning = {ResultWarning::Kind::GluedWords, 2, {}, {}, {}, u"a b"_s, u"ab"_s};
        QCOMPARE(warning.inWords(), u"line 2: words glued together: a b -> ab"_s);
        QCOMPARE(ResultWarning{ResultWarning::Kind::NotSmaller}.inWords(), u"not smaller than its source"_s);
    }

    void files()
    {
        const QTemporaryDir folder;
        const QString source = folder.filePath(u"a.css"_s);
        const QString output = folder.filePath(u"a.min.css"_s);
        QVERIFY(writeFile(source, ".a::after { content: \"\xb0\xa1  \"; width: calc(1px + 2px) }"));
        QVERIFY(writeFile(output, ".a::after{content:\"\xb0\xa1  \";width:calc(1px+2px)}"));
        const CheckedFile checked = checkFile(source, output, TextEncoding::Gb2312);
        QCOMPARE(checked.obstacle, QString());
        QCOMPARE(summaryOf(checked.warnings), u"1 declaration damaged"_s);
        QCOMPARE(checkFile(source, output, TextEncoding::Utf8).obstacle, u"the source is not valid UTF-8"_s);
        QCOMPARE(checkFile(source, source, TextEncoding::Gb2312).obstacle,
                 u"the source is not there any more"_s);
        const QByteArray before =
            ".a { width: calc(1px + 2px); top: 0; left: 0; color: red; background: blue }";
        QCOMPARE(checkFile(source, source, TextEncoding::Gb2312, before).warnings.size(), 5);
        QVERIFY(writeFile(source, ".a { top: 0 }  "));
        QCOMPARE(checkFile(source, output, TextEncoding::Utf8).obstacle, u"the output is not valid UTF-8"_s);
        QCOMPARE(checkFile(source, folder.path(), TextEncoding::Utf8).obstacle.section(u':', 0, 0),
                 u"the output cannot be read"_s);
        QCOMPARE(
            checkFile(folder.filePath(u"b.css"_s), output, TextEncoding::Utf8).obstacle.section(u':', 0, 0),
            u"the source cannot be read"_s);
    }
};

BREVANT_TEST(tst_ResultCheck, QCoreApplication)
#include "tst_ResultCheck.moc"
