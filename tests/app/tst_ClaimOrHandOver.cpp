// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationService.h"
#include "tests/TestClass.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <future>
#include <memory>

using namespace brevant;
using namespace Qt::StringLiterals;
using brevant::test::PrivateBus;

/// Another program under the name of ours.
class Owner final : public QDBusVirtualObject {
    Q_OBJECT

public:
    using Answer = std::function<void(Owner &owner, const QDBusMessage &question)>;

    Owner(const QString &address, Answer answer)
        : m_answer(std::move(answer)), m_bus(QDBusConnection::connectToBus(address, u"owner"_s))
    {
        if (m_answer)
            m_bus.registerVirtualObject(servicePath, this);
        m_bus.call(busCall("RequestName") << 4U);
    }

    ~Owner() override { leave(); }

    void leave()
    {
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(u"owner"_s);
    }

    void send(const QDBusMessage &message) const { m_bus.send(message); }

    static QDBusMessage busCall(const char *method)
    {
        return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                              u"org.freedesktop.DBus"_s, QString::fromLatin1(method))
               << serviceName;
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        ++asked;
        m_answer(*this, message);
        return true;
    }

    int asked = 0;

private:
    Answer m_answer;
    QDBusConnection m_bus;
};

/// The second launch of the program, and the first.
class tst_ClaimOrHandOver final : public QObject {
    Q_OBJECT

private:
    /// What becomes of a launch while the other program, on this thread, can answer.
    std::optional<int> launched(const Launch &launch, const QVariantMap &platformData = {},
                                std::chrono::milliseconds timeout = std::chrono::seconds(20))
    {
        auto outcome = std::async(std::launch::async, [&] {
            return m_service->claimOrHandOver(m_second, launch, platformData, timeout);
        });
        const bool ended = QTest::qWaitFor(
            [&outcome] { return outcome.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
            30'000);
        return ended ? outcome.get() : std::optional(-1);
    }

    void secondLaunch() { secondLaunch(m_bus->address()); }

    void secondLaunch(const QString &address)
    {
        m_second = QDBusConnection::connectToBus(address, u"second"_s);
        m_service = std::make_unique<ApplicationService>();
    }

    std::unique_ptr<PrivateBus> m_bus;
    QDBusConnection m_second{QString()};
    std::unique_ptr<ApplicationService> m_service;

private Q_SLOTS:
    void init()
    {
        m_bus = std::make_unique<PrivateBus>();
        QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
    }

    void cleanup()
    {
        m_service.reset();
        m_second = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(u"second"_s);
        QDBusConnection::disconnectFromBus(u"first"_s);
    }

    void theFirst()
    {
        secondLaunch();
        QCOMPARE(launched({{u"/a.css"_s}}), std::nullopt);
        const QDBusConnection other = QDBusConnection::connectToBus(m_bus->address(), u"first"_s);
        QVERIFY(!serviceOwner(other).isEmpty());
    }

    void handsOver_data()
    {
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<bool>("minify");
        const QStringList odd{u"/x/a b.css"_s,     u"/x/100%25 ü.css"_s, u"/x/two\nlines"_s,
                              u"/x/\"it's\".js"_s, u"/x/#?&;.html"_s,    u"//x/../y"_s};
        QTest::newRow("nothing") << QStringList() << false;
        QTest::newRow("files") << odd << false;
        QTest::newRow("files to be minified") << odd << true;
        QTest::newRow("the list to be minified") << QStringList() << true;
    }

    void handsOver()
    {
        QFETCH(const QStringList, paths);
        QFETCH(const bool, minify);
        ApplicationService first;
        const QSignalSpy activated(&first, &ApplicationService::activateRequested);
        const QSignalSpy opened(&first, &ApplicationService::openRequested);
        const QSignalSpy acted(&first, &ApplicationService::actionRequested);
        QCOMPARE(first.claim(QDBusConnection::connectToBus(m_bus->address(), u"first"_s)),
                 ApplicationService::Claim::First);
        secondLaunch();
        const QVariantMap platformData{{u"activation-token"_s, u"t"_s}};
        QCOMPARE(launched({paths, minify}, platformData), std::optional(0));
        QCOMPARE(activated.size() + opened.size() + acted.size(), 1);
        if (minify)
            QCOMPARE(acted.first(), QVariantList({u"minify"_s, paths, platformData}));
        else if (paths.isEmpty())
            QCOMPARE(activated.first(), QVariantList({platformData}));
        else
            QCOMPARE(opened.first(), QVariantList({paths, platformData}));
    }

    void aServiceThatIsNotNeeded()
    {
        const Owner owner(m_bus->address(), {});
        secondLaunch();
        QCOMPARE(launched({{}, false, true}), std::optional(0));
        QCOMPARE(owner.asked, 0);
    }

    void theOwnerEnds_data()
    {
        QTest::addColumn<Owner::Answer>("answer");
        QTest::newRow("it refuses") << Owner::Answer([](Owner &owner, const QDBusMessage &question) {
            owner.send(Owner::busCall("ReleaseName"));
            owner.send(question.createErrorReply(QDBusError::UnknownObject, u"ending"_s));
        });
        QTest::newRow("it goes without a word")
            << Owner::Answer([](Owner &owner, const QDBusMessage &) { owner.leave(); });
    }

    void theOwnerEnds()
    {
        QFETCH(const Owner::Answer, answer);
        const Owner owner(m_bus->address(), answer);
        secondLaunch();
        QCOMPARE(launched({{u"/a.css"_s}}), std::nullopt);
        QCOMPARE(owner.asked, 1);
        const QDBusConnection other = QDBusConnection::connectToBus(m_bus->address(), u"first"_s);
        QVERIFY(!serviceOwner(other).isEmpty());
    }

    void theOwnerDoesNotAnswer()
    {
        const Owner owner(m_bus->address(), [](Owner &, const QDBusMessage &) {});
        secondLaunch();
        QCOMPARE(launched({{u"/a.css"_s}}, {}, std::chrono::milliseconds(50)), std::optional(1));
        QCOMPARE(owner.asked, 1);
    }

    void theOwnerIsSomethingElse()
    {
        const Owner owner(m_bus->address(), {});
        secondLaunch();
        QCOMPARE(launched({{u"/a.css"_s}}), std::nullopt);
    }

    void noBus_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("none") << QString();
        QTest::newRow("nobody there") << u"unix:path=/nonexistent/bus"_s;
        QTest::newRow("no address") << u"nonsense"_s;
    }

    void noBus()
    {
        QFETCH(const QString, address);
        secondLaunch(address);
        QCOMPARE(launched({{u"/a.css"_s}}), std::nullopt);
    }

    void whereTheBusIs()
    {
        const QTemporaryDir folder;
        const QString runtime = folder.filePath(u"run 1"_s);
        QVERIFY(QDir().mkdir(runtime));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/x");
        QCOMPARE(sessionBusAddress(), u"unix:path=/x"_s);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        QCOMPARE(sessionBusAddress(), QString());
        QFile socket(runtime + u"/bus"_s);
        QVERIFY(socket.open(QIODevice::WriteOnly));
        QCOMPARE(sessionBusAddress(), u"unix:path="_s + folder.path() + u"/run%201/bus"_s);
        qunsetenv("XDG_RUNTIME_DIR");
        QCOMPARE(sessionBusAddress(), QString());
    }
};

BREVANT_TEST(tst_ClaimOrHandOver, QCoreApplication)
#include "tst_ClaimOrHandOver.moc"
