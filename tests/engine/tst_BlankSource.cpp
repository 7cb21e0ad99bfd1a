// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryResult.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

class tst_BlankSource final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sources_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("blank");
        const auto row = [](const char *extension, const QByteArray &text, bool blank) {
            QTest::addRow("%s: %s", extension, text.left(20).constData())
                << u"a."_s + QLatin1StringView(extension) << text << blank;
        };
        for (const char *extension : {"css", "html", "phtml", "PHP"}) {
            row(extension, "", true);
            row(extension, " \t\r\n\f", true);
            row(extension, " a ", false);
            row(extension, "\xef\xbb\xbf", false); // the compressors keep it
        }
        for (const char *text :
             {"/**/", "/* a */", "/***/ /* * / */\n/*a*b*/", "/* never closed", "/*<!-- a */"})
            row("css", text, true);
        for (const char *text : {"/", "/ * a */", "/* a */ b", "/* a */ b /* c */", "/* a *//", "<!-- a -->"})
            row("css", text, false);
        row("css", "/*" + QByteArray(100'000, '*') + "*/", true);
        for (const char *text :
             {"<!---->", "<!-- a -->\n<!-- b--><!--c -->", "<!-- a -- > -->", "<!--a --->"})
            row("html", text, true);
        for (const char *text : {"<!-- a --><p>", "<!- a ->", "<p>", "<!--[if IE]>a<![endif]-->",
                                 "<!-- a --><!--[if IE]>a<![endif]-->", "/* a */"})
            row("html", text, false);
        row("js", "", false);
        row("js", "/* a */", false);
        row("txt", "", false);
    }

    void sources()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        const QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(name), text));
        QTEST(isBlankSource(folder.filePath(name)), "blank");
    }

    void whatIsNoFile()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"a.css"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"b.css"_s)).constData(), 0600), 0);
        for (const QString &name : {u"a.css"_s, u"b.css"_s, u"missing.css"_s})
            QVERIFY(!isBlankSource(folder.filePath(name)));
    }
};

BREVANT_TEST(tst_BlankSource, brevant::test::NoApplication)
#include "tst_BlankSource.moc"
