// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace brevant::test {

/// A notification service that writes down what it is asked, and has a user who clicks. It serves the bus of
/// a named connection for as long as it lives.
class NotificationService final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown {
        uint id = 0; ///< as it was given
        uint replaces = 0;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int timeout = 0; ///< in ms; 0: never, -1: as the service likes
        QDBusMessage message;
    };

    explicit NotificationService(const QDBusConnection &bus);
    ~NotificationService() override;

    /// What was asked for, in words: "capabilities", "notify 1", "close 1".
    QStringList asked;
    QList<Shown> shown;
    QStringList capabilities{u"actions"_s, u"body"_s, u"body-markup"_s};
    bool isMute = false; ///< answers nothing, until answerAll()

    void answerAll();
    void click(uint id, const QString &token = {}, const QString &action = u"default"_s);
    void closedByUser(uint id);

public Q_SLOTS:
    QStringList GetCapabilities();
    uint Notify(const QString &application, uint replaces, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout);
    void CloseNotification(uint id);

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &action);
    void ActivationToken(uint id, const QString &token);
    void NotificationClosed(uint id, uint reason);

private:
    void holdBackIfMute(const QVariant &answer);

    QDBusConnection m_bus;
    QList<QDBusMessage> m_heldBack;
    uint m_lastId = 0;
};

} // namespace brevant::test
