// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CombineFiles.h"
#include "tests/TestClass.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace brevant;
using Outcome = CombineResult::Outcome;

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(none)");
}

mode_t modeOf(const QString &path)
{
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

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

/// Joins files once and prints the most memory that it took, in KiB, and the time in ms.
int combineOnce(const QStringList &arguments)
{
    const std::vector<QString> paths(arguments.begin() + 2, arguments.end());
    QElapsedTimer timer;
    timer.start();
    const CombineResult result = combine(paths, arguments[0], textEncodingNamed(arguments[1]));
    const qint64 time = timer.elapsed();
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%ld %lld\n", usage.ru_maxrss, static_cast<long long>(time));
    return result.outcome == Outcome::Written ? 0 : 1;
}

} // namespace

class tst_CombineFiles final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void refusal_data();
    void refusal();
    void kind_data();
    void kind();
    void textsInOrder();
    void golden_data();
    void golden();
    void westernChoiceIsUtf8();
    void invalidFileAborts();
    void unreadableFileAborts_data();
    void unreadableFileAborts();
    void abortComesBeforeFailedWrite();
    void failedWrite_data();
    void failedWrite();
    void ontoOneOfTheSources();
    void linkAndModeStay();
    void tildeIsHome();
    void memoryIsBounded();
    void killedAtAnyMoment();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    QString write(const char *name, QByteArrayView bytes) const;
    QStringList leftovers() const
    {
        return QDir(m_folder->path()).entryList({QStringLiteral(".brevant-*")}, QDir::Files | QDir::Hidden);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_CombineFiles::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString tst_CombineFiles::write(const char *name, QByteArrayView bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), bytes.size()) != bytes.size())
        qFatal("cannot write %s", name);
    return file.fileName();
}

void tst_CombineFiles::refusal_data()
{
    QTest::addColumn<std::vector<QString>>("entries");
    QTest::addColumn<std::optional<CombineAlert>>("expected");

    const auto row = [](const char *name, const QStringList &entries,
                        const std::optional<CombineAlert> &expected) {
        QTest::newRow(name) << std::vector<QString>(entries.begin(), entries.end()) << expected;
    };
    const auto list = [](const char *entries) { return QString::fromUtf8(entries).split(u' '); };
    const CombineAlert notice{QStringLiteral("Notice"),
                              QStringLiteral("Please select 2 or more files to combine.")};
    const CombineAlert mixed{QStringLiteral("Combine different kinds of files?"),
                             QStringLiteral("No, please select only one kind of files at a time.")};
    const CombineAlert html{
        QStringLiteral("Combine HTML files?"),
        QStringLiteral("Sorry, you can only combine CSS or JS files. Combine HTML files makes no scene.")};
    const CombineAlert phtml{
        QStringLiteral("Combine PHTML files?"),
        QStringLiteral("Sorry, you can only combine CSS or JS files. Combine PHTML files makes no scene.")};
    const CombineAlert php{
        QStringLiteral("Combine PHP files?"),
        QStringLiteral("Sorry, you can only combine CSS or JS files. Combine PHP files makes no scene.")};

    row("none", {}, notice);
    row("one", list("/w/a.css"), notice);
    row("one html", list("/w/a.html"), notice);
    row("css", list("/w/a.css /w/b.css"), std::nullopt);
    row("js", list("/w/a.js /w/b.js /w/c.js"), std::nullopt);
    row("css in two cases", list("/w/a.css /w/b.CSS"), std::nullopt);
    row("a letter beyond ASCII", list("/w/a.css /w/b.c\xc5\xbfs"), mixed);
    row("css and js", list("/w/a.css /w/b.js"), mixed);
    row("mixed in the middle", list("/w/a.css /w/b.js /w/c.css"), mixed);
    row("mixed at the end", list("/w/a.js /w/b.js /w/c.css"), mixed);
    row("html and css", list("/w/a.html /w/b.css"), mixed);
    row("html", list("/w/a.html /w/b.html"), html);
    row("html, then capitals", list("/w/a.html /w/b.HTML"), html);
    row("capitals, then html", list("/w/a.HTML /w/b.html"), std::nullopt);
    row("HTML in capitals", list("/w/a.HTML /w/b.HTML"), std::nullopt);
    row("Html", list("/w/a.Html /w/b.html"), std::nullopt);
    row("phtml", list("/w/a.phtml /w/b.phtml"), phtml);
    row("PHTML in capitals", list("/w/a.PHTML /w/b.PHTML"), std::nullopt);
    row("php", list("/w/a.php /w/b.php"), php);
    row("PHP in capitals", list("/w/a.PHP /w/b.PHP"), std::nullopt);
    row("html and phtml", list("/w/a.html /w/b.phtml"), mixed);
    row("the sentinel as an extension", list("/w/a.NO /w/b.NO"), mixed);
    row("no in small letters", list("/w/a.no /w/b.no"), std::nullopt);
    row("min.css and css", list("/w/a.min.css /w/b.css"), std::nullopt);
}

