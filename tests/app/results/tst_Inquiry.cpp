// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "InquiryFixture.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

/// When compressors are asked about failures, and what becomes of what they say.
class tst_Inquiry final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<InquiryFixture>(); }

    void theReasonIsRemembered()
    {
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s), m_bench->failedRow(u"b.js"_s)});
        m_bench->inquiry.wantReason(1, 1);
        QVERIFY(m_bench->inquiry.isAskingWhy(1, 1));
        QTRY_COMPARE(m_bench->words(1, 1), u"line 2, column 3: syntax error"_s);
        QVERIFY(!m_bench->inquiry.isAskingWhy(1, 1));
        QCOMPARE(m_bench->words(1, 0), QString());
        m_bench->inquiry.wantReason(1, 0);
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
        m_bench->inquiry.wantReason(1, 1);
        QVERIFY(!m_bench->inquiry.isAskingWhy(1, 1));
        QCOMPARE(m_bench->calls(), 2);
    }

    void onlyFailuresOfClassicCompressorsAreAskedAbout()
    {
        addRun(m_bench->runs, 1, mixedRows());
        for (int row = -1; row < 6; ++row) {
            m_bench->inquiry.wantReason(1, row);
            QVERIFY(!m_bench->inquiry.isAskingWhy(1, row));
        }
        m_bench->inquiry.wantReason(7, 0);
        QVERIFY(!m_bench->inquiry.isAskingWhy(7, 0));
    }

    void nothingIsAskedDuringARun()
    {
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s)});
        m_bench->runs.start(2, u"Classic compressors"_s);
        m_bench->inquiry.wantReason(1, 0);
        QVERIFY(!m_bench->inquiry.isAskingWhy(1, 0));
        m_bench->runs.end(2, {});
        QVERIFY(m_bench->inquiry.isAskingWhy(1, 0));
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
    }

    void aRunEndsTheQuestion()
    {
        QVERIFY(m_bench->setCompressor(u"sleep 600"_s));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s)});
        m_bench->inquiry.wantReason(1, 0);
        QTRY_COMPARE(m_bench->calls(), 1);
        m_bench->runs.start(2, u"Classic compressors"_s);
        QTRY_VERIFY(!m_bench->inquiry.isAskingWhy(1, 0));
        QCOMPARE(m_bench->words(1, 0), QString());
        QVERIFY(m_bench->setCompressor(m_bench->syntaxError));
        m_bench->runs.end(2, {});
        QTRY_COMPARE(m_bench->words(1, 0), u"line 2, column 3: syntax error"_s);
    }

    void anotherWishEndsTheQuestion()
    {
        QVERIFY(m_bench->setCompressor(u"case $* in *a.js*) sleep 600;; esac; "_s + m_bench->syntaxError));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s), m_bench->failedRow(u"b.js"_s)});
        m_bench->inquiry.wantReason(1, 0);
        QTRY_COMPARE(m_bench->calls(), 1);
        m_bench->inquiry.wantReason(1, 1);
        QTRY_COMPARE(m_bench->words(1, 1), u"line 2, column 3: syntax error"_s);
        QCOMPARE(m_bench->words(1, 0), QString());
    }

    void nothingMoreIsAskedForNobody()
    {
        QVERIFY(m_bench->setCompressor(u"sleep 600"_s));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s)});
        m_bench->inquiry.wantReason(1, 0);
        m_bench->inquiry.wantModern(1);
        QTRY_COMPARE(m_bench->calls(), 1);
        m_bench->inquiry.wantNothing();
        QTRY_VERIFY(!m_bench->inquiry.isAskingWhy(1, 0));
        QCOMPARE(m_bench->runs.find(1)->forModern, QStringList());
    }

    void itsEndEndsTheQuestion()
    {
        QVERIFY(m_bench->setCompressor(u"sleep 600"_s));
        addRun(m_bench->runs, 1, {m_bench->failedRow(u"a.js"_s)});
        m_bench->inquiry.wantReason(1, 0);
        QTRY_COMPARE(m_bench->calls(), 1);
        m_bench.reset();
    }

    void findsWhatIsForModernCompressors()
    {
        if (const QString missing = m_bench->tools.missingModern(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        addRun(m_bench->runs, 1,
               {m_bench->failedRow(u"a.js"_s, "let a = () => 1;"), m_bench->failedRow(u"b.js"_s, "let a = ;"),
                row(ResultRow::State::Done, u"/w/c.js"_s, 2, 1),
                m_bench->failedRow(u"d.js"_s, "class A {}")});
        m_bench->inquiry.wantModern(1);
        QTRY_COMPARE(m_bench->runs.find(1)->forModern,
                     QStringList({m_bench->path(u"a.js"_s), m_bench->path(u"d.js"_s)}));
        m_bench->inquiry.wantModern(1);
        QCOMPARE(m_bench->runs.find(1)->forModern.size(), 2);
    }

private:
    std::unique_ptr<InquiryFixture> m_bench;
};

BREVANT_TEST(tst_Inquiry, QCoreApplication)
#include "tst_Inquiry.moc"
