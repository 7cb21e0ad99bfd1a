// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace brevant::test {

/// A session bus of our own, without any service. It ends with this object.
class PrivateBus final {
public:
    PrivateBus();
    ~PrivateBus();

    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// Where it listens; empty if it could not be started.
    [[nodiscard]] QString address() const { return m_address; }

    void end();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace brevant::test
