// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/MountNamespace.h"

#include <QFile>

#include <unistd.h>

namespace brevant::test {

namespace {

/// Runs `command` after `mounts`, whose "$0" is `operand`.
Ended runInNamespace(const Sandbox &sandbox, const QString &mounts, const QString &operand,
                     const QStringList &command, const std::function<void(qint64)> &whenStarted = {})
{
    const QString options = ::geteuid() == 0 ? QStringLiteral("-m") : QStringLiteral("-rm");
    const QStringList arguments{options, QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                                mounts + QStringLiteral(" && exec \"$@\""), operand};
    return sandbox.runProgram(QStringLiteral("/usr/bin/unshare"), arguments + command, {}, whenStarted);
}

const QString overJava = QStringLiteral("mount --bind \"$0\" /usr/bin/java");

} // namespace

QString noMountNamespace()
{
    const Sandbox sandbox;
    const Ended ended =
        runInNamespace(sandbox, overJava, QStringLiteral("/dev/null"), {QStringLiteral("/bin/true")});
    return ended.status == 0 ? QString()
                             : QStringLiteral("no mount namespace of our own here: %1")
                                   .arg(QString::fromUtf8(ended.err).trimmed());
}

Ended runWithJava(const Sandbox &sandbox, const QString &replacement, const QStringList &arguments)
{
    return runInNamespace(sandbox, overJava, replacement, QStringList(cliProgram()) + arguments);
}

Ended runMounted(const Sandbox &sandbox, const QString &mounts, const QStringList &arguments,
                 const std::function<void(qint64)> &whenStarted)
{
    return runInNamespace(sandbox, mounts, QStringLiteral("sh"), QStringList(cliProgram()) + arguments,
                          whenStarted);
}

QString addScript(const Sandbox &sandbox, const QString &name, const QByteArray &lines)
{
    const QString path = sandbox.add(name, lines);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

} // namespace brevant::test
