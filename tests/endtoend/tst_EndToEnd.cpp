// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QTest>

using namespace brevant::test;
using namespace Qt::StringLiterals;

/// Each folder below `cases` is one run of brevant-cli over a copy of its `sources`, with its
/// `settings.json`, in which @DIR@ stands for the copy. Afterwards the copy must hold the sources and what is
/// in `expected`, byte for byte, and nothing else; the exit status must be the one in `status`, or 0. A
/// compressed copy counts by what it decompresses to. `expected` was made by running the compressors by hand.
class tst_EndToEnd final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void minify_data()
    {
        QTest::addColumn<QString>("folder");
        const QDir cases(QStringLiteral(BREVANT_CASES));
        const QStringList names = cases.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QVERIFY2(!names.isEmpty(), qPrintable(u"there is no case in "_s + cases.path()));
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << cases.filePath(name);
    }

    void minify()
    {
        QFETCH(QString, folder);
        const auto files = tree(folder);
        const QString sourcesFolder = u"sources/"_s;
        const QString expectedFolder = u"expected/"_s;

        const Sandbox sandbox;
        QMap<QString, QByteArray> expected;
        for (const QString &part : {sourcesFolder, expectedFolder}) {
            for (auto file = files.begin(); file != files.end(); ++file) {
                if (file.key() == part || !file.key().startsWith(part))
                    continue;
                const QString name = file.key().sliced(part.size());
                if (part == sourcesFolder && !name.endsWith(u'/'))
                    sandbox.add(name, file.value());
                expected[name] =
                    name.endsWith(u".gz") ? decompressed(folder + u'/' + file.key()) : file.value();
            }
        }
        QVERIFY2(!expected.isEmpty(), "the case has no sources");
        QVERIFY2(files.contains(u"settings.json"_s), "the case has no settings");
        QByteArray settings = files[u"settings.json"_s];
        settings.replace("@DIR@", sandbox.path().toUtf8());
        sandbox.add(u"../settings.json"_s, settings);

        const Ended ended = sandbox.run({u"--settings"_s, u"../settings.json"_s, u"."_s});

        auto actual = tree(sandbox.path());
        for (auto file = actual.begin(); file != actual.end(); ++file) {
            if (file.key().endsWith(u".gz"))
                file.value() = decompressed(sandbox.path(file.key()));
        }
        QCOMPARE(actual.keys(), expected.keys());
        for (auto file = expected.begin(); file != expected.end(); ++file)
            QVERIFY2(actual[file.key()] == file.value(), qPrintable(file.key() + u" differs"_s));
        QVERIFY2(ended.status == files.value(u"status"_s, "0").trimmed().toInt(), ended.err);
    }
};

BREVANT_TEST(tst_EndToEnd, QCoreApplication)
#include "tst_EndToEnd.moc"
