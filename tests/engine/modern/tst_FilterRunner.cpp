// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/FilterRunner.h"
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/engine/modern/ModernFixture.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>

#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace std::chrono_literals;
using End = FilterRun::End;

/// The kept esbuild, and scripts in its place.
class tst_FilterRunner final : public QObject, ModernFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(m_folder.isValid()); }

    void answersAsOneStartedForTheText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("style sheet") << u"a.css"_s << "a { color : #ff0000 }\n"_ba;
        QTest::newRow("script") << u"a.js"_s << "function f(long) { return long + 1 }\n"_ba;
        QTest::newRow("nothing") << u"a.js"_s << ""_ba;
        QTest::newRow("a comment") << u"a.css"_s << "/* a */"_ba;
        QTest::newRow("error") << u"a.js"_s << "var a = ;\n"_ba;
        QTest::newRow("several errors")
            << u"a.css"_s << "a { ; *b: c }\n} d { *e: f } g { *h: i }\n"_ba.repeated(9);
        QTest::newRow("warning") << u"a.js"_s << "if (typeof a === 'strin') a = -0 === a;\n"_ba;
        QTest::newRow("other characters") << u"a.js"_s << "var s = 'ä€😀'; alert(s);\n"_ba;
        QTest::newRow("not valid UTF-8") << u"a.js"_s << "var s = '\xff\xc3'\n"_ba;
        QTest::newRow("a zero byte") << u"a.js"_s << "var s = 'a\0b'\n"_ba;
        QTest::newRow("long") << u"a.css"_s << "a { color : #ff0000 }\n"_ba.repeated(20'000);
        QTest::newRow("too long to be kept for")
            << u"a.css"_s << "a { color : #ff0000 }\n"_ba.repeated(40'000);
    }

    void answersAsOneStartedForTheText()
    {
        skipWithoutModern();
        QFETCH(const QString, name);
        QFETCH(const QByteArray, text);
        ModernOptions options;
        for (const bool hasMap : {false, true}) {
            options.makeSourceMap = hasMap;
            const Filter filter = modernFilter(*kindOf(name), options, tools);
            const FilterRun alone = runFilter(filter, text, stop, 60s);
            for (int i = 0; i < 2; ++i) {
                const FilterRun kept = filters.run(filter, text, 60s);
                QCOMPARE(kept.end, alone.end);
                QCOMPARE(kept.status, alone.status);
                QCOMPARE(kept.messages, alone.messages);
                QVERIFY(kept.output == alone.output);
            }
        }
    }

    void keepsOneProcess()
    {
        skipWithoutModern();
        const Filter filter = modernFilter(*kindOf(u"a.css"_s), {}, tools);
        FilterRunner runner(stop);
        QVERIFY(runner.run(filter, "a { b: c }", 60s).isSuccess());
        const QByteArray first = children();
        QVERIFY(!first.isEmpty());
        QVERIFY(runner.run(filter, "d { e: f }", 60s).isSuccess());
        QCOMPARE(children(), first);
    }

    void startsAgainWhatSomebodyHasEnded()
    {
        skipWithoutModern();
        const Filter filter = modernFilter(*kindOf(u"a.css"_s), {}, tools);
        FilterRunner runner(stop);
        QVERIFY(runner.run(filter, "a { b: c }", 60s).isSuccess());
        const int number = children().simplified().split(' ').last().toInt();
        QVERIFY(number > 0);
        ::kill(number, SIGKILL);
        QTRY_VERIFY(!readFile(u"/proc/%1/stat"_s.arg(number)).contains(") R") &&
                    !readFile(u"/proc/%1/stat"_s.arg(number)).contains(") S"));
        QCOMPARE(runner.run(filter, "d { e: f }", 60s).output, "d{e:f}\n"_ba);
    }

    void getsOverOtherPrograms_data()
    {
        QTest::addColumn<QByteArray>("asKept");
        QTest::addColumn<End>("end");
        QTest::addColumn<QByteArray>("output");

        const QByteArray greet = "printf '\\006\\000\\000\\0000.28.2'; head -c 1 > /dev/null; ";
        QTest::newRow("no greeting") << "exit 1"_ba << End::Exited << "x\n"_ba;
        QTest::newRow("another version")
            << "printf '\\006\\000\\000\\0000.28.9'; sleep 600"_ba << End::Exited << "x\n"_ba;
        QTest::newRow("no packets") << "echo hello world; sleep 600"_ba << End::Exited << "x\n"_ba;
        QTest::newRow("another answer")
            << greet + "printf '\\005\\000\\000\\000hello'; sleep 600" << End::Exited << "x\n"_ba;
        QTest::newRow("an endless answer")
            << greet + "printf '\\377\\377\\377\\377'; sleep 600" << End::TooLong << ""_ba;
        QTest::newRow("half an answer")
            << greet + "printf '\\005\\000\\000\\000he'" << End::Exited << "x\n"_ba;
        QTest::newRow("failure") << greet + "exit 2" << End::Exited << "x\n"_ba;
        QTest::newRow("crash") << greet + "kill -9 $$" << End::Exited << "x\n"_ba;
        QTest::newRow("no answer") << greet + "sleep 600 | cat" << End::TooSlow << ""_ba;
    }

    void getsOverOtherPrograms()
    {
        QFETCH(const QByteArray, asKept);
        QFETCH(const End, end);
        FilterRunner runner(stop);
        const Filter filter = script(asKept);
        for (int i = 0; i < 2; ++i) {
            const FilterRun run = runner.run(filter, "text", end == End::TooSlow ? 200ms : 60s);
            QCOMPARE(run.end, end);
            QTEST(run.output, "output");
            QCOMPARE(run.isSuccess(), run.output == "x\n");
        }
    }

    void isEndedByAStop()
    {
        FilterRunner runner(stop);
        const Filter filter = script("printf '\\006\\000\\000\\0000.28.2'; touch asked; sleep 600");
        std::jthread other([this] {
            while (!QFileInfo::exists(m_folder.filePath(u"asked"_s)))
                std::this_thread::sleep_for(1ms);
            stop = Stop::AtOnce;
        });
        QCOMPARE(runner.run(filter, "text", 60s).end, End::Stopped);
        other.join();
        stop = Stop::No;
    }

    void tellsWhatIsMissing()
    {
        FilterRunner runner(stop);
        const Filter filter{u"/nowhere/esbuild"_s, {}, u"/"_s, true};
        QCOMPARE(runner.run(filter, "x", 60s).end, End::NotStarted);
    }

private:
    void skipWithoutModern() const { BREVANT_SKIP_WITHOUT_MODERN(tools); }

    /// A program that does that if it is to be kept, and else writes an x.
    [[nodiscard]] Filter script(const QByteArray &asKept)
    {
        const QString path = m_folder.filePath(u"esbuild"_s);
        writeFile(path, "#!/bin/sh\ncd " + m_folder.path().toUtf8() + "\ncase $1 in --service*) " + asKept +
                            ";; *) cat > /dev/null; echo x;; esac\n");
        setMode(path, 0755);
        return {path, {u"--minify"_s}, u"/"_s, true};
    }

    /// Their numbers, as this thread has started them.
    [[nodiscard]] static QByteArray children() { return readFile(u"/proc/thread-self/children"_s); }

    QTemporaryDir m_folder;
};

BREVANT_TEST(tst_FilterRunner, QCoreApplication)
#include "tst_FilterRunner.moc"
