// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/classic/ClassicFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Which failures of classic compressors modern ones would not have.
class tst_ForModern final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(m_bench.tools.missingClassic(), QString());
        if (const QString missing = m_bench.tools.missingModern(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }

    void failures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isForModern");
        const QByteArray longText = "a{content:\"" + QByteArray(3000, 'x') + "\"}";
        QTest::newRow("newer JavaScript") << u"a.js"_s << "let a = () => 1;"_ba << 2 << true;
        QTest::newRow("no JavaScript") << u"a.js"_s << "let a = ;"_ba << 2 << false;
        QTest::newRow("no statement") << u"a.js"_s << "// nothing"_ba << 1 << false;
        QTest::newRow("newer JavaScript in a page")
            << u"a.html"_s << "<script>let a = () => 1;</script>"_ba << 1 << true;
        QTest::newRow("no JavaScript in a page")
            << u"a.html"_s << "<script>let a = ;</script>"_ba << 1 << false;
        QTest::newRow("a page that fails for its style sheet")
            << u"a.html"_s << "<style>" + longText + "</style>" << 1 << false;
        QTest::newRow("a style sheet") << u"a.css"_s << longText << 1 << false;
    }

    void failures()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, text);
        QFETCH(const int, status);
        QVERIFY(writeFile(m_bench.path(name), text));
        const QStringList before = m_bench.tree();
        QTEST(isForModernWith(m_bench.arguments(name, name), status), "isForModern");
        QCOMPARE(m_bench.tree(), before);
    }

    void nothingIsForModernAfterAStop()
    {
        QVERIFY(writeFile(m_bench.path(u"a.js"_s), "let a = () => 1;"));
        m_bench.stop = Stop::AtOnce;
        const auto restore = qScopeGuard([this] { m_bench.stop = Stop::No; });
        QVERIFY(!isForModernWith(m_bench.arguments(u"a.js"_s, u"a.js"_s), 2));
    }

    void nothingIsForModernWithoutArguments() { QVERIFY(!isForModernWith({}, 2)); }

private:
    [[nodiscard]] bool isForModernWith(const QStringList &arguments, int status) const
    {
        return isForModern(arguments, status, CompressorCommand(m_bench.settings), m_bench.tools,
                           m_bench.stop);
    }

    ClassicFixture m_bench;
};

BREVANT_TEST(tst_ForModern, QCoreApplication)
#include "tst_ForModern.moc"
