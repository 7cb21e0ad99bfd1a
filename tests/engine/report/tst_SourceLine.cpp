// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/SourceLine.h"

#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The line of a source that a message is about.
class tst_SourceLine final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("before"); // null for no line
        QTest::addColumn<QString>("after");
        QTest::newRow("a place") << "a\nvar x = ;\nb"_ba << 2 << 9 << u"var x = "_s << u";"_s;
        QTest::newRow("CR and LF") << "a\r\nb c\r\n"_ba << 2 << 3 << u"b "_s << u"c"_s;
        QTest::newRow("no column") << "a\nb c"_ba << 2 << 0 << u""_s << u"b c"_s;
        QTest::newRow("column behind the end") << "ab"_ba << 1 << 9 << u"ab"_s << u""_s;
        QTest::newRow("a tab is one column") << "\tx\ty"_ba << 1 << 4 << u" x "_s << u"y"_s;
        QTest::newRow("control characters") << "a\x1b[2Jb"_ba << 1 << 6 << u"a\\x1b[2J"_s << u"b"_s;
        QTest::newRow("a blank line") << "a\n  \nb"_ba << 2 << 1 << QString() << QString();
        QTest::newRow("no such line") << "a"_ba << 2 << 1 << QString() << QString();
        QTest::newRow("no line") << "a"_ba << 0 << 0 << QString() << QString();
        QTest::newRow("not UTF-8") << "a\xFFz"_ba << 1 << 3 << u"a\uFFFD"_s << u"z"_s;
        QTest::newRow("long") << QByteArray(1000, 'x') + '!' + QByteArray(1000, 'y') << 1 << 1001
                              << u"…"_s + QString(60, u'x') << u'!' + QString(35, u'y') + u"…"_s;
    }

    void lines()
    {
        QFETCH(const QByteArray, source);
        QFETCH(const int, line);
        QFETCH(const int, column);
        QFETCH(const QString, before);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"a.js"_s);
        QVERIFY(writeFile(path, source));
        const auto found = sourceLineAt(path, line, column, TextEncoding::Utf8);
        QCOMPARE(found.has_value(), !before.isNull());
        if (!found)
            return;
        QCOMPARE(found->before, before);
        QTEST(found->after, "after");
    }

    void otherCharacterSets()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"a.js"_s);
        QVERIFY(writeFile(path, "\x82\xA0=;"));
        const auto found = sourceLineAt(path, 1, 3, TextEncoding::ShiftJis);
        QVERIFY(found);
        QCOMPARE(found->text(), u"あ=;"_s);
    }

    void whatCannotBeRead()
    {
        const QTemporaryDir folder;
        const QString fifo = folder.filePath(u"fifo.js"_s);
        QCOMPARE(::mkfifo(qPrintable(fifo), 0600), 0);
        QVERIFY(!sourceLineAt(fifo, 1, 1, TextEncoding::Utf8));
        QVERIFY(!sourceLineAt(folder.filePath(u"none.js"_s), 1, 1, TextEncoding::Utf8));
    }
};

BREVANT_TEST(tst_SourceLine, QCoreApplication)
#include "tst_SourceLine.moc"
