// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/Encodings.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_Encodings final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void table()
    {
        const QStringList expected{
            u"utf-8|Unicode (utf-8)|selected"_s,
            u"gb2312|Chinese (gb2312)|selected"_s,
            u"gbk|Chinese (gbk)|selected"_s,
            u"gb18030|Chinese (gb18030)|selected"_s,
            u"big5|Chinese (big5)|selected"_s,
            u"big5-hkscs|Chinese (big5-hkscs)|selected"_s,
            u"shift-jis|Japanese (shift-jis)|selected"_s,
            u"iso-2022-jp|Japanese (iso-2022-jp)|selected"_s,
            u"iso-2022-kr|Korean (iso-2022-kr)|selected"_s,
            u"iso-8859-1|not selected"_s,
            u"iso-8859-15|not selected"_s,
        };
        QStringList actual;
        for (const Encoding &encoding : allEncodings) {
            actual << (encoding.selectedAtLoad ? u"%1|%2|selected"_s.arg(encoding.name, encoding.title)
                                               : u"%1|not selected"_s.arg(encoding.name));
        }
        QCOMPARE(actual, expected);
    }

    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("expected");
        for (const Encoding &encoding : allEncodings)
            QTest::addRow("%s", encoding.name.data()) << QString(encoding.name) << true;
        QTest::newRow("upper case") << u"UTF-8"_s << false;
        QTest::newRow("no dash") << u"utf8"_s << false;
        QTest::newRow("a beginning") << u"iso-8859"_s << false;
        QTest::newRow("longer") << u"iso-8859-150"_s << false;
        QTest::newRow("blank at the end") << u"gbk "_s << false;
        QTest::newRow("empty") << QString() << false;
    }

    void names()
    {
        QFETCH(QString, name);
        QFETCH(bool, expected);
        QCOMPARE(isEncodingName(name), expected);
    }
};

BREVANT_TEST(tst_Encodings, QCoreApplication)
#include "tst_Encodings.moc"
