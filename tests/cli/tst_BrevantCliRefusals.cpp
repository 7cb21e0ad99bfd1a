// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <unistd.h>

using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

const QByteArray css("a { b : c ; }");
const QStringList inPlace{u"--set"_s, u"suffixSwitcherKeyString=false"_s};
const QStringList gzip{u"--set"_s, u"gzipCheckerKeyString=true"_s};

QStringList into(const QString &folder)
{
    return {u"--set"_s, u"sameFolderKeyString=false"_s, u"--set"_s, u"selectedFolderKeyString="_s + folder};
}

} // namespace

/// What is not run because another file would be lost by it.
class tst_BrevantCliRefusals final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void sourceOfAnother_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("refused");
        QTest::addColumn<QString>("endangered");
        for (const char *jobs : {"--jobs=1", "--jobs=2"}) {
            const auto row = [jobs](const char *name, const QStringList &arguments) -> QTestData & {
                return QTest::addRow("%s, %s", name, jobs)
                       << QString::fromLatin1(jobs).split(u' ') + arguments;
            };
            row("capitals", inPlace + QStringList{u"a.CSS"_s, u"a.css"_s}) << u"a.CSS"_s << u"a.css"_s;
            row("chosen folder", into(u"out"_s) + inPlace + QStringList{u"b.css"_s, u"out/b.css"_s})
                << u"b.css"_s << u"out/b.css"_s;
            row("by a hard link", into(u"hard"_s) + inPlace + QStringList{u"b.css"_s, u"out/b.css"_s})
                << u"b.css"_s << u"out/b.css"_s;
            row("by a link", into(u"soft"_s) + inPlace + QStringList{u"b.css"_s, u"out/b.css"_s})
                << u"b.css"_s << u"out/b.css"_s;
            row("with gzip", gzip + into(u"out"_s) + inPlace + QStringList{u"b.css"_s, u"out/b.css"_s})
                << u"b.css"_s << u"out/b.css"_s;
        }
    }

    void sourceOfAnother()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, refused);
        QFETCH(QString, endangered);
        const Sandbox sandbox;
        for (const QString &name : {u"a.CSS"_s, u"a.css"_s, u"b.css"_s, u"out/b.css"_s})
            sandbox.add(name, css + " c { d : " + name.toUtf8().toHex() + " ; }");
        for (const QString &name : {u"hard"_s, u"soft"_s})
            QVERIFY(QDir().mkdir(sandbox.path(name)));
        QVERIFY(QFile::link(u"../out/b.css"_s, sandbox.path(u"soft/b.css"_s)));
        QCOMPARE(::link(QFile::encodeName(sandbox.path(u"out/b.css"_s)).constData(),
                        QFile::encodeName(sandbox.path(u"hard/b.css"_s)).constData()),
                 0);
        const QByteArray before = sandbox.read(refused);
        const QByteArray minified = bareOutput(sandbox.path(endangered));

        const Ended ended = sandbox.run(QStringList{u"--report"_s, u"r.json"_s} + arguments);
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("Failed: " + QFile::encodeName(sandbox.path(refused)) +
                                    ": not minified: its output "),
                 ended.err);
        QVERIFY2(ended.err.endsWith(" is the source of another file in the list\n"), ended.err);
        QCOMPARE(sandbox.read(refused), before);
        QCOMPARE(sandbox.read(endangered), minified); // in place, as itself
        const QJsonObject report = QJsonDocument::fromJson(sandbox.read(u"r.json"_s)).object();
        QCOMPARE(report[u"failed"_s].toInt() + report[u"done"_s].toInt(), 2);
        QCOMPARE(report[u"files"_s][0][u"outcome"_s].toString(), u"failed"_s);
        QVERIFY(report[u"files"_s][0][u"reason"_s].toString().startsWith(u"not minified: "_s));
    }

    void outputOfAnother_data()
    {
        QTest::addColumn<QString>("jobs");
        for (const char *jobs : {"--jobs=1", "--jobs=3"})
            QTest::addRow("%s", jobs) << QString::fromLatin1(jobs);
    }

    void outputOfAnother()
    {
        QFETCH(QString, jobs);
        const Sandbox sandbox;
        QVERIFY(QDir().mkdir(sandbox.path(u"out"_s)));
        for (const QString &name : {u"x/a.css"_s, u"y/a.css"_s, u"z/a.css"_s})
            sandbox.add(name, name.startsWith(u'x') ? css : "d { e : f ; }");
        const Ended ended = sandbox.run(QStringList{jobs} + gzip + into(u"out"_s) +
                                        QStringList{u"x/a.css"_s, u"y/a.css"_s, u"z/a.css"_s});
        QCOMPARE(ended.status, 1);
        const QByteArray folder = QFile::encodeName(sandbox.path());
        const QByteArray reason =
            "not minified: its output " + folder + "/out/a.min.css is that of another file in the list\n";
        QCOMPARE(ended.err,
                 "Failed: " + folder + "/y/a.css: " + reason + "Failed: " + folder + "/z/a.css: " + reason);
        QCOMPARE(sandbox.read(u"out/a.min.css"_s), QByteArray("a{b:c}"));
        QCOMPARE(decompressed(sandbox.path(u"out/a.min.css.gz"_s)), QByteArray("a{b:c}"));
    }

    void namesThatDifferInCapitals()
    {
        const Sandbox sandbox;
        sandbox.add(u"x/a.css"_s, css);
        sandbox.add(u"y/A.css"_s, css);
        QVERIFY(QDir().mkdir(sandbox.path(u"out"_s)));
        if (QFile::exists(sandbox.path(u"OUT"_s)))
            QSKIP("capitals do not count on this file system");
        for (int round = 0; round < 2; ++round)
            QCOMPARE(sandbox.run(into(u"out"_s) + QStringList{u"x/a.css"_s, u"y/A.css"_s}).status, 0);
        QCOMPARE(tree(sandbox.path(u"out"_s)).keys(), (QStringList{u"A.min.css"_s, u"a.min.css"_s}));
    }

    void aColonInTheOutput_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("isRun");
        for (const char *extension : {"css", "js", "html"}) {
            const bool isRun = QByteArrayView(extension) == "html";
            const QString dot = u'.' + QString::fromLatin1(extension);
            QTest::addRow("suffix, %s", extension) << u"w/app"_s + dot << u":x"_s << isRun;
            QTest::addRow("folder, %s", extension) << u"w:w/app"_s + dot << u".min"_s << isRun;
            QTest::addRow("pattern, %s", extension)
                << u"(?<=(^.{0,99}))(?=.*?([.])).*:$1$2$2/victim/app"_s + dot << u".min"_s << isRun;
        }
    }

    void aColonInTheOutput()
    {
        QFETCH(QString, name);
        QFETCH(QString, suffix);
        QFETCH(bool, isRun);
        const Sandbox sandbox;
        const QByteArray path = QFile::encodeName(sandbox.add(name, isRun ? "<p>a</p>" : " "));
        sandbox.add(u"../victim/app.min.css"_s, "precious");
        sandbox.add(u"../victim/app.min.js"_s, "precious");
        const auto before = tree(sandbox.path());
        const Ended ended = sandbox.run({u"--set"_s, u"suffixKeyString="_s + suffix, name});
        QCOMPARE(sandbox.read(u"../victim/app.min.css"_s), QByteArray("precious"));
        QCOMPARE(sandbox.read(u"../victim/app.min.js"_s), QByteArray("precious"));
        QCOMPARE(ended.status, isRun ? 0 : 1);
        if (isRun)
            return;
        QCOMPARE(ended.err, "Failed: " + path +
                                ": not minified: YUI Compressor takes an output path with a colon for a "
                                "pattern\n");
        QCOMPARE(tree(sandbox.path()), before);
        QCOMPARE(tree(sandbox.home()).keys(), QStringList());
    }

    void reportOverAFileOfTheRun_data()
    {
        QTest::addColumn<QString>("report");
        QTest::newRow("source") << u"a.css"_s;
        QTest::newRow("source, another spelling") << u"sub/../a.css"_s;
        QTest::newRow("source, by a link") << u"soft"_s;
        QTest::newRow("source, by a hard link") << u"hard"_s;
        QTest::newRow("output") << u"a.min.css"_s;
        QTest::newRow("output, through a link to the folder") << u"here/a.min.css"_s;
        QTest::newRow("output, by a link") << u"end"_s;
        QTest::newRow("gzip copy") << u"./a.min.css.gz"_s;
        QTest::newRow("settings") << u"s.json"_s;
        QTest::newRow("list of paths") << u"list"_s;
    }

    void reportOverAFileOfTheRun()
    {
        QFETCH(QString, report);
        const Sandbox sandbox;
        sandbox.add(u"a.css"_s, css);
        sandbox.add(u"s.json"_s, "{}");
        sandbox.add(u"sub/x"_s, "");
        sandbox.add(u"list"_s, "a.css\n");
        QVERIFY(QFile::link(u"a.css"_s, sandbox.path(u"soft"_s)));
        QVERIFY(QFile::link(u"a.min.css"_s, sandbox.path(u"end"_s)));
        QVERIFY(QFile::link(u"."_s, sandbox.path(u"here"_s)));
        QCOMPARE(::link(QFile::encodeName(sandbox.path(u"a.css"_s)).constData(),
                        QFile::encodeName(sandbox.path(u"hard"_s)).constData()),
                 0);
        const auto before = tree(sandbox.path());
        const Ended ended = sandbox.run(gzip + QStringList{u"--settings"_s, u"s.json"_s, u"--report"_s,
                                                           report, u"--files-from"_s, u"list"_s});
        QVERIFY2(
            ended.err.startsWith("brevant-cli: the report " + report.toUtf8() + " would be written over "),
            ended.err);
        QCOMPARE(ended.out, QByteArray());
        QCOMPARE(ended.status, 2);
        QCOMPARE(tree(sandbox.path()), before);
    }
};

BREVANT_TEST(tst_BrevantCliRefusals, QCoreApplication)
#include "tst_BrevantCliRefusals.moc"
