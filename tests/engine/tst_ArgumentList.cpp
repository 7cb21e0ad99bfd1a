// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ArgumentList.h"
#include "tests/TestClass.h"

#include <QTest>

using namespace brevant;

class tst_ArgumentList final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatIsThere()
    {
        QCOMPARE(ArgumentList({QStringLiteral("-f"), QString(), QStringLiteral("-f")}).values(),
                 QStringList({QStringLiteral("-f"), QString(), QStringLiteral("-f")}));
    }

    void endsAtTheFirstAbsentValue()
    {
        ArgumentList list{QStringLiteral("a"), std::nullopt, QStringLiteral("b")};
        list.add(QStringLiteral("c"));
        QCOMPARE(list.values(), QStringList({QStringLiteral("a")}));
    }
};

BREVANT_TEST(tst_ArgumentList, brevant::test::NoApplication)
#include "tst_ArgumentList.moc"
