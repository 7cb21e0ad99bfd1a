// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/TestClass.h"
#include "tests/engine/CaseTable.h"
#include "tests/engine/modern/ModernFixture.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;

/// What the modern compressors make of one construct at a time: the tables lie in tests/engine/data/modern.
class tst_ModernSources final : public QObject, ModernFixture {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { BREVANT_SKIP_WITHOUT_MODERN(tools); }

    void constructsKeepTheirMeaning_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QByteArray>("result");
        QTest::addColumn<bool>("isRefused");

        addRows(u"style-sheets.txt"_s, u"a.css"_s, 60);
        addRows(u"scripts.txt"_s, u"a.js"_s, 40);
        addRows(u"pages.html.txt"_s, u"a.html"_s, 30);
        addRows(u"pages.php.txt"_s, u"a.php"_s, 15);
        addRows(u"drawings.txt"_s, u"a.svg"_s, 40);
    }

    void constructsKeepTheirMeaning()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, source);
        QFETCH(const QByteArray, result);
        QFETCH(const bool, isRefused);
        const ModernResult minified = minify(name, source);
        if (isRefused) {
            QCOMPARE(minified.error.section(u" (and "_s, 0, 0).toUtf8(), result);
        } else {
            QCOMPARE(minified.error, QString());
            QCOMPARE(minified.output, result);
            QCOMPARE(minified.isSource, result.size() >= source.size());
        }
    }

private:
    /// Adds the cases of a table, which has at least so many: "=== NAME", the source, "---" or "--- refused",
    /// and the result or the first message.
    static void addRows(const QString &table, const QString &name, int least)
    {
        const QList<TableCase> cases = readCases(QStringLiteral(TEST_DATA "/") + table);
        QVERIFY2(cases.size() >= least, qPrintable(table));
        for (const TableCase &one : cases) {
            QTest::addRow("%s: %s", qPrintable(table), one.name.constData())
                << name << one.source << one.result << (one.mark == "refused");
        }
    }
};

BREVANT_TEST(tst_ModernSources, QCoreApplication)
#include "tst_ModernSources.moc"
