// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/PageCheck.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_PageCheck final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void gluedWords_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QString &source, const QString &result,
                            const QString &expected) { QTest::newRow(name) << source << result << expected; };
        const QString none;
        row("links", u"<a>Our privacy</a>\n<a>Terms</a>"_s, u"<a>Our privacy</a><a>Terms</a>"_s,
            u"links glued together, line 2: privacy Terms -> privacyTerms"_s);
        row("words", u"<b>a</b> <i>b</i>"_s, u"<b>a</b><i>b</i>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("a link and a word", u"<a>a</a> <i>b</i>"_s, u"<a>a</a><i>b</i>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("within one link", u"<a><b>a</b> <i>b</i></a>"_s, u"<a><b>a</b><i>b</i></a>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("unknown elements", u"<x-a>a</x-a> <x-b>b</x-b>"_s, u"<x-a>a</x-a><x-b>b</x-b>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("still apart", u"<a>a</a>\n  <a>b</a>"_s, u"<a>a</a> <a>b</a>"_s, none);
        row("never apart", u"<a>a</a><a>b</a>"_s, u"<a>a</a><a>b</a>"_s, none);
        row("blocks", u"<li>a</li> <li>b</li> <p>c <br> d"_s, u"<li>a</li><li>b</li><p>c<br>d"_s, none);
        row("the space moves", u"<b>a </b> <i>b</i>"_s, u"<b>a </b><i>b</i>"_s, none);
        row("comments", u"<b>a</b> <!-- > --> <i>b</i>"_s, u"<b>a</b><i>b</i>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("scripts and styles", u"<b>a</b> <script>if (1 < 2) x</script> <i>b</i>"_s,
            u"<b>a</b><script>if(1<2)x</script><i>b</i>"_s, u"words glued together, line 1: a b -> ab"_s);
        row("attributes", u"<b title=\"a > b\">a</b> <i title='c > d'>b</i>"_s,
            u"<b title=\"a> b\">a</b><i title='c > d'>b</i>"_s, u"words glued together, line 1: a b -> ab"_s);
        row("a quote that is no value's", u"<b a\"b>a</b> <i>b \"</i>"_s, u"<b a\"b>a</b><i>b \"</i>"_s,
            u"words glued together, line 1: a b -> ab"_s);
        row("code", u"<b>a</b> <?php if ($a > 1) { ?> <i>b</i>"_s,
            u"<b>a</b><?php if ($a > 1) { ?><i>b</i>"_s, none);
        row("code in an attribute", u"<b class=\"<?= $a > \"b\" ?>\">a</b><i>b</i> <i>c</i>"_s,
            u"<b class=\"<?= $a > \"b\" ?>\">a</b><i>b</i><i>c</i>"_s,
            u"words glued together, line 1: ab c -> abc"_s);
        row("other text before", u"<p>one two three four five six</p><b>same words after it</b> <i>b</i>"_s,
            u"<p>different</p><b>same words after it</b><i>b</i>"_s,
            u"words glued together, line 1: it b -> itb"_s);
        row("nothing alike", u"<b>a</b> <i>b</i>"_s, u"xyz"_s, none);
        row("formulas", u"<math><mi>a</mi> <mo>+</mo></math>"_s, u"<math><mi>a</mi><mo>+</mo></math>"_s,
            none);
        row("hidden elements", u"<title>a b</title><textarea>c d</textarea>"_s,
            u"<title>ab</title><textarea>cd</textarea>"_s, none);
    }

    void gluedWords()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, result);
        QFETCH(const QString, expected);
        QStringList found;
        for (const ResultWarning &warning : checkPage(source, result))
            found.append(u"%1, line %2: %3 -> %4"_s.arg(warning.sentence())
                             .arg(warning.line)
                             .arg(warning.before, warning.after));
        QCOMPARE(found.join(u"; "_s), expected);
        QVERIFY(checkPage(source, source).isEmpty());
    }

    void styleElements()
    {
        const QString source =
            u"<p>\n<STYLE media=print>\n.a { width: calc(1px + 2px) }</STYLE>\n<style>b { c: d }</style>"_s;
        const QString broken =
            u"<p><STYLE media=print>.a{width:calc(1px+2px)}</STYLE><style>b{c:d}</style>"_s;
        const QList<ResultWarning> expected{{ResultWarning::Kind::Declaration,
                                             3,
                                             {},
                                             u".a"_s,
                                             u"width"_s,
                                             u"calc(1px + 2px)"_s,
                                             u"calc(1px+2px)"_s}};
        QCOMPARE(checkPage(source, broken), expected);
        QVERIFY(
            checkPage(u"<style>.a { top: <?= $a ?> }</style>"_s, u"<style>.a{top:0}</style>"_s).isEmpty());
        QVERIFY(checkPage(source, u"<style>b{c:d}</style>"_s).isEmpty()); // which one is it?
    }

    /// None of these may take longer than its length allows.
    void textsMadeToTakeForever()
    {
        constexpr int many = 20'000;
        for (const QString &part : {u"<"_s, u"<a "_s, u"<!--"_s, u"<?"_s, u"<style>"_s, u"<script></"_s,
                                    u"<a b=\""_s, u"\""_s, u"x <b>"_s}) {
            const QString text = part.repeated(many);
            QVERIFY(checkPage(text, text).isEmpty());
            static_cast<void>(checkPage(text, u"x<b>"_s.repeated(many)));
            static_cast<void>(checkPage(u"ab "_s.repeated(many), u"ba "_s.repeated(many) + text));
        }
    }
};

BREVANT_TEST(tst_PageCheck, QCoreApplication)
#include "tst_PageCheck.moc"
