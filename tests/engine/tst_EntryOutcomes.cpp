// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What is found of the compressor and the gzip copy when an entry has been worked on.
class tst_EntryOutcomes final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_bench = std::make_unique<JobFixture>(); }

    void outcomes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<EntryResult::Outcome>("outcome");
        QTest::addColumn<int>("status");
        using enum EntryResult::Outcome;
        QTest::newRow("done") << "a.css" << QByteArray("copy") << Done << 0;
        QTest::newRow("much output") << "a.css" << QByteArray("flood") << Done << 0;
        QTest::newRow("status") << "a.css" << QByteArray("fail") << CompressorFailed << 3;
        QTest::newRow("signal") << "a.js" << QByteArray("crash") << CompressorKilled << 9;
        QTest::newRow("no output") << "a.html" << QByteArray("silent") << NoOutput << 0;
        QTest::newRow("empty output") << "a.css" << QByteArray("empty") << EmptyOutput << 0;
    }

    void outcomes()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        QFETCH(EntryResult::Outcome, outcome);
        m_bench->append(name, text);
        {
            const CapturedStandardError flooded; // by the stub
            m_bench->run();
        }
        const EntryResult &result = m_bench->observer.results.at(0);
        QCOMPARE(result.outcome, outcome);
        QTEST(result.status, "status");
        // Of a failure it is known what was asked, so that it can be asked again.
        const QStringList asked =
            CompressorCommand(m_bench->settings).arguments(result.source, result.output);
        QCOMPARE(result.arguments, result.isMinified() ? QStringList() : asked);
        QCOMPARE(result.reason().isEmpty(), outcome == EntryResult::Outcome::Done);
        QCOMPARE(result.sizeBefore, std::optional<qint64>(text.size()));
        if (outcome == EntryResult::Outcome::Done)
            QCOMPARE(result.sizeAfter, std::optional<qint64>(QFileInfo(*result.output).size()));
        QVERIFY(result.seconds > 0);
    }

    /// Where source and output can be compared afterwards, what they were is known.
    void theBasisOfACheck()
    {
        m_bench->settings.setOverride(u"gbk"_s, selectedEncodingKeyString);
        m_bench->append(u"a.css"_s);
        m_bench->append(u"b.css"_s, "fail");
        m_bench->run();
        const EntryResult &done = m_bench->observer.results.at(0);
        QVERIFY(done.basis);
        QCOMPARE(done.basis->encoding, TextEncoding::Gbk);
        QCOMPARE(done.basis->source, FileState::of(done.source));
        QCOMPARE(done.basis->output, FileState::of(*done.output));
        QVERIFY(!m_bench->observer.results.at(1).basis);
    }

    void noBasisOfAReplacedSource()
    {
        m_bench->settings.setOverride(false, suffixSwitcherKeyString);
        m_bench->append(u"a.css"_s);
        m_bench->run();
        QCOMPARE(m_bench->observer.results.at(0).outcome, EntryResult::Outcome::Done);
        QVERIFY(!m_bench->observer.results.at(0).basis);
    }

    void anOutputFromBeforeIsNone()
    {
        m_bench->append(u"a.css"_s, "silent");
        m_bench->add(u"a.min.css"_s, "old");
        m_bench->run();
        QCOMPARE(m_bench->observer.results.at(0).outcome, EntryResult::Outcome::NoOutput);
    }

    void gzipIsReadAsATruthValue_data()
    {
        QTest::addColumn<QJsonValue>("stored");
        QTest::addColumn<bool>("made");
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("1") << QJsonValue(1) << true;
        QTest::newRow("0") << QJsonValue(0) << false;
        QTest::newRow("false") << QJsonValue(false) << false;
    }

    void gzipIsReadAsATruthValue()
    {
        QFETCH(QJsonValue, stored);
        QFETCH(bool, made);
        m_bench->settings.setOverride(stored, gzipCheckerKeyString);
        m_bench->append(u"a.css"_s);
        if (!made)
            m_bench->add(u"a.min.css.gz"_s, "from before");
        m_bench->run();
        const EntryResult &result = m_bench->observer.results.at(0);
        QCOMPARE(result.outcome, EntryResult::Outcome::Done);
        QCOMPARE(result.gzipSize.has_value(), made);
        QVERIFY(m_bench->has(u"a.min.css"_s));
        QVERIFY(m_bench->has(u"a.min.css.gz"_s));
        QCOMPARE(readFile(m_bench->path(u"a.min.css.gz"_s)) == "from before", !made);
    }

    void aGzipCopyThatFailsIsSeen()
    {
        m_bench->settings.setOverride(true, gzipCheckerKeyString);
        QDir(m_bench->folder.path()).mkdir(u"a.min.css.gz"_s); // gzip cannot replace a folder
        m_bench->append(u"a.css"_s);
        m_bench->run();
        QCOMPARE(m_bench->observer.results.at(0).outcome, EntryResult::Outcome::NoGzipCopy);
    }

private:
    std::unique_ptr<JobFixture> m_bench;
};

BREVANT_TEST(tst_EntryOutcomes, QCoreApplication)
#include "tst_EntryOutcomes.moc"
