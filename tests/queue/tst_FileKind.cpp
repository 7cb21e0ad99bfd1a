// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "queue/FileKind.h"
#include "tests/TestClass.h"
#include "tests/queue/QueueSettings.h"

#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

class tst_FileKind final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// An extension belongs to one kind, as its path shows, and what accepts a kind is a switch.
    void rowsOfTheTable()
    {
        QVERIFY(!allFileKinds().empty());
        for (const FileKind &kind : allFileKinds()) {
            QCOMPARE(anyKindOf(u"/x/a."_s + kind.extension.toString()), &kind);
            QCOMPARE(kindOf(u"/x/a."_s + kind.extension.toString()), kind.isExtra ? nullptr : &kind);
            QCOMPARE(kind.extension.toString().toLower(), kind.extension.toString());
            QVERIFY(!kind.name.isEmpty());
            const SettingKey *const key = findSettingKey(QString(kind.switchKey));
            QVERIFY(kind.switchKey.isEmpty() || (key && key->type == SettingType::Boolean));
        }
    }

    void kinds_data()
    {
        QTest::addColumn<QString>("expected"); // the kind's extension, or empty for no kind
        const auto row = [](const char *path, const char *expected) {
            QTest::newRow(path) << QString::fromLatin1(expected);
        };
        row("/x/a.c\xc5\xbfs", ""); // letters beyond ASCII have no case here: this is the long s
        row("/x/a.j\xc5\xbf", "");
        row("/x/a.css", "css");
        row("/x/Style.CSS", "css");
        row("/x/a.js", "js");
        row("/x/script.JS", "js");
        row("/x/app.Js", "js");
        row("/x/page.html", "html");
        row("/x/page.HtMl", "html");
        row("/x/page.phtml", "phtml");
        row("/x/page.PHTML", "phtml");
        row("/x/page.php", "php");
        row("/x/page.Php", "php");
        row("/x/theme.css/", "css");
        row("a.css", "css");
        row("/x/a.min.css", "css");
        row("/x/.a.css", "css");
        for (const char *path : {"/x/page.htm",
                                 "/x/page.xhtml",
                                 "/x/page.inc",
                                 "/x/Makefile",
                                 "/x/notes.txt",
                                 "/x/.css",
                                 ".js",
                                 "/x/a.css.gz",
                                 "/x/a.js.min",
                                 "/x/a.jsx",
                                 "/x/a.mjs",
                                 "/x/a.scss",
                                 "/x/a.php5",
                                 "/x/a.css ",
                                 "/x/a.css\n",
                                 "/x/a.",
                                 "/x.css/a",
                                 "/",
                                 "",
                                 "css",
                                 "/x/css"})
            row(path, "");
    }

    void kinds()
    {
        const FileKind *const kind = kindOf(QString::fromUtf8(QTest::currentDataTag()));
        QTEST(kind ? kind->extension.toString() : QString(), "expected");
    }

    void acceptance_data()
    {
        QTest::addColumn<bool>("html");
        QTest::addColumn<bool>("php");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("neither") << false << false << QStringList{};
        QTest::newRow("html") << true << false << QStringList{u"/x/page.html"_s};
        QTest::newRow("php") << false << true << QStringList{u"/x/page.phtml"_s, u"/x/page.php"_s};
        QTest::newRow("both") << true << true
                              << QStringList{u"/x/page.html"_s, u"/x/page.phtml"_s, u"/x/page.php"_s};
    }

    void acceptance()
    {
        QFETCH(bool, html);
        QFETCH(bool, php);
        QFETCH(QStringList, expected);
        const QueueSettings settings{{enableHTMLCheckerKeyString, html}, {enablePHPCheckerKeyString, php}};
        QStringList accepted;
        for (const char *path : {"/x/page.html", "/x/page.phtml", "/x/page.php", "/x/page.htm", "/x/Makefile",
                                 "/x/.css", "/x/page.xhtml", "/x/page.inc"}) {
            if (isAccepted(QString::fromLatin1(path), settings.store()))
                accepted << QString::fromLatin1(path);
        }
        QCOMPARE(accepted, expected);
        for (const char *path :
             {"/x/Style.CSS", "/x/script.JS", "/x/theme.css", "relative.css", "/no/such/file.js"})
            QVERIFY2(isAccepted(QString::fromLatin1(path), settings.store()), path);
    }

    /// No setting accepts them, only those who ask for them, and the filter holds for them too.
    void extraKinds()
    {
        QueueSettings settings{{enableHTMLCheckerKeyString, true}, {enablePHPCheckerKeyString, true}};
        QStringList extra;
        for (const FileKind &kind : allFileKinds()) {
            if (kind.isExtra)
                extra.append(kind.extension.toString());
            QCOMPARE(isAccepted(u"/x/a."_s + kind.extension.toString(), settings.store()), !kind.isExtra);
        }
        QCOMPARE(extra, QStringList({u"mjs"_s, u"cjs"_s, u"htm"_s, u"svg"_s}));
        for (const QString &extension : std::as_const(extra)) {
            QVERIFY(isAccepted(u"/x/a."_s + extension.toUpper(), settings.store(), {u"x"_s, extension}));
            QVERIFY(!isAccepted(u"/x/a."_s + extension, settings.store(), {u"x"_s}));
        }
        settings.set(filterCheckerKeyString, true);
        QVERIFY(!isAccepted(u"/x/a.min.mjs", settings.store(), extra));
        settings.set(enableHTMLCheckerKeyString, false);
        QVERIFY(!isAccepted(u"/x/a.html", settings.store(), {u"html"_s}));
    }

    void minifiedNames_data()
    {
        QTest::addColumn<bool>("acceptedByTheFilter");
        for (const char *path : {"/x/lib.min.js", "/x/lib.min.css", "/x/lib.min.html", "/x/lib.min.JS",
                                 "/x/.min.js", "/x/a.min.min.css", "/x/lib.min.css/", "lib.min.js"})
            QTest::newRow(path) << false;
        for (const char *path :
             {"/x/lib.MIN.js", "/x/lib.Min.css", "/x/jquery.min.1.js", "/x/libmin.js", "/x/min.js",
              "/x/lib-min.js", "/x/lib.min/a.js", "/x/lib.mini.js", "/x/lib.min .js"})
            QTest::newRow(path) << true;
    }

    void minifiedNames()
    {
        QFETCH(bool, acceptedByTheFilter);
        const QString path = QString::fromLatin1(QTest::currentDataTag());
        for (const char *suffix : {".min", "-min", ""}) { // which has no say in it
            QueueSettings settings{{suffixKeyString, QString::fromLatin1(suffix)},
                                   {filterCheckerKeyString, true}};
            QCOMPARE(isAccepted(path, settings.store()), acceptedByTheFilter);
            settings.set(filterCheckerKeyString, false);
            QVERIFY(isAccepted(path, settings.store()));
        }
    }

    void switchesAreFlags_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<bool>("on");
        QTest::newRow("true") << QJsonValue(true) << true;
        QTest::newRow("false") << QJsonValue(false) << false;
        QTest::newRow("1") << QJsonValue(1) << true;
        QTest::newRow("0") << QJsonValue(0) << false;
        QTest::newRow("text") << QJsonValue(u"YES"_s) << true;
        QTest::newRow("other text") << QJsonValue(u"no"_s) << false;
    }

    void switchesAreFlags()
    {
        QFETCH(QJsonValue, value);
        QFETCH(bool, on);
        const QueueSettings settings{{enableHTMLCheckerKeyString, value},
                                     {enablePHPCheckerKeyString, value},
                                     {filterCheckerKeyString, value}};
        QCOMPARE(isAccepted(u"/x/a.html", settings.store()), on);
        QCOMPARE(isAccepted(u"/x/a.phtml", settings.store()), on);
        QCOMPARE(isAccepted(u"/x/a.php", settings.store()), on);
        QCOMPARE(isAccepted(u"/x/a.min.js", settings.store()), !on);
    }

    void settingsAreReadEachTime()
    {
        QueueSettings settings;
        QVERIFY(!isAccepted(u"/x/a.php", settings.store()));
        settings.set(enablePHPCheckerKeyString, true);
        QVERIFY(isAccepted(u"/x/a.php", settings.store()));
        settings.set(enablePHPCheckerKeyString, false);
        QVERIFY(!isAccepted(u"/x/a.php", settings.store()));
    }

    void settingsOfOneMoment()
    {
        QueueSettings settings{{filterCheckerKeyString, true}};
        const QStringList also{u"svg"_s};
        const AcceptedKinds kinds(settings.store(), also);
        for (const QString &path : {u"/x/a.css"_s, u"/x/a.PHP"_s, u"/x/a.min.js"_s, u"/x/a.svg"_s,
                                    u"/x/a.mjs"_s, u"/x/a.html"_s, u"/x/a"_s, u"/x/a.txt"_s})
            QCOMPARE(kinds.accept(path), isAccepted(path, settings.store(), also));
        settings.set(enablePHPCheckerKeyString, true);
        settings.set(filterCheckerKeyString, false);
        QVERIFY(!kinds.accept(u"/x/a.php"));
        QVERIFY(!kinds.accept(u"/x/a.min.js"));
    }
};

BREVANT_TEST(tst_FileKind, QCoreApplication)
#include "tst_FileKind.moc"