void tst_CombineFiles::refusal()
{
    QFETCH(std::vector<QString>, entries);
    QTEST(combineRefusal(entries), "expected");
}

void tst_CombineFiles::kind_data()
{
    QTest::addColumn<std::vector<QString>>("entries");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *entries, const char *expected) {
        const QStringList list = QString::fromLatin1(entries).split(u' ');
        QTest::newRow(entries) << std::vector<QString>(list.begin(), list.end())
                               << QString::fromLatin1(expected);
    };
    row("/w/a.css /w/b.CSS", "css");
    row("/w/a.CSS /w/b.css", "CSS");
    row("/w/a.HTML /w/b.HTML", "HTML");
    row("/w/a.js /w/b.js", "js");
    row("/w/a.css /w/b.js", "NO");
    row("/w/a.css /w/b.js /w/c.css", "NO");
    row("/w.css/a /w.css/b", "");
}

void tst_CombineFiles::kind()
{
    QFETCH(std::vector<QString>, entries);
    QTEST(combineKind(entries), "expected");
}

void tst_CombineFiles::textsInOrder()
{
    const QString x = write("a.js", "x");
    const QString y = write("b.js", "y");
    const QString ended = write("c.js", "one\n");
    const QString empty = write("d.js", "");
    const QString target = path("combined.js");

    const CombineResult result = combine({y, x}, target, TextEncoding::Utf8);
    QCOMPARE(result.outcome, Outcome::Written);
    QCOMPARE(result.errorText, QString());
    QCOMPARE(readFile(target), QByteArrayLiteral("y\nx\n"));

    QCOMPARE(combine({ended, empty, x, x}, target, TextEncoding::Utf8).outcome, Outcome::Written);
    QCOMPARE(readFile(target), QByteArrayLiteral("one\n\n\nx\nx\n"));
    QCOMPARE(leftovers(), QStringList());
}

void tst_CombineFiles::golden_data()
{
    QTest::addColumn<TextEncoding>("encoding");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("expected");

    QFile file(QFINDTESTDATA("data/combine/golden.txt"));
    QVERIFY2(file.open(QIODevice::ReadOnly), "golden.txt");
    int count = 0;
    while (!file.atEnd()) {
        const QList<QByteArray> fields = file.readLine().trimmed().split(' ');
        if (fields.first() != "combined")
            continue;
        ++count;
        QTest::newRow(fields[1].constData())
            << textEncodingNamed(QString::fromLatin1(fields[1])) << QByteArray::fromHex(fields[2])
            << QByteArray::fromHex(fields[3]) << QByteArray::fromHex(fields[4]);
    }
    QCOMPARE(count, 9);
}

void tst_CombineFiles::golden()
{
    QFETCH(TextEncoding, encoding);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    const QString target = path("combined.css");
    const CombineResult result = combine({write("1.css", first), write("2.css", second)}, target, encoding);
    QCOMPARE(result.outcome, Outcome::Written);
    QTEST(readFile(target), "expected");
}

