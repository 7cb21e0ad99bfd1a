// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryRun.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

QByteArray unzipped(const QString &path)
{
    QProcess gunzip;
    gunzip.start(u"/usr/bin/gzip"_s, {u"-dc"_s, path});
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
            {u"/usr/bin/gzip"_s, {u"-f"_s, u"/w/site.min.css"_s}},
            {u"/bin/cp"_s, {u"-f"_s, u"/w/site.min.css.gz"_s, u"/w/site.min.css.brevantgziptemp"_s}},
            {u"/usr/bin/gzip"_s,
             {u"-f"_s, u"-d"_s, u"-S"_s, u"brevantgziptemp"_s, u"/w/site.min.css.brevantgziptemp"_s}},
            {u"/bin/mv"_s, {u"-f"_s, u"/w/site.min.css."_s, u"/w/site.min.css"_s}},
        }};
        QVERIFY(gzipSteps(u"/w/site.min.css"_s) == expected);
    }

    void listsEndWhereThereIsNoOutput()
    {
        const std::array<GzipStep, 4> expected{{
            {u"/usr/bin/gzip"_s, {u"-f"_s}},
            {u"/bin/cp"_s, {u"-f"_s}},
            {u"/usr/bin/gzip"_s, {u"-f"_s, u"-d"_s, u"-S"_s, u"brevantgziptemp"_s}},
            {u"/bin/mv"_s, {u"-f"_s}},
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
            QVERIFY(writeFile(output, text));
            makeGzipCopy(output, noStop); // the second time over what the first has left
            QCOMPARE(readFile(output), text);
            QCOMPARE(unzipped(output + u".gz"_s), text);
            QCOMPARE(files(folder), QStringList({name, name + u".gz"_s}));
        }
    }

    void nothingComesOfNothing()
    {
        const QTemporaryDir folder;
        makeGzipCopy(folder.filePath(u"a.css"_s), noStop);
        QCOMPARE(files(folder), QStringList());
    }

    void anOlderCopyBringsTheOutputBack()
    {
        const QTemporaryDir folder;
        const QString output = folder.filePath(u"a.css"_s);
        QVERIFY(writeFile(output, "old"));
        makeGzipCopy(output, noStop);
        QFile::remove(output);
        makeGzipCopy(output, noStop);
        QCOMPARE(readFile(output), QByteArray("old"));
        QCOMPARE(unzipped(output + u".gz"_s), QByteArray("old"));
    }

    void noneAfterAStopAtOnce()
    {
        const QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(u"a.css"_s), "text"));
        const std::atomic<Stop> stop = Stop::AtOnce;
        makeGzipCopy(folder.filePath(u"a.css"_s), stop);
        QCOMPARE(files(folder), QStringList({u"a.css"_s}));
    }
};

BREVANT_TEST(tst_GzipCopy, QCoreApplication)
#include "tst_GzipCopy.moc"
