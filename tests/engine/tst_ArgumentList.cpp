// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ArgumentList.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_ArgumentList final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatIsThere()
    {
        QCOMPARE(ArgumentList({u"-f"_s, QString(), u"-f"_s}).values(),
                 QStringList({u"-f"_s, QString(), u"-f"_s}));
    }

    void endsAtTheFirstAbsentValue()
    {
        ArgumentList list{u"a"_s, std::nullopt, u"b"_s};
        list.add(u"c"_s);
        QCOMPARE(list.values(), QStringList({u"a"_s}));
    }
};

BREVANT_TEST(tst_ArgumentList, brevant::test::NoApplication)
#include "tst_ArgumentList.moc"
