// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/OutputClaims.h"
#include "tests/TestClass.h"
#include "tests/engine/JobFixture.h"

#include <QTest>

#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Pairs of a source and an output, as names in the test's folder.
using Pairs = QList<std::pair<QString, QString>>;

class tst_OutputClaims final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"a.css", "b.css", "c.css"}) {
            QFile file(m_folder.filePath(QLatin1StringView(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QFile::link(u"a.css"_s, m_folder.filePath(u"soft.css"_s)));
        QCOMPARE(::link(QFile::encodeName(m_folder.filePath(u"a.css"_s)).constData(),
                        QFile::encodeName(m_folder.filePath(u"hard.css"_s)).constData()),
                 0);
        QVERIFY(QFile::link(u"."_s, m_folder.filePath(u"here"_s)));
        QVERIFY(QDir(m_folder.path()).mkdir(u"o"_s));
        QVERIFY(QFile::link(u"o/later.css"_s, m_folder.filePath(u"end1.css"_s)));
        QVERIFY(QFile::link(u"o/later.css"_s, m_folder.filePath(u"end2.css"_s)));
    }

    void claims_data()
    {
        QTest::addColumn<Pairs>("entries");
        QTest::addColumn<QString>("answers"); // for each: may be run, source or output of another
        QTest::newRow("none") << Pairs{} << u""_s;
        QTest::newRow("free") << Pairs{{u"a.css"_s, u"a.min.css"_s},
                                       {u"b.css"_s, u"b.min.css"_s},
                                       {u"c.css"_s, u"c.min.css"_s}}
                              << u"run run run"_s;
        QTest::newRow("in place") << Pairs{{u"a.css"_s, u"a.css"_s}, {u"b.css"_s, u"b.css"_s}}
                                  << u"run run"_s;
        QTest::newRow("one output") << Pairs{{u"a.css"_s, u"o/x.css"_s},
                                             {u"b.css"_s, u"o/x.css"_s},
                                             {u"c.css"_s, u"o/x.css"_s}}
                                    << u"run output output"_s;
        QTest::newRow("one output, two spellings")
            << Pairs{{u"a.css"_s, u"o/x.css"_s}, {u"b.css"_s, u"o//x.css"_s}} << u"run output"_s;
        QTest::newRow("capitals") << Pairs{{u"a.css"_s, u"o/x.css"_s}, {u"b.css"_s, u"o/X.css"_s}}
                                  << (QFile::exists(m_folder.filePath(u"O"_s)) ? u"run output"_s
                                                                               : u"run run"_s);
        QTest::newRow("output is a later source")
            << Pairs{{u"a.css"_s, u"b.css"_s}, {u"b.css"_s, u"x.css"_s}} << u"source run"_s;
        QTest::newRow("output is an earlier source")
            << Pairs{{u"b.css"_s, u"x.css"_s}, {u"a.css"_s, u"b.css"_s}} << u"run source"_s;
        QTest::newRow("round and round")
            << Pairs{{u"a.css"_s, u"b.css"_s}, {u"b.css"_s, u"c.css"_s}, {u"c.css"_s, u"a.css"_s}}
            << u"source source source"_s;
        QTest::newRow("one source by two names")
            << Pairs{{u"a.css"_s, u"x.css"_s}, {u"soft.css"_s, u"y.css"_s}} << u"run run"_s;
        QTest::newRow("in place by two names")
            << Pairs{{u"soft.css"_s, u"soft.css"_s}, {u"hard.css"_s, u"hard.css"_s}} << u"run output"_s;
        QTest::newRow("over its own link") << Pairs{{u"a.css"_s, u"hard.css"_s}} << u"run"_s;
        QTest::newRow("over another's link")
            << Pairs{{u"a.css"_s, u"x.css"_s}, {u"b.css"_s, u"soft.css"_s}} << u"run source"_s;
        QTest::newRow("through a folder's link")
            << Pairs{{u"a.css"_s, u"new.css"_s}, {u"b.css"_s, u"here/new.css"_s}} << u"run output"_s;
        QTest::newRow("links to what is not there yet")
            << Pairs{{u"a.css"_s, u"end1.css"_s}, {u"b.css"_s, u"end2.css"_s}} << u"run output"_s;
        QTest::newRow("into a folder that is not there")
            << Pairs{{u"a.css"_s, u"none/a.css"_s}, {u"b.css"_s, u"none/b.css"_s}} << u"run run"_s;
        QTest::newRow("what is refused claims nothing")
            << Pairs{{u"a.css"_s, u"b.css"_s}, {u"b.css"_s, u"b.css"_s}} << u"source run"_s;
        QTest::newRow("no output") << Pairs{{u"a.css"_s, u""_s}, {u"soft.css"_s, u""_s}} << u"run run"_s;
    }

    void claims()
    {
        QFETCH(Pairs, entries);
        std::vector<QString> sources;
        for (const auto &[source, output] : entries)
            sources.push_back(m_folder.filePath(source));
        OutputClaims claims(sources);
        QStringList answers;
        for (const auto &[source, name] : entries) {
            std::optional<QString> output;
            if (!name.isEmpty())
                output = m_folder.path() + u'/' + name;
            const QString answer = claims.claim(m_folder.filePath(source), output);
            answers << (answer.isEmpty()                    ? u"run"_s
                        : answer.contains(u"the source of") ? u"source"_s
                                                            : u"output"_s);
            QVERIFY2(answer.isEmpty() || answer.contains(*output), qPrintable(answer));
        }
        QTEST(answers.join(u' '), "answers");
        QCOMPARE(QDir(m_folder.filePath(u"o"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    /// Another run replaces outputs meanwhile, and the disk gives a freed inode to the next new file.
    void anInodeThatHasMovedOnIsFree()
    {
        const QTemporaryDir folder;
        const auto path = [&folder](const QString &name) { return folder.filePath(name); };
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"a.min.css"_s})
            QVERIFY(writeFile(path(name), "x"));
        OutputClaims claims({path(u"a.css"_s), path(u"b.css"_s)});
        QCOMPARE(claims.claim(path(u"a.css"_s), path(u"a.min.css"_s)), QString());
        QVERIFY(QFile::rename(path(u"a.min.css"_s), path(u"b.min.css"_s)));
        QCOMPARE(claims.claim(path(u"b.css"_s), path(u"b.min.css"_s)), QString());
        QVERIFY(QFile::rename(path(u"a.css"_s), path(u"c.min.css"_s)));
        QCOMPARE(claims.claim(path(u"c.css"_s), path(u"c.min.css"_s)), QString());
    }

private:
    const QTemporaryDir m_folder;
};

BREVANT_TEST(tst_OutputClaims, QCoreApplication)
#include "tst_OutputClaims.moc"
