// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/classic/ClassicFixture.h"

#include <QElapsedTimer>
#include <QTest>

#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Asks YUI Compressor once more, or a shell script in the place of Java.
class tst_Explanation final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(ClassicFixture().tools.missingClassic(), QString()); }

    void init() { m_bench = std::make_unique<ClassicFixture>(); }

    void tellsTheFault_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("words");
        const QByteArray longText = "a{content:\"" + QByteArray(3000, 'x') + "\"}";
        QTest::newRow("newer JavaScript")
            << u"a.js"_s << "var a = 1;\n  let b = () => a;\n"_ba << u"line 2, column 12: syntax error"_s;
        QTest::newRow("two faults") << u"a.js"_s << "var a = 1 foo;\n\n\"\n"_ba
                                    << u"line 1, column 14: missing ; before statement (and 2 more)"_s;
        QTest::newRow("a character of two units")
            << u"a.js"_s << "var a = \"𝒳𝒳\" foo;\n"_ba << u"line 1, column 17: missing ; before statement"_s;
        QTest::newRow("a byte-order mark")
            << u"a.js"_s << "\xEF\xBB\xBFlet a = () => 1;"_ba << u"line 1, column 10: syntax error"_s;
        QTest::newRow("a name with a line feed")
            << u"a\nb.js"_s << "() => 1\n"_ba << u"line 1, column 2: syntax error"_s;
        QTest::newRow("no statement") << u"a.js"_s << "// nothing\n"_ba
                                      << u"there is no statement in it, which the compressor cannot minify"_s;
        QTest::newRow("a long text")
            << u"a.css"_s << longText
            << u"something in it is too long, not closed or nested too deeply for the compressor"_s;
        QTest::newRow("no fault") << u"a.js"_s << "var a = 1;"_ba
                                  << u"asked once more, with its output elsewhere, it did not fail"_s;
    }

    void tellsTheFault()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, text);
        QTEST(m_bench->explain(name, text).messages.inWords(), "words");
    }

    void tellsOfOddSettings()
    {
        m_bench->settings.setOverride(true, lineBreakSwitcherKeyString);
        m_bench->settings.setOverride(u"-o"_s, lineBreakKeyString);
        QCOMPARE(m_bench->explain(u"a.js"_s, "var a = 1;").messages.inWords(),
                 u"the compressor does not understand its options; line breaks need a whole number"_s);
    }

    /// Whatever the run would have written onto.
    void leavesTheFolderAlone_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("output");
        QTest::newRow("beside") << u"a.css"_s << u"a.min.css"_s;
        QTest::newRow("in place") << u"a.css"_s << u"a.css"_s;
        QTest::newRow("in place, empty") << u"long.css"_s << u"long.css"_s;
        QTest::newRow("over another") << u"a.css"_s << u"other.css"_s;
        QTest::newRow("a colon in the output") << u"a.css"_s << u"x:y.css"_s;
        QTest::newRow("a pattern that leads to another file") << u"a.css"_s << u"(.*)a[.]css$:$1other.css"_s;
        QTest::newRow("a page in place") << u"a.html"_s << u"a.html"_s;
        QTest::newRow("a folder that is missing") << u"a.html"_s << u"new/a.html"_s;
    }

    void leavesTheFolderAlone()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, output);
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a { b: c }"));
        QVERIFY(writeFile(m_bench->path(u"long.css"_s), "a{content:\"" + QByteArray(3000, 'x') + "\"}"));
        QVERIFY(writeFile(m_bench->path(u"a.html"_s), "<p> a  b </p>"));
        QVERIFY(writeFile(m_bench->path(u"other.css"_s), "mine"));
        const QStringList before = m_bench->tree();
        const Explanation explanation =
            explainFailure(m_bench->arguments(name, output), m_bench->tools, m_bench->stop);
        QVERIFY(!explanation.messages.shown.empty());
        QCOMPARE(m_bench->tree(), before);
        QVERIFY(!QFileInfo::exists(m_bench->path(u"new"_s)));
    }

    void saysThatAColonIsAPattern()
    {
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a { b: c }"));
        QCOMPARE(explainFailure(m_bench->arguments(u"a.css"_s, u"x:y.css"_s), m_bench->tools, m_bench->stop)
                     .messages.inWords(),
                 u"YUI Compressor takes a path with \":\" for a pattern, and wrote elsewhere"_s);
    }

    /// A temporary folder that YUI Compressor would take for a pattern is not used.
    void worksWithAnyTemporaryFolder()
    {
        const QString odd = m_bench->path(u"t:u"_s);
        QVERIFY(QDir().mkdir(odd));
        QVERIFY(qputenv("TMPDIR", QFile::encodeName(odd)));
        const auto restore = qScopeGuard([] { qunsetenv("TMPDIR"); });
        QCOMPARE(m_bench->explain(u"a.css"_s, "a { b: c }").messages.shown.at(0).kind,
                 CompressorMessage::Kind::Information);
        QCOMPARE(m_bench->tree(), QStringList{u"a.css: a { b: c }"_s});
    }

    /// Only the path of the output is another, and that is gone afterwards.
    void asksWithTheSameCommandLine()
    {
        runScript(u"pwd > \"$LOG\"; printf '%s\\n' \"$@\" >> \"$LOG\"; touch \"$5\""_s);
        const QStringList arguments{
            u"-jar"_s, Tools::yuiCompressor, m_bench->path(u"a.css"_s), u"-o"_s, u"-o"_s, u"--charset"_s,
            u"-o"_s};
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a"));
        static_cast<void>(explainFailure(arguments, m_bench->tools, m_bench->stop));
        QStringList log = QString::fromUtf8(readFile(m_bench->path(u"log"_s))).split(u'\n');
        QCOMPARE(log.takeFirst(), m_bench->tools.folder);
        const QString output = log.value(4);
        QVERIFY2(output.startsWith(QDir::tempPath() + u"/brevant-"_s), qPrintable(output));
        QVERIFY(!QFileInfo::exists(QFileInfo(output).path()));
        log[4] = u"-o"_s;
        QCOMPARE(log, arguments + QStringList{QString()});
    }

    void asksNothingWithoutAnOutput()
    {
        runScript(u"touch \"$LOG\""_s);
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a"));
        const QStringList arguments =
            CompressorCommand(m_bench->settings).arguments(m_bench->path(u"a.css"_s), std::nullopt);
        QVERIFY(explainFailure(arguments, m_bench->tools, m_bench->stop).messages.shown.empty());
        QVERIFY(explainFailure({}, m_bench->tools, m_bench->stop).messages.shown.empty());
        QVERIFY(!QFileInfo::exists(m_bench->path(u"log"_s)));
    }

    void asksNothingOfASourceThatIsGone()
    {
        QCOMPARE(explainFailure(m_bench->arguments(u"a.css"_s, u"out"_s), m_bench->tools, m_bench->stop)
                     .messages.inWords(),
                 u"the source cannot be read"_s);
    }

    void isEndedWithItsChildrenWhenLate()
    {
        runScript(u"sh -c 'sleep 600; echo late' | cat"_s);
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a"));
        QCOMPARE(
            explainFailure(m_bench->arguments(u"a.css"_s, u"out"_s), m_bench->tools, m_bench->stop, 100ms)
                .messages.inWords(),
            u"java took too long and was ended"_s);
    }

    void isEndedByAStop()
    {
        runScript(u"touch \"$LOG\"; sleep 600"_s);
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a"));
        const std::jthread other([this] {
            while (!QFileInfo::exists(m_bench->path(u"log"_s)))
                std::this_thread::yield();
            m_bench->stop = Stop::AtOnce;
        });
        QVERIFY(explainFailure(m_bench->arguments(u"a.css"_s, u"out"_s), m_bench->tools, m_bench->stop)
                    .messages.shown.empty());
    }

    void tellsHowASilentCompressorEnded()
    {
        runScript(u"kill -9 $$"_s);
        QVERIFY(writeFile(m_bench->path(u"a.css"_s), "a"));
        QCOMPARE(explainFailure(m_bench->arguments(u"a.css"_s, u"out"_s), m_bench->tools, m_bench->stop)
                     .messages.inWords(),
                 u"java was ended by signal 9"_s);
    }

private:
    /// Puts a shell script into the place of Java; $LOG is a file in the folder.
    void runScript(const QString &script)
    {
        qputenv("LOG", QFile::encodeName(m_bench->path(u"log"_s)));
        m_bench->tools.java = m_bench->path(u"java"_s);
        QVERIFY(writeFile(m_bench->tools.java, "#!/bin/sh\n" + script.toUtf8() + '\n'));
        QVERIFY(setMode(m_bench->tools.java, 0700));
    }

    std::unique_ptr<ClassicFixture> m_bench;
};

BREVANT_TEST(tst_Explanation, QCoreApplication)
#include "tst_Explanation.moc"
