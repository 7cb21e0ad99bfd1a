// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSheet.h"
#include "tests/TestClass.h"

#include <QStringList>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_StyleSheet final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isTakenApart_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QString &text, const QStringList &expected) {
            QTest::newRow(name) << text << expected;
        };
        row("nothing", u""_s, {});
        row("declarations", u"a{b:c;d : e f }"_s, {u"a | b | c"_s, u"a | d | e f"_s});
        row("no last brace", u"a{b:c"_s, {u"a | b | c"_s});
        row("comments", u"/*x*/a/*{*/{/*}*/b/*:*/:c/*;*/;d:e}"_s, {u"a | b | c"_s, u"a | d | e"_s});
        row("strings", u"a{b:\"};\\\"\";c:'\\\n}'}"_s, {u"a | b | \"};\\\"\""_s, u"a | c | '\\\n}'"_s});
        row("a string ends with its line", u"a{b:\"c\n;d:e}"_s, {u"a | b | \"c"_s, u"a | d | e"_s});
        row("addresses", u"a{b:url(/*c;}\\));d:URL( 'x)' )}"_s,
            {u"a | b | url(/*c;}\\))"_s, u"a | d | URL( 'x)' )"_s});
        row("escapes", u".\\{a\\}{\\62 :c}"_s, {u".\\{a\\} | \\62  | c"_s});
        row("brackets", u"a[b='{']{c:d({;});e:[}]}"_s, {u"a[b='{'] | c | d({;})"_s, u"a[b='{'] | e | [}]"_s});
        row("custom properties", u"a{--b:{c:d;e{}};--f:;g:h}"_s,
            {u"a | --b | {c:d;e{}}"_s, u"a | --f | "_s, u"a | g | h"_s});
        row("at-rules", u"@import 'a;b';@media b{c{d:e}}@font-face{f:g}"_s,
            {u"@import 'a;b'"_s, u"@media b / c | d | e"_s, u"@font-face | f | g"_s});
        row("nesting", u"a{b:c;d:e{f:g}> h{i:j}@media k{l:m}n:o}"_s,
            {u"a | b | c"_s, u"a / d:e | f | g"_s, u"a / > h | i | j"_s, u"a / @media k | l | m"_s,
             u"a | n | o"_s});
        row("hacks", u"a{*b:c;#d:e;;f;:g}"_s, {u"a | *b | c"_s, u"a | #d | e"_s});
        row("signs between rules", u"a{b:c};d{e:f}}g{h:i}"_s,
            {u"a | b | c"_s, u";d | e | f"_s, u"}g | h | i"_s});
    }

    void isTakenApart()
    {
        QFETCH(const QString, text);
        QFETCH(const QStringList, expected);
        const StyleSheet sheet(text);
        QStringList found;
        for (const StyleSheet::Statement &statement : sheet.statements())
            found.append(StyleSheet::textOf(statement.tokens).toString());
        for (const StyleSheet::Declaration &declaration : sheet.declarations()) {
            found.append(u"%1 | %2%3 | %4"_s.arg(
                placeOf(sheet, declaration.block),
                declaration.isHack && declaration.property.front() != u'#' ? u"*"_s : QString(),
                declaration.property.toString(), StyleSheet::textOf(declaration.value).toString()));
        }
        QCOMPARE(found, expected);
    }

private:
    static QString placeOf(const StyleSheet &sheet, int block)
    {
        QStringList places;
        for (; block != StyleSheet::noBlock; block = sheet.blocks()[static_cast<std::size_t>(block)].parent)
            places.prepend(
                StyleSheet::textOf(sheet.blocks()[static_cast<std::size_t>(block)].prelude).toString());
        return places.join(u" / "_s);
    }
};

BREVANT_TEST(tst_StyleSheet, QCoreApplication)
#include "tst_StyleSheet.moc"
