// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationService.h"
#include "app/platform/Workspace.h"
#include "tests/TestClass.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <thread>

using namespace brevant;
using namespace Qt::StringLiterals;
using brevant::test::PrivateBus;

using Claim = ApplicationService::Claim;

/// The object on the bus, asked by another program.
class tst_ApplicationService final : public QObject {
    Q_OBJECT

private:
    QDBusConnection connection(const QString &name) const
    {
        return QDBusConnection::connectToBus(m_bus->address(), name);
    }

    static QDBusMessage call(const char *method, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(serviceName, servicePath, serviceInterface,
                                                              QString::fromLatin1(method));
        message.setArguments(arguments);
        return message;
    }

    /// What the program answers to another one.
    QDBusMessage answer(const QDBusMessage &question) const
    {
        QDBusPendingCall pending = connection(u"other"_s).asyncCall(question);
        if (!QTest::qWaitFor([&pending] { return pending.isFinished(); }))
            return QDBusMessage::createError(u"test.NoAnswer"_s, QString());
        return pending.reply();
    }

    bool isAccepted(const char *method, const QVariantList &arguments) const
    {
        return answer(call(method, arguments)).type() == QDBusMessage::ReplyMessage;
    }

    int heard() const { return int(m_activated->size() + m_opened->size() + m_acted->size()); }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<ApplicationService> m_service;
    std::unique_ptr<QSignalSpy> m_activated;
    std::unique_ptr<QSignalSpy> m_opened;
    std::unique_ptr<QSignalSpy> m_acted;

private Q_SLOTS:
    void initTestCase()
    {
        m_bus = std::make_unique<PrivateBus>();
        QVERIFY2(!m_bus->address().isEmpty(), "dbus-daemon does not start");
    }

    void init()
    {
        m_service = std::make_unique<ApplicationService>();
        m_activated = std::make_unique<QSignalSpy>(m_service.get(), &ApplicationService::activateRequested);
        m_opened = std::make_unique<QSignalSpy>(m_service.get(), &ApplicationService::openRequested);
        m_acted = std::make_unique<QSignalSpy>(m_service.get(), &ApplicationService::actionRequested);
        Claim claim = Claim::Alone;
        std::thread([this, &claim] { claim = m_service->claim(connection(u"service"_s)); }).join();
        QCOMPARE(claim, Claim::First);
    }

    void cleanup()
    {
        m_service.reset();
        QDBusConnection::disconnectFromBus(u"service"_s);
        QDBusConnection::disconnectFromBus(u"other"_s);
    }

    void activate()
    {
        const QVariantMap platformData{{u"activation-token"_s, u"t"_s}};
        QVERIFY(isAccepted("Activate", {platformData}));
        QCOMPARE(m_activated->size(), 1);
        QCOMPARE(m_activated->first().first().toMap(), platformData);
        QCOMPARE(heard(), 1);
    }

    void open_data()
    {
        QTest::addColumn<QString>("uri");
        QTest::addColumn<QStringList>("paths");
        for (const QString &path :
             {u"/x/a.css"_s, u"/x/a b.css"_s, u"/x/50%25.css"_s, u"/x/größe 日本.css"_s, u"/x/a\nb.css"_s,
              u"/x/\"'`$.css"_s, u"/x/a#b?c;d&e.css"_s, u"//x/a.css"_s, u"/"_s})
            QTest::newRow(qPrintable(path))
                << fileUrl(path).toString(QUrl::FullyEncoded) << QStringList(path);
        QTest::newRow("this host") << u"file://localhost/x/a.css"_s << QStringList(u"/x/a.css"_s);
        QTest::newRow("not escaped") << u"file:///x/ä b.css"_s << QStringList(u"/x/ä b.css"_s);
        for (const char *other : {"https://brevant.example/a.css", "file://elsewhere/a.css",
                                  "sftp://h/x/a.css", "/x/a.css", "a.css", "file:", ":", ""})
            QTest::addRow("passed over: %s", other) << QString::fromLatin1(other) << QStringList();
    }

    void open()
    {
        QFETCH(const QString, uri);
        QFETCH(const QStringList, paths);
        const QString last = u"file:///last.css"_s;
        QVERIFY(isAccepted("Open", {QStringList({uri, last}), QVariantMap()}));
        QCOMPARE(m_opened->size(), 1);
        QCOMPARE(m_opened->first().first().toStringList(), paths + QStringList(u"/last.css"_s));
        QCOMPARE(heard(), 1);
    }

