// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSheetCheck.h"
#include "tests/TestClass.h"
#include "tests/engine/CaseTable.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

class tst_StyleSheetCheck final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Real results of YUI Compressor, and what a browser keeps of them.
    void damageIsFound_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("result");
        QTest::addColumn<bool>("isDamaged");
        const QList<TableCase> cases = readCases(QStringLiteral(TEST_DATA "/style-sheets.txt"));
        QVERIFY(cases.size() >= 240);
        for (const TableCase &one : cases) {
            QTest::addRow("%s", one.name.constData())
                << QString::fromUtf8(one.source) << QString::fromUtf8(one.result) << (one.mark == "damaged");
        }
    }

    void damageIsFound()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, result);
        QFETCH(const bool, isDamaged);
        QCOMPARE(!checkStyleSheet(source, result).isEmpty(), isDamaged);
        QVERIFY(checkStyleSheet(source, source).isEmpty());
    }

    void warningsNameThePlace()
    {
        const QString source =
            u"/* a\n*/ .a, .b > c {\n  color: red;\n  width: calc(1px +\n 2px)\n}\n"
            "@media print {\r\n  @supports (top: 1px) { .d { TOP: calc(1px + 2px) !important } }\n}\n"
            "@font-face { src: url(a b); size-adjust: 0% }\n"
            "@import url(late.css);"_s;
        const QString result = u".a,.b>c{color:red;width:calc(1px+2px)}"
                               "@media print{@supports(top:1px){.d{top:calc(1px+2px)!important}}}"
                               "@font-face{src:url(a b);size-adjust:0}"_s;
        const QList<ResultWarning> expected{
            {Kind::Declaration, 4, {}, u".a, .b > c"_s, u"width"_s, u"calc(1px + 2px)"_s, u"calc(1px+2px)"_s},
            {Kind::Declaration,
             8,
             {u"@media print"_s, u"@supports (top: 1px)"_s},
             u".d"_s,
             u"top"_s,
             u"calc(1px + 2px) !important"_s,
             u"calc(1px+2px)!important"_s},
            {Kind::Declaration, 10, {u"@font-face"_s}, {}, u"size-adjust"_s, u"0%"_s, u"0"_s},
        };
        QCOMPARE(checkStyleSheet(source, result), expected);
        QCOMPARE(checkStyleSheet(source, result, 100).first().line, 103);
    }

    void onlyLostSelectorsAreNamed()
    {
        const QString source = u".a .b, .c { color: red }"_s;
        const QList<ResultWarning> expected{{Kind::Declaration, 1, {}, u".a .b"_s, u"color"_s, u"red"_s, {}}};
        QCOMPARE(checkStyleSheet(source, u".a.b,.c{color:red}"_s), expected);
        QVERIFY(checkStyleSheet(source, u".c{color:red}.a .b{color:red}"_s).isEmpty());
    }

    void statements()
    {
        const QString source =
            u"@charset \"UTF-8\";\n@import 'a.css' screen;\n@layer a, b;\n.a { top: 0 }\n@import 'b.css';"_s;
        const QList<ResultWarning> expected{{Kind::Statement, 2, {}, {}, {}, u"@import 'a.css' screen"_s, {}},
                                            {Kind::Statement, 3, {}, {}, {}, u"@layer a, b"_s, {}}};
        QCOMPARE(checkStyleSheet(source, u".a{top:0}"_s), expected);
        QVERIFY(checkStyleSheet(source, u"@import 'a.css' screen;@layer a,b;.a{top:0}"_s).isEmpty());
    }

    void anEmptyResult()
    {
        QCOMPARE(checkStyleSheet(u".a{top:0}"_s, u""_s), QList<ResultWarning>{{Kind::NothingLeft}});
        QVERIFY(checkStyleSheet(u".a{}/* b */"_s, u""_s).isEmpty());
        QVERIFY(checkStyleSheet(u".a{-moz-x:0}"_s, u""_s).isEmpty());
    }

    void longTextsAreCut()
    {
        const QString value = u"x"_s.repeated(1000);
        const QList<ResultWarning> warnings =
            checkStyleSheet(u".a{b:"_s + value + u"}.c{d:e}"_s, u".c{d:e}"_s);
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings.first().before, value.first(400) + u'…');
    }

    /// None of these may take longer than its length allows, nor fill the stack.
    void textsMadeToTakeForever_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("result");
        constexpr int many = 20'000;
        const QString lost = u".z{a:calc(1px+2px)}"_s;
        QTest::newRow("blocks in blocks") << u"a{b:c;"_s.repeated(many) << u"a{b:d;"_s.repeated(many);
        QTest::newRow("brackets in brackets") << u".a{b:"_s + u"calc("_s.repeated(many) << lost;
        QTest::newRow("brackets that close nothing") << u".a{b:c}"_s + u")]}"_s.repeated(many) << lost;
        QTest::newRow("many selectors and declarations")
            << u".a,"_s.repeated(many) + u".b{"_s + u"c:d;"_s.repeated(many) + u'}' << lost;
        QTest::newRow("many equal blocks")
            << u".a,.b{c:d}"_s.repeated(many) << u".b,.a{c:e}"_s.repeated(many);
        QTest::newRow("many properties of one")
            << u".a{--b:0px;width:calc(var(--b))}"_s.repeated(many) << u".a{--b:0;width:calc(var(--b))}"_s;
        QTest::newRow("one long value for many")
            << u".a{b:c;b:d}"_s.repeated(many) << u".a{b:"_s + u"e"_s.repeated(many) + u'}';
        QTest::newRow("comments") << u"/*"_s.repeated(many) << u"/**/"_s.repeated(many);
        QTest::newRow("strings") << u"\"\\\n"_s.repeated(many) << u"'"_s.repeated(many);
        QTest::newRow("addresses") << u"url("_s.repeated(many) << lost;
        QTest::newRow("escapes") << u"\\"_s.repeated(many) + u'\\' << u"\\0"_s.repeated(many);
    }

    void textsMadeToTakeForever()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, result);
        QVERIFY(checkStyleSheet(source, source).isEmpty());
        static_cast<void>(checkStyleSheet(source, result));
        static_cast<void>(checkStyleSheet(result, source));
    }

private:
    using Kind = ResultWarning::Kind;
};

BREVANT_TEST(tst_StyleSheetCheck, QCoreApplication)
#include "tst_StyleSheetCheck.moc"
