// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/cli/CliRun.h"

namespace brevant::test {

/// Why another /usr/bin/java cannot be put into place here; empty if it can.
[[nodiscard]] QString noMountNamespace();

/// Runs brevant-cli where `replacement` is mounted over /usr/bin/java, for it and its children alone.
[[nodiscard]] Ended runWithJava(const Sandbox &sandbox, const QString &replacement,
                                const QStringList &arguments);

/// Runs brevant-cli after the lines for /bin/sh `mounts`, whose mounts are for it and its children alone.
/// `whenStarted` gets a process id.
[[nodiscard]] Ended runMounted(const Sandbox &sandbox, const QString &mounts, const QStringList &arguments,
                               const std::function<void(qint64)> &whenStarted = {});

/// Writes a script that may be executed; returns its path.
[[nodiscard]] QString addScript(const Sandbox &sandbox, const QString &name, const QByteArray &lines);

} // namespace brevant::test
