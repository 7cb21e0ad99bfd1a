// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"

#include <QSysInfo>
#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_FeedbackMail final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void escapesWhatNoAddressMayHold()
    {
        // Every ASCII character, against the list of those that stay.
        const QByteArray stay =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.!~*'();/?:@&=+$,";
        QByteArray wrong;
        for (char character = 1; character > 0 && character < 127; ++character) {
            const QByteArray text(1, character);
            const QByteArray expected = stay.contains(character) ? text : '%' + text.toHex().toUpper();
            if (percentEscaped(QString::fromLatin1(text)) != expected)
                wrong += text;
        }
        QCOMPARE(wrong, QByteArray());
        QCOMPARE(percentEscaped(u"\u007f"_s), QByteArray("%7F"));
    }

    void escapesBytesOfUtf8_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("escaped");
        QTest::newRow("nothing") << QString() << QByteArray();
        QTest::newRow("blanks") << u"a b  c"_s << QByteArray("a%20b%20%20c");
        QTest::newRow("umlaut") << u"\u00fc"_s << QByteArray("%C3%BC");
        QTest::newRow("three bytes") << u"\u20ac"_s << QByteArray("%E2%82%AC");
        QTest::newRow("four bytes") << u"\U0001f600"_s << QByteArray("%F0%9F%98%80");
        QTest::newRow("escaped already") << u"%20"_s << QByteArray("%2520");
        QTest::newRow("line end") << u"a\nb"_s << QByteArray("a%0Ab");
        QTest::newRow("null") << u"a"_s + QChar() << QByteArray("a%00");
    }

    void escapesBytesOfUtf8()
    {
        QFETCH(const QString, text);
        QFETCH(const QByteArray, escaped);
        QCOMPARE(percentEscaped(text), escaped);
    }

    void url_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("systemVersion");
        QTest::addColumn<QByteArray>("expected");
        const QString support = u"support@brevant.example"_s;
        QTest::newRow("plain") << support << u"1.0"_s << u"12"_s
                               << QByteArray("mailto:support@brevant.example?"
                                             "SUBJECT=Brevant%201.0%20feedback,%20OS%20X%2012&");
        QTest::newRow("commas and parentheses stay")
            << support << u"1.0"_s << u"Linux 12 (book, worm)"_s
            << QByteArray("mailto:support@brevant.example?"
                          "SUBJECT=Brevant%201.0%20feedback,%20OS%20X%20Linux%2012%20(book,%20worm)&");
        QTest::newRow("every other character")
            << support << u"1&2=3+4/5?6:7;8$9"_s << u"~a'b*c!d_e-f@g"_s
            << QByteArray("mailto:support@brevant.example?"
                          "SUBJECT=Brevant%201&2=3+4/5?6:7;8$9%20feedback,%20OS%20X%20~a'b*c!d_e-f@g&");
        QTest::newRow("all that is escaped")
            << support << u"\"<>#%{}|\\^[]`"_s << u"\u00fc"_s
            << QByteArray("mailto:support@brevant.example?SUBJECT=Brevant%20"
                          "%22%3C%3E%23%25%7B%7D%7C%5C%5E%5B%5D%60%20feedback,%20OS%20X%20%C3%BC&");
        QTest::newRow("place markers in the version")
            << support << u"%2"_s << u"%1"_s
            << QByteArray(
                   "mailto:support@brevant.example?SUBJECT=Brevant%20%252%20feedback,%20OS%20X%20%251&");
        QTest::newRow("address") << u"Brevant <h\u00fctte a@b.example>"_s << QString() << QString()
                                 << QByteArray("mailto:Brevant%20%3Ch%C3%BCtte%20a@b.example%3E?"
                                               "SUBJECT=Brevant%20%20feedback,%20OS%20X%20&");
    }

    void url()
    {
        QFETCH(const QString, address);
        QFETCH(const QString, version);
        QFETCH(const QString, systemVersion);
        QFETCH(const QByteArray, expected);
        const QUrl url = feedbackMailUrl(address, version, systemVersion);
        QVERIFY2(url.isValid(), qPrintable(url.errorString()));
        QCOMPARE(url.toEncoded(), expected);
    }

    void reachesTheOpenerUnchanged_data() { url_data(); }

    void reachesTheOpenerUnchanged()
    {
        QFETCH(const QString, address);
        QFETCH(const QString, version);
        QFETCH(const QString, systemVersion);
        QFETCH(const QByteArray, expected);
        QUrl opened;
        const Workspace workspace(QDBusConnection(u"none"_s), [&opened](const QUrl &url) {
            opened = url;
            return true;
        });
        QVERIFY(workspace.openUrl(feedbackMailUrl(address, version, systemVersion)));
        QCOMPARE(opened.toEncoded(), expected);
        QCOMPARE(opened.toString(QUrl::FullyEncoded).toLatin1(), expected);
        QCOMPARE(opened.scheme(), u"mailto"_s);
    }

    void systemVersionNamesTheSystem()
    {
        const QString text = operatingSystemVersionString();
        QVERIFY2(text.contains(QSysInfo::prettyProductName()), qPrintable(text));
        QVERIFY2(text.contains(QSysInfo::kernelVersion()), qPrintable(text));
        QVERIFY2(!text.contains(QLatin1Char('\n')), qPrintable(text));
    }
};

BREVANT_TEST(tst_FeedbackMail, QCoreApplication)
#include "tst_FeedbackMail.moc"
