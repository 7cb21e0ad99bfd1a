// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/resource.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;
using Outcome = CombineResult::Outcome;

namespace {

/// Joins two sets of files onto one target, in turns, until somebody ends it.
int combineForEver(const QStringList &arguments)
{
    const std::vector<QString> first{arguments[1], arguments[1]};
    const std::vector<QString> second{arguments[2], arguments[2], arguments[1]};
    // Begins with the one that is not there.
    bool isFirst = QFileInfo(arguments[0]).size() == 2 * QFileInfo(arguments[1]).size() + 2;
    for (;; isFirst = !isFirst) {
        std::puts("begins");
        std::fflush(stdout);
        if (combine(isFirst ? second : first, arguments[0], TextEncoding::Utf8).outcome != Outcome::Written)
            return 1;
    }
}

/// Joins files once and prints the most memory that it took, in KiB.
int combineOnce(const QStringList &arguments)
{
    const std::vector<QString> paths(arguments.begin() + 2, arguments.end());
    const CombineResult result = combine(paths, arguments[0], textEncodingNamed(arguments[1]));
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%ld\n", usage.ru_maxrss);
    return result.outcome == Outcome::Written ? 0 : 1;
}

} // namespace

/// What a combine may take of the memory, and leave where it is killed.
class tst_CombineLimits final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void memoryIsBounded()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("A sanitizer takes memory of its own");
#endif
        constexpr qint64 textSize = 64 * 1024 * 1024;
        const QString source = write("a.css", QByteArray(textSize / 2, 'x'));
        for (const char *encoding : {"utf-8", "gb18030"}) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(),
                        {u"tst_CombineLimits"_s, u"--combine-once"_s, path("combined.css"),
                         QString::fromLatin1(encoding), source, source});
            QVERIFY(child.waitForFinished(60000));
            QCOMPARE(child.exitCode(), 0);
            QCOMPARE(QFileInfo(path("combined.css")).size(), textSize + 2);
            const qint64 peak = child.readAllStandardOutput().trimmed().toLongLong() * 1024;
            QVERIFY(peak > 0);
            QVERIFY2(peak < textSize, qPrintable(QString::number(peak)));
        }
    }

    void killedAtAnyMoment()
    {
        const QByteArray a(700 * 1024, 'a');
        const QByteArray b(500 * 1024, 'b');
        const QString first = write("a.js", a);
        const QString second = write("b.js", b);
        const QByteArray afterFirst = a + '\n' + a + '\n';
        const QByteArray afterSecond = b + '\n' + b + '\n' + a + '\n';
        const QString target = write("combined.js", afterFirst);
        QCOMPARE(::chmod(QFile::encodeName(target).constData(), 0604), 0);

        QRandomGenerator random(4);
        int sawFirst = 0;
        int sawSecond = 0;
        for (int round = 0; round < 200; ++round) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(),
                        {u"tst_CombineLimits"_s, u"--combine-for-ever"_s, target, first, second});
            // Amid the first, the second or the third: however long they take, something is there to see.
            for (int begun = random.bounded(3); begun >= 0; --begun) {
                while (!child.canReadLine())
                    QVERIFY(child.waitForReadyRead(30000));
                child.readLine();
            }
            ::usleep(random.bounded(5000U));
            QCOMPARE(child.state(), QProcess::Running);
            child.kill();
            QVERIFY(child.waitForFinished(30000));
            QCOMPARE(child.exitStatus(), QProcess::CrashExit);

            const QByteArray content = readFile(target);
            sawFirst += content == afterFirst ? 1 : 0;
            sawSecond += content == afterSecond ? 1 : 0;
            QCOMPARE(sawFirst + sawSecond, round + 1);
            QCOMPARE(modeOf(target), mode_t(0604));
        }
        // The moments were good ones: each of the two was seen.
        QVERIFY(sawFirst > 0);
        QVERIFY(sawSecond > 0);
        qInfo("old or new %d and %d times", sawFirst, sawSecond);
    }

private:
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder.filePath(QString::fromUtf8(name));
    }

    [[nodiscard]] QString write(const char *name, QByteArrayView bytes) const
    {
        if (!writeFile(path(name), bytes))
            qFatal("cannot write %s", name);
        return path(name);
    }

    QTemporaryDir m_folder;
};

static int runOrCombine(int count, char **values)
{
    const QCoreApplication application(count, values);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--combine-for-ever"_L1)
        return combineForEver(arguments.sliced(2));
    if (arguments.value(1) == "--combine-once"_L1)
        return combineOnce(arguments.sliced(2));
    tst_CombineLimits test;
    return QTest::qExec(&test, count, values);
}

static const TestClass registered("tst_CombineLimits", runOrCombine);
#include "tst_CombineLimits.moc"