void tst_CombineFiles::westernChoiceIsUtf8()
{
    const TextEncoding encoding = textEncodingNamed(QStringLiteral("iso-8859-1"));
    const QString good = write("a.css", "\xC3\xA9");
    const QString latin = write("b.css", "caf\xE9");
    const QString target = write("combined.css", "old");

    const CombineResult result = combine({good, latin}, target, encoding);
    QCOMPARE(result.outcome, Outcome::Aborted);
    QCOMPARE(result.errorText,
             latin + QLatin1StringView(": byte 3: The text ends in the middle of a UTF-8 character"));
    QCOMPARE(readFile(target), QByteArrayLiteral("old"));

    QCOMPARE(combine({good, good}, target, encoding).outcome, Outcome::Written);
    QCOMPARE(readFile(target), QByteArrayLiteral("\xC3\xA9\n\xC3\xA9\n"));
}

void tst_CombineFiles::invalidFileAborts()
{
    const QString good = write("a.js", QByteArray(3 * 1024 * 1024, 'x'));
    const QString bad = write("b.js", "ab\xFF"
                                      "cd");
    const QString target = write("combined.js", "old");

    for (const auto &paths : {std::vector{good, bad, good}, std::vector{bad, good}, std::vector{good, bad}}) {
        const CombineResult result = combine(paths, target, TextEncoding::Utf8);
        QCOMPARE(result.outcome, Outcome::Aborted);
        QCOMPARE(result.errorText, bad + QLatin1StringView(": byte 2: Not valid UTF-8"));
        QCOMPARE(readFile(target), QByteArrayLiteral("old"));
        QCOMPARE(combine(paths, path("new.js"), TextEncoding::Utf8).outcome, Outcome::Aborted);
        QVERIFY(!QFile::exists(path("new.js")));
        QCOMPARE(leftovers(), QStringList());
    }
}

void tst_CombineFiles::unreadableFileAborts_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"missing", "folder", "fifo", "device", "dangling", "link to fifo", "forbidden"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void tst_CombineFiles::unreadableFileAborts()
{
    QFETCH(QString, kind);
    QString source = path("source.js");
    const QByteArray name = QFile::encodeName(source);
    if (kind == u"folder") {
        QVERIFY(QDir().mkdir(source));
    } else if (kind == u"fifo") {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else if (kind == u"device") {
        source = QStringLiteral("/dev/zero");
    } else if (kind == u"dangling") {
        QVERIFY(QFile::link(path("nowhere"), source));
    } else if (kind == u"link to fifo") {
        QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        QVERIFY(QFile::link(path("pipe"), source));
    } else if (kind == u"forbidden") {
        write("source.js", "text");
        QCOMPARE(::chmod(name.constData(), 0), 0);
        if (::access(name.constData(), R_OK) == 0)
            QSKIP("This user may read everything");
    }
    const QString good = write("good.js", "good");
    const QString target = write("combined.js", "old");
    const CombineResult result = combine({good, source}, target, TextEncoding::Utf8);
    QCOMPARE(result.outcome, Outcome::Aborted);
    QVERIFY2(result.errorText.startsWith(source + QLatin1StringView(": byte 0: ")),
             qPrintable(result.errorText));
    QCOMPARE(readFile(target), QByteArrayLiteral("old"));
    QCOMPARE(leftovers(), QStringList());
}

void tst_CombineFiles::abortComesBeforeFailedWrite()
{
    const QString good = write("a.js", QByteArray(1024 * 1024, 'x'));
    const QString bad = write("b.js", "\xFF");
    QCOMPARE(combine({good, bad}, path("no/such/folder.js"), TextEncoding::Utf8).outcome, Outcome::Aborted);
}

void tst_CombineFiles::failedWrite_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("no folder") << QStringLiteral("no/such.js");
    QTest::newRow("a folder") << QStringLiteral("folder.js");
    QTest::newRow("a file as folder") << QStringLiteral("a.js/b.js");
    QTest::newRow("a pipe") << QStringLiteral("pipe.js");
}

