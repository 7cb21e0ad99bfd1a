// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/MountNamespace.h"

#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant::test {

namespace {

/// Runs `command` after `mounts`, whose "$0" is `operand`.
Ended runInNamespace(const Sandbox &sandbox, const QString &mounts, const QString &operand,
                     const QStringList &command, const std::function<void(qint64)> &whenStarted = {})
{
    const QString options = ::geteuid() == 0 ? u"-m"_s : u"-rm"_s;
    const QStringList arguments{options, u"/bin/sh"_s, u"-c"_s, mounts + u" && exec \"$@\""_s, operand};
    return sandbox.runProgram(u"/usr/bin/unshare"_s, arguments + command, {}, whenStarted);
}

const QString overJava = u"mount --bind \"$0\" /usr/bin/java"_s;

} // namespace

QString noMountNamespace()
{
    const Sandbox sandbox;
    const Ended ended = runInNamespace(sandbox, overJava, u"/dev/null"_s, {u"/bin/true"_s});
    return ended.status == 0
               ? QString()
               : u"no mount namespace of our own here: %1"_s.arg(QString::fromUtf8(ended.err).trimmed());
}

Ended runWithJava(const Sandbox &sandbox, const QString &replacement, const QStringList &arguments)
{
    return runInNamespace(sandbox, overJava, replacement, QStringList(cliProgram()) + arguments);
}

Ended runMounted(const Sandbox &sandbox, const QString &mounts, const QStringList &arguments,
                 const std::function<void(qint64)> &whenStarted)
{
    return runInNamespace(sandbox, mounts, u"sh"_s, QStringList(cliProgram()) + arguments, whenStarted);
}

QString addScript(const Sandbox &sandbox, const QString &name, const QByteArray &lines)
{
    const QString path = sandbox.add(name, lines);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

} // namespace brevant::test
