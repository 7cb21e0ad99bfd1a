// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Notification.h"
#include "tests/TestClass.h"
#include "tests/app/platform/NotificationService.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusPendingCall>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <functional>
#include <thread>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// The service is on a thread of its own here, as the going of the notification turns no event loop.
static QStringList askedUntilGone(const QString &address, const std::function<void(Notification &)> &use)
{
    QStringList asked;
    std::atomic<bool> ready = false;
    std::atomic<bool> gone = false;
    std::thread service([&] {
        const auto bus = QDBusConnection::connectToBus(address, u"elsewhere"_s);
        NotificationService served(bus);
        ready = true;
        QEventLoop loop;
        while (!gone)
            loop.processEvents(QEventLoop::AllEvents);
        asked = served.asked;
    });
    while (!ready)
        std::this_thread::yield();
    {
        Notification notification(QDBusConnection(u"own"_s));
        use(notification);
    }
    gone = true;
    service.join();
    QDBusConnection::disconnectFromBus(u"elsewhere"_s);
    return asked;
}

class tst_Notification final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_bus = std::make_unique<PrivateBus>();
        QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
    }

    void init()
    {
        m_service = std::make_unique<NotificationService>(
            QDBusConnection::connectToBus(m_bus->address(), u"service"_s));
        m_notification =
            std::make_unique<Notification>(QDBusConnection::connectToBus(m_bus->address(), u"own"_s));
    }

    void cleanup()
    {
        if (m_service)
            m_service->answerAll();
        m_notification.reset();
        m_service.reset();
        QDBusConnection::disconnectFromBus(u"own"_s);
        QDBusConnection::disconnectFromBus(u"service"_s);
    }

    void whatIsSent()
    {
        m_notification->show(u"Minified 3 files"_s, u"~/site"_s);
        QTRY_COMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
        const NotificationService::Shown &shown = m_service->shown.constFirst();
        QCOMPARE(shown.message.signature(), u"susssasa{sv}i"_s);
        QCOMPARE(shown.message.arguments().at(0), QVariant(u"Brevant"_s));
        QCOMPARE(shown.message.arguments().at(2), QVariant(u"org.brevant.Brevant"_s));
        QCOMPARE(shown.message.arguments().at(7), QVariant(-1));
        QCOMPARE(shown.replaces, 0U);
        QCOMPARE(shown.summary, u"Minified 3 files"_s);
        QCOMPARE(shown.body, u"~/site"_s);
        QCOMPARE(shown.actions, QStringList({u"default"_s, u"Show Brevant"_s}));
        QCOMPARE(shown.hints, QVariantMap({{u"desktop-entry"_s, u"org.brevant.Brevant"_s}}));
    }

    void markup_data()
    {
        QTest::addColumn<bool>("understood");
        QTest::addColumn<QString>("body");
        QTest::newRow("understood") << true << u"~/a &lt;b&gt; &amp; c"_s;
        QTest::newRow("not understood") << false << u"~/a <b> & c"_s;
    }

    void markup()
    {
        QFETCH(const bool, understood);
        if (!understood)
            m_service->capabilities.removeAll(u"body-markup"_s);
        m_notification->show(u"a <b> & c"_s, u"~/a <b> & c"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        QCOMPARE(m_service->shown.constFirst().summary, u"a <b> & c"_s); // never has any
        QTEST(m_service->shown.constFirst().body, "body");
    }

    void theNextOneTakesThePlace()
    {
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_notification->show(u"second"_s);
        QTRY_COMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s, u"notify 1"_s}));
        QCOMPARE(m_service->shown.constLast().replaces, 1U);
        QCOMPARE(m_service->shown.constLast().summary, u"second"_s);
    }

    void oneThatTheUserClosedIsNotReplaced()
    {
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_service->closedByUser(1);
        settle();
        m_notification->withdraw();
        m_notification->show(u"second"_s);
        QTRY_COMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s, u"notify 2"_s}));
    }

    void itStaysIfItIsTo()
    {
        const QSignalSpy dismissed(m_notification.get(), &Notification::dismissed);
        m_notification->show(u"a"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_notification->stayUntilClosed();
        m_notification->show(u"b"_s);
        QTRY_COMPARE(m_service->shown.size(), 2);
        QCOMPARE(m_service->shown.constFirst().timeout, -1);
        QCOMPARE(m_service->shown.constLast().timeout, 0);
        settle();
        m_service->closedByUser(7); // another's
        Q_EMIT m_service->NotificationClosed(2, 1);
        settle();
        QCOMPARE(dismissed.size(), 0);
        m_service->closedByUser(1);
        QTRY_COMPARE(dismissed.size(), 1);
    }

    void isWithdrawn()
    {
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_notification->withdraw();
        m_notification->withdraw();
        m_notification->show(u"second"_s);
        QTRY_COMPARE(m_service->asked,
                     QStringList({u"capabilities"_s, u"notify 1"_s, u"close 1"_s, u"notify 2"_s}));
    }

    void nothingToWithdraw()
    {
        m_notification->withdraw();
        settle();
        QCOMPARE(m_service->asked, QStringList());
    }

    void nothingWaitsForTheService()
    {
        m_service->isMute = true;
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->asked, QStringList{u"capabilities"_s});
        m_service->answerAll();
        m_service->isMute = true;
        QTRY_COMPARE(m_service->shown.size(), 1);
        m_notification->show(u"second"_s);
        m_notification->withdraw();
        settle();
        QCOMPARE(m_service->asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
    }

    void theLastWordCounts()
    {
        m_service->isMute = true;
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->asked.size(), 1);
        m_notification->withdraw();
        m_notification->show(u"second"_s);
        m_service->answerAll();
        m_service->isMute = true;
        QTRY_COMPARE(m_service->shown.size(), 1);
        QCOMPARE(m_service->shown.constLast().summary, u"second"_s);
        m_notification->show(u"third"_s);
        m_notification->show(u"fourth"_s);
        m_service->answerAll();
        QTRY_COMPARE(m_service->shown.size(), 2);
        QCOMPARE(m_service->shown.constLast().summary, u"fourth"_s);
        QCOMPARE(m_service->shown.constLast().replaces, 1U);
        settle();
        QCOMPARE(m_service->asked.size(), 3);
    }

    void aClickIsTold()
    {
        const QSignalSpy clicks(m_notification.get(), &Notification::clicked);
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_service->click(1, u"token-1"_s);
        QTRY_COMPARE(clicks.size(), 1);
        QCOMPARE(clicks.constLast(), QVariantList{u"token-1"_s});
        m_service->click(1); // a token serves once
        QTRY_COMPARE(clicks.size(), 2);
        QCOMPARE(clicks.constLast(), QVariantList{QString()});
    }

    void clicksOnOthersAreNot()
    {
        const QSignalSpy clicks(m_notification.get(), &Notification::clicked);
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        settle();
        m_service->click(2, u"not for us"_s);
        m_service->click(0);
        m_service->click(1, {}, u"other"_s);
        settle();
        QCOMPARE(clicks.size(), 0);
        m_service->click(1);
        QTRY_COMPARE(clicks.size(), 1);
        QCOMPARE(clicks.constLast(), QVariantList{QString()});
    }

    void withoutService()
    {
        m_service.reset();
        m_notification->show(u"first"_s);
        settle();
        m_notification->withdraw();
        m_notification.reset();
    }

    void withoutBus()
    {
        Notification notification(QDBusConnection(u"none"_s));
        notification.show(u"first"_s);
        notification.withdraw();
        notification.show(u"second"_s);
    }

    void aServiceThatComesLater()
    {
        m_service.reset();
        m_notification->show(u"first"_s);
        settle();
        m_service = std::make_unique<NotificationService>(QDBusConnection(u"service"_s));
        m_notification->show(u"second"_s);
        QTRY_COMPARE(m_service->shown.size(), 1);
        QCOMPARE(m_service->shown.constFirst().summary, u"second"_s);
    }

    void goingWaitsForTheDelivery()
    {
        m_service.reset();
        const QStringList asked =
            askedUntilGone(m_bus->address(), [](Notification &n) { n.show(u"first"_s); });
        QCOMPARE(asked, QStringList({u"capabilities"_s, u"notify 1"_s}));
    }

    void goingWithdrawsWhatIsOnItsWay()
    {
        // Withdrawn before it could be shown, it never is; and nothing is waited for.
        m_service->isMute = true;
        m_notification->show(u"first"_s);
        QTRY_COMPARE(m_service->asked.size(), 1);
        m_notification->withdraw();
        m_notification.reset();
        m_service->answerAll();
        settle();
        QCOMPARE(m_service->asked, QStringList{u"capabilities"_s});
    }

private:
    /// Lets everything that is on its way arrive: the bus keeps the order of what comes from one connection.

    void settle() const
    {
        for (const QString &from : {u"own"_s, u"service"_s, u"own"_s}) {
            const QDBusConnection connection(from);
            const QString to = QDBusConnection(from == u"own" ? u"service"_s : u"own"_s).baseService();
            QDBusPendingCall ping = connection.asyncCall(
                QDBusMessage::createMethodCall(to, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
            ping.waitForFinished();
            QCoreApplication::processEvents();
        }
    }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<NotificationService> m_service;
    std::unique_ptr<Notification> m_notification;
};

BREVANT_TEST(tst_Notification, QCoreApplication)
#include "tst_Notification.moc"
