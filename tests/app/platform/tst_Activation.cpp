// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"

#include <QGuiApplication>
#include <QTest>
#include <QWindow>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_Activation final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fromEnvironment_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<QByteArray>("id");
        QTest::addColumn<QStringList>("keys");
        const QString token = u"activation-token"_s;
        const QString id = u"desktop-startup-id"_s;
        QTest::newRow("none") << QByteArray() << QByteArray() << QStringList();
        QTest::newRow("Wayland") << QByteArray("t") << QByteArray() << QStringList(token);
        QTest::newRow("X11") << QByteArray() << QByteArray("i_TIME1") << QStringList(id);
        QTest::newRow("both") << QByteArray("t") << QByteArray("i") << QStringList({token, id});
    }

    void fromEnvironment()
    {
        QFETCH(const QByteArray, token);
        QFETCH(const QByteArray, id);
        QFETCH(const QStringList, keys);
        qputenv("XDG_ACTIVATION_TOKEN", token);
        qputenv("DESKTOP_STARTUP_ID", id);
        const QVariantMap data = activationFromEnvironment();
        QCOMPARE(data.keys(), keys);
        QCOMPARE(data.value(u"activation-token"_s).toString(), QString::fromUtf8(token));
        QCOMPARE(data.value(u"desktop-startup-id"_s).toString(), QString::fromUtf8(id));
    }

    void otherDisplaysAreLeftAlone()
    {
        QWindow window;
        window.show();
        qunsetenv("XDG_ACTIVATION_TOKEN");
        activate(window, {{u"activation-token"_s, u"t"_s}, {u"desktop-startup-id"_s, u"i_TIME1"_s}});
        activate(window, {{u"activation-token"_s, 7}, {u"desktop-startup-id"_s, 7}});
        QVERIFY(window.isVisible());
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    }
};

BREVANT_TEST(tst_Activation, QGuiApplication)
#include "tst_Activation.moc"
