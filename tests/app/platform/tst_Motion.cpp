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
using namespace Qt::StringLiterals;
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
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Requested setting not found"_s);
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
        const QString gnome = u"org.gnome.desktop.interface/enable-animations"_s;
        const QString kde = u"org.kde.kdeglobals.KDE/AnimationDurationFactor"_s;
        QTest::newRow("GNOME off") << gnome << QVariant(false) << true;
        QTest::newRow("GNOME on") << gnome << QVariant(true) << false;
        QTest::newRow("KDE instant") << kde << QVariant(u"0"_s) << true;
        QTest::newRow("KDE slow") << kde << QVariant(u"1.5"_s) << false;
        QTest::newRow("KDE nonsense") << kde << QVariant(u"fast"_s) << false;
        QTest::newRow("nothing set") << u"-"_s << QVariant(0) << false;
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
        auto served = QDBusConnection::connectToBus(bus.address(), u"portal"_s);
        QVERIFY(served.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                      QDBusConnection::ExportAllSlots));
        QVERIFY(served.registerService(u"org.freedesktop.portal.Desktop"_s));
        QTEST(isMotionReduced(QDBusConnection::connectToBus(bus.address(), u"asker"_s)), "reduced");
        thread.quit();
        thread.wait();
        QDBusConnection::disconnectFromBus(u"asker"_s);
        QDBusConnection::disconnectFromBus(u"portal"_s);
    }

    void withoutAPortalThereIsNoWish()
    {
        const PrivateBus bus;
        QVERIFY(!isMotionReduced(QDBusConnection::connectToBus(bus.address(), u"asker"_s)));
        QDBusConnection::disconnectFromBus(u"asker"_s);
        QVERIFY(!isMotionReduced(QDBusConnection(u"no bus"_s)));
    }
};

BREVANT_TEST(tst_Motion, QCoreApplication)
#include "tst_Motion.moc"
