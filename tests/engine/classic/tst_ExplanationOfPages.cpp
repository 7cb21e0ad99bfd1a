// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/classic/ClassicFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Asks htmlcompressor once more, whose lines count from the beginning of an inline script.
class tst_ExplanationOfPages final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(ClassicFixture().tools.missingClassic(), QString()); }

    void places_data()
    {
        QTest::addColumn<QByteArray>("page");
        QTest::addColumn<QString>("words");
        QTest::newRow("in the line of the tag")
            << "<p>\n<SCRIPT type='text/javascript'>let b = () => 1;</SCRIPT>"_ba
            << u"line 2, column 41: syntax error"_s;
        QTest::newRow("in a later line") << "<p>\n<script>\nvar ok;\n  let b = () => 1;  \n</script>"_ba
                                         << u"line 4, column 12: syntax error"_s;
        QTest::newRow("in the second script")
            << "<script>\nvar ok;\n</script>\n<script>\nlet b = () => 1;</script>"_ba
            << u"line 5, column 10: syntax error"_s;
        QTest::newRow("twice in a script") << "<script>\nvar ok;\na = 1 b;\na = 1 c;\n</script>"_ba
                                           << u"line 3, column 8: missing ; before statement (and 1 more)"_s;
        QTest::newRow("in a CDATA section")
            << "<script><![CDATA[\nlet b = () => 1;\n]]></script>"_ba << u"line 2, column 10: syntax error"_s;
        QTest::newRow("beside a CDATA section") << "<script>//<![CDATA[\nlet b = () => 1;//]]>\n</script>"_ba
                                                << u"line 2, column 10: syntax error"_s;
        QTest::newRow("with other characters") << "<p>ä\n<script>\nlet ä = '𝒳', b = () => 1;\n</script>"_ba
                                               << u"line 3, column 19: syntax error"_s;
        QTest::newRow("CR LF") << "<p>\r\n<script>\r\nlet b = () => 1;\r\n</script>\r\n"_ba
                               << u"line 3, column 10: syntax error"_s;
        QTest::newRow("one of two that are alike")
            << "<script>let b = () => 1;</script><script>let b = () => 1;</script>"_ba
            << u"syntax error in a script, at \"let b = () => 1;\""_s;
        QTest::newRow("a long text in a style sheet")
            << "<style>a{content:\"" + QByteArray(3000, 'x') + "\"}</style>"
            << u"something in it is too long, not closed or nested too deeply for the compressor"_s;
    }

    void places()
    {
        QFETCH(const QByteArray, page);
        QTEST(m_bench.explain(u"a.html"_s, page).messages.inWords(), "words");
    }

    /// Where Java prints "?" for what its character set lacks.
    void findsThePlaceInAnyLocale()
    {
        qputenv("LC_ALL", "C");
        const auto restore = qScopeGuard([] { qputenv("LC_ALL", "C.UTF-8"); });
        QCOMPARE(
            m_bench.explain(u"a.html"_s, "<script>let ä = '𝒳', b = () => 1;</script>").messages.inWords(),
            u"line 1, column 27: syntax error"_s);
    }

private:
    ClassicFixture m_bench;
};

BREVANT_TEST(tst_ExplanationOfPages, QCoreApplication)
#include "tst_ExplanationOfPages.moc"
