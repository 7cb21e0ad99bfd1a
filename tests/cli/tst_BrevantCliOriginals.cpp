// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/InPlace.h"
#include "tests/cli/MountNamespace.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// That no source is lost, with the real compressors, and with a stub where a program must end amid its run.
class tst_BrevantCliOriginals final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        m_noNamespace = noMountNamespace();
    }

    void ontoItself_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("left"); // null: as it was
        QTest::addColumn<bool>("gzip");
        QTest::addColumn<QByteArray>("reason");

        const QByteArray none;
        const QByteArray status1("the compressor ended with status 1; the source was put back");
        for (const bool gzip : {false, true}) {
            const auto row = [gzip](const char *name) -> QTestData & {
                return QTest::addRow("%s%s", name, gzip ? ", gzip" : "");
            };
            row("css") << u"a.css"_s << css << QByteArray("a{b:c}") << gzip << none;
            row("css of a comment") << u"a.css"_s << QByteArray("/* a */") << QByteArray("") << gzip << none;
            row("html of a comment") << u"a.html"_s << QByteArray("<!-- a -->\n") << QByteArray("") << gzip
                                     << none;
            row("css of an empty rule")
                << u"a.css"_s << QByteArray("a { }") << none << gzip
                << QByteArray("the compressor left an empty output; the source was put back");
            row("long string") << u"a.css"_s << "a { b : \"" + QByteArray(5000, 'x') + "\" }" << none << gzip
                               << status1;
            row("js of a comment") << u"a.js"_s << QByteArray("/* a */\n") << none << gzip << status1;
            row("blank js") << u"a.js"_s << QByteArray(" \n") << none << gzip << status1;
            row("empty js") << u"a.js"_s << QByteArray("") << none << gzip
                            << QByteArray("the compressor ended with status 1");
            row("bad js") << u"a.js"_s << QByteArray("var = ;") << none << gzip
                          << QByteArray("the compressor ended with status 2");
            row("bad script in html") << u"a.html"_s << QByteArray("<script>var = ;</script>") << none << gzip
                                      << QByteArray("the compressor ended with status 1");
            row("empty html") << u"a.html"_s << QByteArray("") << none << gzip << none;
        }
    }

    void ontoItself()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, source);
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, reason);
        QFETCH(bool, gzip);
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(name, source));
        const QString gzipSetting = u"gzipCheckerKeyString=%1"_s.arg(gzip ? u"true"_s : u"false"_s);
        const Ended ended = sandbox.run(inPlace + QStringList{u"--set"_s, gzipSetting, name});
        QCOMPARE(sandbox.read(name), left.isNull() ? source : left);
        QCOMPARE(ended.status, reason.isEmpty() ? 0 : 1);
        if (!reason.isEmpty())
            QVERIFY2(ended.err.endsWith("Failed: " + path + ": " + reason + "\n"), ended.err);
        QCOMPARE(copies(sandbox), QStringList());
        QCOMPARE(sandbox.has(name + u".gz"_s), gzip && reason.isEmpty());
    }

    void onlyTheWindowKeepsOriginals()
    {
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const Ended ended = sandbox.run(
            inPlace + QStringList{u"--set"_s, u"keepOriginalsCheckerKeyString=true"_s, u"a.css"_s});
        QCOMPARE(ended.err, QByteArray());
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.css"_s), "a{b:c}"_ba);
        QCOMPARE(copies(sandbox), QStringList());
    }

    void killedAmidARun()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QByteArray source("orphan nothing-to-wait-for");
        QCOMPARE(runOrphaning(sandbox, source).status, -SIGKILL);
        QVERIFY(waitUntilUnused(sandbox));
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray());
        QCOMPARE(copies(sandbox).size(), 1);
        const QByteArray path = QFile::encodeName(sandbox.path(u"a.css"_s));
        const Ended ended = start(sandbox);
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err,
                 "brevant-cli: " + path + " was lost when a run was cut short, and has been put back.\n");
        QCOMPARE(sandbox.read(u"a.css"_s), source);
        QCOMPARE(copies(sandbox), QStringList());
        QCOMPARE(start(sandbox).err, QByteArray());
    }

    void killedWhileTheCompressorLivesOn()
    {
        // It may still destroy the source: nothing is settled before it has ended.
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QByteArray source = "orphan " + QFile::encodeName(sandbox.add(u"flag"_s, "here"));
        QCOMPARE(runOrphaning(sandbox, source).status, -SIGKILL);
        QCOMPARE(sandbox.read(u"a.css"_s), source);
        QCOMPARE(start(sandbox).err, QByteArray());
        QCOMPARE(copies(sandbox).size(), 1);
        QVERIFY(QFile::remove(sandbox.path(u"flag"_s)));
        QVERIFY(waitUntilUnused(sandbox));
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray());
        QVERIFY(start(sandbox).err.endsWith("has been put back.\n"));
        QCOMPARE(sandbox.read(u"a.css"_s), source);
    }

    void twoProcesses()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QString flag = sandbox.add(u"flag"_s, "here");
        const QByteArray source = "wait " + QFile::encodeName(flag);
        sandbox.add(u"a.css"_s, source);
        bool began = false;
        Ended second;
        const auto meanwhile = [&](qint64) {
            began = QTest::qWaitFor([&] { return copies(sandbox).size() == 1; }, 30'000);
            second = start(sandbox);
            began = began && copies(sandbox).size() == 1;
            QFile::remove(flag);
        };
        const Ended first =
            runMounted(sandbox, u"mount --bind '%1' /usr/bin/java"_s.arg(QStringLiteral(STUB_JAVA)),
                       inPlace + QStringList{u"a.css"_s}, meanwhile);
        QVERIFY(began);
        QCOMPARE(second.err, QByteArray());
        QCOMPARE(first.status, 0);
        QVERIFY(sandbox.read(u"a.css"_s).startsWith("minified "));
        QCOMPARE(copies(sandbox), QStringList());
    }

    void theNextRunAtOnce()
    {
        // The compressor of a killed run lives on, and empties the source while the same command is run
        // again.
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QString flag = sandbox.add(u"flag"_s, "here");
        const QByteArray source = "once " + QFile::encodeName(flag);
        QCOMPARE(runOrphaning(sandbox, source).status, -SIGKILL);
        const auto meanwhile = [&](qint64) {
            QTest::qWait(300); // for it to come as far as the source; sooner does no harm
            QFile::remove(flag);
        };
        const Ended ended =
            runMounted(sandbox, u"mount --bind '%1' /usr/bin/java"_s.arg(QStringLiteral(STUB_JAVA)),
                       inPlace + QStringList{u"a.css"_s}, meanwhile);
        const QByteArray path = QFile::encodeName(sandbox.path(u"a.css"_s));
        QVERIFY2(ended.err.contains(path + " was lost when a run was cut short, and has been put back.\n"),
                 ended.err);
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.css"_s), "minified " + path);
        QCOMPARE(copies(sandbox), QStringList());
    }

    void closedStreams()
    {
        // The compressor fails over the emptied source, and prints why: not into the copy.
        const Sandbox sandbox;
        const QByteArray source = "a { b : \"" + QByteArray(5000, 'x') + "\" }";
        sandbox.add(u"a.css"_s, source);
        const Ended ended = sandbox.runShell(u"\"$CLI\" \"$@\" a.css <&- >&- 2>&-"_s, inPlace);
        QCOMPARE(ended.status, 1);
        QVERIFY2(sandbox.read(u"a.css"_s) == source, sandbox.read(u"a.css"_s));
    }

    void withoutAHome()
    {
        Sandbox sandbox;
        for (const QString &variable : {u"HOME"_s, u"XDG_STATE_HOME"_s, u"XDG_CONFIG_HOME"_s})
            sandbox.environment.remove(variable);
        sandbox.environment.insert(u"TMPDIR"_s, sandbox.home());
        sandbox.add(u"a.css"_s, css);
        const auto madeAtTheRoot = [] {
            return QDir(u"/"_s).entryList({u".local"_s, u".config"_s}, QDir::AllEntries | QDir::Hidden);
        };
        const QStringList before = madeAtTheRoot();
        // The list of users still tells where the settings of whoever runs the tests are.
        const Ended ended = sandbox.run(inPlace + QStringList{u"--no-user-settings"_s, u"a.css"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("a{b:c}"));
        QCOMPARE(madeAtTheRoot(), before);
    }

private:
    QString m_noNamespace;
};

BREVANT_TEST(tst_BrevantCliOriginals, QCoreApplication)
#include "tst_BrevantCliOriginals.moc"
