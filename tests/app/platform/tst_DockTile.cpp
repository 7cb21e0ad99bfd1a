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

/// A dock: hears what is said on the bus.
class Dock final : public QObject {
    Q_OBJECT

public:
    explicit Dock(QDBusConnection bus)
    {
        bus.connect(QString(), QString(), QStringLiteral("com.canonical.Unity.LauncherEntry"),
                    QStringLiteral("Update"), this, SLOT(update(QDBusMessage)));
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
    void initTestCase();
    void init();
    void cleanup();
    void badge_data();
    void badge();
    void badgeLeavesTheProgressAlone();
    void progress_data();
    void progress();
    void alwaysTheSamePath();
    void everyCallIsSent();
    void usesTheSessionBus();
    void withoutBusNothingIsSaid();
    void busThatGoesAway();

private:
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<Dock> m_dock;
    std::unique_ptr<DockTile> m_tile;
};

void tst_DockTile::initTestCase()
{
    // The session bus of this process, which is not connected to before it is first asked for.
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
}

void tst_DockTile::init()
{
    const auto other = QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("dock"));
    QVERIFY(other.isConnected());
    m_dock = std::make_unique<Dock>(other);
    m_tile =
        std::make_unique<DockTile>(QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("tile")));
}

void tst_DockTile::cleanup()
{
    m_tile.reset();
    m_dock.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("tile"));
    QDBusConnection::disconnectFromBus(QStringLiteral("dock"));
}

void tst_DockTile::badge_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<qlonglong>("count");
    QTest::addColumn<bool>("visible");
    QTest::newRow("one") << QStringLiteral("1") << 1LL << true;
    QTest::newRow("twelve") << QStringLiteral("12") << 12LL << true;
    QTest::newRow("no separators") << QStringLiteral("100000") << 100'000LL << true;
    QTest::newRow("largest int") << QStringLiteral("2147483647") << 2'147'483'647LL << true;
    QTest::newRow("smallest int") << QStringLiteral("-2147483648") << -2'147'483'648LL << true;
    QTest::newRow("zero is a number") << QStringLiteral("0") << 0LL << true;
    QTest::newRow("none") << QString() << 0LL << false;
    QTest::newRow("empty") << QStringLiteral("") << 0LL << false;
    QTest::newRow("no number") << QStringLiteral("new") << 0LL << false;
}

void tst_DockTile::badge()
{
    QFETCH(const QString, label);
    QFETCH(const qlonglong, count);
    QFETCH(const bool, visible);
    QCOMPARE(m_tile->badgeLabel(), QString());
    m_tile->setBadgeLabel(label);
    QCOMPARE(m_tile->badgeLabel(), label);
    QTRY_COMPARE(m_dock->heard.size(), 1);

    const QDBusMessage message = m_dock->heard.constFirst();
    QCOMPARE(message.signature(), QStringLiteral("sa{sv}"));
    QCOMPARE(message.interface(), QStringLiteral("com.canonical.Unity.LauncherEntry"));
    QCOMPARE(message.member(), QStringLiteral("Update"));
    QCOMPARE(message.arguments().value(0).toString(),
             QStringLiteral("application://org.brevant.Brevant.desktop"));
    const QVariantMap properties = m_dock->last();
    QCOMPARE(properties.keys(), QStringList({QStringLiteral("count"), QStringLiteral("count-visible")}));
    QCOMPARE(properties.value(QStringLiteral("count")).typeId(), int(QMetaType::LongLong)); // x
    QCOMPARE(properties.value(QStringLiteral("count-visible")).typeId(), int(QMetaType::Bool));
    QCOMPARE(properties.value(QStringLiteral("count")).toLongLong(), count);
    QCOMPARE(properties.value(QStringLiteral("count-visible")).toBool(), visible);
}

void tst_DockTile::badgeLeavesTheProgressAlone()
{
    m_tile->setProgress(0.25);
    m_tile->setBadgeLabel(QStringLiteral("3"));
    QTRY_COMPARE(m_dock->heard.size(), 2);
    QVERIFY(!m_dock->last().contains(QStringLiteral("progress-visible")));
    QCOMPARE(m_tile->progress(), std::optional(0.25));
}

void tst_DockTile::progress_data()
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

void tst_DockTile::progress()
{
    QFETCH(const std::optional<double>, set);
    QFETCH(const double, sent);
    QFETCH(const bool, visible);
    m_tile->setProgress(set);
    QTRY_COMPARE(m_dock->heard.size(), 1);
    const QVariantMap properties = m_dock->last();
    QCOMPARE(properties.keys(),
             QStringList({QStringLiteral("progress"), QStringLiteral("progress-visible")}));
    QCOMPARE(properties.value(QStringLiteral("progress")).typeId(), int(QMetaType::Double));
    QCOMPARE(properties.value(QStringLiteral("progress")).toDouble(), sent);
    QCOMPARE(properties.value(QStringLiteral("progress-visible")), QVariant(visible));
    QCOMPARE(m_tile->progress(), visible ? std::optional(sent) : std::nullopt);
}

void tst_DockTile::alwaysTheSamePath()
{
    m_tile->setBadgeLabel(QStringLiteral("1"));
    DockTile(QDBusConnection(QStringLiteral("tile"))).setProgress(0.5);
    QTRY_COMPARE(m_dock->heard.size(), 2);
    QCOMPARE(m_dock->heard.constFirst().path(), QStringLiteral("/org/brevant/Brevant/LauncherEntry"));
    QCOMPARE(m_dock->heard.constLast().path(), m_dock->heard.constFirst().path());
}

void tst_DockTile::everyCallIsSent()
{
    // A dock that has been restarted learns of the badge with the next call, though the number is the same.
    for (int i = 0; i < 3; ++i)
        m_tile->setBadgeLabel(QStringLiteral("3"));
    QTRY_COMPARE(m_dock->heard.size(), 3);
}

void tst_DockTile::usesTheSessionBus()
{
    DockTile().setBadgeLabel(QStringLiteral("4"));
    QTRY_COMPARE(m_dock->heard.size(), 1);
    QCOMPARE(m_dock->heard.constFirst().service(), QDBusConnection::sessionBus().baseService());
}

void tst_DockTile::withoutBusNothingIsSaid()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=/nonexistent/bus"));
    const ProbeEnd end = runProbe({QStringLiteral("badge")}, environment);
    QCOMPARE(end.status, 0);
    QCOMPARE(end.out, QByteArray("label \"\"\n"));
    QCOMPARE(end.err, QByteArray());
}

void tst_DockTile::busThatGoesAway()
{
    PrivateBus bus;
    const auto connection = QDBusConnection::connectToBus(bus.address(), QStringLiteral("gone"));
    DockTile tile(connection);
    tile.setBadgeLabel(QStringLiteral("1"));
    bus.end();
    QTRY_VERIFY(!connection.isConnected());
    tile.setBadgeLabel(QStringLiteral("2"));
    QCOMPARE(tile.badgeLabel(), QStringLiteral("2"));
    QDBusConnection::disconnectFromBus(QStringLiteral("gone"));
}

BREVANT_TEST(tst_DockTile, QCoreApplication)
#include "tst_DockTile.moc"
