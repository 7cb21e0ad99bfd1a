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

/// What a launch of the program was asked for.
struct Launch {
    QStringList paths;      ///< files and folders to be listed, from the root
    bool minify = false;    ///< minify the list afterwards
    bool asService = false; ///< started by the bus, which calls later
};

/// The name and the object of the running program on the session bus.
inline constexpr QLatin1StringView serviceName("org.brevant.Brevant");
inline constexpr QLatin1StringView servicePath("/org/brevant/Brevant");
inline constexpr QLatin1StringView serviceInterface("org.freedesktop.Application");

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

    /// Makes this process the single instance on the bus, or hands `launch` over to the one that has the
    /// name, with `platformData`, the right to come to the front. Returns the exit status after handing over;
    /// nothing if this process is to go on. An instance that ends meanwhile is replaced by this one, and a
    /// busy one is waited for until `answerTimeout`.
    [[nodiscard]] std::optional<int>
    claimOrHandOver(const QDBusConnection &bus, const Launch &launch, const QVariantMap &platformData,
                    std::chrono::milliseconds answerTimeout = std::chrono::seconds(25));

    /// Gives up the name at once for the next launch. Later calls are refused, so that nothing is lost in a
    /// program that is about to end.
    void release();

    // The methods, by the names and types that the interface has.
    Q_SCRIPTABLE void Activate(const QVariantMap &platform_data, const QDBusMessage &call);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platform_data,
                           const QDBusMessage &call);
    Q_SCRIPTABLE void ActivateAction(const QString &action_name, const QVariantList &parameter,
                                     const QVariantMap &platform_data, const QDBusMessage &call);

Q_SIGNALS:
    /// `platformData` is what activate() of app/platform/Workspace takes.
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

/// The unique name of the connection that owns the service's name on a bus, or "".
[[nodiscard]] QString serviceOwner(const QDBusConnection &bus);

/// Where the session bus listens: what the environment says, else the usual place if there is one; or "".
[[nodiscard]] QString sessionBusAddress();

/// The session bus, or no connection. Unlike Qt, this never starts a bus.
[[nodiscard]] QDBusConnection sessionBus();

} // namespace brevant
