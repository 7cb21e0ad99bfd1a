// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QHash>
#include <QTest>
#include <QThread>

using namespace brevant;
using brevant::test::PrivateBus;

/// What the desktop portal tells of the settings.
class Portal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    QHash<QString, QVariant> values;

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        const QVariant value = values.value(group + u'/' + key);
        if (!value.isValid())
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                           QStringLiteral("Requested setting not found"));
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }
};

class tst_Motion final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isAskedOfThePortal_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("reduced");
        const QString gnome = QStringLiteral("org.gnome.desktop.interface/enable-animations");
        const QString kde = QStringLiteral("org.kde.kdeglobals.KDE/AnimationDurationFactor");
        QTest::newRow("GNOME off") << gnome << QVariant(false) << true;
        QTest::newRow("GNOME on") << gnome << QVariant(true) << false;
        QTest::newRow("KDE instant") << kde << QVariant(QStringLiteral("0")) << true;
        QTest::newRow("KDE slow") << kde << QVariant(QStringLiteral("1.5")) << false;
        QTest::newRow("KDE nonsense") << kde << QVariant(QStringLiteral("fast")) << false;
        QTest::newRow("nothing set") << QStringLiteral("-") << QVariant(0) << false;
    }

    void isAskedOfThePortal()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        const PrivateBus bus;
        // The question is not let go before it is answered, so the portal lives on a thread of its own.
        Portal portal;
        portal.values.insert(key, value);
        QThread thread;
        portal.moveToThread(&thread);
        thread.start();
        auto served = QDBusConnection::connectToBus(bus.address(), QStringLiteral("portal"));
        QVERIFY(served.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                      QDBusConnection::ExportAllSlots));
        QVERIFY(served.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
        QTEST(isMotionReduced(QDBusConnection::connectToBus(bus.address(), QStringLiteral("asker"))),
              "reduced");
        thread.quit();
        thread.wait();
        QDBusConnection::disconnectFromBus(QStringLiteral("asker"));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

    void withoutAPortalThereIsNoWish()
    {
        const PrivateBus bus;
        QVERIFY(!isMotionReduced(QDBusConnection::connectToBus(bus.address(), QStringLiteral("asker"))));
        QDBusConnection::disconnectFromBus(QStringLiteral("asker"));
        QVERIFY(!isMotionReduced(QDBusConnection(QStringLiteral("no bus"))));
    }
};

BREVANT_TEST(tst_Motion, QCoreApplication)
#include "tst_Motion.moc"