void tst_CombineFiles::failedWrite()
{
    QFETCH(QString, target);
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder.js")));
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.js")).constData(), 0600), 0);
    const QString source = write("a.js", QByteArray(1024 * 1024, 'x'));
    const QString whole = m_folder->filePath(target);
    const CombineResult result = combine({source, source}, whole, TextEncoding::Utf8);
    QCOMPARE(result.outcome, Outcome::WriteFailed);
    QVERIFY(result.errorText.startsWith(whole + QLatin1StringView(": ")));
    QCOMPARE(leftovers(), QStringList());
}

void tst_CombineFiles::ontoOneOfTheSources()
{
    const QString first = write("a.js", "first");
    const QString second = write("b.js", "second");
    QCOMPARE(combine({first, second}, first, TextEncoding::Utf8).outcome, Outcome::Written);
    QCOMPARE(readFile(first), QByteArrayLiteral("first\nsecond\n"));
    QCOMPARE(combine({first, second}, second, TextEncoding::ShiftJis).outcome, Outcome::Written);
    QCOMPARE(readFile(second), QByteArrayLiteral("first\nsecond\n\nsecond\n"));
    QCOMPARE(readFile(first), QByteArrayLiteral("first\nsecond\n"));
}

void tst_CombineFiles::linkAndModeStay()
{
    const QString source = write("a.js", "x");
    const QString real = write("real.js", "old");
    const QString link = path("link.js");
    QCOMPARE(::chmod(QFile::encodeName(real).constData(), 0640), 0);
    QVERIFY(QFile::link(QStringLiteral("real.js"), link));
    QCOMPARE(combine({source, source}, link, TextEncoding::Utf8).outcome, Outcome::Written);
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(readFile(real), QByteArrayLiteral("x\nx\n"));
    QCOMPARE(modeOf(real), mode_t(0640));
}

void tst_CombineFiles::tildeIsHome()
{
    write("a.js", "home");
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(m_folder->path()));
    const CombineResult result =
        combine({QStringLiteral("~/a.js"), path("a.js")}, path("combined.js"), TextEncoding::Utf8);
    qputenv("HOME", home);
    QCOMPARE(result.outcome, Outcome::Written);
    QCOMPARE(readFile(path("combined.js")), QByteArrayLiteral("home\nhome\n"));
}

void tst_CombineFiles::memoryIsBounded()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("A sanitizer takes memory of its own");
#endif
    constexpr qint64 textSize = 64 * 1024 * 1024;
    const QString source = write("a.css", QByteArray(textSize / 2, 'x'));
    for (const char *encoding : {"utf-8", "gb18030"}) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("tst_CombineFiles"), QStringLiteral("--combine-once"),
                     path("combined.css"), QString::fromLatin1(encoding), source, source});
        QVERIFY(child.waitForFinished(60000));
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(QFileInfo(path("combined.css")).size(), textSize + 2);
        const qint64 peak = child.readAllStandardOutput().split(' ').first().toLongLong() * 1024;
        QVERIFY(peak > 0);
        QVERIFY2(peak < textSize, qPrintable(QString::number(peak)));
    }
}

void tst_CombineFiles::killedAtAnyMoment()
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
                    {QStringLiteral("tst_CombineFiles"), QStringLiteral("--combine-for-ever"), target, first,
                     second});
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

static int runOrCombine(int count, char **values)
{
    const QCoreApplication application(count, values);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1StringView("--combine-for-ever"))
        return combineForEver(arguments.sliced(2));
    if (arguments.value(1) == QLatin1StringView("--combine-once"))
        return combineOnce(arguments.sliced(2));
    tst_CombineFiles test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, count, values);
}

static const test::TestClass registered("tst_CombineFiles", runOrCombine);
#include "tst_CombineFiles.moc"
