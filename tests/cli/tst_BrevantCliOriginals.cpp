// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/MountNamespace.h"
#include "tests/engine/LeftCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QStringList inPlace{u"--set"_s, u"suffixSwitcherKeyString=false"_s};
const QByteArray css("a { b : c ; }");

/// Names of what is kept in the folder for safety copies.
QStringList copies(const Sandbox &sandbox)
{
    QStringList names =
        QDir(sandbox.home() + u"/state/brevant/originals"_s).entryList(QDir::Files | QDir::Hidden);
    names.removeOne(u"locks"_s);
    return names;
}

/// A start that minifies nothing.
Ended start(const Sandbox &sandbox)
{
    sandbox.add(u"other/x.css"_s, css);
    return sandbox.run({u"--list"_s, u"other"_s});
}

/// Runs brevant-cli over a.css in place, with the stub as its Java; it is killed amid that.
Ended runOrphaning(const Sandbox &sandbox, const QByteArray &source)
{
    sandbox.add(u"a.css"_s, source);
    return runWithJava(sandbox, QStringLiteral(STUB_JAVA), inPlace + QStringList{u"a.css"_s});
}

/// Waits until the one safety copy that is there is in use by no process any more.
bool waitUntilUnused(const Sandbox &sandbox)
{
    return QTest::qWaitFor(
        [&] {
            QString error;
            QStringList refused;
            std::optional<PrivateFolder> folder =
                PrivateFolder::open(sandbox.home() + u"/state/brevant/originals"_s, error);
            return folder && !OriginalSlot::leftIn(*folder, refused).empty();
        },
        30'000);
}

/// Minifies a.css in place under strace, which writes the calls of that name to "trace".
Ended runTraced(const Sandbox &sandbox, const QString &call, const QStringList &options)
{
    sandbox.add(u"a.css"_s, css);
    return sandbox.runProgram(u"/usr/bin/strace"_s,
                              QStringList{u"-o"_s, sandbox.path(u"trace"_s), u"-e"_s, u"trace="_s + call} +
                                  options + QStringList{u"--"_s, cliProgram()} + inPlace +
                                  QStringList{u"a.css"_s});
}

} // namespace

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

    void noRoomForTheCopy()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"b.css"_s, css);
        const QByteArray path = QFile::encodeName(sandbox.path(u"a.css"_s));
        QVERIFY(QDir().mkpath(sandbox.home() + u"/state"_s));
        // Nor among the temporary files.
        const Ended ended = runMounted(
            sandbox,
            u"mount -t tmpfs -o size=64k none \"$XDG_STATE_HOME\" && export TMPDIR=$XDG_STATE_HOME"_s,
            inPlace + QStringList{u"a.css"_s});
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.err,
                 "Failed: " + path +
                     ": not minified, as no safety copy of it could be made: No space left on device\n");
        QCOMPARE(sandbox.read(u"a.css"_s), css);
        // What needs no copy is worked on.
        const Ended other =
            runMounted(sandbox, u"mount -t tmpfs -o size=64k none \"$XDG_STATE_HOME\""_s, {u"b.css"_s});
        QCOMPARE(other.status, 0);
        QCOMPARE(sandbox.read(u"b.min.css"_s), QByteArray("a{b:c}"));
    }

    void aLimitOfTheShell()
    {
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(u"a.css"_s, css));
        const Ended ended = sandbox.runProgram(
            u"/bin/sh"_s, QStringList{u"-c"_s, u"ulimit -f 16; exec \"$@\""_s, u"sh"_s, cliProgram()} +
                              inPlace + QStringList{u"a.css"_s});
        QCOMPARE(ended.err, "Failed: " + path +
                                ": not minified, as no safety copy of it could be made: File too large\n");
        QCOMPARE(ended.status, 1);
        QCOMPARE(sandbox.read(u"a.css"_s), css);
        QCOMPARE(copies(sandbox), QStringList());
    }

    void noRoomForTheOutput()
    {
        // The compressor writes what fits and says that all is well.
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        QVERIFY(QDir().mkdir(sandbox.path(u"small"_s)));
        const Ended ended =
            runMounted(sandbox,
                       u"mount -t tmpfs -o size=64k none small && mount --bind '%1' /usr/bin/java && printf "
                       u"'grow 0' > small/a.css && "
                       "\"$CLI\" --set suffixSwitcherKeyString=false small/a.css; cat small/a.css"_s.arg(
                           QStringLiteral(STUB_JAVA)),
                       {u"--version"_s});
        QVERIFY2(ended.err.endsWith("small/a.css: the disk is full; the source was put back\n"), ended.err);
        QVERIFY2(ended.out.contains("\ngrow 0"), ended.out);
    }

    void noRoomForAnyOutput()
    {
        // YUI Compressor ends with status 0 where it could write nothing.
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        QVERIFY(QDir().mkdir(sandbox.path(u"small"_s)));
        const Ended ended = runMounted(
            sandbox,
            u"mount -t tmpfs -o size=64k none small && mount --bind '%1' /usr/bin/java && printf empty > "
            "small/a.css && ! head -c 99999 /dev/zero 2>&- > small/rest && \"$CLI\" small/a.css; true"_s.arg(
                QStringLiteral(STUB_JAVA)),
            {u"--version"_s});
        QVERIFY2(ended.err.endsWith("small/a.css: the disk is full\n"), ended.err);
    }

    void readOnlyFolder()
    {
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        const QByteArray source = "a { b : \"" + QByteArray(5000, 'x') + "\" }";
        sandbox.add(u"b.css"_s, source);
        const QByteArray state = QFile::encodeName(sandbox.home()) + "/state";
        QVERIFY(QDir().mkpath(QFile::decodeName(state)));
        const QString mount = u"mount -t tmpfs -o size=64k,ro none \"$XDG_STATE_HOME\""_s;
        const Ended ended = runMounted(sandbox, mount, inPlace + QStringList{u"a.css"_s, u"b.css"_s});
        QCOMPARE(ended.status, 1);
        QCOMPARE(ended.err.count("The safety copies of this run are in " + QFile::encodeName(sandbox.home()) +
                                 "/brevant-originals-" + QByteArray::number(::geteuid()) + ": " + state +
                                 "/brevant/originals takes none (Read-only file system).\n"),
                 1);
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("a{b:c}"));
        QCOMPARE(sandbox.read(u"b.css"_s), source);
        // Where nothing can be written at all.
        const Ended nowhere = runMounted(sandbox, mount + u" && export TMPDIR=$XDG_STATE_HOME"_s,
                                         inPlace + QStringList{u"b.css"_s});
        QVERIFY2(nowhere.err.endsWith("could be made: Read-only file system\n"), nowhere.err);
        QCOMPARE(sandbox.read(u"b.css"_s), source);
    }

    void aCopyOnAReadOnlyDisk()
    {
        // What a killed program left can be put back, though not removed.
        if (!m_noNamespace.isEmpty())
            QSKIP(qPrintable(m_noNamespace));
        const Sandbox sandbox;
        const QByteArray source("orphan nothing-to-wait-for");
        QCOMPARE(runOrphaning(sandbox, source).status, -SIGKILL);
        QVERIFY(waitUntilUnused(sandbox));
        const QString mounts =
            u"mount --bind \"$XDG_STATE_HOME\" \"$XDG_STATE_HOME\" && mount -o remount,bind,ro \"$XDG_STATE_HOME\""_s;
        QVERIFY(runMounted(sandbox, mounts, {u"--list"_s, u"a.css"_s}).err.endsWith("has been put back.\n"));
        QCOMPARE(sandbox.read(u"a.css"_s), source);
        QCOMPARE(runMounted(sandbox, mounts, {u"--list"_s, u"a.css"_s}).err, QByteArray());
    }

    void aFileSystemWithoutLocks_data()
    {
        QTest::addColumn<QString>("error");
        QTest::newRow("none to be had") << u"ENOLCK"_s;
        QTest::newRow("unknown") << u"EINVAL"_s;
    }

    void aFileSystemWithoutLocks()
    {
        QFETCH(QString, error);
        const Sandbox sandbox;
        // The first makes the folder of the copies, which the others find.
        if (runTraced(sandbox, u"fcntl"_s, {}).status != 0 || runTraced(sandbox, u"fcntl"_s, {}).status != 0)
            QSKIP("strace cannot trace a process here");
        int number = 0;
        int locks = 0;
        int said = 0;
        for (const QByteArray &line : sandbox.read(u"trace"_s).split('\n')) {
            number += line.startsWith("fcntl(") ? 1 : 0;
            if (!line.contains("l_type=F_WRLCK"))
                continue;
            ++locks;
            const Ended ended =
                runTraced(sandbox, u"fcntl"_s,
                          {u"-e"_s, u"inject=fcntl:error=%1:when=%2"_s.arg(error, QString::number(number))});
            QCOMPARE(ended.status, 0);
            QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("a{b:c}"));
            said += ended.err.startsWith("brevant-cli: No file can be locked in ") ? 1 : 0;
        }
        QCOMPARE(locks, 3); // the turn by two marks, and the copy
        QCOMPARE(said, 2);
    }

    void aFileSystemThatRefusesExchange()
    {
        const Sandbox sandbox;
        const QString gone = sandbox.add(u"gone.css"_s, css);
        QVERIFY(LeftCopy(gone, sandbox.home() + u"/state/brevant/originals"_s).isFilled());
        QVERIFY(QFile::remove(gone));
        if (runTraced(sandbox, u"renameat2"_s, {u"-e"_s, u"inject=renameat2:error=EINVAL"_s}).status != 0)
            QSKIP("strace cannot trace a process here");
        QVERIFY(sandbox.read(u"trace"_s).contains("RENAME_NOREPLACE"));
        QCOMPARE(sandbox.read(u"gone.css"_s), css);
        QCOMPARE(QDir(QFileInfo(gone).path()).entryList({u".brevant*"_s}, QDir::Files | QDir::Hidden),
                 QStringList());
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

    void theDiskRefusesTheResult()
    {
        const Sandbox sandbox;
        const auto run = [&](const QString &fault) {
            return runTraced(sandbox, u"fdatasync"_s, {u"-e"_s, fault});
        };
        if (run(u"inject=fdatasync:error=EINTR:when=1"_s).status != 0)
            QSKIP("strace cannot trace a process here");
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("a{b:c}"));
        const Ended ended = run(u"inject=fdatasync:error=EIO:when=2"_s); // the first is the copy's
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.endsWith(
                     "a.css: the output could not be written to the disk; the source was put back\n"),
                 ended.err);
        QCOMPARE(sandbox.read(u"a.css"_s), css);
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
        const Ended ended = sandbox.run(inPlace + QStringList{u"a.css"_s});
        QCOMPARE(ended.status, 0);
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("a{b:c}"));
        QCOMPARE(madeAtTheRoot(), before);
    }

private:
    QString m_noNamespace;
};

BREVANT_TEST(tst_BrevantCliOriginals, QCoreApplication)
#include "tst_BrevantCliOriginals.moc"
