// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppFixture.h"
#include "tests/app/platform/NotificationService.h"
#include "tests/app/platform/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QTest>

using namespace Qt::StringLiterals;

/// Writes down what a dock is told of the progress, "0.5" or "gone", and of the badge, "3" or "gone".
class Dock final : public QObject {
    Q_OBJECT

public:
    explicit Dock(QDBusConnection bus)
    {
        bus.connect(QString(), QString(), u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                    SLOT(update(QDBusMessage)));
    }
    QStringList progress;
    QStringList badges;

private Q_SLOTS:
    void update(const QDBusMessage &message)
    {
        const auto properties = qdbus_cast<QVariantMap>(message.arguments().value(1));
        if (properties.contains(u"count-visible"_s)) {
            const bool isShown = properties.value(u"count-visible"_s).toBool();
            badges.append(isShown ? properties.value(u"count"_s).toString() : u"gone"_s);
        }
        if (properties.value(u"progress-visible"_s).toBool())
            progress.append(QString::number(properties.value(u"progress"_s).toDouble()));
        else if (properties.contains(u"progress-visible"_s))
            progress.append(u"gone"_s);
    }
};

/// A test with a session bus of its own, on which a dock and a notification service listen.
class DesktopFixture : public QObject {
    Q_OBJECT

protected:
    /// Fills the list with files that tell the stub what to do. The window is shown and active.
    AppFixture &filled(const QList<QByteArray> &texts, const QString &folder = {})
    {
        m_app = std::make_unique<AppFixture>(QDBusConnection(u"own"_s));
        m_app->settings.setOverride(false, brevant::soundCheckerKeyString);
        QStringList paths;
        for (const QByteArray &text : texts)
            paths.append(m_app->file(u"%1f%2.css"_s.arg(folder).arg(paths.size()), text));
        m_app->drop(paths);
        m_app->window.show();
        m_app->window.activateWindow();
        return *m_app;
    }

    /// One whole run, and all that the desktop hears of it.
    void run()
    {
        m_app->controller.minify();
        QTRY_VERIFY(!m_app->jobs.isRunning());
        letAllArrive();
    }

    /// Lets everything that is on its way arrive; what is asked for in an answer comes in a second round.
    static void letAllArrive()
    {
        for (const QString &from : {u"own"_s, u"desktop"_s, u"own"_s, u"desktop"_s}) {
            const QString to = QDBusConnection(from == u"own" ? u"desktop"_s : u"own"_s).baseService();
            QDBusPendingCall ping = QDBusConnection(from).asyncCall(
                QDBusMessage::createMethodCall(to, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
            ping.waitForFinished();
            QCoreApplication::processEvents();
        }
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList result;
        for (const brevant::test::NotificationService::Shown &shown : m_service->shown)
            result.append(shown.summary + u'|' + shown.body);
        return result;
    }

    /// The fixture's folder, as a notification shows it: below the home folder.
    [[nodiscard]] QString here() const { return u"~/"_s + QFileInfo(m_app->folder.path()).fileName(); }

    brevant::test::PrivateBus m_bus;
    std::unique_ptr<Dock> m_dock;
    std::unique_ptr<brevant::test::NotificationService> m_service;
    std::unique_ptr<AppFixture> m_app;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!m_bus.address().isEmpty(), "dbus-daemon does not start");
        qputenv("HOME", QDir::tempPath().toLocal8Bit());
    }

    void init()
    {
        const auto bus = QDBusConnection::connectToBus(m_bus.address(), u"desktop"_s);
        QVERIFY(bus.isConnected());
        QVERIFY(QDBusConnection::connectToBus(m_bus.address(), u"own"_s).isConnected());
        m_dock = std::make_unique<Dock>(bus);
        m_service = std::make_unique<brevant::test::NotificationService>(bus);
        letAllArrive();
    }

    void cleanup()
    {
        m_app.reset();
        m_service.reset();
        m_dock.reset();
        QDBusConnection::disconnectFromBus(u"own"_s);
        QDBusConnection::disconnectFromBus(u"desktop"_s);
    }
};
