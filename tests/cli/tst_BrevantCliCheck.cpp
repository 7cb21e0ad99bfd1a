// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/Files.h"
#include "tests/TestClass.h"
#include "tests/cli/CliRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevant::test;

/// brevant-cli --check, with the real compressors.
class tst_BrevantCliCheck final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(missingCompressors(), QString()); }

    void damageIsWarnedOf()
    {
        const Sandbox sandbox;
        addDamaged(sandbox);
        const Ended checked = sandbox.run({u"--check"_s, u"a.css"_s, u"b.html"_s, u"c.js"_s, u"d.css"_s});
        QCOMPARE(checked.status, 1);
        const QByteArray folder = sandbox.path().toUtf8();
        QCOMPARE(checked.err, "Warning: " + folder +
                                  "/a.css: line 2: declaration changed in @media print, .a: "
                                  "width: calc(1px + 2px) -> calc(1px+2px)\n"
                                  "Warning: " +
                                  folder +
                                  "/b.html: line 1: links glued together: a b -> ab\n"
                                  "Note: " +
                                  folder + "/c.js: line 1: \"use strict\" lost: 'use strict'\n");
        const Ended quiet = sandbox.run({u"--check"_s, u"--quiet"_s, u"a.css"_s, u"c.js"_s});
        QCOMPARE(quiet.status, 1);
        QCOMPARE(quiet.err, "Warning: " + folder +
                                "/a.css: line 2: declaration changed in @media print, .a: "
                                "width: calc(1px + 2px) -> calc(1px+2px)\n");
    }

    void notesAndSoundFilesAreNoReasonToFail()
    {
        const Sandbox sandbox;
        addDamaged(sandbox);
        QCOMPARE(sandbox.run({u"--check"_s, u"c.js"_s, u"d.css"_s}).status, 0);
        QCOMPARE(sandbox.run({u"--check"_s, u"--quiet"_s, u"c.js"_s, u"d.css"_s}).err, QByteArray());
        // Not asked for, nothing is said.
        const Ended unchecked = sandbox.run({u"a.css"_s, u"b.html"_s});
        QCOMPARE(unchecked.status, 0);
        QCOMPARE(unchecked.err, QByteArray());
    }

    void replacedSources()
    {
        const Sandbox sandbox;
        addDamaged(sandbox);
        const Ended ended = sandbox.run({u"--check"_s, u"--jobs"_s, u"2"_s, u"--set"_s,
                                         u"suffixSwitcherKeyString=false"_s, u"a.css"_s, u"d.css"_s});
        QCOMPARE(ended.status, 1);
        QVERIFY2(ended.err.contains("/a.css: line 2: declaration changed"), ended.err.constData());
        QCOMPARE(ended.err.count('\n'), 1);
        QCOMPARE(sandbox.read(u"a.css"_s), QByteArray("@media print{.a{width:calc(1px+2px)}}"));
    }

    void theReportHoldsTheWarnings()
    {
        const Sandbox sandbox;
        addDamaged(sandbox);
        sandbox.add(u"e.js"_s, "var = ;");
        sandbox.add(u"f.css"_s, ".a { content: \"\xff\" }");
        QCOMPARE(sandbox
                     .run({u"--check"_s, u"--report"_s, u"r.json"_s, u"a.css"_s, u"c.js"_s, u"d.css"_s,
                           u"e.js"_s, u"f.css"_s})
                     .status,
                 1);
        const QJsonArray files = filesOf(sandbox);
        const QJsonObject warning{{u"kind"_s, u"warning"_s},
                                  {u"text"_s, u"declaration changed"_s},
                                  {u"line"_s, 2},
                                  {u"within"_s, QJsonArray{u"@media print"_s}},
                                  {u"selector"_s, u".a"_s},
                                  {u"property"_s, u"width"_s},
                                  {u"before"_s, u"calc(1px + 2px)"_s},
                                  {u"after"_s, u"calc(1px+2px)"_s}};
        QCOMPARE(files[0][u"warnings"_s], QJsonValue(QJsonArray{warning}));
        QCOMPARE(files[0][u"outcome"_s], QJsonValue(u"done"_s));
        QCOMPARE(files[1][u"warnings"_s][0][u"kind"_s], QJsonValue(u"note"_s));
        QCOMPARE(files[2][u"warnings"_s], QJsonValue(QJsonArray()));
        QVERIFY(files[3][u"warnings"_s].isUndefined()); // it failed
        QVERIFY(files[4][u"warnings"_s].isUndefined());
        QCOMPARE(files[4][u"notChecked"_s], QJsonValue(u"the source is not valid UTF-8"_s));

        QCOMPARE(sandbox.run({u"--report"_s, u"r.json"_s, u"a.css"_s}).status, 0);
        QVERIFY(filesOf(sandbox)[0][u"warnings"_s].isUndefined());
    }

    /// What modern compressors make is not looked through.
    void modernResults()
    {
        const Sandbox sandbox;
        sandbox.add(u"d.css"_s, ".a{color:gold}");
        const Ended ended = sandbox.run({u"--check"_s, u"--report"_s, u"r.json"_s, u"--set"_s,
                                         u"compressorsKeyString=modern"_s, u"d.css"_s});
        if (ended.status == 3)
            QSKIP("The modern compressors are missing.");
        QCOMPARE(ended.status, 0);
        QCOMPARE(ended.err, QByteArray());
        QVERIFY(filesOf(sandbox)[0][u"warnings"_s].isUndefined());
    }

private:
    static void addDamaged(const Sandbox &sandbox)
    {
        sandbox.add(u"a.css"_s, "@media print {\n  .a { width: calc(1px + 2px) }\n}\n");
        sandbox.add(u"b.html"_s, "<p><a>a</a> <a>b</a>\n<p>  c");
        sandbox.add(u"c.js"_s, "(function () { 'use strict'; a(); })();");
        sandbox.add(u"d.css"_s, ".a { color : gold }");
    }

    static QJsonArray filesOf(const Sandbox &sandbox)
    {
        return QJsonDocument::fromJson(sandbox.read(u"r.json"_s))[u"files"_s].toArray();
    }
};

BREVANT_TEST(tst_BrevantCliCheck, QCoreApplication)
#include "tst_BrevantCliCheck.moc"
