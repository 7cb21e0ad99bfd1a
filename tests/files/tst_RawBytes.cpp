// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/RawBytes.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_RawBytes final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thereAndBack_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("escaped"); // as it is if valid

        QTest::newRow("empty") << QByteArray("") << QString();
        QTest::newRow("valid") << "é日本😀.css"_ba << u"é日本😀.css"_s;
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF\xEF\xBB\xBF"_ba << u"\ufeff\ufeff"_s;
        QTest::newRow("Latin-1") << "/w/caf\xE9.css"_ba << u"/w/caf\\xE9.css"_s;
        QTest::newRow("at the end") << "a\xFF"_ba << u"a\\xFF"_s;
        QTest::newRow("cut off") << "\xE6\x97"_ba << u"\\xE6\\x97"_s;
        QTest::newRow("surrogate") << "\xED\xB2\x80"_ba << u"\\xED\\xB2\\x80"_s;
        QTest::newRow("too long a form") << "\xC0\xAF"_ba << u"\\xC0\\xAF"_s;
        QTest::newRow("behind an astral one") << "😀\x80é"_ba << u"😀\\x80é"_s;
    }

    void thereAndBack()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, escaped);
        const QString text = RawBytes::decoded(name);
        QCOMPARE(RawBytes::encoded(text), name);
        QCOMPARE(RawBytes::escaped(text), escaped);
        QCOMPARE(RawBytes::areIn(text), escaped.toUtf8() != name);
    }

    void namesOfAllBytes()
    {
        QByteArray all;
        for (int first = 1; first < 256; ++first) {
            for (int second = 1; second < 256; ++second)
                all += QByteArray(1, static_cast<char>(first)) + static_cast<char>(second) + 'a';
        }
        QCOMPARE(RawBytes::encoded(RawBytes::decoded(all)), all);
    }
};

BREVANT_TEST(tst_RawBytes, QCoreApplication)
#include "tst_RawBytes.moc"
