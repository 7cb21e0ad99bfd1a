// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ApplicationService.h"

#include <QDBusConnection>
#include <QString>
#include <QVariantMap>

#include <chrono>
#include <optional>
#include <thread>

namespace brevant {

struct Launch;

/// The one instance of the program in a session: this process, or one that runs already and is told what this
/// one was launched for.
class Instance final {
public:
    /// Begins to claim the service's name on the bus at `busAddress`, on a thread of its own, so that the bus
    /// answers while the window is made. "" stands for no bus. Nobody else may use the service until
    /// finishClaim() has returned. A QApplication need not be there yet.
    Instance(ApplicationService &service, const QString &busAddress);

    /// Waits as finishClaim() does, and leaves the bus.
    ~Instance();

    Instance(const Instance &) = delete;
    Instance &operator=(const Instance &) = delete;

    /// Waits until it is known whose the name is. To be called before anything that may end the process.
    void finishClaim();

    /// If another process has the name, hands it what this one was launched for, with `platformData`, the
    /// right to come to the front; returns the exit status for this one then. If that process ends meanwhile,
    /// this one takes its place. Returns nothing if this process is the one, or there is none to hand over
    /// to.
    [[nodiscard]] std::optional<int> handOver(const Launch &launch, const QVariantMap &platformData);

    /// How long handOver() waits for the other process, which may be busy.
    void setAnswerTimeout(std::chrono::milliseconds timeout) { m_answerTimeout = timeout; }

private:
    ApplicationService &m_service;
    QDBusConnection m_bus;
    ApplicationService::Claim m_claim = ApplicationService::Claim::Alone;
    std::chrono::milliseconds m_answerTimeout = std::chrono::seconds(25);
    std::thread m_claiming;
};

/// Where the session bus listens: what the environment says, else the usual place if there is one; or "". A
/// bus is never started for it.
[[nodiscard]] QString sessionBusAddress();

} // namespace brevant
