// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Encodings.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;

class tst_Encodings final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void table();
    void names_data();
    void names();
};

void tst_Encodings::table()
{
    const QStringList expected{
        QStringLiteral("utf-8|Unicode (utf-8)|selected"),
        QStringLiteral("gb2312|Chinese (gb2312)|selected"),
        QStringLiteral("gbk|Chinese (gbk)|selected"),
        QStringLiteral("gb18030|Chinese (gb18030)|selected"),
        QStringLiteral("big5|Chinese (big5)|selected"),
        QStringLiteral("big5-hkscs|Chinese (big5-hkscs)|selected"),
        QStringLiteral("shift-jis|Japanese (shift-jis)|selected"),
        QStringLiteral("iso-2022-jp|Japanese (iso-2022-jp)|selected"),
        QStringLiteral("iso-2022-kr|Korean (iso-2022-kr)|selected"),
        QStringLiteral("iso-8859-1|not selected"),
        QStringLiteral("iso-8859-15|not selected"),
    };
    QStringList actual;
    for (const Encoding &encoding : allEncodings) {
        actual << (encoding.selectedAtLoad
                       ? QStringLiteral("%1|%2|selected").arg(encoding.name, encoding.title)
                       : QStringLiteral("%1|not selected").arg(encoding.name));
    }
    QCOMPARE(actual, expected);
}

void tst_Encodings::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    for (const Encoding &encoding : allEncodings)
        QTest::addRow("%s", encoding.name.data()) << QString(encoding.name) << true;
    QTest::newRow("upper case") << QStringLiteral("UTF-8") << false;
    QTest::newRow("no dash") << QStringLiteral("utf8") << false;
    QTest::newRow("a beginning") << QStringLiteral("iso-8859") << false;
    QTest::newRow("longer") << QStringLiteral("iso-8859-150") << false;
    QTest::newRow("blank at the end") << QStringLiteral("gbk ") << false;
    QTest::newRow("empty") << QString() << false;
}

void tst_Encodings::names()
{
    QFETCH(QString, name);
    QFETCH(bool, expected);
    QCOMPARE(isEncodingName(name), expected);
}

BREVANT_TEST(tst_Encodings, QCoreApplication)
#include "tst_Encodings.moc"
