// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

namespace brevant::test {

/// How the probe program ended.
struct ProbeEnd {
    int status = -1; ///< exit status; minus the signal's number if a signal ended it; -1000 if nothing did
    QByteArray out;
    QByteArray err;
};

/// Runs the probe program to its end, at most 20 seconds.
[[nodiscard]] ProbeEnd
runProbe(const QStringList &arguments,
         const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());

} // namespace brevant::test
