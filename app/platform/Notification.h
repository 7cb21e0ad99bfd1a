// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <optional>

class QDBusMessage;
class QDBusPendingCall;
class QDBusPendingCallWatcher;

namespace brevant {

/// One notification of this program, shown by the desktop beside its windows; see
/// https://specifications.freedesktop.org/notification-spec/latest/.
///
/// No call here waits, and where no notification service answers nothing happens.
class Notification final : public QObject {
    Q_OBJECT

public:
    explicit Notification(const QDBusConnection &bus) : m_bus(bus) {}

    /// Waits, but not for long, until the service has shown what was asked for last: one that has to be
    /// started first would drop a notification whose sender has left the bus.
    ~Notification() override;

    /// Shows two texts, neither of which is taken for markup, in place of those shown before.
    void show(const QString &summary, const QString &body = {});

    /// From now on it stays until the user closes it, if the service supports that.
    void stayUntilClosed() { m_stays = true; }

    /// Takes it away, if it is still there.
    void withdraw();

    /// Whether it is there, as far as the service has told.
    [[nodiscard]] bool isShown() const { return m_id.has_value(); }

Q_SIGNALS:
    /// The user has clicked it. `token` is the desktop's permission to bring a window to the front
    /// (xdg-activation); empty if it gives none.
    void clicked(const QString &token);

    /// The user has closed it.
    void dismissed();

private Q_SLOTS:
    void ActionInvoked(uint id, const QString &action);
    void ActivationToken(uint id, const QString &token);
    void NotificationClosed(uint id, uint reason);

private:
    struct Text {
        QString summary;
        QString body;
    };

    void proceed();
    void askForCapabilities();
    void send();
    void close();
    void await(const QDBusPendingCall &call);
    void answered();

    QDBusConnection m_bus;
    std::optional<Text> m_wanted;              ///< what is to be shown
    bool m_isTold = true;                      ///< whether the service knows
    std::optional<uint> m_id;                  ///< of what is shown; 0 while the service has not told
    std::optional<bool> m_understandsMarkup;   ///< whether the service does, once it has been asked
    QDBusPendingCallWatcher *m_call = nullptr; ///< waits for an answer; a child of this
    QString m_token;
    bool m_stays = false;
};

} // namespace brevant