    void action_data()
    {
        QTest::addColumn<QVariantList>("parameter");
        QTest::addColumn<QStringList>("paths");
        const QStringList uris{u"file:///a%20b.css"_s, u"https://h/c.css"_s};
        const QStringList paths{u"/a b.css"_s};
        QTest::newRow("none") << QVariantList() << QStringList();
        QTest::newRow("addresses") << QVariantList{uris} << paths;
        QTest::newRow("more than one") << QVariantList{uris, u"s"_s} << paths;
        QTest::newRow("a text") << QVariantList{uris.first()} << QStringList();
        QTest::newRow("a number") << QVariantList{7} << QStringList();
        QTest::newRow("numbers") << QVariantList{QVariantList{7}} << QStringList();
    }

    void action()
    {
        QFETCH(const QVariantList, parameter);
        QFETCH(const QStringList, paths);
        const QVariantMap platformData{{u"desktop-startup-id"_s, u"i"_s}};
        QVERIFY(isAccepted("ActivateAction", {u"any"_s, QVariant(parameter), platformData}));
        QCOMPARE(m_acted->size(), 1);
        QCOMPARE(m_acted->first(), QVariantList({u"any"_s, paths, platformData}));
        QCOMPARE(heard(), 1);
    }

    void otherTypesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<QVariantList>("arguments");
        const QVariantMap map;
        const QStringList list;
        QTest::newRow("no data") << QByteArray("Activate") << QVariantList();
        QTest::newRow("data that is a text") << QByteArray("Activate") << QVariantList{QString()};
        QTest::newRow("one address") << QByteArray("Open") << QVariantList{u"file:///a"_s, map};
        QTest::newRow("no data with addresses") << QByteArray("Open") << QVariantList{list};
        QTest::newRow("too much") << QByteArray("Open") << QVariantList{list, map, 1};
        QTest::newRow("only a name") << QByteArray("ActivateAction") << QVariantList{u"minify"_s};
        QTest::newRow("unknown method") << QByteArray("Close") << QVariantList{map};
    }

    void otherTypesAreRefused()
    {
        QFETCH(const QByteArray, method);
        QFETCH(const QVariantList, arguments);
        QVERIFY(!isAccepted(method.constData(), arguments));
        QCOMPARE(heard(), 0);
        QVERIFY(isAccepted("Activate", {QVariantMap()}));
    }

    void whoWantsNoAnswerGetsNone()
    {
        QVERIFY(connection(u"other"_s).send(call("Activate", {QVariantMap()})));
        QTRY_COMPARE(m_activated->size(), 1);
    }

    void theNameIsTaken()
    {
        ApplicationService second;
        const QDBusConnection bus = connection(u"other"_s);
        QCOMPARE(second.claim(bus), Claim::Taken);
        QCOMPARE(serviceOwner(bus), connection(u"service"_s).baseService());
        m_service->release();
        QTRY_COMPARE(serviceOwner(bus), QString());
        QCOMPARE(second.claim(bus), Claim::First);
        QCOMPARE(serviceOwner(bus), bus.baseService());
    }

    void afterTheReleaseAllAreRefused()
    {
        m_service->release();
        for (QDBusMessage question :
             {call("Activate", {QVariantMap()}), call("Open", {QStringList(u"file:///a"_s), QVariantMap()}),
              call("ActivateAction", {u"minify"_s, QVariant(QVariantList()), QVariantMap()})}) {
            // To the program itself, as who has looked up its name just before the release.
            QDBusMessage direct =
                QDBusMessage::createMethodCall(connection(u"service"_s).baseService(), question.path(),
                                               question.interface(), question.member());
            direct.setArguments(question.arguments());
            QCOMPARE(answer(direct).type(), QDBusMessage::ErrorMessage);
        }
        QCOMPARE(heard(), 0);
    }

    void noBus()
    {
        ApplicationService alone;
        QCOMPARE(alone.claim(QDBusConnection(u"no bus"_s)), Claim::Alone);
        alone.release();
    }
};

BREVANT_TEST(tst_ApplicationService, QCoreApplication)
#include "tst_ApplicationService.moc"
