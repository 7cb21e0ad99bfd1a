// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/GzipCopy.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

QByteArray unzipped(const QString &path)
{
    QProcess gunzip;
    gunzip.start(QStringLiteral("/usr/bin/gzip"), {QStringLiteral("-dc"), path});
    return gunzip.waitForFinished() ? gunzip.readAllStandardOutput() : QByteArray("(gzip failed)");
}

const std::atomic<Stop> noStop = Stop::No;

QStringList files(const QTemporaryDir &folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

class tst_GzipCopy final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fourExactSteps()
    {
        const std::array<GzipStep, 4> expected{{
            {QStringLiteral("/usr/bin/gzip"), {QStringLiteral("-f"), QStringLiteral("/w/site.min.css")}},
            {QStringLiteral("/bin/cp"),
             {QStringLiteral("-f"), QStringLiteral("/w/site.min.css.gz"),
              QStringLiteral("/w/site.min.css.brevantgziptemp")}},
            {QStringLiteral("/usr/bin/gzip"),
             {QStringLiteral("-f"), QStringLiteral("-d"), QStringLiteral("-S"),
              QStringLiteral("brevantgziptemp"), QStringLiteral("/w/site.min.css.brevantgziptemp")}},
            {QStringLiteral("/bin/mv"),
             {QStringLiteral("-f"), QStringLiteral("/w/site.min.css."), QStringLiteral("/w/site.min.css")}},
        }};
        QVERIFY(gzipSteps(QStringLiteral("/w/site.min.css")) == expected);
    }

    void listsEndWhereThereIsNoOutput()
    {
        const std::array<GzipStep, 4> expected{{
            {QStringLiteral("/usr/bin/gzip"), {QStringLiteral("-f")}},
            {QStringLiteral("/bin/cp"), {QStringLiteral("-f")}},
            {QStringLiteral("/usr/bin/gzip"),
             {QStringLiteral("-f"), QStringLiteral("-d"), QStringLiteral("-S"),
              QStringLiteral("brevantgziptemp")}},
            {QStringLiteral("/bin/mv"), {QStringLiteral("-f")}},
        }};
        QVERIFY(gzipSteps(std::nullopt) == expected);
    }

    void leavesOutputAndCopy_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"site.min.css", "with space.css", "ümlaut \"q\" $x.js", "new\nline.html", "app.js.gz.css"})
            QTest::addRow("%s", name) << QString::fromUtf8(name);
    }

    void leavesOutputAndCopy()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QString output = folder.filePath(name);
        for (const QByteArray &text : {QByteArray("first"), QByteArray("second, longer text")}) {
            write(output, text);
            makeGzipCopy(output, noStop); // the second time over what the first has left
            QCOMPARE(read(output), text);
            QCOMPARE(unzipped(output + QStringLiteral(".gz")), text);
            QCOMPARE(files(folder), QStringList({name, name + QStringLiteral(".gz")}));
        }
    }

    void nothingComesOfNothing()
    {
        const QTemporaryDir folder;
        makeGzipCopy(folder.filePath(QStringLiteral("a.css")), noStop);
        QCOMPARE(files(folder), QStringList());
    }

    void anOlderCopyBringsTheOutputBack()
    {
        const QTemporaryDir folder;
        const QString output = folder.filePath(QStringLiteral("a.css"));
        write(output, "old");
        makeGzipCopy(output, noStop);
        QFile::remove(output);
        makeGzipCopy(output, noStop);
        QCOMPARE(read(output), QByteArray("old"));
        QCOMPARE(unzipped(output + QStringLiteral(".gz")), QByteArray("old"));
    }

    void noneAfterAStopAtOnce()
    {
        const QTemporaryDir folder;
        write(folder.filePath(QStringLiteral("a.css")), "text");
        const std::atomic<Stop> stop = Stop::AtOnce;
        makeGzipCopy(folder.filePath(QStringLiteral("a.css")), stop);
        QCOMPARE(files(folder), QStringList({QStringLiteral("a.css")}));
    }
};

BREVANT_TEST(tst_GzipCopy, QCoreApplication)
#include "tst_GzipCopy.moc"
