// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace brevant {

struct Launch;

/// The name and the object of the running program on the session bus.
inline constexpr auto serviceName = "org.brevant.Brevant";
inline constexpr auto servicePath = "/org/brevant/Brevant";
inline constexpr auto serviceInterface = "org.freedesktop.Application";

/// What the session bus asks of the running program: to come to the front, to open files, to carry out an
/// action. Calls that come before the main loop runs wait for it.
///
/// The interface: https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html
class ApplicationService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Claim {
        First, ///< the name is ours
        Taken, ///< another process has it
        Alone, ///< there is no bus, or it gives no names
    };

    using QObject::QObject;
    ~ApplicationService() override;

    /// Offers the object on a bus and claims the name. Waits for the bus. May be called again if the name was
    /// taken.
    Claim claim(const QDBusConnection &bus);

    /// Makes this process the one instance of the program on the bus. If another one has the name, that is
    /// told what this one was launched for, with `platformData`, the right to come to the front; returned is
    /// the exit status for this one then. If the other ends meanwhile, this one takes its place. Returns
    /// nothing if this process is the one, or there is none to hand over to. The other may be busy:
    /// `answerTimeout` is how long it has.
    [[nodiscard]] std::optional<int>
    claimOrHandOver(const QDBusConnection &bus, const Launch &launch, const QVariantMap &platformData,
                    std::chrono::milliseconds answerTimeout = std::chrono::seconds(25));

    /// Gives up the name at once, for the next launch to have it. Who calls from now on is refused, so that
    /// nothing is lost in a program that is about to end.
    void release();

    // The methods, by the names and types that the interface has.
    Q_SCRIPTABLE void Activate(const QVariantMap &platform_data, const QDBusMessage &call);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platform_data,
                           const QDBusMessage &call);
    Q_SCRIPTABLE void ActivateAction(const QString &action_name, const QVariantList &parameter,
                                     const QVariantMap &platform_data, const QDBusMessage &call);

Q_SIGNALS:
    /// `platformData` is what activate() of app/platform/Activation takes.
    void activateRequested(const QVariantMap &platformData);

    /// `paths` are those of the local files among what is to be opened.
    void openRequested(const QStringList &paths, const QVariantMap &platformData);

    /// `paths` are those of the local files that the action is for, often none.
    void actionRequested(const QString &action, const QStringList &paths, const QVariantMap &platformData);

private:
    bool accept(const QDBusMessage &call);

    std::optional<QDBusConnection> m_bus;
    bool m_released = false;
};

/// Who has the name on a bus: an address for calls that are for nobody else, or "".
[[nodiscard]] QString serviceOwner(const QDBusConnection &bus);

/// Where the session bus listens: what the environment says, else the usual place if there is one; or "".
[[nodiscard]] QString sessionBusAddress();

/// The session bus; no connection where there is none. Unlike Qt, this never starts one.
[[nodiscard]] QDBusConnection sessionBus();

} // namespace brevant
