// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/ProbeRun.h"

#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace brevant::test {

ProbeEnd runProbe(const QStringList &arguments, const QProcessEnvironment &environment)
{
    const QTemporaryDir runtime; // Qt complains of a session that has none
    QProcessEnvironment complete = environment;
    if (!complete.contains(u"XDG_RUNTIME_DIR"_s))
        complete.insert(u"XDG_RUNTIME_DIR"_s, runtime.path());
    QProcess probe;
    probe.setProcessEnvironment(complete);
    ProbeEnd end;
    probe.start(QStringLiteral(BREVANT_PLATFORM_PROBE), arguments);
    const bool ended = probe.waitForFinished(20'000);
    end.out = probe.readAllStandardOutput();
    end.err = probe.readAllStandardError();
    if (ended)
        end.status = probe.exitStatus() == QProcess::NormalExit ? probe.exitCode() : -probe.exitCode();
    else
        end.status = -1000;
    if (!ended) {
        probe.kill();
        probe.waitForFinished();
    }
    return end;
}

} // namespace brevant::test
