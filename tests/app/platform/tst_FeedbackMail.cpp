// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"

#include <QSysInfo>
#include <QTest>

using namespace brevant;

class tst_FeedbackMail final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void escapesWhatNoAddressMayHold();
    void escapesBytesOfUtf8_data();
    void escapesBytesOfUtf8();
    void url_data();
    void url();
    void reachesTheOpenerUnchanged_data();
    void reachesTheOpenerUnchanged();
    void systemVersionNamesTheSystem();
};

void tst_FeedbackMail::escapesWhatNoAddressMayHold()
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
    QCOMPARE(percentEscaped(QStringLiteral("\u007f")), QByteArray("%7F"));
}

void tst_FeedbackMail::escapesBytesOfUtf8_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("escaped");
    QTest::newRow("nothing") << QString() << QByteArray();
    QTest::newRow("blanks") << QStringLiteral("a b  c") << QByteArray("a%20b%20%20c");
    QTest::newRow("umlaut") << QStringLiteral("\u00fc") << QByteArray("%C3%BC");
    QTest::newRow("three bytes") << QStringLiteral("\u20ac") << QByteArray("%E2%82%AC");
    QTest::newRow("four bytes") << QStringLiteral("\U0001f600") << QByteArray("%F0%9F%98%80");
    QTest::newRow("escaped already") << QStringLiteral("%20") << QByteArray("%2520");
    QTest::newRow("line end") << QStringLiteral("a\nb") << QByteArray("a%0Ab");
    QTest::newRow("null") << QStringLiteral("a") + QChar() << QByteArray("a%00");
}

void tst_FeedbackMail::escapesBytesOfUtf8()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, escaped);
    QCOMPARE(percentEscaped(text), escaped);
}

void tst_FeedbackMail::url_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("systemVersion");
    QTest::addColumn<QByteArray>("expected");
    const QString support = QStringLiteral("support@brevant.example");
    QTest::newRow("plain") << support << QStringLiteral("1.0") << QStringLiteral("12")
                           << QByteArray("mailto:support@brevant.example?"
                                         "SUBJECT=Brevant%201.0%20feedback,%20OS%20X%2012&");
    QTest::newRow("commas and parentheses stay")
        << support << QStringLiteral("1.0") << QStringLiteral("Linux 12 (book, worm)")
        << QByteArray("mailto:support@brevant.example?"
                      "SUBJECT=Brevant%201.0%20feedback,%20OS%20X%20Linux%2012%20(book,%20worm)&");
    QTest::newRow("every other character")
        << support << QStringLiteral("1&2=3+4/5?6:7;8$9") << QStringLiteral("~a'b*c!d_e-f@g")
        << QByteArray("mailto:support@brevant.example?"
                      "SUBJECT=Brevant%201&2=3+4/5?6:7;8$9%20feedback,%20OS%20X%20~a'b*c!d_e-f@g&");
    QTest::newRow("all that is escaped")
        << support << QStringLiteral("\"<>#%{}|\\^[]`") << QStringLiteral("\u00fc")
        << QByteArray("mailto:support@brevant.example?SUBJECT=Brevant%20"
                      "%22%3C%3E%23%25%7B%7D%7C%5C%5E%5B%5D%60%20feedback,%20OS%20X%20%C3%BC&");
    QTest::newRow("place markers in the version")
        << support << QStringLiteral("%2") << QStringLiteral("%1")
        << QByteArray("mailto:support@brevant.example?SUBJECT=Brevant%20%252%20feedback,%20OS%20X%20%251&");
    QTest::newRow("address") << QStringLiteral("Brevant <h\u00fctte a@b.example>") << QString() << QString()
                             << QByteArray("mailto:Brevant%20%3Ch%C3%BCtte%20a@b.example%3E?"
                                           "SUBJECT=Brevant%20%20feedback,%20OS%20X%20&");
}

void tst_FeedbackMail::url()
{
    QFETCH(const QString, address);
    QFETCH(const QString, version);
    QFETCH(const QString, systemVersion);
    QFETCH(const QByteArray, expected);
    const QUrl url = feedbackMailUrl(address, version, systemVersion);
    QVERIFY2(url.isValid(), qPrintable(url.errorString()));
    QCOMPARE(url.toEncoded(), expected);
}

void tst_FeedbackMail::reachesTheOpenerUnchanged_data()
{
    url_data();
}

void tst_FeedbackMail::reachesTheOpenerUnchanged()
{
    QFETCH(const QString, address);
    QFETCH(const QString, version);
    QFETCH(const QString, systemVersion);
    QFETCH(const QByteArray, expected);
    QUrl opened;
    const Workspace workspace(QDBusConnection(QStringLiteral("none")), [&opened](const QUrl &url) {
        opened = url;
        return true;
    });
    QVERIFY(workspace.openUrl(feedbackMailUrl(address, version, systemVersion)));
    QCOMPARE(opened.toEncoded(), expected);
    QCOMPARE(opened.toString(QUrl::FullyEncoded).toLatin1(), expected);
    QCOMPARE(opened.scheme(), QStringLiteral("mailto"));
}

void tst_FeedbackMail::systemVersionNamesTheSystem()
{
    const QString text = operatingSystemVersionString();
    QVERIFY2(text.contains(QSysInfo::prettyProductName()), qPrintable(text));
    QVERIFY2(text.contains(QSysInfo::kernelVersion()), qPrintable(text));
    QVERIFY2(!text.contains(QLatin1Char('\n')), qPrintable(text));
}

BREVANT_TEST(tst_FeedbackMail, QCoreApplication)
#include "tst_FeedbackMail.moc"
