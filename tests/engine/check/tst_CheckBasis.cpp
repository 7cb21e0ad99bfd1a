// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/CheckBasis.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTest>

#include <sys/stat.h>

using namespace brevant;
using namespace brevant::test;

/// Results that are checked once their run has ended.
class tst_CheckBasis final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(source(), ".a::after { content: \"\xb0\xa1\"; width: calc(1px + 2px) }"));
        QVERIFY(writeFile(output(), ".a::after{content:\"\xb0\xa1\";width:calc(1px+2px)}"));
        m_basis = {TextEncoding::Gb2312, *FileState::of(source()), *FileState::of(output())};
    }

    void inTheCharacterSetOfTheRun()
    {
        const CheckedFile checked = m_basis.check(source(), output());
        QCOMPARE(checked.obstacle, QString());
        QCOMPARE(summaryOf(checked.warnings), u"1 declaration damaged"_s);
        m_basis.encoding = TextEncoding::Utf8;
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the source is not valid UTF-8"_s);
    }

    void changedFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("source") << u"a.css"_s << u"the source has changed since the run"_s;
        QTest::newRow("output") << u"a.min.css"_s << u"the output has changed since the run"_s;
    }

    void changedFiles()
    {
        QFETCH(const QString, name);
        const QString path = m_folder->filePath(name);
        QVERIFY(writeFile(path, readFile(path) + "b{}"));
        const auto expectObstacle = [this] {
            const CheckedFile checked = m_basis.check(source(), output());
            QTEST(checked.obstacle, "obstacle");
            QVERIFY(checked.warnings.isEmpty());
        };
        expectObstacle();
        QVERIFY(replaceFile(path, "b{}"));
        expectObstacle();
        QVERIFY(QFile::remove(path));
        expectObstacle();
    }

    /// With the size that it had.
    void aFileWrittenAgain()
    {
        --m_basis.source.changedAt;
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the source has changed since the run"_s);
    }

    void largeSources()
    {
        QVERIFY(QFile::resize(source(), 20'000'001));
        m_basis.source = *FileState::of(source());
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the source is larger than 20 MB"_s);
    }

    void largeOutputs()
    {
        QVERIFY(QFile::resize(output(), 20'000'001));
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the output has changed since the run"_s);
        m_basis.output = *FileState::of(output());
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the output is larger than 20 MB"_s);
    }

    /// What is there now is not read: it would take long, or for ever.
    void outputsThatHaveBecomeOthers()
    {
        QVERIFY(QFile::remove(output()));
        QCOMPARE(::mkfifo(QFile::encodeName(output()).constData(), 0600), 0);
        QCOMPARE(m_basis.check(source(), output()).obstacle, u"the output has changed since the run"_s);
    }

    void aSourceThatWasReplaced()
    {
        const QString kept = m_folder->filePath(u"kept"_s);
        QVERIFY(QFile::rename(source(), kept));
        m_basis = {TextEncoding::Gb2312, *FileState::of(kept), *FileState::of(output()), kept};
        const CheckedFile checked = m_basis.check(output(), output());
        QCOMPARE(checked.obstacle, QString());
        QCOMPARE(summaryOf(checked.warnings), u"1 declaration damaged"_s);
        QVERIFY(QFile::remove(kept));
        QCOMPARE(m_basis.check(output(), output()).obstacle, u"its original is not kept any more"_s);
    }

private:
    [[nodiscard]] QString source() const { return m_folder->filePath(u"a.css"_s); }
    [[nodiscard]] QString output() const { return m_folder->filePath(u"a.min.css"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    CheckBasis m_basis;
};

BREVANT_TEST(tst_CheckBasis, QCoreApplication)
#include "tst_CheckBasis.moc"
