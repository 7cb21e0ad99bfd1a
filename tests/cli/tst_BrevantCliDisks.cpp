// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"
#include "tests/cli/InPlace.h"
#include "tests/cli/MountNamespace.h"
#include "tests/engine/LeftCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>

#include <unistd.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// That no source is lost where a disk takes no more, takes nothing or cannot lock.
class tst_BrevantCliDisks final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(missingCompressors(), QString());
        m_noNamespace = noMountNamespace();
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

private:
    QString m_noNamespace;
};

BREVANT_TEST(tst_BrevantCliDisks, QCoreApplication)
#include "tst_BrevantCliDisks.moc"
