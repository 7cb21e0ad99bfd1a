// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DockTile.h"
#include "tests/TestClass.h"
#include "tests/app/platform/PrivateBus.h"
#include "tests/app/platform/ProbeRun.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTest>

#include <limits>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// A dock: hears what is said on the bus.
class Dock final : public QObject {
    Q_OBJECT

public:
    explicit Dock(QDBusConnection bus)
    {
        bus.connect(QString(), QString(), u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                    SLOT(update(QDBusMessage)));
    }

    [[nodiscard]] QVariantMap last() const
    {
        return qdbus_cast<QVariantMap>(heard.constLast().arguments().value(1));
    }

    QList<QDBusMessage> heard;

private Q_SLOTS:
    void update(const QDBusMessage &message) { heard.append(message); }
};

class tst_DockTile final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The session bus of this process, which is not connected to before it is first asked for.
        m_bus = std::make_unique<PrivateBus>();
        QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
    }

    void init()
    {
        const auto other = QDBusConnection::connectToBus(m_bus->address(), u"dock"_s);
        QVERIFY(other.isConnected());
        m_dock = std::make_unique<Dock>(other);
        m_tile = std::make_unique<DockTile>(QDBusConnection::connectToBus(m_bus->address(), u"tile"_s));
    }

    void cleanup()
    {
        m_tile.reset();
        m_dock.reset();
        QDBusConnection::disconnectFromBus(u"tile"_s);
        QDBusConnection::disconnectFromBus(u"dock"_s);
    }

    void badge_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<qlonglong>("count");
        QTest::addColumn<bool>("visible");
        QTest::newRow("one") << u"1"_s << 1LL << true;
        QTest::newRow("twelve") << u"12"_s << 12LL << true;
        QTest::newRow("no separators") << u"100000"_s << 100'000LL << true;
        QTest::newRow("largest int") << u"2147483647"_s << 2'147'483'647LL << true;
        QTest::newRow("smallest int") << u"-2147483648"_s << -2'147'483'648LL << true;
        QTest::newRow("zero is a number") << u"0"_s << 0LL << true;
        QTest::newRow("none") << QString() << 0LL << false;
        QTest::newRow("empty") << u""_s << 0LL << false;
        QTest::newRow("no number") << u"new"_s << 0LL << false;
    }

    void badge()
    {
        QFETCH(const QString, label);
        QFETCH(const qlonglong, count);
        QFETCH(const bool, visible);
        QCOMPARE(m_tile->badgeLabel(), QString());
        m_tile->setBadgeLabel(label);
        QCOMPARE(m_tile->badgeLabel(), label);
        QTRY_COMPARE(m_dock->heard.size(), 1);

        const QDBusMessage message = m_dock->heard.constFirst();
        QCOMPARE(message.signature(), u"sa{sv}"_s);
        QCOMPARE(message.interface(), u"com.canonical.Unity.LauncherEntry"_s);
        QCOMPARE(message.member(), u"Update"_s);
        QCOMPARE(message.arguments().value(0).toString(), u"application://org.brevant.Brevant.desktop"_s);
        const QVariantMap properties = m_dock->last();
        QCOMPARE(properties.keys(), QStringList({u"count"_s, u"count-visible"_s}));
        QCOMPARE(properties.value(u"count"_s).typeId(), int(QMetaType::LongLong)); // x
        QCOMPARE(properties.value(u"count-visible"_s).typeId(), int(QMetaType::Bool));
        QCOMPARE(properties.value(u"count"_s).toLongLong(), count);
        QCOMPARE(properties.value(u"count-visible"_s).toBool(), visible);
    }

    void badgeLeavesTheProgressAlone()
    {
        m_tile->setProgress(0.25);
        m_tile->setBadgeLabel(u"3"_s);
        QTRY_COMPARE(m_dock->heard.size(), 2);
        QVERIFY(!m_dock->last().contains(u"progress-visible"_s));
        QCOMPARE(m_tile->progress(), std::optional(0.25));
    }

    void progress_data()
    {
        QTest::addColumn<std::optional<double>>("set");
        QTest::addColumn<double>("sent");
        QTest::addColumn<bool>("visible");
        QTest::newRow("start") << std::optional(0.0) << 0.0 << true;
        QTest::newRow("third") << std::optional(1.0 / 3) << 1.0 / 3 << true;
        QTest::newRow("end") << std::optional(1.0) << 1.0 << true;
        QTest::newRow("more") << std::optional(1.5) << 1.0 << true;
        QTest::newRow("less") << std::optional(-1.0) << 0.0 << true;
        QTest::newRow("no number") << std::optional(std::numeric_limits<double>::quiet_NaN()) << 0.0 << false;
        QTest::newRow("none") << std::optional<double>() << 0.0 << false;
    }

    void progress()
    {
        QFETCH(const std::optional<double>, set);
        QFETCH(const double, sent);
        QFETCH(const bool, visible);
        m_tile->setProgress(set);
        QTRY_COMPARE(m_dock->heard.size(), 1);
        const QVariantMap properties = m_dock->last();
        QCOMPARE(properties.keys(), QStringList({u"progress"_s, u"progress-visible"_s}));
        QCOMPARE(properties.value(u"progress"_s).typeId(), int(QMetaType::Double));
        QCOMPARE(properties.value(u"progress"_s).toDouble(), sent);
        QCOMPARE(properties.value(u"progress-visible"_s), QVariant(visible));
        QCOMPARE(m_tile->progress(), visible ? std::optional(sent) : std::nullopt);
    }

    void alwaysTheSamePath()
    {
        m_tile->setBadgeLabel(u"1"_s);
        DockTile(QDBusConnection(u"tile"_s)).setProgress(0.5);
        QTRY_COMPARE(m_dock->heard.size(), 2);
        QCOMPARE(m_dock->heard.constFirst().path(), u"/org/brevant/Brevant/LauncherEntry"_s);
        QCOMPARE(m_dock->heard.constLast().path(), m_dock->heard.constFirst().path());
    }

    void everyCallIsSent()
    {
        // A dock that has been restarted learns of the badge with the next call, though the number is the
        // same.
        for (int i = 0; i < 3; ++i)
            m_tile->setBadgeLabel(u"3"_s);
        QTRY_COMPARE(m_dock->heard.size(), 3);
    }

    void usesTheSessionBus()
    {
        DockTile(QDBusConnection::sessionBus()).setBadgeLabel(u"4"_s);
        QTRY_COMPARE(m_dock->heard.size(), 1);
        QCOMPARE(m_dock->heard.constFirst().service(), QDBusConnection::sessionBus().baseService());
    }

    void withoutBusNothingIsSaid()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
        const ProbeEnd end = runProbe({u"badge"_s}, environment);
        QCOMPARE(end.status, 0);
        QCOMPARE(end.out, QByteArray("label \"\"\n"));
        QCOMPARE(end.err, QByteArray());
    }

    void busThatGoesAway()
    {
        PrivateBus bus;
        const auto connection = QDBusConnection::connectToBus(bus.address(), u"gone"_s);
        DockTile tile(connection);
        tile.setBadgeLabel(u"1"_s);
        bus.end();
        QTRY_VERIFY(!connection.isConnected());
        tile.setBadgeLabel(u"2"_s);
        QCOMPARE(tile.badgeLabel(), u"2"_s);
        QDBusConnection::disconnectFromBus(u"gone"_s);
    }

private:
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<Dock> m_dock;
    std::unique_ptr<DockTile> m_tile;
};

BREVANT_TEST(tst_DockTile, QCoreApplication)
#include "tst_DockTile.moc"
